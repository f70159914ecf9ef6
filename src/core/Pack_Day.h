#pragma once
// One day of a memory pack as the decoder gives it to the save routines:
// the trip's figures repaired to numbers, and the page's series and event
// lists as the pack delivers them. The lists and series stay the page's
// text: a cell the recorder garbled is stored as it came, and the rows read
// it back the same way.
#include <QString>
#include <cstdint>

namespace vex {

// The counters the pack keeps of its last trip; nothing is stored of them.
struct Pack_Last_Counters {
    QString distance;     // 6
    QString acceleration; // 4: the repaired count of quick accelerations of the day
    QString longOverspeed;
    QString brake;
    QString engineOver;
};

struct Pack_Day {
    QString car;       // 6: "00" + the pack's code of 4
    QString driver;    // 6: "00" + the pack's code of 4
    QString startDay;  // yyMMdd
    QString endDay;    // yyMMdd
    QString startTime; // HHmm
    QString endTime;   // HHmm
    int distance = 0;          // tenths of a kilometre
    QString engine;            // 8: the engine counter, as on the page
    int accelerations = 0;     // quick accelerations
    int brakes = 0;            // quick brakes (the kept brake records after the filter)
    int longOverspeeds = 0;    // pairs of neighbouring minutes above the car's limit
    int16_t overspeedMinutes = 0; // set by the store against the standards (CAL_OVERSPEED_CNT)

    QString brakeRecords;      // 100: ten records of 10, "HHmmss" + speed before + after (hex)
    QString brakeBuffer;       // 480
    QString brakeTimes;        // 40
    QString longOverspeedRecords; // 120
    QString speedBands;        // 72: distance by speed band
    QString speed;             // 2,880: a minute's speed as two hexadecimal digits
    QString distanceSeries;    // 2,880: a minute's tenths of a km as two digits, 8 added to the first
    Pack_Last_Counters last;

    // D_F1 of every row of the day.
    QString Key() const { return car + driver + startDay; }

    // The long overspeeds the summary row keeps. The pack counts them by
    // pairs of minutes; more of them than overspeed minutes, or any without
    // overspeed, cannot be true and count 0.
    int Stored_Long_Overspeeds() const
    {
        return longOverspeeds > overspeedMinutes || overspeedMinutes == 0 ? 0 : longOverspeeds;
    }
};

} // namespace vex
