#pragma once
// The evaluation standards as their form keeps them: thirteen numbers in the
// one row of S_D10, field i in column D_Fi and in B_Val i of the
// configuration. The form, vexcli and the recount of old trips go through
// these routines.
#include <QString>
#include <array>

namespace vex {

class Cls_Config;
class Cls_DB;

inline constexpr int kStandards = 13;
using Standard_Values = std::array<QString, kStandards>; // field 1 first

// Caption of field i (1 to 13): "기준점수" ... "IDLE 기준(분)", message 1071.
QString Standard_Caption(int i);

// The stored row as texts; all empty when S_D10 has no row, a Null column
// empty. Throws RunTimeError when the table can't be read.
Standard_Values Standards_Load(Cls_DB& db);

// Why the text can't stand in field i, or empty text when it can: every
// field takes a whole number from 0, field 5 up to 2,147,483,647 and the
// others up to 32,767.
QString Standard_Error(int i, const QString& text);

// Saves the thirteen values into the first row of S_D10 (a new row when it
// has none) and into B_Val1 to B_Val13 at once. The values must pass
// Standard_Error. Throws RunTimeError on a refused write.
void Standards_Save(Cls_DB& db, Cls_Config& cfg, const Standard_Values& values);

// The standards in force as one text a field, for printing.
Standard_Values Standards_In_Force(const Cls_Config& cfg);

// The configuration with the standards as stored, the newest row of S_D10
// in B_Val1 to B_Val13: what old trips are counted against, whatever a
// car's own limit has left in B_Val3 since (a save of a day and the
// analysis form put it there). Throws RunTimeError when S_D10 can't be read.
Cls_Config Standards_Stored(Cls_DB& db, const Cls_Config& config);

// Empty text when S_D10 holds a row with all thirteen values; otherwise why
// old trips can't be recounted (a recount under empty standards would zero
// every mark and count every second as a quick acceleration).
QString Standards_Missing(Cls_DB& db);

} // namespace vex
