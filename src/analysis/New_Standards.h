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

#include <QHash>
#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

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
    int receivedMeanwhile = 0; // trips a reception wrote while the recount ran: its counts stand
    bool cancelled = false;
    QString error;          // why nothing could be done at all
};

// The trip's day file: under the program's pack folder, then under the pack
// folder of the settings; in each the older name without the driver first.
// On a server, the database's row of the day. Not found when none has it.
Day_File_Ref Trip_Day_File(Cls_DB& db, const QString& packDir, const QString& car, const QString& driver,
                           const QString& day);
// The same among the files of this machine alone: no connection, any thread.
Day_File_Ref Local_Trip_Day_File(const QString& packDir, const QString& car, const QString& driver,
                                 const QString& day);

// The limit of each car in force for a recount: the car's own when S_D1
// has one, even "0"; else the standard speed. Read once for all trips.
struct Car_Limits {
    double standard = 0;         // B_Val3
    QHash<QString, double> own;  // cars with a limit of their own
    double Of(const QString& car) const;
};
Car_Limits Read_Car_Limits(Cls_DB& db, const Cls_Config& standards);

// What the recount of a trip reads: the trip's row, its minute distance and
// speed, the car's limit and the speed and engine arrays of its day file.
struct Trip_Reading {
    Trip_Recount stored; // the row's figures as they are
    QString key, car, driver;
    float tenths = 0;             // distance, tenths of a km: the row's own until the cells are counted
    bool distanceWanted = false;  // the row has a number for its distance
    bool hasDistanceCells = false;
    QString distanceCells;        // D_D7's minute distance, flags of the pack still set
    double limit = 0;             // km/h
    bool hasSpeed = false;
    QString secData;              // D_D3's minute speed
    bool dayFileLocal = false;    // the day file still to be found among this machine's files
    Day_File_Ref dayFile;         // found, or none
    bool hasDayFile = false;      // its arrays read
    QByteArray dayBytes;          // the first two arrays of the day file
    qint64 daySize = 0;           // of the whole day file
    QString note;                 // why the day file was not used, for the log
    QString failure;              // why the trip can't be read: it stays as it was
};

// The readings of the rows first to first + count - 1 of a
// "SELECT * FROM D_D1": the rows themselves, the minute series of all of
// them in a statement a table, then where their day files are (a server's
// rows read at once). A row that can't be
// read has its failure; throws RunTimeError when the series can't be read.
std::vector<Trip_Reading> Read_Trips(Cls_DB& db, const Cls_Config& standards, const Car_Limits& limits,
                                     Recordset& trips, int first, int count);
// The figures of a reading under the standards: no database and no shared
// state (a day file of this machine is read here), so trips are counted side
// by side on every processor. A day file that can't be used leaves its note;
// the day file's bytes are let go once counted. Throws RunTimeError on a minute series
// it can't read.
Trip_Recount Count_Trip(const Cls_Config& standards, Trip_Reading& reading);

// Every trip: read and written on db's thread, counted on every processor,
// each row committed as soon as it is counted; progress(done, total) after
// each written trip, cancel read between batches read. A trip that fails is
// logged and left as it was. The windows
// and vexcli run it through a Job_Runner, on the worker's own connection.
Recount_Summary Apply_New_Standards(Cls_DB& db, const Cls_Config& standards,
                                    const std::function<void(int, int)>& progress,
                                    const std::function<bool()>& cancelled = {});

// The recount as a job: on the worker's connection, a progress a trip
// (done of all, no text), cancelled between trips.
Recount_Summary Recount_Job(Job& job, const Cls_Config& standards);

} // namespace vex
