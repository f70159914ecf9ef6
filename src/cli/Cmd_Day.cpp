// vexcli day CAR DRIVER YYMMDD: what the database holds of one stored day.
#include "cli/Commands.h"

#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "platform/FileSystem.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/Day_Store.h"

namespace vex::cli {

namespace {

QString Row_Text(Cls_DB& db, const QString& table, const QString& key, const QString& field)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM %1 WHERE D_F1=?").arg(table), {key});
    return rs.RecordCount() < 1 ? QString() : rs.Text(field);
}

// An event list of fixed-width records, one per line.
void Print_List(Context& ctx, Cls_DB& db, const char* title, const QString& table, const QString& key, int width)
{
    const QString list = Row_Text(db, table, key, QStringLiteral("D_F2")).trimmed();
    ctx.out << title << " (" << table << "): " << list.size() / width << " record(s)\n";
    for (int i = 0; i + width <= list.size(); i += width)
        ctx.out << "  " << list.mid(i, width) << "\n";
}

} // namespace

int Cmd_Day(Context& ctx)
{
    if (ctx.args.size() != 3 || ctx.args[0].size() != 6 || ctx.args[1].size() != 6 || ctx.args[2].size() != 6) {
        ctx.err << "vexcli: day CARCODE DRIVERCODE YYMMDD (six characters each, as stored)\n";
        return 2;
    }
    if (!Start_App(ctx))
        return 2;
    const QString key = ctx.args[0] + ctx.args[1] + ctx.args[2];
    Cls_DB& db = *G().DB;
    int rc = 0;
    const bool ok = Guarded(1103, [&] {
        Recordset d1 = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 WHERE D_F1=?"), {key});
        if (d1.RecordCount() < 1) {
            ctx.err << "vexcli: no stored day " << key << "\n";
            rc = 1;
            return;
        }
        static const char* const names[] = {"key", "car", "driver", "start day", "start time", "end day",
                                            "end time", "distance", "quick accelerations", "quick brakes",
                                            "overspeed minutes", "idle", "long overspeed", "mark",
                                            "overspeed band 1", "overspeed band 2", "overspeed band 3"};
        ctx.out << "D_D1 " << key << "\n";
        for (int i = 0; i < 17; ++i) {
            const QVariant v = d1.Field(QStringLiteral("D_F%1").arg(i + 1));
            ctx.out << "  D_F" << QString::number(i + 1).leftJustified(3) << QString::fromLatin1(names[i]).leftJustified(20)
                    << (v.isNull() ? QStringLiteral("Null") : v.toString()) << "\n";
        }
        Print_List(ctx, db, "quick brakes", QStringLiteral("D_D2"), key, 10);
        Print_List(ctx, db, "quick accelerations", QStringLiteral("D_D4"), key, 10);
        Print_List(ctx, db, "long overspeed", QStringLiteral("D_D6"), key, 18);
        Print_List(ctx, db, "idle", QStringLiteral("D_DI"), key, 18);
        Print_List(ctx, db, "overspeed", QStringLiteral("D_D9"), key, 6);
        ctx.out << "series: speed " << Row_Text(db, QStringLiteral("D_D3"), key, QStringLiteral("D_F2")).size()
                << ", distance " << Row_Text(db, QStringLiteral("D_D7"), key, QStringLiteral("D_F2")).size()
                << ", engine " << Row_Text(db, QStringLiteral("D_D8"), key, QStringLiteral("D_F2")).size()
                << " characters\n";
        const qint64 size = Day_File_Size(db, Day_File_Name(ctx.args[0], ctx.args[1], ctx.args[2]));
        ctx.out << "day file: " << (size < 0 ? QStringLiteral("none") : QString::number(size) + QStringLiteral(" bytes"))
                << "\n";
    });
    if (!ok) {
        ctx.err << "vexcli: " << Err_Last() << "\n";
        return 2;
    }
    return rc;
}

} // namespace vex::cli
