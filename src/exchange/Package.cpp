#include "exchange/Package.h"

#include "core/Printable.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <memory>
#include <sys/stat.h>
#include <zip.h>

namespace vex {

namespace {

bool Fail(QString* error, const QString& text)
{
    if (error)
        *error = text;
    return false;
}

struct Zip_Closer {
    void operator()(zip_t* z) const { zip_discard(z); }
};
using Zip_Handle = std::unique_ptr<zip_t, Zip_Closer>;

} // namespace

bool Safe_Entry_Name(const QString& name)
{
    if (name.isEmpty() || name.contains(QLatin1Char('\\')) || name.contains(QChar(0)) || name.startsWith(QLatin1Char('/'))
        || name.startsWith(QLatin1Char(':'))
        || (name.size() >= 2 && name[1] == QLatin1Char(':')))
        return false;
    for (const QString& part : name.split(QLatin1Char('/'), Qt::SkipEmptyParts))
        if (part == QLatin1String("..") || part == QLatin1String("."))
            return false;
    return true;
}

qint64 Unzip_Limit(qint64 packageBytes)
{
    // A year of a fleet packs at about ten to one; two hundred to one is
    // no driving data. Small packages may still hold a whole empty database.
    return std::max<qint64>(packageBytes * 200, qint64(64) << 20);
}

bool Zip_Make(const QString& zipPath, const std::vector<Zip_Entry>& entries, QString* error)
{
    const QString part = zipPath + QStringLiteral(".part");
    const QDir folder = QFileInfo(zipPath).dir();
    for (const QString& left : folder.entryList({QStringLiteral("*.zip.part"), QStringLiteral("*.zip.part.*")},
                                                QDir::Files | QDir::Hidden))
        QFile::remove(folder.filePath(left));
    int code = 0;
    Zip_Handle z(zip_open(QFile::encodeName(part).constData(), ZIP_CREATE | ZIP_TRUNCATE, &code));
    if (!z)
        return Fail(error, QStringLiteral("cannot create %1 (zip error %2)").arg(part).arg(code));
    for (const Zip_Entry& e : entries) {
        if (!Safe_Entry_Name(e.name))
            return Fail(error, QStringLiteral("no package name: ") + e.name);
        zip_source_t* src = zip_source_file_create(QFile::encodeName(e.file).constData(), 0, -1, nullptr);
        if (!src)
            return Fail(error, QStringLiteral("cannot read ") + e.file);
        const zip_int64_t index = zip_file_add(z.get(), e.name.toUtf8().constData(), src, ZIP_FL_ENC_UTF_8 | ZIP_FL_OVERWRITE);
        if (index < 0) {
            zip_source_free(src);
            return Fail(error, QString::fromUtf8(zip_error_strerror(zip_get_error(z.get()))));
        }
        // Series of hexadecimal cells pack well even at the fastest level.
        zip_set_file_compression(z.get(), zip_uint64_t(index), ZIP_CM_DEFLATE, 1);
    }
    if (zip_close(z.get()) != 0) {
        const QString why = QString::fromUtf8(zip_error_strerror(zip_get_error(z.get())));
        QFile::remove(part);
        return Fail(error, why);
    }
    (void)z.release(); // closed
    QFile::remove(zipPath);
    if (!QFile::rename(part, zipPath)) {
        QFile::remove(part);
        return Fail(error, QStringLiteral("cannot write ") + zipPath);
    }
    return true;
}

bool Zip_Holds(const QString& zipPath, const QString& name)
{
    int code = 0;
    Zip_Handle z(zip_open(QFile::encodeName(zipPath).constData(), ZIP_RDONLY | ZIP_CHECKCONS, &code));
    return z && zip_name_locate(z.get(), name.toUtf8().constData(), 0) >= 0;
}

bool Zip_Opens(const QString& zipPath)
{
    int code = 0;
    Zip_Handle z(zip_open(QFile::encodeName(zipPath).constData(), ZIP_RDONLY | ZIP_CHECKCONS, &code));
    return bool(z);
}

Unzip_Result UnZip_Make(const QString& zipPath, const QString& destDir, const std::function<bool(const QString&)>& wanted)
{
    Unzip_Result r;
    int code = 0;
    Zip_Handle z(zip_open(QFile::encodeName(zipPath).constData(), ZIP_RDONLY | ZIP_CHECKCONS, &code));
    if (!z) {
        r.error = QStringLiteral("not a package: %1 (zip error %2)").arg(QFileInfo(zipPath).fileName()).arg(code);
        return r;
    }
    // Every entry is judged before the first byte is written.
    const zip_int64_t n = zip_get_num_entries(z.get(), 0);
    if (n > kMax_Package_Entries) {
        r.error = QStringLiteral("package refused: %1 entries, more than a site sends").arg(n);
        return r;
    }
    const qint64 limit = Unzip_Limit(QFileInfo(zipPath).size());
    qint64 total = 0;
    std::vector<std::pair<zip_uint64_t, QString>> files;
    for (zip_int64_t i = 0; i < n; ++i) {
        zip_stat_t st;
        zip_stat_init(&st);
        if (zip_stat_index(z.get(), zip_uint64_t(i), 0, &st) != 0 || !(st.valid & ZIP_STAT_NAME)) {
            r.error = QStringLiteral("entry %1 cannot be read").arg(i);
            return r;
        }
        const QString name = QString::fromUtf8(st.name);
        if (!Safe_Entry_Name(name)) {
            r.error = QStringLiteral("entry refused, it points outside the folder: ") + Printable(name, 80);
            return r;
        }
        zip_uint8_t opsys = 0;
        zip_uint32_t attributes = 0;
        if (zip_file_get_external_attributes(z.get(), zip_uint64_t(i), 0, &opsys, &attributes) == 0
            && opsys == ZIP_OPSYS_UNIX && S_ISLNK(attributes >> 16)) {
            r.error = QStringLiteral("entry refused, it is a link: ") + Printable(name, 80);
            return r;
        }
        if (name.endsWith(QLatin1Char('/')) || (wanted && !wanted(name)))
            continue; // a folder, or an entry of no use
        total += qint64(st.size);
        if (!(st.valid & ZIP_STAT_SIZE) || total > limit) {
            r.error = QStringLiteral("package refused: it unpacks to more than %1 bytes").arg(limit);
            return r;
        }
        files.emplace_back(zip_uint64_t(i), name);
    }
    for (const auto& [index, name] : files) {
        const QString target = destDir + QLatin1Char('/') + name;
        QDir().mkpath(QFileInfo(target).absolutePath());
        std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> in(zip_fopen_index(z.get(), index, 0), zip_fclose);
        QSaveFile out(target);
        if (!in || !out.open(QIODevice::WriteOnly)) {
            r.error = QStringLiteral("cannot unpack ") + name;
            return r;
        }
        char buf[1 << 16];
        qint64 written = 0;
        for (zip_int64_t got; (got = zip_fread(in.get(), buf, sizeof buf)) != 0;) {
            written += got;
            if (got < 0 || written > limit || out.write(buf, got) != got) {
                r.error = QStringLiteral("cannot unpack ") + name;
                return r;
            }
        }
        if (!out.commit()) {
            r.error = QStringLiteral("cannot write ") + target;
            return r;
        }
        r.names << name;
    }
    r.ok = true;
    return r;
}

} // namespace vex
