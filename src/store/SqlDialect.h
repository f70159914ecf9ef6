#pragma once
// The statements of the system are written in the Jet dialect: LEFT, RIGHT
// and MID on keys, '+' joining texts, "DELETE * FROM". This turns such a
// statement into the dialect of the engine behind the connection; on an ODBC
// source it goes through unchanged, since the source's own driver reads it.
#include "store/DbTarget.h"

#include <QString>

namespace vex {

QString Translate_Sql(const QString& jetSql, Engine engine);

} // namespace vex
