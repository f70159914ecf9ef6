// The reports of one chart under a header: the marks of a period (all cars
// by day, one driver's trips by day) and the seconds before a hard brake.
// The common opening that every routine shares stands here too.
#include "registers/Register_Lookup.h"
#include "reports/Cls_Report.h"

#include "analysis/Period_Marks.h"
#include "analysis/Quick_Brake_Chart.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "reports/Report_Page.h"
#include "reports/Report_Printer.h"
#include "reports/Report_Text.h"
#include "store/Cls_DB.h"

namespace vex {

namespace {

constexpr int16_t kErrAvg_Day_G = 1153;
constexpr int16_t kErrDay_AVG_G = 1154;
constexpr int16_t kErrQuick_Brake = 1155;

QString Msg(int id)
{
    return LoadResString(id);
}

QString Pair(int id, const QString& value)
{
    return Msg(id) + QStringLiteral(" : ") + value;
}

// Title, print date and header lines at the left; the y below them.
float Head(Report_Page& page, const QString& title, const QStringList& lines)
{
    float y = page.Title(title);
    page.Print_Date(y);
    y += page.Pitch() * 1.5f;
    for (const QString& line : lines) {
        page.Text(page.W() * 0.05f, y, line);
        y += page.Pitch();
    }
    return y;
}

} // namespace

bool Cls_Report::No_Printer(Report_Printer& printer)
{
    for (const QString& name : printer.Device_Names())
        if (!name.isEmpty())
            return false;
    if (Msg_Box)
        Msg_Box(Msg(168), Msg(169));
    return true;
}

bool Cls_Report::Report_Avg_Day_G(Report_Printer& printer, Cls_DB& db)
{
    if (No_Printer(printer))
        return false;
    bool ok = false;
    Guarded(kErrAvg_Day_G, [&] {
        const Avg_Days days = DB_Search_AvgDay(db, Start_Date, End_Date);
        Report_Page page(printer, Msg(625), false);
        Head(page, Msg(625),
             {Pair(800, Date_Dash(Start_Date)) + QStringLiteral("     ") + Pair(801, Date_Dash(End_Date)),
              Pair(804, QString::number(days.average, 'f', 2)) + QStringLiteral("     ") +
                  Pair(805, QString::number(days.days))});
        Picture_Avg_Day_Base(page.S(), Start_Date, End_Date, days.columns);
        ok = page.Finish();
    });
    return ok;
}

bool Cls_Report::Report_Day_AVG_G(Report_Printer& printer, Cls_DB& db)
{
    if (No_Printer(printer))
        return false;
    bool ok = false;
    Guarded(kErrDay_AVG_G, [&] {
        // The day key holds the car's number at its characters 5 to 8.
        const Day_Marks marks =
            DB_Search_DayAVG(db, (Car_Code + Driver_Code).mid(4, 4), Driver_Code, Start_Date, End_Date);
        Report_Page page(printer, Msg(626), false);
        const QString name = Driver_Name.isEmpty() ? Driver_Name_Of(db, Driver_Code) : Driver_Name;
        Head(page, Msg(626),
             {Pair(632, Car_Code) + QStringLiteral("     ") + Pair(633, Driver_Code) + QStringLiteral(" (") + name +
                  QLatin1Char(')'),
              Pair(800, Date_Dash(Start_Date)) + QStringLiteral("     ") + Pair(801, Date_Dash(End_Date)),
              Pair(806, QString::number(marks.average, 'f', 2)) + QStringLiteral("     ") +
                  Pair(807, QString::number(marks.count))});
        Picture_Day_AVG_Base(page.S(), Start_Date, End_Date, marks.columns);
        ok = page.Finish();
    });
    return ok;
}

bool Cls_Report::Report_Quick_Brake(Report_Printer& printer, Cls_DB& db, Quick_Brake_Chart& chart, int slot)
{
    if (No_Printer(printer))
        return false;
    bool ok = false;
    Guarded(kErrQuick_Brake, [&] {
        const QString number = Management_Number(db, Car_Code);
        // The buffers belong to the trip they were stored with: its driver
        // and day, whoever the selection names.
        const QString driver = chart.Driver_Code.isEmpty() ? Driver_Code : chart.Driver_Code;
        const QString name =
            driver == Driver_Code && !Driver_Name.isEmpty() ? Driver_Name : Driver_Name_Of(db, driver);
        Report_Page page(printer, Msg(630), false);
        Head(page, Msg(630),
             {Pair(632, Car_Code) + QStringLiteral("     ") + Pair(809, number),
              Pair(832, name + QStringLiteral(" / ") + driver) + QStringLiteral("     ") +
                  Pair(837, Date_Dash(chart.Day))});
        chart.Out_Direction = 1;
        chart.Quick_Brack_Graph(page.S(), slot);
        chart.Out_Direction = 0;
        ok = page.Finish();
    });
    chart.Out_Direction = 0;
    return ok;
}

} // namespace vex
