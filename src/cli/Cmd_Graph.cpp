// vexcli graph day|hour|quickbrake|marks: the pictures of the views as
// files, drawn by the same canvas code.
#include "cli/Commands.h"
#include "cli/Graph_Output.h"

#include "analysis/Graph_Surface.h"
#include "analysis/Operation_Graph.h"
#include "analysis/Period_Marks.h"
#include "analysis/Quick_Brake_Chart.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

namespace vex::cli {

namespace {

bool Six(const QString& s)
{
    return s.size() == 6;
}

int Graph_Usage(Context& ctx, const QString& what)
{
    ctx.err << "vexcli: " << what << "\n"
            << "  graph day CARCODE DRIVERCODE YYMMDD [--zoom 1|2|6|12|24 --hour H] --out FILE.png|FILE.pdf "
               "[--size WxH]\n"
            << "  graph hour CARCODE DRIVERCODE YYMMDD HH [--zoom 1|2|15|30|60 --minute M] --out FILE\n"
            << "  graph quickbrake CARCODE --slot 1..4 --out FILE\n"
            << "  graph marks --car CODE [--driver CODE] | --all  --from YYMMDD --to YYMMDD --out FILE\n";
    return 2;
}

bool Started(Context& ctx)
{
    return Start_App(ctx) && Load_App_Settings(ctx);
}

QString Trip_Line(const Stored_Trip& trip)
{
    return QStringLiteral("%1 %2  %3 %4-%5  %6 km")
        .arg(LoadResString(632) + QStringLiteral(" ") + trip.car, LoadResString(633) + QStringLiteral(" ") + trip.driver,
             Date_Dash(trip.startDay), Time4_To_Text(trip.startTime), Time4_To_Text(trip.endTime), trip.distance);
}

int Finish_Graph(Context& ctx, const Graph_File& file, bool ok, const QString& reason, bool found)
{
    if (!ok) {
        ctx.err << "vexcli: " << reason << "\n";
        return 2;
    }
    ctx.out << "wrote " << file.path << "\n";
    return found ? 0 : 1;
}

int Graph_Day(Context& ctx, QStringList args)
{
    Graph_File file;
    QString reason;
    int zoom = 24, hour = 0;
    if (!Take_Output(args, file, reason))
        return Graph_Usage(ctx, reason);
    if (!Number_Option(args, QStringLiteral("--zoom"), 24, 1, 24, zoom, {1, 2, 6, 12, 24}) ||
        !Number_Option(args, QStringLiteral("--hour"), 0, 0, 23, hour))
        return Graph_Usage(ctx, QStringLiteral("--zoom is 1, 2, 6, 12 or 24 and --hour 0 to 23"));
    if (args.size() != 3 || !Six(args[0]) || !Six(args[1]) || !Day_Word(args[2]))
        return Graph_Usage(ctx, QStringLiteral("graph day CARCODE DRIVERCODE YYMMDD (six characters each)"));
    if (!Started(ctx))
        return 2;
    Cls_DB& db = *G().DB;
    Operation_Graph og(db);
    og.Set_Zoom_Window(int16_t(zoom), hour, 24);
    const bool found = og.DB_Search_Data(nullptr, args[0], args[1], args[2]);
    if (!found)
        ctx.err << "vexcli: no stored day " << args[0] + args[1] + args[2] << "; the frame alone\n";
    else
        ctx.out << Trip_Line(og.Trip) << "  drive " << og.Sum_DriveTime << " min, stops " << og.Sum_BDriveTime
                << " min\n";
    ctx.out << "window " << og.Zoom_Time << "-" << og.Zoom_ETime << "h\n";
    const bool ok = Render(
        file, LoadResString(629), {Trip_Line(og.Trip)},
        [&](Graph_Surface& s, int16_t od) {
            og.Out_Direction = od;
            og.Draw_Day(s);
        },
        reason);
    return Finish_Graph(ctx, file, ok, reason, found);
}

int Graph_Hour(Context& ctx, QStringList args)
{
    Graph_File file;
    QString reason;
    int zoom = 60, minute = 0;
    if (!Take_Output(args, file, reason))
        return Graph_Usage(ctx, reason);
    if (!Number_Option(args, QStringLiteral("--zoom"), 60, 1, 60, zoom, {1, 2, 15, 30, 60}) ||
        !Number_Option(args, QStringLiteral("--minute"), 0, 0, 59, minute))
        return Graph_Usage(ctx, QStringLiteral("--zoom is 1, 2, 15, 30 or 60 and --minute 0 to 59"));
    bool hourOk = false;
    const int h = args.size() == 4 ? args[3].toInt(&hourOk) : -1;
    if (args.size() != 4 || !Six(args[0]) || !Six(args[1]) || !Day_Word(args[2]) || !hourOk || h < 0 || h > 23)
        return Graph_Usage(ctx, QStringLiteral("graph hour CARCODE DRIVERCODE YYMMDD HH (hour 00 to 23)"));
    if (!Started(ctx))
        return 2;
    Cls_DB& db = *G().DB;
    Operation_Graph og(db);
    og.Set_Zoom_Window(int16_t(zoom), minute, 60);
    // "00" looks for the first hour with data, as the views always did.
    QString hour = QString::number(h).rightJustified(2, QLatin1Char('0'));
    const QString asked = hour;
    const bool found = !og.DB_Search_SecData2(nullptr, args[0], args[1], args[2], hour).isEmpty();
    if (!found)
        ctx.err << "vexcli: no second data of " << args[0] << " " << args[1] << " " << args[2]
                << "; the frame alone\n";
    else if (hour != asked)
        ctx.out << "hour " << hour << " (the first hour with data)\n";
    const QString head = LoadResString(632) + QStringLiteral(" ") + args[0] + QStringLiteral("  ") +
                         LoadResString(633) + QStringLiteral(" ") + args[1] + QStringLiteral("  ") +
                         Date_Dash(args[2]) + QStringLiteral(" ") + hour + QStringLiteral("시");
    const bool ok = Render(
        file, LoadResString(1298), {head},
        [&](Graph_Surface& s, int16_t od) {
            og.Out_Direction = od;
            og.Draw_Hour(s);
        },
        reason);
    return Finish_Graph(ctx, file, ok, reason, found);
}

int Graph_Quick_Brake(Context& ctx, QStringList args)
{
    Graph_File file;
    QString reason;
    int slot = 1;
    if (!Take_Output(args, file, reason))
        return Graph_Usage(ctx, reason);
    if (!Number_Option(args, QStringLiteral("--slot"), 1, 1, 4, slot))
        return Graph_Usage(ctx, QStringLiteral("--slot is 1 to 4"));
    if (args.size() != 1 || !Six(args[0]))
        return Graph_Usage(ctx, QStringLiteral("graph quickbrake CARCODE (six characters)"));
    if (!Started(ctx))
        return 2;
    Quick_Brake_Chart chart;
    const bool found = chart.Load(*G().DB, args[0]);
    if (!found)
        ctx.err << "vexcli: no quick-brake buffers stored for car " << args[0] << "; the frame alone\n";
    const bool ok = Render(
        file, LoadResString(630),
        {LoadResString(632) + QStringLiteral(" ") + args[0], LoadResString(633) + QStringLiteral(" ") + chart.Driver_Code,
         LoadResString(837) + QStringLiteral(" ") + Date_Dash(chart.Day)},
        [&](Graph_Surface& s, int16_t od) {
            chart.Out_Direction = od;
            chart.Quick_Brack_Graph(s, slot);
        },
        reason);
    if (found && chart.Empty_Slot(slot)) {
        ctx.err << "vexcli: slot " << slot << " holds no brake; the frame alone\n";
    } else if (found) {
        ctx.out << LoadResString(814) << " : " << chart.Stamp << "\n";
        for (int n = 1; n <= 60; ++n)
            ctx.out << chart.QB_Speed_Search(n) << (n % 20 == 0 ? "\n" : " ");
    }
    return Finish_Graph(ctx, file, ok, reason, found);
}

// The driver of a car's first trip in the period, for the list and the key.
QString First_Driver(Cls_DB& db, const QString& car, const QString& from, const QString& to)
{
    QString driver;
    Guarded(1105, [&] {
        Recordset rs = db.DB_RSet_D_D(
            QStringLiteral("SELECT * FROM D_D1 WHERE D_F2=? AND D_F4 >=? AND D_F6 <=? ORDER BY D_F1"), {car, from, to});
        if (rs.RecordCount() > 0)
            driver = rs.Text(QStringLiteral("D_F3"));
    });
    return driver;
}

int Graph_Marks(Context& ctx, QStringList args)
{
    Graph_File file;
    QString reason;
    if (!Take_Output(args, file, reason))
        return Graph_Usage(ctx, reason);
    const QString car = Take_Option(args, QStringLiteral("--car"));
    QString driver = Take_Option(args, QStringLiteral("--driver"));
    const QString from = Take_Option(args, QStringLiteral("--from"));
    const QString to = Take_Option(args, QStringLiteral("--to"));
    const bool all = args.removeAll(QStringLiteral("--all")) > 0;
    if (!args.isEmpty() || all == !car.isEmpty() || !Day_Word(from) || !Day_Word(to) || to < from ||
        (!car.isEmpty() && !Six(car)))
        return Graph_Usage(ctx, QStringLiteral("graph marks takes --car CODE or --all, and --from <= --to (YYMMDD)"));
    if (!Started(ctx))
        return 2;
    Cls_DB& db = *G().DB;
    std::vector<Mark_Column> columns;
    QString title;
    if (all) {
        const Avg_Days days = DB_Search_AvgDay(db, from, to);
        if (days.days == 0) {
            ctx.err << "vexcli: no trips from " << from << " to " << to << "\n";
            return 1;
        }
        ctx.out << LoadResString(804) << " " << QString::number(days.average, 'f', 2) << "  " << LoadResString(805)
                << " " << days.days << "\n";
        for (const Mark_Column& c : days.columns)
            ctx.out << "  " << Date_Dash(c.day) << "  " << QString::number(c.value, 'f', 1) << "\n";
        columns = days.columns;
        title = LoadResString(625);
    } else {
        if (driver.isEmpty())
            driver = First_Driver(db, car, from, to);
        // The key holds the car's number at its characters 5 to 8.
        const QString number = (car + driver).mid(4, 4);
        const Day_Marks marks = DB_Search_DayAVG(db, number, driver, from, to);
        ctx.out << LoadResString(633) << " " << driver << "  " << LoadResString(807) << " " << marks.count << "  "
                << LoadResString(806) << " " << QString::number(marks.average, 'f', 2) << "\n";
        for (const QStringList& row : marks.list)
            ctx.out << "  " << row.join(QStringLiteral("  ")) << "\n";
        if (marks.list.empty()) {
            ctx.err << "vexcli: no trips of car " << car << " from " << from << " to " << to << "\n";
            return 1;
        }
        columns = marks.columns;
        title = LoadResString(626);
    }
    const bool ok = Render(
        file, title, {Date_Dash(from) + QStringLiteral(" ~ ") + Date_Dash(to)},
        [&](Graph_Surface& s, int16_t) {
            if (all)
                Picture_Avg_Day_Base(s, from, to, columns);
            else
                Picture_Day_AVG_Base(s, from, to, columns);
        },
        reason);
    return Finish_Graph(ctx, file, ok, reason, true);
}

} // namespace

int Cmd_Graph(Context& ctx)
{
    QStringList args = ctx.args;
    const QString what = args.isEmpty() ? QString() : args.takeFirst();
    if (what == QLatin1String("day"))
        return Graph_Day(ctx, args);
    if (what == QLatin1String("hour"))
        return Graph_Hour(ctx, args);
    if (what == QLatin1String("quickbrake"))
        return Graph_Quick_Brake(ctx, args);
    if (what == QLatin1String("marks"))
        return Graph_Marks(ctx, args);
    return Graph_Usage(ctx, QStringLiteral("graph day|hour|quickbrake|marks"));
}

} // namespace vex::cli
