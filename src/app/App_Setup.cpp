#include "app/App_Setup.h"

#include "platform/AppFolder.h"
#include "platform/Resources.h"
#include "store/Schema.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <functional>

namespace vex {

namespace {

bool Fail(QString* reason, const QString& text)
{
    if (reason)
        *reason = text;
    return false;
}

// "Exp" and "exp" name one folder: on a case-sensitive file system the
// lower-case name is a link to the other.
bool Link_Exp(const QString& appDir, QString* reason)
{
    const QString lower = appDir + "/exp";
    const QFileInfo info(lower);
    if (info.exists() || info.isSymLink())
        return true;
    if (!QFile::link(QStringLiteral("Exp"), lower))
        return Fail(reason, QStringLiteral("cannot create %1").arg(lower));
    return true;
}

bool Copy_Resource(const QString& resource, const QString& target, QString* reason)
{
    if (QFileInfo::exists(target))
        return true;
    QFile::remove(target); // a dangling link
    if (!QFile::copy(resource, target))
        return Fail(reason, QStringLiteral("cannot write %1").arg(target));
    QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup
                                      | QFile::ReadOther);
    return true;
}

// A delivered database, where the delivered data carries one (the share
// folder of an installed program); else made here, since the databases are
// the program's own work and the built-in resources hold none.
bool Place_Database(const QString& resource, const QString& target, const std::function<bool()>& make,
                    QString* reason)
{
    if (QFileInfo::exists(target))
        return true;
    if (QFileInfo::exists(resource))
        return Copy_Resource(resource, target, reason);
    return make();
}

} // namespace

bool Init_App_Folder(const QString& appDir, QString* reason)
{
    QDir root(appDir);
    if (!root.mkpath(QStringLiteral(".")))
        return Fail(reason, QStringLiteral("cannot create the application folder %1").arg(appDir));
    for (const QString& sub : App_Folders()) {
        if (!root.mkpath(sub))
            return Fail(reason, QStringLiteral("cannot create %1/%2").arg(appDir, sub));
    }
    if (!Link_Exp(appDir, reason))
        return false;
    if (!Copy_Resource(Resource_Path("MORIX.INI"), App_Path(appDir, "\\MORIX.INI"), reason))
        return false;

    // The spreadsheet templates and the help pages, file by file; a copy the
    // user edited is kept.
    for (const char* folder : {"Excel", "Help", "Helpeng", "Helpchinese"}) {
        const QString from = Resource_Path(QLatin1String(folder));
        for (const QString& name : QDir(from).entryList(QDir::Files)) {
            if (!Copy_Resource(from + '/' + name, App_Path(appDir, QLatin1String(folder) + '/' + name), reason))
                return false;
        }
    }

    const QString templ = App_Path(appDir, "\\db_temp\\morix.mdb");
    if (!Place_Database(Resource_Path("db_temp/morix.mdb"), templ,
                        [&] { return Create_Sqlite_Database(templ, reason); }, reason))
        return false;
    const QString live = App_Path(appDir, "\\db\\morix.mdb");
    if (!QFileInfo::exists(live) && !QFile::copy(templ, live))
        return Fail(reason, QStringLiteral("cannot write %1").arg(live));
    // The export database of the packages: all the tables, kept and emptied.
    const QString exp = App_Path(appDir, "\\Exp\\exp.mdb");
    if (!Place_Database(Resource_Path("Exp/exp.mdb"), exp,
                        [&] { return QFile::copy(templ, exp) || Fail(reason, QStringLiteral("cannot write %1").arg(exp)); }, reason))
        return false;
    return true;
}

} // namespace vex
