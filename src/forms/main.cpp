// vex: the desktop program. Until the login and the main window stand, it
// opens the application folder and its database and says what it found.
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMainWindow>
#include <QMessageBox>
#include <QStatusBar>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QCommandLineParser cli;
    cli.addHelpOption();
    cli.addOption({"app-dir", "The application folder (else $VEX_HOME, else ~/VEX).", "DIR"});
    cli.process(app);

    const QString appDir = vex::Resolve_App_Dir(cli.value("app-dir"));
    QString reason;
    if (!vex::Init_App_Folder(appDir, &reason)) {
        QMessageBox::critical(nullptr, "VEX", reason);
        return 1;
    }
    vex::Main_Start(appDir);
    vex::Globals& g = vex::G();
    g.DB = std::make_unique<vex::Cls_DB>();

    QMainWindow window;
    window.setWindowTitle(g.Prog_Title);
    window.resize(800, 600);
    g.Status_Sink = [&window](const QString& text) { window.statusBar()->showMessage(text); };
    QString status = g.DB->DB_State() == 1 ? appDir : vex::Err_Last();
    vex::Status_Text(status);
    window.show();
    const int rc = app.exec();
    vex::Main_Shutdown();
    return rc;
}
