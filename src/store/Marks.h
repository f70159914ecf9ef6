#pragma once
// The driving mark of a trip under a set of standards: the base score B_Val1
// less the deductions (B_Val4 an overspeed minute, B_Val6 a quick
// acceleration, B_Val5 a quick brake, B_Val7 a long overspeed, B_Val8 an
// idle event), scaled by the base distance B_Val2 over the trip's
// kilometres; a trip without distance takes them at face value.
#include <QString>
#include <cstdint>

namespace vex {

class Cls_Config;

// The mark as digits ("95"; "0" for anything below 0 and whenever B_Val2 is
// 0); distance in tenths of a kilometre. The counts carried as integers
// multiply as 16-bit integers: an overflow throws RunTimeError.
QString Mark_Of(const Cls_Config& standards, int16_t overspeed, float acceleration, float brake, int16_t idle,
                int16_t longOver, float distance);

// The overspeed minutes of a pack day: the minute speed cells (two
// hexadecimal digits each, 1,440 of them) above B_Val4. B_Val4 is the column
// of the overspeed deduction, not the standard speed B_Val3; the pack path
// has always counted against it, and the marks stored of every pack day rest
// on that count, so it stays. Throws RunTimeError on a cell that isn't
// hexadecimal or a series shorter than a day.
int16_t Pack_Overspeed_Minutes(const QString& speed, const Cls_Config& standards);

} // namespace vex
