// vexcli sections CAR DRIVER YYMMDD: the driving and standing sections of
// a stored day and their sums; vexcli month YYMM: the month tables rebuilt.
#include "cli/Commands.h"

#include "analysis/Operation_Graph.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"

namespace vex::cli {

namespace {

QString Minutes(int m)
{
    return QStringLiteral("%1:%2").arg(m / 60, 2, 10, QLatin1Char('0')).arg(m % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

int Cmd_Sections(Context& ctx)
{
    if (ctx.args.size() != 3 || ctx.args[0].size() != 6 || ctx.args[1].size() != 6 || ctx.args[2].size() != 6 ||
        !All_Digits(ctx.args[2])) {
        ctx.err << "vexcli: sections CARCODE DRIVERCODE YYMMDD (six characters each, as stored)\n";
        return 2;
    }
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;
    Operation_Graph og(*G().DB);
    const QString& car = ctx.args[0];
    const QString& driver = ctx.args[1];
    const QString& day = ctx.args[2];
    if (!og.DB_Search_Data(nullptr, car, driver, day)) {
        ctx.err << "vexcli: no stored day " << car + driver + day << "\n";
        return 1;
    }
    og.DB_Search_Data2(nullptr, car, driver, day);
    ctx.out << "sections of " << car + driver + day << " (stops longer than " << Stop_Threshold()
            << " minutes end a drive)\n";
    for (const Day_Section& s : og.Sections)
        ctx.out << "  " << s.Start << " ~ " << s.End << "  " << s.Length << "  " << s.Kind.leftJustified(4) << "  "
                << QString::number(s.Distance, 'f', 1).rightJustified(6) << " km\n";
    ctx.out << "Sum_DriveTime " << Minutes(og.Sum_DriveTime) << "  Sum_BDriveTime " << Minutes(og.Sum_BDriveTime)
            << "  Total_Time " << Minutes(og.Total_Time) << "\n"
            << "long stops of the day (UnH_Time) " << Minutes(UnH_Time(og.Trip.speed)) << "\n";
    return 0;
}

int Cmd_Month(Context& ctx)
{
    if (ctx.args.size() != 1 || ctx.args[0].size() != 4 || !All_Digits(ctx.args[0])) {
        ctx.err << "vexcli: month YYMM\n";
        return 2;
    }
    if (!Start_App(ctx))
        return 2;
    const QString& month = ctx.args[0];
    Cls_DB& db = *G().DB;
    if (db.DB_Month_Sum(month) != -1) {
        ctx.err << "vexcli: " << Err_Last() << "\n";
        return 2;
    }
    int rc = 0;
    const bool ok = Guarded(1108, [&] {
        auto print = [&](Recordset& rs, int last) {
            for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
                QStringList cells;
                for (int c = 1; c <= last; ++c)
                    cells << rs.Text(QStringLiteral("D_F%1").arg(c));
                ctx.out << "  " << cells.join(QStringLiteral("  ")) << "\n";
            }
        };
        Recordset m1 = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_M1 WHERE D_F4=? ORDER BY D_F1"), {month});
        ctx.out << "D_M1 " << month << ": " << m1.RecordCount() << " row(s)\n";
        print(m1, 14);
        Recordset y1 = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_Y1 WHERE D_F1=?"), {month});
        ctx.out << "D_Y1 " << month << ": " << y1.RecordCount() << " row(s)\n";
        print(y1, 11);
        if (m1.RecordCount() < 1)
            rc = 1;
    });
    if (!ok) {
        ctx.err << "vexcli: " << Err_Last() << "\n";
        return 2;
    }
    return rc;
}

} // namespace vex::cli
