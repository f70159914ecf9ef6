#include "forms/logic/Usb_Drives.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

namespace vex::forms {

QStringList Usb_Roots()
{
    if (qEnvironmentVariableIsSet("VEX_USB_ROOTS"))
        return qEnvironmentVariable("VEX_USB_ROOTS").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    QStringList roots;
    for (const QStorageInfo& v : QStorageInfo::mountedVolumes()) {
        const QString r = v.rootPath();
        if (v.isValid() && v.isReady()
            && (r.startsWith(QLatin1String("/media/")) || r.startsWith(QLatin1String("/run/media/"))))
            roots << r;
    }
    return roots;
}

QString Master_Path(const QString& folder)
{
    return QDir(folder).filePath(QStringLiteral("Master00.dat"));
}

QString Spdr_Path(const QString& folder)
{
    return QDir(folder).filePath(QStringLiteral("SPDR0403.dat"));
}

QString Driverid_Path(const QString& folder)
{
    return QDir(folder).filePath(QStringLiteral("Driverid.dat"));
}

bool Has_Master(const QString& folder)
{
    return !folder.isEmpty() && QFileInfo::exists(Master_Path(folder));
}

QString Find_Usb_Medium(const QStringList& roots)
{
    for (const QString& r : roots)
        if (Has_Master(r))
            return r;
    return {};
}

QString Text_No_Usb()
{
    return QStringLiteral("USB가 없읍니다!");
}

QString Text_Bad_Pack_Folder()
{
    return QStringLiteral("메모리 팩 위치 지정이 잘못되었읍니다. Pack folder 버튼을 눌러 위치를 지정하여 주십시요!");
}

QString Text_No_Records()
{
    return QStringLiteral("메모리 팩 위치 지정이 잘못되었거나, 운행기록이 없읍니다!");
}

} // namespace vex::forms
