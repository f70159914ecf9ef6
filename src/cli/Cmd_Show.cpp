// vexcli init / vexcli show: the application folder and what its database holds.
#include "cli/Commands.h"

#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"
#include "platform/Resources.h"
#include "store/Cls_DB.h"
#include "store/Schema.h"

namespace vex::cli {

namespace {

void Print_Place(Context& ctx)
{
    const Globals& g = G();
    const DbTarget& t = g.DB->Target();
    ctx.out << "application folder: " << g.App_Dir << "\n"
            << "MAIN SERVER:        " << g.DB_Server << "\n"
            << "database:           " << Engine_Name(t.engine) << " "
            << (t.engine == Engine::Postgres ? t.database + QStringLiteral(" on ") + (t.host.isEmpty() ? QStringLiteral("local socket") : t.host)
                                              : t.database)
            << "\n"
            << "resources:          " << Resource_Origin() << "\n";
}

// What each column of the settings row feeds.
const char* const kS_D14_Meaning[23] = {
    "U_Name", "U_Tel", "U_Fax", "U_Business", "U_UserID", "U_Pass", "U_PackDir", "U_DBBackup",
    "U_Port", "S_IP", "S_Port", "S_User", "S_Password", "S_CompanyCode", "C_RPM", "C_Oil",
    "Max_Speed_Axis", "Max_RPM_Axis", "RPM_Tick10", "C_VAL", "Idle_Minutes", "S_Email", "Car_VAL"};

void Print_Row(Context& ctx, const QString& table, const char* const* meaning)
{
    Recordset rs = G().DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM ") + table);
    ctx.out << "\n" << table << (rs.RecordCount() == 1 ? "" : " (first row)") << ":\n";
    if (rs.RecordCount() < 1) {
        ctx.out << "  (no row)\n";
        return;
    }
    for (const QString& name : rs.Field_Names()) {
        const int col = name.mid(3).toInt();
        const QVariant v = rs.Field(name);
        ctx.out << "  " << name.toUpper().leftJustified(6) << " "
                << QString::fromLatin1(meaning && col >= 1 && col <= 23 ? meaning[col - 1] : "").leftJustified(15)
                << (v.isNull() ? QStringLiteral("Null") : v.toString()) << "\n";
    }
}

} // namespace

int Cmd_Init(Context& ctx)
{
    if (!Start_App(ctx))
        return 2;
    if (!Guarded(1161, [] { G().DB->Ensure_Schema(); })) {
        ctx.err << "vexcli: cannot create the tables: " << Err_Last() << "\n";
        return 2;
    }
    Print_Place(ctx);
    ctx.out << "ready\n";
    return 0;
}

int Cmd_Show(Context& ctx)
{
    if (!Start_App(ctx))
        return 2;
    Print_Place(ctx);
    const bool ok = Guarded(1161, [&] {
        ctx.out << "\ntables:\n";
        for (const Table& t : Schema_Tables()) {
            Recordset rs = G().DB->DB_RSet_D_D(QStringLiteral("SELECT COUNT(*) AS N FROM ") + t.name);
            ctx.out << "  " << t.name.leftJustified(6) << " " << QString::number(t.columns.size()).rightJustified(2)
                    << " columns " << QString::number(rs.Field("N").toLongLong()).rightJustified(8) << " rows\n";
        }
        Print_Row(ctx, QStringLiteral("S_D14"), kS_D14_Meaning);
        Print_Row(ctx, QStringLiteral("S_D10"), nullptr);
        Print_Row(ctx, QStringLiteral("S_D4"), nullptr);
    });
    if (!ok) {
        ctx.err << "vexcli: " << Err_Last() << "\n";
        return 2;
    }
    return 0;
}

} // namespace vex::cli
