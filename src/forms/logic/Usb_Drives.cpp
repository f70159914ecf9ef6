#include "forms/logic/Usb_Drives.h"

#include "platform/UsbMedia.h"

#include <QFileInfo>

namespace vex::forms {

QStringList Usb_Roots()
{
    return Usb_Candidates();
}

QString Master_Path(const QString& folder)
{
    return Medium_File(folder, QStringLiteral("Master00.dat"));
}

QString Spdr_Path(const QString& folder)
{
    return Medium_File(folder, QStringLiteral("SPDR0403.dat"));
}

QString Driverid_Path(const QString& folder)
{
    return Medium_File(folder, QStringLiteral("Driverid.dat"));
}

bool Has_Master(const QString& folder)
{
    return !folder.isEmpty() && QFileInfo(Master_Path(folder)).isFile();
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
