#pragma once
// How the stored settings reach Cls_Config and the globals (on every press of
// OK at the login, and wherever a program needs them without a login), and
// how the settings window writes them back.
#include <QString>

namespace vex {

class Cls_Config;
class Cls_DB;
class Recordset;
struct Globals;

// Default folders of a row whose columns are Null.
extern const QString kDefault_PackDir;   // "\Pack"
extern const QString kDefault_DBBackup;  // "\DB\Back"
extern const QString kDefault_Email;

// First row of S_D14 into the class and the globals. A Null column takes its
// default; a Null user id or password is a run-time error (throws).
void Read_S_D14(const Recordset& rs, Cls_Config& cfg, Globals& g);
// Newest row of S_D10 into B_Val1 to B_Val13.
void Read_S_D10(const Recordset& rs, Cls_Config& cfg);
// The six names of the digital inputs; a Null keeps the former name.
void Read_S_D4(const Recordset& rs, Globals& g);

// Writes the settings and the S_D14 globals into the current row of rs,
// D_F1 to D_F23, and updates it; C_RPM is read back. True when written;
// False when the handler ran, with the row as far as it was written.
bool DB_Edit(Cls_Config& cfg, Recordset& rs, const Globals& g);

// All three, from the database: false when S_D14 has no row or a read failed.
bool Load_Settings(Cls_DB& db, Cls_Config& cfg, Globals& g);

} // namespace vex
