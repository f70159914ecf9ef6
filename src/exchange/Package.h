#pragma once
// Data packages: a ".zip" holding "exp.mdb" and, beside it, the day files
// of the exported days under "pack/<car>/<day>/". A package comes from
// another site and is untrusted: an entry that names a path outside the
// folder it is unpacked to ("../", an absolute path, a drive), a link, or
// more bytes than a package of its size can honestly hold is refused before
// anything is written.
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

namespace vex {

struct Zip_Entry {
    QString file; // the file on this machine
    QString name; // its name in the package, '/' between folders
};

// Writes the package beside its target and renames it: whole or not at all.
// What a killed earlier run left of its own packages in that folder
// ("*.zip.part", and libzip's "*.zip.part.XXXXXX") is removed first.
bool Zip_Make(const QString& zipPath, const std::vector<Zip_Entry>& entries, QString* error = nullptr);

// The largest number of bytes a package of packageBytes may unpack to: a
// driving database compresses well, but not without end.
qint64 Unzip_Limit(qint64 packageBytes);

struct Unzip_Result {
    bool ok = false;
    QString error;        // why nothing was unpacked
    QStringList names;    // the entries unpacked, as named in the package
};
// The most entries a package may hold: a site's packer writes classic zips.
constexpr qint64 kMax_Package_Entries = 65535;

// Unpacks the entries under destDir that wanted takes (every one without
// it), after checking them all; the others are never written. An entry's
// file appears whole or not at all, over a file of the same name. A package
// of more than kMax_Package_Entries entries is refused.
Unzip_Result UnZip_Make(const QString& zipPath, const QString& destDir,
                        const std::function<bool(const QString&)>& wanted = {});

// True when the package at zipPath opens whole (every entry's checks) and
// holds an entry named name: the test a backup makes before it deletes.
bool Zip_Holds(const QString& zipPath, const QString& name);

// True when the file at zipPath opens as a whole zip (every entry's checks).
bool Zip_Opens(const QString& zipPath);

// True for a package entry name that stays inside the folder it is
// unpacked to: relative, no "..", no drive, no backslash tricks.
bool Safe_Entry_Name(const QString& name);

} // namespace vex
