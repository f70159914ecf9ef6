#pragma once
// Whether a stored day could have been driven as recorded. Each check reads
// the day as it was decoded (minute series, and the second arrays of its day
// file where it has one) and what the store knew before the reception; a
// finding names the time of day it points at and the figures behind it. A
// finding informs: it never changes a stored row.
#include <QString>
#include <QStringList>
#include <cstdint>
#include <span>
#include <vector>

namespace vex {

enum class Finding_Kind {
    Distance_Mismatch,      // minute distances against the distance the speeds give, over 10%
    Speed_Jump,             // over 40 km/h within one second
    Speed_Without_Distance, // minutes of speed with no distance recorded
    Engine_Off_Moving,      // a minute and more of speed with the engine series at 0
    Flat_Speed,             // one speed above 0 held for two hours
    Over_200,               // a speed over 200 km/h
    Clock_Backwards,        // the trip ends before it starts
    Future_Day,             // a day after today
    Older_Day,              // a day before the car's first stored day
    Overlapping_Trip,       // the car driven by another driver, or stored from another medium, at the same time
    Copied_Day,             // the same series under another car on the same day
    Unknown_Driver,         // a driver the register knows only by the code the recorder gave
};

struct Finding {
    Finding_Kind kind;
    int second = -1;       // second of the day it points at; -1 for the whole day
    double measured = 0;   // what the day says (km, km/h, minutes, seconds)
    double reference = 0;  // what it is measured against
    QString other;         // the other car, driver or reception involved
};

// One day as decoded. Minute series: 1,440 entries, minute m at m (00:00
// first); empty when the day has none. Second arrays: entry s is second s
// (86,401 entries); empty when the day has no day file.
struct Day_Evidence {
    std::vector<int> minuteSpeed;     // km/h
    std::vector<int> minuteTenths;    // tenths of a km driven in the minute
    std::span<const uint8_t> speed;   // km/h
    std::span<const uint8_t> engine;  // above 0 while the engine runs
    QString startDay, startTime;      // yyMMdd, HHmm
    QString endDay, endTime;
};

// A trip the store already holds that shares the car's day.
struct Neighbour_Trip {
    QString driver;
    QString startTime, endTime;       // HHmm
    QString from;                     // the reception that stored it, when it was another one
};

// What the store knew of the car, the driver and the day before the
// reception, and the reception's own day.
struct Day_Context {
    QString day;                      // yyMMdd of the trip
    QString today;                    // yyMMdd of the reception
    QString carFirstDay;              // the car's first stored day; empty for a new car
    bool carHasNewerDays = false;     // the car has stored days after this one
    bool driverNamed = true;          // the register holds the driver under a name of its own
    QString driver;
    std::vector<Neighbour_Trip> neighbours;
    QStringList carsWithSameSeries;   // other cars whose minute speeds that day equal these
};

// Every finding of the day, in the order of the kinds above and, within a
// kind, of the time of day.
std::vector<Finding> Check_Day(const Day_Evidence& day, const Day_Context& context);

// "<HH:MM:SS> <what was found, with its figures>" in the language of the
// system; the time is left out for a finding of the whole day.
QString Finding_Text(const Finding& finding);
// A short name of the kind, for lists and filters ("distance", "jump", ...).
QString Finding_Kind_Name(Finding_Kind kind);

} // namespace vex
