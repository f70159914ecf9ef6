// The operation views on paper: the day (minutes) and the hour (seconds),
// landscape, the view's figures in three columns over the canvas of a page
// of its own (Out_Direction 2).
#include "reports/Cls_Report.h"

#include "analysis/Graph_Geometry.h"
#include "analysis/Operation_Graph.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/VbText.h"
#include "reports/Report_Page.h"
#include "reports/Report_Printer.h"
#include "store/Cls_DB.h"

#include <algorithm>

namespace vex {

namespace {

constexpr int16_t kErrOperation = 1156;

// Label and value pairs in three columns, row after row from y.
float Columns(Report_Page& page, float y, const QStringList& items)
{
    const float pitch = page.Pitch();
    for (int i = 0; i < items.size(); ++i)
        page.Text(page.W() * (0.0635f + 0.31f * float(i % 3)), y + pitch * float(i / 3), items[i]);
    return y + pitch * float((items.size() + 2) / 3);
}

QString Labelled(const QString& label, const QString& value)
{
    return label + QStringLiteral(" : ") + value;
}

// Title with the print date and company on its line; the y below it.
float Operation_Head(Report_Page& page, const QString& title)
{
    const float y = page.Title(title);
    page.Font(9);
    page.Print_Date(y - page.Pitch() * 1.1f);
    return y;
}

// The events of the hour in the stored lists of the trip: records of
// width characters whose hour is hh.
int Events_Of_Hour(Cls_DB& db, const QString& table, const QString& key, int width, const QString& hh)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM ") + table + QStringLiteral(" WHERE D_F1=?"), {key});
    if (rs.RecordCount() < 1)
        return 0;
    const QString list = rs.Text(QStringLiteral("D_F2"));
    int n = 0;
    for (int i = 0; i + width <= list.size(); i += width) {
        if (list.mid(i, 6) == QLatin1String("000000"))
            break;
        if (list.mid(i, 2) == hh)
            ++n;
    }
    return n;
}

} // namespace

bool Cls_Report::Canvas_Report(Report_Printer& printer, Operation_Graph& og, int titleId, bool hour,
                               const std::function<void(Report_Page&, float)>& header)
{
    if (No_Printer(printer))
        return false;
    bool ok = false;
    Guarded(kErrOperation, [&] {
        const QString title = LoadResString(titleId);
        Report_Page page(printer, title, true);
        header(page, Operation_Head(page, title));
        og.Out_Direction = 2;
        if (hour)
            og.Draw_Hour(page.S());
        else
            og.Draw_Day(page.S());
        og.Out_Direction = 0;
        ok = page.Finish();
    });
    og.Out_Direction = 0;
    return ok;
}

bool Cls_Report::Report_Operation(Report_Printer& printer, Operation_Graph& og, const QStringList& captions,
                                  const QStringList& texts)
{
    return Canvas_Report(printer, og, 629, false, [&](Report_Page& page, float y) {
        // The car's number, the driver, the trip's start, end, distance,
        // counts and mark; the RPM line with an RPM input.
        QStringList items{Labelled(LoadResString(808), Car_Government)};
        for (const int i : {1, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15}) {
            if (i == 15 && !Rpm_Input())
                continue;
            items << Labelled(captions.value(i), texts.value(i));
        }
        Columns(page, y, items);
    });
}

bool Cls_Report::Report_Operation_360(Report_Printer& printer, Operation_Graph& og, const QStringList& captions,
                                      const QStringList& texts)
{
    return Canvas_Report(printer, og, 1298, true, [&](Report_Page& page, float y) {
        QStringList items{Labelled(LoadResString(808), Car_Government)};
        for (int i = 0; i < texts.size() && i < captions.size(); ++i)
            if (!texts[i].isEmpty())
                items << Labelled(captions[i], texts[i]);
        y = Columns(page, y, items);
        // The hour's stored events and its highest values.
        Cls_DB& db = og.DB();
        const QString key = Car_Code + Driver_Code + Start_Date;
        const QString hh = og.Hour.startTime.left(2);
        int highest = 0, rpm = 0;
        for (int k = 1; k <= 3600; ++k) {
            highest = std::max<int>(highest, og.Speed_Search360(k));
            rpm = std::max<int>(rpm, og.RPM_Search360(k) * 40);
        }
        auto count = [&](const char* table, int width) {
            return QString::number(Events_Of_Hour(db, QLatin1String(table), key, width, hh));
        };
        QStringList figures{Labelled(QStringLiteral("급제동"), count("D_D2", 10)),
                            Labelled(QStringLiteral("급가속"), count("D_D4", 10)),
                            Labelled(QStringLiteral("과속"), count("D_D9", 6)),
                            Labelled(QStringLiteral("속도(Km/h)"), QString::number(highest))};
        if (Rpm_Input())
            figures << Labelled(QStringLiteral("rpm"), QString::number(rpm));
        page.Text(page.W() * 0.0635f, y, figures.join(QStringLiteral("     ")));
    });
}

} // namespace vex
