#pragma once
// One hour of a day file for the hour graph: 3,600 seconds of speed and of
// engine, each second two hexadecimal digits.
#include <QString>

namespace vex {

struct Hour_Seconds {
    QString path;      // the day file read; empty when the day has none
    QString speed;     // 7,200 characters, or empty
    QString rpm;       // 7,200 characters, or empty
    QString startTime; // HH0000
    QString endTime;   // HH5959
    QString endDay;    // yyMMdd
};

} // namespace vex
