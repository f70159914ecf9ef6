// vexcli agency: the agency submission files of a period, or with --check
// what a run would pass over and why.
#include "cli/Commands.h"

#include "acquisition/Inbox_Names.h"
#include "core/Mod_Main.h"
#include "exchange/Agency_File.h"
#include "store/Cls_DB.h"

namespace vex::cli {

int Cmd_Agency(Context& ctx)
{
    const QString from = Option(ctx.args, "--from"), to = Option(ctx.args, "--to");
    if (!Is_Day(from) || !Is_Day(to)) {
        ctx.err << "vexcli: agency --from YYMMDD --to YYMMDD [--company NAME --business NUMBER] [--check]\n";
        return 2;
    }
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;
    Cls_DB& db = *G().DB;
    Agency_Identity id = Load_Agency_Identity(db);
    const QString company = Option(ctx.args, "--company"), business = Option(ctx.args, "--business");
    if (!company.isEmpty() || !business.isEmpty()) {
        id = {company.isEmpty() ? id.company : company, business.isEmpty() ? id.business : business};
        QString message;
        if (!Save_Agency_Identity(db, id, &message)) {
            ctx.err << "vexcli: " << message << "\n";
            return 2;
        }
    }
    const std::vector<Agency_Note> notes = Agency_Check(db, id, from, to);
    const bool stops = std::any_of(notes.begin(), notes.end(), [](const Agency_Note& n) { return n.stops; });
    for (const Agency_Note& n : notes)
        ctx.out << (n.key.isEmpty() ? QStringLiteral("the run") : n.key) << "  " << n.what << "\n";
    ctx.out << notes.size() << " note(s)" << (stops ? ", the run would stop" : "") << "\n";
    // A check passes only what the run then writes.
    if (ctx.args.contains("--check"))
        return stops ? 1 : 0;
    const Agency_Result r = Write_Agency_Files(db, id, from, to);
    for (const QString& f : r.written)
        ctx.out << "wrote " << f << "\n";
    ctx.out << r.written.size() << " file(s) in " << r.folders << " folder(s)\n" << r.message << "\n";
    return r.ok ? 0 : 1;
}

} // namespace vex::cli
