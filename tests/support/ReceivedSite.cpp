#include "support/ReceivedSite.h"

#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "core/Settings_Load.h"
#include "store/Cls_DB.h"
#include "support/CliRun.h"
#include "support/TempApp.h"

#include <QDir>
#include <memory>

namespace vex::test {

QString Received_Site(QString* reason)
{
    static QTemporaryDir root;
    static QString site, why;
    static bool tried = false;
    if (!tried) {
        tried = true;
        const QString medium = root.path() + QStringLiteral("/medium");
        CliRun r = Vexcli({"sample", "usb", "--model", "250", "--out", medium, "--car", kSiteCar, "--driver",
                           kSiteDriver, "--from", "260105", "--days", "2"});
        if (r.code != 0) {
            why = QStringLiteral("sample: ") + r.err;
        } else {
            r = Vexcli({"--app-dir", root.path() + QStringLiteral("/site"), "receive", "usb", "--model", "250",
                        "--medium", medium});
            if (r.code != 0)
                why = QStringLiteral("receive: ") + r.out + r.err;
            else
                site = root.path() + QStringLiteral("/site");
        }
    }
    if (reason)
        *reason = why;
    return site;
}

Site_Session::Site_Session(const QString& site) : cwd_(QDir::currentPath())
{
    Reset_Globals();
    Main_Start(site);
    Globals& g = G();
    g.DB = std::make_unique<Cls_DB>();
    ok_ = g.DB->DB_State() == 1 && Load_Settings(*g.DB, *g.Config, g);
}

Site_Session::~Site_Session()
{
    Reset_Globals();
    QDir::setCurrent(cwd_);
}

} // namespace vex::test
