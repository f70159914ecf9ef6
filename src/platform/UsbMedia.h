#pragma once
// Where a USB recorder's medium is on this machine. The recorder leaves
// "Master00.dat" in the root of its drive; a drive that holds it is the
// medium. The user may also name a folder (a copy of a medium, a drive the
// search doesn't see). The messages are the system's own, for the caller to
// show.
#include <QString>
#include <QStringList>

namespace vex {

struct Usb_Medium {
    QString root;    // the folder that holds Master00.dat; empty when none
    QString message; // what to tell the user when there is none
    // The three files of the medium, as the drive spells them.
    QString Master() const;
    QString Log() const;
    QString Driver_File() const;
};

// Folders that may be a medium: the mounted volumes that are removable or
// lie under /media, /run/media or /mnt, and the folders one and two levels
// below those three (where desktops mount drives by user and label).
// VEX_USB_ROOTS, ':'-separated folders, takes their place when set.
QStringList Usb_Candidates();

// The medium: the folder the user named when it holds Master00.dat
// directly or behind one more folder level, else the first candidate that
// holds it. None: message "USB가 없읍니다!".
Usb_Medium Find_Usb_Medium(const QString& chosen = QString());

// The file name as it stands on the medium, matched without regard to case
// (a FAT drive mounted on this machine may show "MASTER00.DAT"); the
// expected spelling under root when there is no such file.
QString Medium_File(const QString& root, const QString& name);

} // namespace vex
