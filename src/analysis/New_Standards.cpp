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

QString First_Series(Cls_DB& db, const QString& sql, const QString& key, bool& found)
{
    Recordset rs = db.DB_RSet_D_D(sql, {key});
    found = rs.RecordCount() > 0;
    return found ? rs.Text(QStringLiteral("D_F2")) : QString();
}

} // namespace

Day_File_Ref Trip_Day_File(Cls_DB& db, const QString& packDir, const QString& car, const QString& driver,
                           const QString& day)
{
    if (Day_Files_In_Database(db))
        return Find_Day_File(db, car, driver, day);
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

Trip_Reading Read_Trip(Cls_DB& db, const Cls_Config& standards, const Recordset& trip)
{
    Trip_Reading r;
    r.stored = Stored(trip);
    r.key = trip.Text(QStringLiteral("D_F1"));
    const QString car = trip.Text(QStringLiteral("D_F2"));
    const QString driver = trip.Text(QStringLiteral("D_F3"));
    const QString day = r.key.right(6);

    // 1. The distance: the stored minute cells, flags of the pack cleared,
    // else the row's own figure. A row without a number there counts none.
    const QVariant stored = trip.Field(QStringLiteral("D_F8"));
    if (!stored.isNull() && Is_Numeric(stored.toString())) {
        r.tenths = float(Val(stored.toString()));
        bool found = false;
        QString cells = First_Series(db, QStringLiteral("SELECT * FROM D_D7 WHERE D_F1=?"), r.key, found);
        if (found) {
            Clear_Pack_Distance_Flags(cells);
            r.tenths = float(Sum_Distance_Cells(cells));
        }
    }

    // 4. The limit: the car's own when it has one, even "0"; else the
    // standard speed.
    r.limit = standards.B_Val3;
    {
        Recordset s1 = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1=?"), {car});
        if (s1.RecordCount() > 0) {
            const QVariant own = s1.Field(QStringLiteral("D_F10"));
            if (!own.isNull() && !own.toString().isEmpty())
                r.limit = Val(own.toString());
        }
    }

    r.secData = First_Series(db, QStringLiteral("SELECT * FROM D_D3 WHERE D_F1=?"), r.key, r.hasSpeed);

    const Day_File_Ref dayFile = Trip_Day_File(db, standards.U_PackDir, car, driver, day);
    if (dayFile.Found()) {
        try {
            r.dayBytes = Read_Day_Bytes(db, dayFile);
            r.dayName = dayFile.Name();
            r.hasDayFile = true;
        } catch (const RunTimeError& e) {
            r.note = QStringLiteral("%1: day file not used, the old event counts stay: %2")
                         .arg(r.key, QString::fromUtf8(e.what()));
        }
    }
    return r;
}

Trip_Recount Count_Trip(const Cls_Config& standards, Trip_Reading& r)
{
    Trip_Recount t = r.stored;

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
    if (r.hasDayFile) {
        try {
            // The two arrays where they lie in the bytes, checked as a read
            // checks them; the half seconds are no concern of the recount.
            Check_Day_File_Size(r.dayBytes.size(), r.dayName);
            const auto* bytes = reinterpret_cast<const uint8_t*>(r.dayBytes.constData());
            const std::span<const uint8_t> speed(bytes, kDayArray), engine(bytes + kDayArray, kDayArray);
            EventLimits limits;
            limits.limit = float(r.limit);
            limits.quickAccel = standards.B_Val10;
            limits.quickBrake = standards.B_Val9;
            limits.longOverMinutes = standards.B_Val11;
            limits.idleMinutes = standards.B_Val12;
            limits.firstSecond = 0; // the seconds of the day, 00:00:00 to 23:59:59
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
    }

    // 8. The mark.
    t.mark = Mark_Of(standards, t.overspeed, float(t.acceleration), float(t.brake), t.idle, t.longOver, r.tenths);
    return t;
}

Trip_Recount Recount_Trip(Cls_DB& db, const Cls_Config& standards, const Recordset& trip)
{
    Trip_Reading r = Read_Trip(db, standards, trip);
    const Trip_Recount t = Count_Trip(standards, r);
    if (!r.note.isEmpty())
        Err_Proc(kErrCommand3, r.note);
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
                w.reading.dayBytes.clear(); // the batch's memory stays small
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
    if (!Guarded(kErrCommand3, [&] { trips = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1")); })) {
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
        for (; next < summary.total && int(batch.size()) < kBatch; ++next) {
            if (cancelled && cancelled()) {
                summary.cancelled = true;
                break;
            }
            Trip_Work w;
            w.row = next;
            trips.Set_Position(next);
            if (!Guarded(kErrCommand3, [&] { w.reading = Read_Trip(db, standards, trips); }))
                w.failure = Err_Last();
            batch.push_back(std::move(w));
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
                // The write waits for a reception that holds the database.
                Cls_DB::Batch write(db);
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
