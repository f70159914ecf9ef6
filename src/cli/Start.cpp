#include "app/App_Setup.h"
#include "app/Start_Up.h"
#include "cli/Commands.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "registers/Settings_Load.h"
#include "exchange/Data_Package.h"
#include "exchange/Db_Compaction.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"

namespace vex::cli {

bool Start_App(Context& ctx)
{
    QString reason;
    if (!Init_App_Folder(ctx.appDir, &reason)) {
        ctx.err << "vexcli: " << reason << "\n";
        return false;
    }
    // A compaction of an earlier run takes effect before the database is
    // opened, by the same rule as at the desktop's start.
    const Compaction_Takeover takeover = Take_Over_Compaction(ctx.appDir);
    Main_Start(ctx.appDir);
    if (takeover == Compaction_Takeover::Stale)
        ctx.err << "vexcli: " << Stale_Compaction_Message() << "\n";
    if (takeover == Compaction_Takeover::Failed)
        ctx.err << "vexcli: the compacted copy " << App_Path(ctx.appDir, "\\db\\temp2.mdb")
                << " could not replace the database; it waits for the next start\n";
    Globals& g = G();
    if (g.DB_Server.isEmpty()) {
        ctx.err << "vexcli: " << App_Path(ctx.appDir, "\\MORIX.INI")
                << " names no database (section [MAIN], key MAIN SERVER)\n";
        return false;
    }
    g.DB = std::make_unique<Cls_DB>();
    if (g.DB->DB_State() != 1) {
        ctx.err << "vexcli: cannot open the database " << g.DB_Server << ": " << Err_Last() << "\n";
        return false;
    }
    // A write that waits for another program says so.
    g.DB->Wait_Notice = [&ctx](const QString& text) {
        ctx.err << "vexcli: " << text << "\n";
        ctx.err.flush();
    };
    // A re-key cut short after its rows committed gets its day files.
    Finish_Pending_Renames(*g.DB);
    // A database of an earlier version gets the indexes of this one; one
    // that can't be written now gets them at a later start.
    Guarded(kErrIndexes, [&] { g.DB->Ensure_Indexes(); });
    return true;
}

// Settings as a login would load them; commands that need no login use them.
bool Load_App_Settings(Context& ctx)
{
    Globals& g = G();
    if (!Load_Settings(*g.DB, *g.Config, g)) {
        ctx.err << "vexcli: the settings row (S_D14) cannot be read: " << Err_Last() << "\n";
        return false;
    }
    return true;
}

} // namespace vex::cli
