#pragma once
// "새 기준 적용": every trip of D_D1 counted again under the standards in
// force. The overspeed minutes and their bands come from the stored minute
// speed, the quick accelerations and brakes, long overspeeds and idle events
// from the trip's day file through the same detector as at reception, the
// distance from the stored minute distance; then the mark. Only the summary
// row changes: the event lists of old trips stay as they were counted.
//
// Each trip is one UPDATE of its row, written as soon as it is done, so a
// recount that is cancelled, fails or is killed leaves every row either as it
// was or as it is under the new standards, never half of each.
#include "core/Cls_Config.h"
#include "store/Day_Store.h"

#include <QString>
#include <cstdint>
#include <functional>

namespace vex {

class Cls_DB;
class Job;
class Recordset;

// The figures of one trip under the standards.
struct Trip_Recount {
    int16_t acceleration = 0; // D_F9
    int16_t brake = 0;        // D_F10
    int16_t overspeed = 0;    // D_F11, minutes
    int16_t idle = 0;         // D_F12
    int16_t longOver = 0;     // D_F13
    QString mark;             // D_F14
    int band1 = 0, band2 = 0, band3 = 0; // D_F15 to D_F17
    bool dayFile = false;     // the events counted from the day file; else the old counts kept
};

struct Recount_Summary {
    int total = 0;          // trips of D_D1
    int done = 0;           // trips gone through
    int changed = 0;        // rows whose figures changed
    int withoutDayFile = 0; // trips whose event counts stayed, for want of a readable day file
    int failed = 0;         // trips left as they were after an error (the log tells which)
    bool cancelled = false;
    QString error;          // why nothing could be done at all
};

// The trip's day file: under the program's pack folder, then under the pack
// folder of the settings; in each the older name without the driver first.
// On a server, the database's row of the day. Not found when none has it.
Day_File_Ref Trip_Day_File(Cls_DB& db, const QString& packDir, const QString& car, const QString& driver,
                           const QString& day);

// What the recount of a trip reads: the trip's row, its minute distance and
// speed, the car's limit and the bytes of its day file.
struct Trip_Reading {
    Trip_Recount stored; // the row's figures as they are
    QString key;
    float tenths = 0;    // distance, tenths of a km
    double limit = 0;    // km/h
    bool hasSpeed = false;
    QString secData;     // D_D3's minute speed
    bool hasDayFile = false;
    QByteArray dayBytes;
    QString dayName;
    QString note;        // why the day file was not used, for the log
};

// The reading of the trip at the current row of a "SELECT * FROM D_D1".
// Throws RunTimeError on what it can't read.
Trip_Reading Read_Trip(Cls_DB& db, const Cls_Config& standards, const Recordset& trip);
// The figures of a reading under the standards: no database, no shared
// state, so trips are counted side by side on every processor. A day file
// that can't be used leaves its note. Throws RunTimeError on a minute series
// it can't read.
Trip_Recount Count_Trip(const Cls_Config& standards, Trip_Reading& reading);
// Both, on the calling thread (no write).
Trip_Recount Recount_Trip(Cls_DB& db, const Cls_Config& standards, const Recordset& trip);

// Every trip: read and written on db's thread, counted on every processor,
// each row committed as soon as it is counted; progress(done, total) after
// each written trip, cancel read between trips read. A trip that fails is
// logged and left as it was. The windows
// and vexcli run it through a Job_Runner, on the worker's own connection.
Recount_Summary Apply_New_Standards(Cls_DB& db, const Cls_Config& standards,
                                    const std::function<void(int, int)>& progress,
                                    const std::function<bool()>& cancelled = {});

// The recount as a job: on the worker's connection, a progress a trip
// (done of all, no text), cancelled between trips.
Recount_Summary Recount_Job(Job& job, const Cls_Config& standards);

} // namespace vex
