#include "platform/FileSystem.h"

#include "platform/AppFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

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
        const QString part = dst + QStringLiteral(".part");
        QFile::remove(part);
        if (!QFile::copy(src, part))
            return false;
        if (!Replace_File(part, dst)) {
            QFile::remove(part);
            return false;
        }
        return true;
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

bool Replace_File(const QString& from, const QString& to)
{
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

bool Write_File_Atomic(const QString& path, const QByteArray& bytes, QString* error)
{
    const QByteArray target = QFile::encodeName(path);
    const QByteArray part = target + ".part";
    auto Fail = [&](int fd) {
        const int why = errno;
        if (fd >= 0)
            ::close(fd);
        ::unlink(part.constData());
        if (error)
            *error = QString::fromLocal8Bit(std::strerror(why));
        return false;
    };
    const int fd = ::open(part.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return Fail(fd);
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t n = ::write(fd, bytes.constData() + done, size_t(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return Fail(fd);
        done += n;
    }
    if (::close(fd) != 0)
        return Fail(-1);
    if (::rename(part.constData(), target.constData()) != 0)
        return Fail(-1);
    return true;
}

bool Sync_File(const QString& path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool ok = ::fsync(fd) == 0;
    ::close(fd);
    const int dir = ::open(QFile::encodeName(QFileInfo(path).absolutePath()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return ok;
}

} // namespace vex
