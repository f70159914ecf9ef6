#include "platform/FileSystem.h"

#include "platform/AppFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace vex {

QString FileSystem::Path(const QString& path) const
{
    if (path.startsWith(QLatin1Char('/')) && !path.contains(QLatin1Char('\\')))
        return QDir::cleanPath(path);
    return App_Path(appDir_, path);
}

bool FileSystem::Writable(const QString& path) const
{
    const bool systemForm = !(path.startsWith(QLatin1Char('/')) && !path.contains(QLatin1Char('\\')));
    return !systemForm || Inside_Folder(appDir_, Path(path));
}

bool FileSystem::FileExists(const QString& path) const
{
    return QFileInfo(Path(path)).isFile();
}

bool FileSystem::FolderExists(const QString& path) const
{
    return QFileInfo(Path(path)).isDir();
}

bool FileSystem::CreateFolder(const QString& path) const
{
    return Writable(path) && QDir().mkpath(Path(path));
}

bool FileSystem::CopyFile(const QString& from, const QString& to, bool overwrite) const
{
    if (!Writable(to))
        return false;
    const QString src = Path(from), dst = Path(to);
    if (QFileInfo::exists(dst)) {
        if (!overwrite)
            return false;
        // Copy beside the target first, so that a failed copy leaves the old file whole.
        const QString part = dst + QStringLiteral(".part");
        QFile::remove(part);
        if (!QFile::copy(src, part))
            return false;
        if (!QFile::remove(dst)) {
            QFile::remove(part);
            return false;
        }
        return QFile::rename(part, dst);
    }
    return QFile::copy(src, dst);
}

bool FileSystem::DeleteFile(const QString& path) const
{
    return Writable(path) && QFile::remove(Path(path));
}

qint64 FileSystem::FileSize(const QString& path) const
{
    const QFileInfo info(Path(path));
    return info.isFile() ? info.size() : -1;
}

} // namespace vex
