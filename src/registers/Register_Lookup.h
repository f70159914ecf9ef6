#pragma once
// What the windows, the reports and the command line show of a car or a
// driver in place of its code.
#include <QString>

namespace vex {

class Cls_DB;

// The driver's name of S_D2, "-" when it has none.
QString Driver_Name_Of(Cls_DB& db, const QString& driver);
// The car's management number (S_D1.D_F2), its number (D_F3) in its place
// when empty; empty when the car has no row.
QString Management_Number(Cls_DB& db, const QString& car);

} // namespace vex
