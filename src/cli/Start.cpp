#include "cli/Commands.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/Settings_Load.h"
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
    Main_Start(ctx.appDir);
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
