#pragma once
// Sample memory packs: a pack image as a recorder leaves it after some days
// of driving, for trying the reception without a vehicle, and with chosen
// kinds of damage that real packs show (lost power, half-written pages, worn
// cells), so that each repair of the decoder can be seen at work.
//
// What the recorder writes, as the generator writes it:
// - Day page (bank = month, page = day): check bytes "AA" "AA", the codes,
//   StartDay/StartTime and EndDay/EndTime of the first and last minute with
//   speed, Distance (tenths of a km, the sum of the distance page's cells),
//   Engin (engine revolutions of the day), the counts of quick accelerations,
//   quick brakes and long overspeeds, the "Last" fields as the pack's running
//   totals before the day (cut to their width), the first ten quick brakes as
//   records HHMMSS + speed before + speed after (hexadecimal), a speed buffer
//   of 60 seconds (49 before to 10 after) for each of the first four, the
//   long overspeeds as records HHMMSS start + HHMMSS end + HHMMSS duration,
//   HHMM of the first ten brakes, the distance driven in twelve speed bands
//   of 10 km/h (the last from 110 up; six digits each, tenths of a km), and
//   the highest speed of each minute. Unused records are "0"; numeric reserved
//   fields of the header are "0"; the reserved blocks between the data areas
//   and the end of the page are never written and stay erased ("FF").
// - Distance page (bank 0D, page = day of month): the day page's header
//   fields, then for each minute the distance driven in tenths of a km as two
//   decimal digits. The top bit flags a minute in which the engine ran; it
//   is set only when the tens digit is 0 or 1, since 8 plus 2 no longer makes
//   a decimal digit.
// - Third page (bank 0F): the same header; the series is the highest engine
//   speed of each minute in units of 25 rpm, hexadecimal.
// - System page: "AA" "AA", codes, SysWarehouse (the day the pack was issued,
//   a few days before the first day), SysSerialNumber, SysPackInsert (the
//   evening before the first day), SysPackLastWrite (the last minute the
//   engine ran on the last day), SysTotalDistance, SysTotalEngin, and
//   SysDBWriteDate erased ("FFFFFFFFFF") as in a pack never read, unless a
//   last reading is given.
// - The codes again at bank 0E page 01, 07E0..07E3, high byte first.
//
// A pack holds one distance page for each day of month: when the days run
// over a month shorter than their number, a later day overwrites the
// distance and third page of the earlier day of the same day of month, as
// on a real pack.
#include "acquisition/PackImage.h"

#include <QDate>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>

namespace vex {

// Damage a sample pack can carry, and the repair of the decoder that each
// one brings into play.
enum class PackDamage {
    // The whole day page erased to FF, its distance page intact: check bytes
    // forced to "AA" since the car code is set; StartDay taken from the
    // distance page, EndDay from StartDay; 1,439 speed pairs above 150 make
    // the speed series rebuilt from the distance page; StartTime and EndTime
    // from the series; Distance summed from the distance series;
    // Acceleration, Brack and the counter at column 79 normalised to zeros.
    ErasedPage,
    // StartDay an impossible month (13), EndDay "FFFFFF": the file is named
    // after the date being read, StartDay comes from the distance page and
    // EndDay from StartDay.
    BadDate,
    // The day page's second check byte "55": forced back to "AA" when the
    // pack's car code is set; with car code "0000" the page is refused and
    // nothing is filed for the day.
    BadCheck,
    // Twelve minutes of speed "FF" or 150..254 (fewer than 41, so no
    // rebuild): cleaned to "00". Eight distance cells with a nibble above 9:
    // rebuilt from the speed of the minute.
    GarbageSpeed,
    // 45 minutes of speed above 150: the speed series is taken for garbage
    // and rebuilt from the distance page.
    NoisySpeed,
    // The distance page's start and end day a month earlier, as a page left
    // from last month: the distance series is replaced by zeros.
    BadDistanceStart,
    // StartTime "0A5F" and EndTime "0000", a day that was never closed:
    // StartTime from the first minute with speed, EndTime from the last.
    BadTime,
    // Distance "999999", above 1,000 km: summed from the distance series.
    BadDistance,
    // Acceleration "0450", above 300: replaced by a random count; Brack "AB"
    // and the counter at column 79 "FFFF": normalised to zeros.
    BadCounts,
    // Three bad quick-brake records after the good ones, counted in Brack (a
    // time with letters, a speed before of 00, a speed of 141): the filter
    // drops them and counts again.
    BadBrakeRecords,
    // System page: SysPackInsert at 25:61, its time part reset to 0000;
    // SysPackLastWrite in month 13, replaced by today 23:59.
    BadStamps,
};

struct PackDamageInfo {
    PackDamage kind;
    const char* name; // as given to --damage
    const char* what; // one line for the usage text
};

const QList<PackDamageInfo>& Pack_Damage_Kinds();
std::optional<PackDamage> Pack_Damage_From_Name(const QString& name);
QString Pack_Damage_Name(PackDamage kind);

// The thresholds the recorder counts its events by.
struct RecorderStandards {
    int speedLimit = 80;       // km/h; above it is overspeed
    int quickBrake = 9;        // km/h fall within one second
    int quickAcceleration = 8; // km/h rise within one second
    int longOverspeedMin = 3;  // minutes of unbroken overspeed that must be exceeded
};

struct PackSampleRequest {
    QString car;    // four hexadecimal characters, as the pack stores them in two bytes
    QString driver; // the same
    QDate first;    // first day of driving
    int days = 1;   // 1..31
    uint64_t seed = 1;
    QList<PackDamage> damage; // the i-th distinct kind goes to day (1 + i) mod days
    QString cyclesDir;        // empty: Default_Cycles_Dir()
    std::optional<QDateTime> lastRead; // SysDBWriteDate; empty: a pack never read
    RecorderStandards standards;
};

struct PackSampleDay {
    QDate date;
    int startMinute = 0;    // first minute with speed
    int endMinute = 0;      // last minute with speed
    int distanceTenths = 0; // tenths of a km
    int brakes = 0;
    int accelerations = 0;
    int longOverspeeds = 0;
    QStringList damage;     // kinds laid on this day
    bool pagesOverwritten = false; // its distance and third page hold a later day
};

struct PackSample {
    PackImage image;
    QList<PackSampleDay> days;
};

// Empty when the request can be made, else the reason.
QString Check_Pack_Request(const PackSampleRequest& request);

// Nothing, with the reason in error, when the request is bad or the cycles
// can't be read.
std::optional<PackSample> Make_Sample_Pack(const PackSampleRequest& request, QString* error = nullptr);

} // namespace vex
