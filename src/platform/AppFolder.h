#pragma once
// The one application folder that holds everything: INI file, databases,
// pack files, reports, templates and help. Its layout follows the folders of
// the system; spellings such as "recieve" are the system's own.
#include <QString>
#include <QStringList>

namespace vex {

// $HOME/VEX: the folder used when neither --app-dir nor VEX_HOME names one.
QString Default_App_Dir();

// The folder given on the command line, else $VEX_HOME, else the default;
// made absolute.
QString Resolve_App_Dir(const QString& fromCommandLine);

// Sub-folders that a new application folder receives.
const QStringList& App_Folders();

// Maps a path of the system's own form ("\db\morix.mdb", "Dat\Read.Vex") to
// a path under the application folder, with '/' as separator.
QString App_Path(const QString& appDir, const QString& systemPath);

// True when path, made absolute and clean ("..", "." resolved), lies inside
// root: every file the program writes stays under its application folder.
bool Inside_Folder(const QString& root, const QString& path);

} // namespace vex
