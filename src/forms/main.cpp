// vex: the desktop program. The login is its first window; the main window
// follows a good login.
#include "acquisition/UsbRecorder.h"
#include "app/App_Setup.h"
#include "app/Start_Up.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "forms/Qt_Language.h"
#include "forms/Screenshots.h"
#include "forms/frm_Splash.h"
#include "platform/AppFolder.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    vex::forms::Install_Qt_Translations(vex::System_Lang());
    QCommandLineParser cli;
    cli.addHelpOption();
    cli.addOption({"app-dir", "The application folder (else $VEX_HOME, else ~/VEX).", "DIR"});
    cli.addOption({"screenshots", "Render every window to PNG files in DIR and end.", "DIR"});
    cli.addOption({"prefix", "File name prefix of the screenshots.", "TEXT", "vex"});
    cli.addOption({"sample-rows", "With --screenshots: give empty registers a few sample rows first."});
    cli.process(app);

    const QString appDir = vex::Resolve_App_Dir(cli.value("app-dir"));
    QString reason;
    if (!vex::Init_App_Folder(appDir, &reason)) {
        vex::forms::Msg_Box(reason, QMessageBox::Critical);
        return 1;
    }
    if (cli.isSet("screenshots")) {
        const int n = vex::forms::Write_Screenshots(appDir, cli.value("screenshots"), cli.value("prefix"),
                                                     cli.isSet("sample-rows"));
        QTextStream(stdout) << n << " screenshot(s) written to " << cli.value("screenshots") << "\n";
        vex::Main_Shutdown();
        return n > 0 ? 0 : 1;
    }
    auto* login = new vex::forms::frm_Splash(appDir);
    login->show();
    const int rc = app.exec();
    vex::Main_Shutdown();
    return rc;
}
