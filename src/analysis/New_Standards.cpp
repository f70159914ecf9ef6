#include "analysis/New_Standards.h"

#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "platform/FileSystem.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/EventDetector.h"
#include "store/Job_Runner.h"
#include "store/Marks.h"
#include "store/Minute_Series.h"
#include "store/Trip_Columns.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSqlQuery>
#include <QSqlRecord>
#include <algorithm>
#include <thread>

namespace vex {

namespace {

constexpr int16_t kErrCommand3 = 1032;

// A folder of the settings as a path of this machine: the system's form
// under the application folder, any other as it stands. Reading there is
// harmless, so it may lie outside the application folder.
QString Folder_Path(const QString& folder)
{
    const Globals& g = G();
    return g.FS ? g.FS->Path(folder) : folder;
}

int16_t To16(long v)
{
    if (v < -32768 || v > 32767)
        throw RunTimeError(QStringLiteral("Overflow"));
    return int16_t(v);
}

// The old figures of a row, for what can't be counted again and to tell a
// change.
Trip_Recount Stored(const Recordset& trip)
{
    auto n = [&](const char* f) { return int(Val(trip.Text(QLatin1String(f)))); };
    Trip_Recount t;
    t.acceleration = To16(n(trip_col::Accelerations));
    t.brake = To16(n(trip_col::Brakes));
    t.overspeed = To16(n(trip_col::Overspeed_Minutes));
    t.idle = To16(n(trip_col::Idles));
    t.longOver = To16(n(trip_col::Long_Overspeeds));
    t.mark = QString::number(n(trip_col::Mark));
    t.band1 = n(trip_col::Over_Band1);
    t.band2 = n(trip_col::Over_Band2);
    t.band3 = n(trip_col::Over_Band3);
    return t;
}

bool Same(const Trip_Recount& a, const Trip_Recount& b)
{
    return a.acceleration == b.acceleration && a.brake == b.brake && a.overspeed == b.overspeed &&
           a.idle == b.idle && a.longOver == b.longOver && Val(a.mark) == Val(b.mark) && a.band1 == b.band1 &&
           a.band2 == b.band2 && a.band3 == b.band3;
}

// The minute series of a batch of trips from one table, first row a key.
QHash<QString, QString> Series_Of(Cls_DB& db, const QString& table, const QStringList& keys)
{
    QHash<QString, QString> series;
    if (keys.isEmpty())
        return series;
    QStringList marks;
    QVariantList values;
    for (const QString& key : keys) {
        marks << QStringLiteral("?");
        values << key;
    }
    const QString sql = QStringLiteral("SELECT D_F1, D_F2 FROM %1 WHERE D_F1 IN (%2)").arg(table, marks.join(','));
    QSqlQuery& q = db.Run_Prepared(db.Translated(sql), values);
    while (q.next()) {
        const QString key = q.value(0).toString();
        if (!series.contains(key))
            series.insert(key, q.value(1).toString());
    }
    q.finish();
    return series;
}

// The speed and engine arrays of the trip's day file and its size: a
// server's row on the connection (db), a file of this machine on any thread
// (no db). What can't be read leaves the note that the old counts stay.
void Read_Day_Arrays(Cls_DB* db, Trip_Reading& r)
{
    try {
        Day_Head head = db ? Read_Day_Head(*db, r.dayFile, kDayFileTwo)
                           : Read_Day_File_Head(r.dayFile.path, kDayFileTwo);
        r.dayBytes = std::move(head.bytes);
        r.daySize = head.size;
        r.hasDayFile = true;
    } catch (const RunTimeError& e) {
        r.note = QStringLiteral("%1: day file not used, the old event counts stay: %2")
                     .arg(r.key, QString::fromUtf8(e.what()));
    }
}

// Whether the trip's row is still as the recount read it.
bool Row_As_Read(Cls_DB& db, const Recordset& trip)
{
    QSqlQuery& q = db.Run_Prepared(db.Translated(QStringLiteral("SELECT * FROM D_D1 WHERE D_F1=?")),
                                   {trip.Field(QStringLiteral("D_F1"))});
    bool same = q.next() && q.record().count() == trip.Field_Names().size();
    for (int i = 0; same && i < trip.Field_Names().size(); ++i)
        same = q.value(i) == trip.Field_At(i);
    q.finish();
    return same;
}

} // namespace

Day_File_Ref Trip_Day_File(Cls_DB& db, const QString& packDir, const QString& car, const QString& driver,
                           const QString& day)
{
    if (Day_Files_In_Database(db))
        return Find_Day_File(db, car, driver, day);
    return Local_Trip_Day_File(packDir, car, driver, day);
}

Day_File_Ref Local_Trip_Day_File(const QString& packDir, const QString& car, const QString& driver, const QString& day)
{
    QStringList roots{Local_Path(QStringLiteral("\\pack"))};
    if (!packDir.trimmed().isEmpty())
        roots << Folder_Path(packDir.trimmed());
    for (const QString& root : roots) {
        const QString folder = root + QLatin1Char('/') + car + QLatin1Char('/') + day + QLatin1Char('/');
        for (const QString& name : {day + QStringLiteral(".vex"), day + driver + QStringLiteral(".vex")})
            if (QFileInfo(folder + name).isFile())
                return Day_File_Ref{{}, folder + name};
    }
    return {};
}

Car_Limits Read_Car_Limits(Cls_DB& db, const Cls_Config& standards)
{
    Car_Limits limits;
    limits.standard = standards.B_Val3;
    Recordset cars = db.DB_RSet_D_D(QStringLiteral("SELECT D_F1, D_F10 FROM S_D1"));
    for (cars.MoveFirst(); !cars.EOF_(); cars.MoveNext()) {
        const QString car = cars.Text(QStringLiteral("D_F1"));
        const QVariant own = cars.Field(QStringLiteral("D_F10"));
        if (!limits.own.contains(car) && !own.isNull() && !own.toString().isEmpty())
            limits.own.insert(car, Val(own.toString()));
    }
    return limits;
}

double Car_Limits::Of(const QString& car) const
{
    return own.value(car, standard);
}

std::vector<Trip_Reading> Read_Trips(Cls_DB& db, const Cls_Config& standards, const Car_Limits& limits,
                                     Recordset& trips, int first, int count)
{
    std::vector<Trip_Reading> batch;
    QStringList keys;
    for (int row = first; row < first + count && row < trips.RecordCount(); ++row) {
        trips.Set_Position(row);
        Trip_Reading& r = batch.emplace_back();
        try {
            r.stored = Stored(trips);
            r.key = trips.Text(QStringLiteral("D_F1"));
            r.car = trips.Text(QStringLiteral("D_F2"));
            r.driver = trips.Text(QStringLiteral("D_F3"));
            // 1. The distance: the stored minute cells, else the row's own
            // figure. A row without a number there counts none.
            const QVariant stored = trips.Field(QStringLiteral("D_F8"));
            if (!stored.isNull() && Is_Numeric(stored.toString())) {
                r.tenths = float(Val(stored.toString()));
                r.distanceWanted = true;
            }
            // 4. The limit: the car's own when it has one, even "0"; else the
            // standard speed.
            r.limit = limits.Of(r.car);
            keys << r.key;
        } catch (const RunTimeError& e) {
            r.failure = QString::fromUtf8(e.what());
        }
    }

    // The minute distance and speed of the whole batch, a statement each.
    const QHash<QString, QString> distance = Series_Of(db, QStringLiteral("D_D7"), keys);
    const QHash<QString, QString> speed = Series_Of(db, QStringLiteral("D_D3"), keys);
    for (Trip_Reading& r : batch) {
        if (!r.failure.isEmpty())
            continue;
        if (r.distanceWanted) {
            const auto cells = distance.constFind(r.key);
            r.hasDistanceCells = cells != distance.constEnd();
            if (r.hasDistanceCells)
                r.distanceCells = *cells;
        }
        const auto series = speed.constFind(r.key);
        r.hasSpeed = series != speed.constEnd();
        if (r.hasSpeed)
            r.secData = *series;
        // A day file of this machine is found and read where the trip is
        // counted; a server's row here, on the connection.
        if (Day_Files_In_Database(db)) {
            r.dayFile = Find_Day_File(db, r.car, r.driver, r.key.right(6));
            if (r.dayFile.Found())
                Read_Day_Arrays(&db, r);
        } else {
            r.dayFileLocal = true;
        }
    }
    return batch;
}

Trip_Recount Count_Trip(const Cls_Config& standards, Trip_Reading& r)
{
    Trip_Recount t = r.stored;

    // 1. The distance: the stored minute cells with the flags of the pack
    // cleared.
    if (r.hasDistanceCells) {
        Clear_Pack_Distance_Flags(r.distanceCells);
        r.tenths = float(Sum_Distance_Cells(r.distanceCells));
        r.hasDistanceCells = false; // counted once
    }

    // 3, 5. Overspeed minutes and bands from the minute speed; a trip
    // without one keeps them.
    if (r.hasSpeed) {
        const Overspeed_Minutes over = Count_Overspeed_Minutes(r.secData, r.limit);
        t.overspeed = over.count;
        t.band1 = over.band1;
        t.band2 = over.band2;
        t.band3 = over.band3;
    }

    // 6, 7. The events of the seconds; without a readable day file the old
    // counts stay.
    if (r.dayFileLocal) {
        r.dayFileLocal = false;
        r.dayFile = Local_Trip_Day_File(standards.U_PackDir, r.car, r.driver, r.key.right(6));
        if (r.dayFile.Found())
            Read_Day_Arrays(nullptr, r);
    }
    if (r.hasDayFile) {
        try {
            // The two arrays where they lie in the bytes, checked as a read
            // checks them; the half seconds are no concern of the recount.
            Check_Day_File_Size(r.daySize, r.dayFile.Name());
            if (r.dayBytes.size() < kDayFileTwo)
                throw RunTimeError(QStringLiteral("Input past end of file: ") + r.dayFile.Name());
            const auto* bytes = reinterpret_cast<const uint8_t*>(r.dayBytes.constData());
            const std::span<const uint8_t> speed(bytes, kDayArray), engine(bytes + kDayArray, kDayArray);
            EventLimits limits;
            limits.limit = float(r.limit);
            limits.quickAccel = standards.B_Val10;
            limits.quickBrake = standards.B_Val9;
            limits.longOverMinutes = standards.B_Val11;
            limits.idleMinutes = standards.B_Val12;
            limits.firstSecond = 0; // the seconds of the day, 00:00:00 to 23:59:59
            limits.lists = false;   // the event lists of old trips stay as they were
            const DayEvents ev = Detect_Day_Events(speed, engine, limits);
            t.acceleration = To16(ev.Acceleration);
            t.brake = To16(ev.Brack);
            // Old trips count one idle event a period longer than the
            // threshold, not one a full threshold period as the reception does.
            t.idle = ev.Idle_Runs;
            t.longOver = ev.LKEngin;
            t.dayFile = true;
        } catch (const RunTimeError& e) {
            r.note = QStringLiteral("%1: day file not used, the old event counts stay: %2")
                         .arg(r.key, QString::fromUtf8(e.what()));
        }
        r.dayBytes = QByteArray(); // counted: the memory goes back at once
    }

    // 8. The mark.
    t.mark = Mark_Of(standards, t.overspeed, float(t.acceleration), float(t.brake), t.idle, t.longOver, r.tenths);
    return t;
}

namespace {

// A trip on its way through the recount: read on the connection's thread,
// counted on any, written on the connection's thread.
struct Trip_Work {
    int row = 0;
    Trip_Reading reading;
    Trip_Recount after;
    QString failure; // why the trip stays as it was
};

// Counts a batch of trips on the processors of the machine; the counting
// touches no database and no shared state.
std::vector<std::thread> Count_Batch(const Cls_Config& standards, std::vector<Trip_Work>& batch, unsigned threads)
{
    std::vector<std::thread> running;
    for (unsigned k = 0; k < threads; ++k)
        running.emplace_back([&standards, &batch, k, threads] {
            for (size_t i = k; i < batch.size(); i += threads) {
                Trip_Work& w = batch[i];
                if (!w.failure.isEmpty())
                    continue;
                try {
                    w.after = Count_Trip(standards, w.reading);
                } catch (const RunTimeError& e) {
                    w.failure = QString::fromUtf8(e.what());
                }
            }
        });
    return running;
}

} // namespace

Recount_Summary Apply_New_Standards(Cls_DB& db, const Cls_Config& standards,
                                    const std::function<void(int, int)>& progress, const std::function<bool()>& cancelled)
{
    Recount_Summary summary;
    Recordset trips;
    Car_Limits limits;
    if (!Guarded(kErrCommand3, [&] {
            trips = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1"));
            limits = Read_Car_Limits(db, standards);
        })) {
        summary.error = Err_Last();
        return summary;
    }
    summary.total = trips.RecordCount();

    // A batch of trips is counted on every processor while this thread
    // writes the batch before and reads the batch after: the reads and the
    // writes stay on the connection's thread, one writer, and each trip is
    // still written (committed) by itself as soon as it is counted.
    constexpr int kBatch = 16;
    const unsigned threads = std::max(1u, std::thread::hardware_concurrency());
    std::vector<Trip_Work> counting, written;
    std::vector<std::thread> running;
    int next = 0;

    auto Read_Batch = [&] {
        std::vector<Trip_Work> batch;
        if (next >= summary.total)
            return batch;
        if (cancelled && cancelled()) {
            summary.cancelled = true;
            return batch;
        }
        const int first = next;
        const int count = std::min(kBatch, summary.total - first);
        next += count;
        std::vector<Trip_Reading> readings;
        const bool read = Guarded(kErrCommand3, [&] { readings = Read_Trips(db, standards, limits, trips, first, count); });
        for (int k = 0; k < count; ++k) {
            Trip_Work& w = batch.emplace_back();
            w.row = first + k;
            if (!read) {
                w.failure = Err_Last();
                continue;
            }
            w.reading = std::move(readings[size_t(k)]);
            w.failure = w.reading.failure;
        }
        return batch;
    };
    auto Write_Batch = [&](std::vector<Trip_Work>& batch) {
        for (Trip_Work& w : batch) {
            // A cancel stops the writes at once: the trips counted ahead of
            // it stay as they were.
            if (cancelled && cancelled()) {
                summary.cancelled = true;
                return;
            }
            trips.Set_Position(w.row);
            if (!w.reading.note.isEmpty())
                Err_Proc(kErrCommand3, w.reading.note);
            const bool ok = w.failure.isEmpty() && Guarded(kErrCommand3, [&] {
                const Trip_Recount& after = w.after;
                // The write waits for a reception that holds the database
                // (or, on a server, the day). A reception that wrote the
                // trip since it was read counted it under these standards:
                // its row stands, not one counted from the older data.
                Cls_DB::Batch write(db);
                Lock_Day_File(db, Day_File_Name(w.reading.car, w.reading.driver, w.reading.key.right(6)));
                if (!Row_As_Read(db, trips)) {
                    ++summary.receivedMeanwhile;
                    return;
                }
                if (!after.dayFile)
                    ++summary.withoutDayFile;
                // 9. One statement: the row is old or new, never half.
                trips.Set(trip_col::Accelerations, after.acceleration);
                trips.Set(trip_col::Brakes, after.brake);
                trips.Set(trip_col::Overspeed_Minutes, after.overspeed);
                trips.Set(trip_col::Idles, after.idle);
                trips.Set(trip_col::Long_Overspeeds, after.longOver);
                trips.Set(trip_col::Mark, Val(after.mark));
                trips.Set(trip_col::Over_Band1, after.band1);
                trips.Set(trip_col::Over_Band2, after.band2);
                trips.Set(trip_col::Over_Band3, after.band3);
                trips.Update();
                if (!Same(w.reading.stored, after))
                    ++summary.changed;
            });
            if (!ok) {
                if (!w.failure.isEmpty())
                    Err_Proc(kErrCommand3, w.failure);
                ++summary.failed;
                Err_Proc(kErrCommand3, QStringLiteral("%1 left as it was").arg(trips.Text(QStringLiteral("D_F1"))));
            }
            ++summary.done;
            if (progress)
                progress(summary.done, summary.total);
        }
    };

    auto Join = [&] {
        for (std::thread& t : running)
            t.join();
        running.clear();
    };
    for (;;) {
        std::vector<Trip_Work> batch = Read_Batch();
        Join();
        written.swap(counting);
        counting = std::move(batch);
        running = Count_Batch(standards, counting, threads);
        try {
            Write_Batch(written);
        } catch (...) {
            Join(); // a cancel thrown from the progress: the counters end first
            throw;
        }
        written.clear();
        if (counting.empty() || summary.cancelled)
            break;
    }
    Join();
    if (!summary.cancelled)
        Write_Batch(counting);
    return summary;
}

Recount_Summary Recount_Job(Job& job, const Cls_Config& standards)
{
    return Apply_New_Standards(
        job.Db(), standards, [&job](int done, int total) { job.Progress(QString(), done, total); },
        [&job] { return job.Cancelled(); });
}

} // namespace vex
