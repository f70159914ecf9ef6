#pragma once
// The events of one day of second data: quick accelerations, quick brakes,
// long overspeeds and idling, and the minute series of speed and engine that
// go with them. The same detector serves the day file save, the USB file
// reception and the rebuild under new standards, so that all three give the
// same lists. It touches no database and no file: arrays in, lists out.
#include "core/VbText.h"

#include <QString>
#include <cstdint>
#include <span>

namespace vex {

// Second arrays hold element s for second s of the day, element 0 first;
// the reception's detector reads elements 1 to 86,400, the recount of old
// trips 0 to 86,399.
inline constexpr int kDaySeconds = 86400;
inline constexpr int kDayArray = kDaySeconds + 1;     // 86,401 entries
inline constexpr int kHalfArray = 2 * kDaySeconds + 1; // 172,801 entries
inline constexpr int kDayMinutes = 1440;
inline constexpr int kSeriesChars = 2 * kDayMinutes;  // 2,880

struct EventLimits {
    float limit = 80;             // the car's standard speed, km/h
    int16_t quickAccel = 8;       // B_Val10: rise within one second, km/h
    int16_t quickBrake = 9;       // B_Val9: fall within one second, km/h
    int16_t longOverMinutes = 3;  // B_Val11: unbroken overspeed that must be exceeded
    int16_t idleMinutes = 5;      // B_Val12: unbroken idling that must be exceeded
    int firstSecond = 1;          // the walk covers 86,400 elements from here: 1 at reception, 0 in the recount
    bool lists = true;            // false: the counts alone, without minute series and records (the recount)
};

struct DayEvents {
    QString Sec_Data;          // minute speed, the largest of each minute, hexadecimal cells
    QString Sec_RPM_Data;      // minute engine, likewise
    int32_t Acceleration = 0;  // quick accelerations and their 10-character records
    QString Acceleration_Data;
    int32_t Brack = 0;         // quick brakes and their records
    QString Brack_Data;
    int16_t Idle = 0;          // idle events, a long idling counted once a full threshold period
    int16_t Idle_Runs = 0;     // idle periods, one each however long: the count of the recount
    QString Idle_Data;         // 18-character records: start, end, duration HHMMSS
    int16_t LKEngin = 0;       // long overspeeds, one a period
    QString LkEngin_Data;      // 18-character records
};

// One pass over the day. speed and engine need kDayArray entries. Throws
// RunTimeError on short arrays and when an idle period meets an idle
// threshold of 0 minutes (a division by zero of the count rule).
DayEvents Detect_Day_Events(std::span<const uint8_t> speed, std::span<const uint8_t> engine,
                            const EventLimits& limits);

// A byte as two capital hexadecimal digits ("0A", "FF").
QString Dec_Hex1(int value);

// Value of the two-character hexadecimal cell at index i (0-based) of a
// series. Throws RunTimeError when a character isn't a hexadecimal digit or
// the cell runs past the text.
int Hex_Cell(const QString& series, int i);

} // namespace vex
