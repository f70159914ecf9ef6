#pragma once
// A new application folder, made ready before anything opens it.
#include <QString>

namespace vex {

// Makes the folder ready: the sub-folders, "exp" as a second name of "Exp",
// MORIX.INI, the spreadsheet templates and the help pages from the delivered
// data (Resource_Path), the empty template "db_temp/morix.mdb", the live
// "db/morix.mdb" and the export database "Exp/exp.mdb" when they are
// missing. Nothing that exists is
// overwritten. Returns false with a reason when the folder cannot be written.
bool Init_App_Folder(const QString& appDir, QString* reason = nullptr);

} // namespace vex
