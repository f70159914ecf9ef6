#pragma once
// One hour of a day file for the hour graph: 3,600 seconds of speed (km/h)
// and of the engine byte, element s for second s of the hour.
#include <QString>
#include <cstdint>
#include <vector>

namespace vex {

struct Hour_Seconds {
    QString path;      // the day file read; empty when the day has none
    std::vector<uint8_t> speed;  // 3,600 entries, or none
    std::vector<uint8_t> engine; // 3,600 entries, or none
    QString startTime; // HH0000
    QString endTime;   // HH5959
    QString endDay;    // yyMMdd
};

} // namespace vex
