#include "support/AppSession.h"

#include "app/App_Setup.h"
#include "app/Start_Up.h"
#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "registers/Settings_Load.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"

namespace vex::test {

AppSession::AppSession()
{
    Init_App_Folder(Dir());
    Main_Start(Dir());
    Globals& g = G();
    g.DB = std::make_unique<Cls_DB>();
    Load_Settings(*g.DB, *g.Config, g);
}

} // namespace vex::test
