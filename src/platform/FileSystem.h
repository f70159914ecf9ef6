#pragma once
// The file-system object shared by the whole program: existence tests,
// create, copy and delete, on paths of the system's own form ("\new\x.Vex")
// resolved under the application folder, or on absolute paths as they are.
#include <QString>

namespace vex {

class FileSystem {
public:
    explicit FileSystem(QString appDir) : appDir_(std::move(appDir)) {}

    // A path with '\' or without a leading '/' is of the system's form and
    // lies under the application folder; any other is an absolute path.
    QString Path(const QString& path) const;

    // False for a path of the system's form that climbs out of the
    // application folder ("\new\..\..\x"): the program writes nothing there.
    // Create, copy and delete refuse such targets.
    bool Writable(const QString& path) const;

    bool FileExists(const QString& path) const;
    bool FolderExists(const QString& path) const;
    bool CreateFolder(const QString& path) const;
    // Copies over an existing target when overwrite is set (the default of
    // the original object's copy): beside it first, then in its place in one
    // step, so a failed copy leaves the old file whole.
    bool CopyFile(const QString& from, const QString& to, bool overwrite = true) const;
    bool DeleteFile(const QString& path) const;
    qint64 FileSize(const QString& path) const; // -1 when missing

private:
    QString appDir_;
};

// Puts the file from in the place of to in one step (a rename within one
// file system): to is the old file or the new one, never missing. False
// when the system refuses.
bool Replace_File(const QString& from, const QString& to);

// Writes bytes beside path and renames over it: path holds the old bytes or
// the new ones, never a part. False with the system's reason in error ("No
// space left on device") when any step fails; nothing is left beside path.
bool Write_File_Atomic(const QString& path, const QByteArray& bytes, QString* error = nullptr);

// Forces a file's bytes, and its name in its folder, to the disk: what a
// later step deletes on the strength of this file must survive a power cut.
// False when the file can't be opened or the disk refuses.
bool Sync_File(const QString& path);

} // namespace vex
