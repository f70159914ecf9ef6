#pragma once
#include <QString>

namespace vex {

class Cls_DB;

// The day of the last reception of a car: of its D_D1 rows (the key begins
// with the six-character car code), newest day first, the first whose day is
// six digits of a real month and day with a year other than 00; "000000"
// when none is. A memory pack names its car with four characters: the
// caller puts "00" in front, as the decoder keys the days.
QString Last_Reception_Day(Cls_DB& db, const QString& car6);

} // namespace vex
