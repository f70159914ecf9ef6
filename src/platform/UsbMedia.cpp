#include "platform/UsbMedia.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

namespace vex {

namespace {

const QStringList& Mount_Bases()
{
    static const QStringList bases{QStringLiteral("/media"), QStringLiteral("/run/media"), QStringLiteral("/mnt")};
    return bases;
}

bool Holds_Master(const QString& folder)
{
    return QFileInfo(Medium_File(folder, QStringLiteral("Master00.dat"))).isFile();
}

} // namespace

QString Medium_File(const QString& root, const QString& name)
{
    const QDir dir(root);
    const QString exact = dir.filePath(name);
    if (QFileInfo(exact).isFile())
        return exact;
    for (const QString& entry : dir.entryList(QDir::Files))
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return dir.filePath(entry);
    return exact;
}

QString Usb_Medium::Master() const
{
    return Medium_File(root, QStringLiteral("Master00.dat"));
}

QString Usb_Medium::Log() const
{
    return Medium_File(root, QStringLiteral("SPDR0403.dat"));
}

QString Usb_Medium::Driver_File() const
{
    return Medium_File(root, QStringLiteral("Driverid.dat"));
}

QStringList Usb_Candidates()
{
    if (qEnvironmentVariableIsSet("VEX_USB_ROOTS"))
        return qEnvironmentVariable("VEX_USB_ROOTS").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    QStringList out;
    auto Add = [&](const QString& path) {
        const QString clean = QDir::cleanPath(path);
        if (!out.contains(clean))
            out << clean;
    };
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (!volume.isValid() || !volume.isReady())
            continue;
        const QString root = volume.rootPath();
        bool under = false;
        for (const QString& base : Mount_Bases())
            under = under || root.startsWith(base + QLatin1Char('/'));
        // Removable drives come formatted FAT or exFAT.
        const QByteArray fs = volume.fileSystemType().toLower();
        if (under || fs.contains("fat") || fs == "vfat")
            Add(root);
    }
    for (const QString& base : Mount_Bases()) {
        const QDir dir(base);
        for (const QString& one : dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            Add(dir.filePath(one));
            const QDir sub(dir.filePath(one));
            for (const QString& two : sub.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
                Add(sub.filePath(two));
        }
    }
    return out;
}

Usb_Medium Find_Usb_Medium(const QString& chosen)
{
    Usb_Medium m;
    if (!chosen.isEmpty()) {
        if (Holds_Master(chosen)) {
            m.root = QDir::cleanPath(chosen);
            return m;
        }
        const QDir dir(chosen);
        for (const QString& sub : dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
            if (Holds_Master(dir.filePath(sub))) {
                m.root = QDir::cleanPath(dir.filePath(sub));
                return m;
            }
    } else {
        for (const QString& folder : Usb_Candidates())
            if (Holds_Master(folder)) {
                m.root = folder;
                return m;
            }
    }
    m.message = QStringLiteral("USB가 없읍니다!");
    return m;
}

} // namespace vex
