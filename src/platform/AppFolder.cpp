#include "platform/AppFolder.h"


#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace vex {

QString Default_App_Dir()
{
    return QDir::home().filePath(QStringLiteral("VEX"));
}

QString Resolve_App_Dir(const QString& fromCommandLine)
{
    QString dir = fromCommandLine;
    if (dir.isEmpty())
        dir = qEnvironmentVariable("VEX_HOME");
    if (dir.isEmpty())
        dir = Default_App_Dir();
    return QDir::cleanPath(QFileInfo(dir).absoluteFilePath());
}

const QStringList& App_Folders()
{
    static const QStringList folders = {
        "db", "db_temp", "Exp", "pack", "new", "static", "mpack", "report",
        "recieve", "Dat", "Excel", "Help", "Helpeng", "Helpchinese"};
    return folders;
}

QString App_Path(const QString& appDir, const QString& systemPath)
{
    QString rel = systemPath;
    rel.replace(QLatin1Char('\\'), QLatin1Char('/'));
    while (rel.startsWith(QLatin1Char('/')))
        rel.remove(0, 1);
    return rel.isEmpty() ? appDir : appDir + QLatin1Char('/') + rel;
}

bool Inside_Folder(const QString& root, const QString& path)
{
    if (root.isEmpty())
        return false; // no folder holds anything
    const QString r = QDir::cleanPath(QFileInfo(root).absoluteFilePath());
    const QString p = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    return p == r || p.startsWith(r.endsWith(QLatin1Char('/')) ? r : r + QLatin1Char('/'));
}

} // namespace vex
