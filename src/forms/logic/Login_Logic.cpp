#include "forms/logic/Login_Logic.h"

#include "platform/AppFolder.h"

#include <QFile>

namespace vex::forms {

QString Login_Key(const QString& user, const QString& password)
{
    return (user + password).toUpper();
}

bool Pending_Optimise(const QString& appDir)
{
    return QFile::exists(App_Path(appDir, QStringLiteral("\\db\\temp2.mdb")));
}

bool Finish_Pending_Optimise(const QString& appDir, const std::function<void()>& pump)
{
    const QString pending = App_Path(appDir, QStringLiteral("\\db\\temp2.mdb"));
    const QString live = App_Path(appDir, QStringLiteral("\\db\\morix.mdb"));
    if (!QFile::exists(pending))
        return true;
    // No test of the file's size or soundness: the optimise wrote it whole.
    const QString part = live + QStringLiteral(".swap");
    QFile::remove(part);
    if (!QFile::copy(pending, part))
        return false;
    QFile::remove(live);
    if (!QFile::rename(part, live))
        return false;
    if (pump)
        pump();
    QFile::remove(pending);
    return true;
}

} // namespace vex::forms
