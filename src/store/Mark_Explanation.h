#pragma once
// A trip's mark step by step, as the mark is counted: the base score, each
// kind of event's count times its deduction, the distance factor, the
// rounding. The mark itself is the result of this one computation, so an
// explanation always ends on the mark the trip was given under the same
// standards.
#include <QString>
#include <array>
#include <cstdint>

namespace vex {

class Cls_Config;

struct Mark_Counts {
    int16_t overspeed = 0;    // minutes over the standard speed (D_D1.D_F11)
    float acceleration = 0;   // quick accelerations (D_F9)
    float brake = 0;          // quick brakes (D_F10)
    int16_t idle = 0;         // idle events (D_F12)
    int16_t longOver = 0;     // long overspeeds (D_F13)
    float distance = 0;       // tenths of a km (D_F8)
};

enum class Mark_Event { Overspeed, Acceleration, Brake, Long_Overspeed, Idle };

struct Mark_Term {
    Mark_Event kind;
    double count;
    double each;        // the deduction of one (B_Val4, B_Val6, B_Val5, B_Val7, B_Val8)
    double deduction;   // count × each
};

struct Mark_Explanation {
    double base = 0;                    // B_Val1
    std::array<Mark_Term, 5> terms{};   // in the order of Mark_Event
    double deductions = 0;              // the sum of the terms
    double baseKm = 0;                  // B_Val2
    double km = 0;                      // the trip's kilometres
    double factor = 1;                  // baseKm / km; 1 for a trip of no distance
    bool noBaseDistance = false;        // B_Val2 is 0: the mark is 0 whatever happened
    double unrounded = 0;               // base - factor × deductions
    QString mark;                       // whole points, halves away from zero; "0" below 0
};

// Throws RunTimeError when a 16-bit product overflows, as the mark does.
Mark_Explanation Explain_Mark(const Cls_Config& standards, const Mark_Counts& counts);

} // namespace vex
