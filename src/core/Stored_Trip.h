#pragma once
// One stored trip as the graphs and reports read it back: the D_D1 row's
// figures as their cells give them and the three minute series (D_D3 speed
// and D_D8 engine as two hexadecimal digits a minute, D_D7 distance as two
// decimal digits of tenths of a km). All blank when no trip was found.
#include <QString>
#include <cstdint>

namespace vex {

struct Stored_Trip {
    QString car, driver;
    QString startDay, endDay;   // yyMMdd
    QString startTime, endTime; // HHmm
    QString distance;           // km, as a number's text
    QString accelerations, brakes, idles, longOverspeeds;
    int16_t overspeedMinutes = 0;
    double mark = 0;
    QString speed, distanceSeries, rpm;
};

} // namespace vex
