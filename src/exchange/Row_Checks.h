#pragma once
// What a row from another database must be before it joins the live one:
// what a reception could have written. A day table's key is car + driver +
// day (two codes and a day, 18 characters); a register's key is a code;
// D_D1's own car, driver and days agree with that; every number is finite
// and within what a recorder's day can come to. A package or an older
// database may hold anything else, and a month built over such a row
// would be no month.
#include "exchange/Db_Source.h"

#include <QString>

namespace vex {

struct Table;

// Why the row can't be taken into table def, empty when it can.
QString Row_Refusal(const Table& def, const Source_Table& rows, const QVariantList& row);

} // namespace vex
