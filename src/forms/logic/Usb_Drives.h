#pragma once
// The removable drives a USB medium may stand in, and the search for the
// one that holds a recorder's "Master00.dat".
#include <QString>
#include <QStringList>

namespace vex::forms {

// Folders that may hold a medium (the platform's candidates; VEX_USB_ROOTS,
// ':'-separated folders, takes their place when set).
QStringList Usb_Roots();
// The first root that holds Master00.dat, or empty.
QString Find_Usb_Medium(const QStringList& roots);
// The folder with Master00.dat directly in it or behind a "/".
bool Has_Master(const QString& folder);
QString Master_Path(const QString& folder);
QString Spdr_Path(const QString& folder);
QString Driverid_Path(const QString& folder);

// Messages of the USB steps.
QString Text_No_Usb();          // "USB가 없읍니다!"
QString Text_Bad_Pack_Folder(); // the folder doesn't exist
QString Text_No_Records();      // a folder without Master00.dat

} // namespace vex::forms
