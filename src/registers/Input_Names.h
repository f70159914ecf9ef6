#pragma once
// The names of the six digital inputs (S_D4, one row).
#include <QStringList>

namespace vex {

class Cls_DB;
struct Globals;

// The six names as stored; empty texts when the table has no row.
QStringList DI_Names_Load(Cls_DB& db);
// Writes the six names (adding the row if the table is empty) and copies
// them into DI_Name1 to DI_Name6 at once. True when written.
bool DI_Names_Save(Cls_DB& db, const QStringList& names, Globals& g);

} // namespace vex
