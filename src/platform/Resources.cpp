#include "platform/Resources.h"

#include <QDir>
#include <QFileInfo>

namespace vex {

namespace {

// The share folder as seen from the running program's folder; the build
// places the relative path between the installed bin and share folders in
// VEX_SHARE_FROM_BIN. /proc/self/exe names the program before any Qt
// application object exists (the message table may be read first).
QString Share_Dir()
{
    const QString program = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
    if (program.isEmpty())
        return {};
    return QDir::cleanPath(QFileInfo(program).path() + QStringLiteral("/" VEX_SHARE_FROM_BIN));
}

} // namespace

QString Resource_Root()
{
    static const QString root = [] {
        const QString share = Share_Dir();
        return !share.isEmpty() && QFileInfo(share).isDir() ? share : QStringLiteral(":");
    }();
    return root;
}

QString Resource_Path(const QString& relative)
{
    return Resource_Root() + QLatin1Char('/') + relative;
}

QString Resource_Origin()
{
    const QString root = Resource_Root();
    return root == QLatin1String(":") ? QStringLiteral("built into the program") : root;
}

} // namespace vex
