#pragma once
// The data the programs are delivered with: the message table, the INI
// template, the template and export databases, the spreadsheet templates,
// the help pages and the driving cycles.
//
// An installed program reads them from the share folder beside its own
// folder, <bindir>/../share/vex (/usr/share/vex for /usr/bin/vexcli), so a
// package unpacked under any root works where it lies. A program run from
// the build tree has no such folder and reads the copies built into it as Qt
// resources (":/", made from src/resources).
#include <QString>

namespace vex {

// Where the delivered data is read from: the share folder when it exists,
// else ":" (the built-in resources). Decided once for the process.
QString Resource_Root();

// A delivered file or folder by its path under src/resources, such as
// "MORIX.INI", "Excel" or "cycles/udds.csv".
QString Resource_Path(const QString& relative);

// The root as a reader should see it: the folder, or "built into the program".
QString Resource_Origin();

} // namespace vex
