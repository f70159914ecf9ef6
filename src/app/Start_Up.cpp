#include "app/Start_Up.h"

#include "acquisition/AnalyzerLink.h"
#include "acquisition/Cls_IO.h"
#include "acquisition/UsbRecorder.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"
#include "platform/FileSystem.h"
#include "platform/IniFile.h"
#include "platform/SerialPort.h"
#include "store/Cls_DB.h"

#include <QDir>

namespace vex {

void Main_Start(const QString& appDir)
{
    Globals& g = G();
    Guarded(1161, [&] {
        g.Graph_Minutes = 1440.0f;
        g.Graph_Seconds = 3600.0f;
        g.Pack_Mark1 = QStringLiteral("AA");
        g.Pack_Mark2 = QStringLiteral("AA");
        g.Pack_Mark3 = QStringLiteral("11");
        g.Pack_Mark4 = QStringLiteral("5A");
        g.Pack_Mark5 = QStringLiteral("A5");
        g.Pack_Mark6 = QStringLiteral("00");

        g.App_Dir = appDir;
        const QString ini = App_Path(appDir, QStringLiteral("\\MORIX.INI"));
        QDir::setCurrent(appDir);
        g.DB_Server = Read_INI(QStringLiteral("MAIN"), QStringLiteral("MAIN SERVER"), ini);
        g.FS = std::make_unique<FileSystem>(appDir);
        g.Port = std::make_unique<SerialPort>();
        g.Link = std::make_unique<AnalyzerLink>(*g.Port);
        g.Prog_Title = QStringLiteral("VEX");

        // Without a data source none of the shared objects exists, and the
        // login cannot succeed.
        if (g.DB_Server.isEmpty()) {
            Err_Proc(1161, QStringLiteral("no data source: key MAIN SERVER of section MAIN is missing or empty in ") + ini);
            return;
        }
        g.DB_Conn = QStringLiteral("DSN=") + g.DB_Server;
        g.IO = std::make_unique<Cls_IO>();
        g.IO->Link = g.Link.get();
        Register_Usb_Decoders(); // the inbox pass knows every recording
        g.Config = std::make_unique<Cls_Config>();
    });
}

void Main_Shutdown()
{
    Globals& g = G();
    if (g.Port && g.Port->isOpen())
        g.Port->close();
    g.IO.reset();
    g.DB.reset();
    g.Config.reset();
    g.Link.reset();
    g.Port.reset();
}

} // namespace vex
