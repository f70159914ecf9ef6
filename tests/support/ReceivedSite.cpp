#include "support/ReceivedSite.h"

#include "app/Start_Up.h"
#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "registers/Settings_Load.h"
#include "store/Cls_DB.h"
#include "support/CliRun.h"
#include "support/TempApp.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
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

void Copy_Tree(const QString& from, const QString& to)
{
    QDir().mkpath(to);
    for (QDirIterator it(from, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); it.hasNext();) {
        const QString f = it.next();
        const QString target = to + QLatin1Char('/') + QDir(from).relativeFilePath(f);
        QDir().mkpath(QFileInfo(target).absolutePath());
        QFile::copy(f, target);
    }
    for (QDirIterator it(from, QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot); it.hasNext();) {
        const QFileInfo link(it.next());
        if (link.isSymLink())
            QFile::link(QDir(from).relativeFilePath(link.symLinkTarget()), to + QLatin1Char('/') + link.fileName());
    }
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
