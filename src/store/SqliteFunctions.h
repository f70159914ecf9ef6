#pragma once
class QSqlDatabase;

namespace vex {

// Gives an open SQLite connection the text functions of the Jet dialect:
// vex_left(x, n), vex_right(x, n), vex_mid(x, start[, length]), counting
// characters, Null in gives Null out. Returns false when the connection is
// not SQLite.
bool Register_Sqlite_Functions(QSqlDatabase& db);

} // namespace vex
