#pragma once
// A fresh application on a folder, as after a login: what each benchmark
// starts its measured work from.
#include "app/App_Setup.h"
#include "app/Start_Up.h"
#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "registers/Settings_Load.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"

namespace vex::bench {

inline void Start_App(const QString& dir)
{
    Main_Shutdown();
    G() = Globals();
    Init_App_Folder(dir);
    Main_Start(dir);
    G().DB = std::make_unique<Cls_DB>();
    Load_Settings(*G().DB, *G().Config, G());
}

} // namespace vex::bench
