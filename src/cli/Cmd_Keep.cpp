// vexcli optimise|backup|export|import|delete|rekey|rebuild|move|dayfiles: keeping the
// data without a window. Each prints what it did per table.
#include "cli/Commands.h"

#include "acquisition/Inbox_Names.h"
#include "core/Mod_Main.h"
#include "exchange/Data_Package.h"
#include "exchange/Day_Files_Move.h"
#include "exchange/Db_Keeping.h"
#include "store/Cls_DB.h"

#include <QFile>
#include <QFileInfo>

namespace vex::cli {

namespace {

Exchange_Progress Printer(Context& ctx)
{
    return [&ctx](const QString& stage, int done, int all) {
        ctx.err << stage << " " << done << "/" << all << "\n";
        ctx.err.flush();
    };
}

int Report(Context& ctx, const Exchange_Report& r)
{
    for (const auto& [table, rows] : r.tables)
        ctx.out << table << " " << rows << "\n";
    if (!r.files.isEmpty())
        ctx.out << "day files " << r.files.size() << "\n";
    for (const QString& row : r.refused)
        ctx.out << "refused row " << row << "\n";
    ctx.out << r.message << "\n";
    return r.ok && r.refused.isEmpty() ? 0 : 1;
}

bool Days(Context& ctx, const QString& from, const QString& to)
{
    if (Is_Day(from) && Is_Day(to) && from <= to)
        return true;
    ctx.err << "vexcli: --from and --to are days YYMMDD, the first not after the second\n";
    return false;
}

// "ALL", or a six-character code.
bool Code_Or_All(Context& ctx, const QString& what, const QString& value)
{
    if (value == QLatin1String("ALL") || Is_Code(value))
        return true;
    ctx.err << "vexcli: " << what << " is ALL or a code of six hexadecimal capitals\n";
    return false;
}

int Optimise_Cmd(Context& ctx)
{
    const Optimise_Result r = Optimise(*G().DB);
    if (r.before >= 0)
        ctx.out << "size before " << QLocale(QLocale::English).toString(r.before) << " bytes\n";
    if (r.after >= 0)
        ctx.out << "size after  " << QLocale(QLocale::English).toString(r.after) << " bytes (in place at the next start)\n";
    ctx.out << r.message << "\n";
    return r.ok ? 0 : 1;
}

int Backup_Cmd(Context& ctx)
{
    const QString from = Option(ctx.args, "--from"), to = Option(ctx.args, "--to");
    if (!Days(ctx, from, to))
        return 2;
    return Report(ctx, Backup(*G().DB, from, to, Printer(ctx)));
}

int Export_Cmd(Context& ctx)
{
    Selection s{Option(ctx.args, "--from"), Option(ctx.args, "--to")};
    if (!Days(ctx, s.from, s.to))
        return 2;
    s.car = Option(ctx.args, "--car").isEmpty() ? QStringLiteral("ALL") : Option(ctx.args, "--car");
    s.driver = Option(ctx.args, "--driver").isEmpty() ? QStringLiteral("ALL") : Option(ctx.args, "--driver");
    if (!Code_Or_All(ctx, "--car", s.car) || !Code_Or_All(ctx, "--driver", s.driver))
        return 2;
    const QString out = Option(ctx.args, "--out");
    const QString name = out.isEmpty() ? s.from + s.to : QFileInfo(out).completeBaseName();
    Exchange_Report r = Export_Package(*G().DB, s, name, Printer(ctx));
    // The package goes to FILE alone: no second copy waits in "\exp", where
    // it would look like any other package, written or not.
    if (r.ok && !out.isEmpty() && QFileInfo(out).absoluteFilePath() != QFileInfo(r.message).absoluteFilePath()) {
        QFile::remove(out);
        const bool written = QFile::copy(r.message, out);
        QFile::remove(r.message);
        if (!written) {
            ctx.err << "vexcli: cannot write " << out << "\n";
            return 1;
        }
        r.message = QFileInfo(out).absoluteFilePath();
    }
    int rc = Report(ctx, r);
    if (rc == 0 && ctx.args.contains("--delete"))
        rc = Report(ctx, Delete_Selection(*G().DB, s, Printer(ctx)));
    return rc;
}

int Import_Cmd(Context& ctx)
{
    if (ctx.args.isEmpty()) {
        ctx.err << "vexcli: import FILE.zip|FOLDER\n";
        return 2;
    }
    const Exchange_Report r = Import_Package(*G().DB, ctx.args[0], false, Printer(ctx));
    const int rc = Report(ctx, r);
    for (const QString& line : r.ledger)
        ctx.out << line << "\n";
    for (const QString& note : r.notes)
        ctx.out << "  " << note << "\n";
    return rc;
}

int Delete_Cmd(Context& ctx)
{
    Selection s{Option(ctx.args, "--from"), Option(ctx.args, "--to"), Option(ctx.args, "--car"),
                Option(ctx.args, "--driver").isEmpty() ? QStringLiteral("ALL") : Option(ctx.args, "--driver")};
    if (!Days(ctx, s.from, s.to) || !Code_Or_All(ctx, "--car", s.car) || !Code_Or_All(ctx, "--driver", s.driver))
        return 2;
    if (!ctx.args.contains("--yes")) {
        ctx.err << "vexcli: 정말 삭제하시겠습니까? (add --yes)\n";
        return 2;
    }
    return Report(ctx, Delete_Selection(*G().DB, s, Printer(ctx)));
}

int Rekey_Cmd(Context& ctx)
{
    const QString from = Option(ctx.args, "--from"), to = Option(ctx.args, "--to");
    if (!Days(ctx, from, to))
        return 2;
    return Report(ctx, Rekey(*G().DB, Option(ctx.args, "--car"), Option(ctx.args, "--driver"), from, to,
                             Option(ctx.args, "--new-driver"), Printer(ctx)));
}

int Rebuild_Cmd(Context& ctx)
{
    if (ctx.args.isEmpty()) {
        ctx.err << "vexcli: rebuild FILE.vex --car CODE\n";
        return 2;
    }
    return Report(ctx, Rebuild_Day(*G().DB, ctx.args[0], Option(ctx.args, "--car")));
}

int Move_Cmd(Context& ctx)
{
    const QString source = Option(ctx.args, "--source");
    if (source.isEmpty()) {
        ctx.err << "vexcli: move --source PATH --kind 1|2|3 --from YYMMDD\n";
        return 2;
    }
    return Report(ctx, Move_From(*G().DB, source, Option(ctx.args, "--kind").toInt(),
                                 Option(ctx.args, "--from"), Printer(ctx)));
}

int Day_Files_Cmd(Context& ctx)
{
    if (ctx.args.value(0) != QLatin1String("to-database")) {
        ctx.err << "vexcli: dayfiles to-database\n";
        return 2;
    }
    const Day_Files_Move_Report r = Move_Day_Files_To_Database(*G().DB, [&ctx](int done, int all) {
        ctx.err << "dayfiles " << done << "/" << all << "\n";
        ctx.err.flush();
    });
    ctx.out << "day files stored " << r.stored << ", merged with the server's " << r.merged << "\n";
    for (const QString& why : r.refused)
        ctx.out << "refused " << why << "\n";
    ctx.out << r.message << "\n";
    return r.ok && r.refused.isEmpty() ? 0 : 1;
}

// Paths are named before the start-up moves into the application folder.
template <int (*Run)(Context&)>
int Started(Context& ctx)
{
    for (QString& a : ctx.args)
        if (!a.startsWith(QLatin1String("--")) && QFileInfo::exists(a))
            a = QFileInfo(a).absoluteFilePath();
    const int out = ctx.args.indexOf(QStringLiteral("--out"));
    if (out >= 0 && out + 1 < ctx.args.size())
        ctx.args[out + 1] = QFileInfo(ctx.args[out + 1]).absoluteFilePath();
    const int source = ctx.args.indexOf(QStringLiteral("--source"));
    if (source >= 0 && source + 1 < ctx.args.size())
        ctx.args[source + 1] = QFileInfo(ctx.args[source + 1]).absoluteFilePath();
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;
    return Run(ctx);
}

} // namespace

int Cmd_Optimise(Context& ctx) { return Started<Optimise_Cmd>(ctx); }
int Cmd_Backup(Context& ctx) { return Started<Backup_Cmd>(ctx); }
int Cmd_Export(Context& ctx) { return Started<Export_Cmd>(ctx); }
int Cmd_Import(Context& ctx) { return Started<Import_Cmd>(ctx); }
int Cmd_Delete(Context& ctx) { return Started<Delete_Cmd>(ctx); }
int Cmd_Rekey(Context& ctx) { return Started<Rekey_Cmd>(ctx); }
int Cmd_Rebuild(Context& ctx) { return Started<Rebuild_Cmd>(ctx); }
int Cmd_Move(Context& ctx) { return Started<Move_Cmd>(ctx); }
int Cmd_Day_Files(Context& ctx) { return Started<Day_Files_Cmd>(ctx); }

} // namespace vex::cli
