// Old trips counted again under the standards in force: golden figures of
// hand-made trips (minute series, minute distance with pack flags, day files
// with changes of exactly the thresholds), the trips that keep what they
// can't recount, and a recount cancelled half way in its own thread.
#include "analysis/New_Standards.h"
#include "analysis/Standards.h"
#include "store/DayFile.h"
#include "store/Day_Store.h"
#include "store/EventDetector.h"
#include "store/Job_Runner.h"
#include "store/IngestFixture.h"

#include <QFile>
#include <QSemaphore>
#include <vector>

using namespace vex;
using test::Series;

namespace {

class Recount : public test::Ingest {
protected:
    // A trip row with the given old counts (D_F9 to D_F17), distance and car.
    void Trip(const QString& key, const QVariant& distance, std::initializer_list<int> old)
    {
        QVariantList fields{"D_F2", key.left(6), "D_F3", key.mid(6, 6), "D_F4", key.right(6), "D_F8", distance};
        int column = 9;
        for (const int v : old)
            fields << QStringLiteral("D_F%1").arg(column++) << v;
        Put("D_D1", key, fields);
    }
    void Car(const QString& car, const QVariant& limit) { Put("S_D1", car, {"D_F10", limit}); }
    // A day file of the trip (under \pack, or the server's row) with the
    // arrays given.
    void Day_File(const QString& key, const std::vector<uint8_t>& speed, const std::vector<uint8_t>& engine)
    {
        Store_Day_Bytes(*db, Day_File_Path_Of_Key(key), Day_File_Bytes(DayFile{speed, engine, {}}));
    }
    std::vector<int> Row(const QString& key)
    {
        std::vector<int> v;
        for (int c = 9; c <= 17; ++c)
            v.push_back(int(Num("D_D1", key, QStringLiteral("D_F%1").arg(c))));
        return v;
    }
};

// A minute distance series of cells given as text in order from minute 0.
QString Distance_Cells(const QStringList& cells)
{
    QString s = cells.join(QString());
    return s.leftJustified(2880, QLatin1Char('0'));
}

} // namespace

TEST_P(Recount, MinutesDayFileDistanceAndTheCarsLimitGiveTheNewRow)
{
    // Trip A: a car whose own limit is empty, so the standard 80 holds.
    const QString a = "000100000200260105";
    Car("000100", "");
    Trip(a, 999, {50, 50, 0, 0, 0, 0, 0, 0, 0});
    // 80 is no overspeed; 81 and 90 (limit + 10) band one; 91 and 99 band
    // two; 100 (limit + 20) and 130 band three.
    Put("D_D3", a, {"D_F2", Series({{10, 80}, {11, 81}, {12, 90}, {13, 91}, {14, 99}, {15, 100}, {16, 130}})});
    // 69 cells of 2.0 km, two pack cells with the flag (85 is 0.5, 95 is
    // 1.5): 140 km, whatever D_F8 says.
    QStringList cells;
    for (int i = 0; i < 69; ++i)
        cells << "20";
    cells << "85" << "95";
    Put("D_D7", a, {"D_F2", Distance_Cells(cells)});
    Put("D_D2", a, {"D_F2", "0100000A0B"});
    // Seconds: a rise of exactly 8 (quick acceleration) and of 7 (none), a
    // drop of exactly 9 (quick brake) and of 6 (none); 181 seconds at 85
    // reached in steps of 5 (one long overspeed, no other change); 301
    // seconds standing with the engine on (one idle event).
    std::vector<uint8_t> speed(kDayArray, 0), engine(kDayArray, 0);
    speed[100] = 8;
    speed[101] = 15;
    speed[102] = 6;
    int s = 200;
    for (int v = 5; v < 85; v += 5)
        speed[size_t(s++)] = uint8_t(v);
    for (int k = 0; k < 181; ++k)
        speed[size_t(s++)] = 85;
    for (int v = 80; v > 0; v -= 5)
        speed[size_t(s++)] = uint8_t(v);
    for (int k = 1000; k <= 1300; ++k)
        engine[size_t(k)] = 40;
    Day_File(a, speed, engine);

    // Trip B: the car's own limit of 90; no day file, so the old counts of
    // the events stay; a distance of 0, so the deductions count at face
    // value: 3 + 43x2 + 3x2 + 1x3 + 3x1 = 101, and a mark of -1 is 0.
    const QString b = "000300000200260105";
    Car("000300", "90");
    Trip(b, 0, {43, 3, 0, 3, 1, 77, 0, 0, 0});
    Put("D_D3", b, {"D_F2", Series({{20, 90}, {21, 95}, {22, 110}, {23, 101}})});

    // Trip C: a limit of "0" still counts as the car's own (the recount
    // asks only for a value), so every moving minute is over it.
    const QString c = "000400000200260105";
    Car("000400", "0");
    Trip(c, 100, {0, 0, 0, 0, 0, 0, 0, 0, 0});
    Put("D_D3", c, {"D_F2", Series({{1, 5}, {2, 15}})});

    std::vector<std::pair<int, int>> seen;
    const Recount_Summary sum =
        Apply_New_Standards(*db, cfg(), [&](int done, int total) { seen.emplace_back(done, total); });
    EXPECT_EQ(sum.total, 3);
    EXPECT_EQ(sum.done, 3);
    EXPECT_EQ(sum.changed, 3);
    EXPECT_EQ(sum.withoutDayFile, 2);
    EXPECT_EQ(sum.failed, 0);
    EXPECT_FALSE(sum.cancelled);
    EXPECT_EQ(seen, (std::vector<std::pair<int, int>>{{1, 3}, {2, 3}, {3, 3}}));

    // Deductions 6 + 2 + 2 + 3 + 1 = 14 over 140 km of a 100 km base: 90.
    //                                     D_F9 F10 F11 F12 F13 F14 F15 F16 F17
    EXPECT_EQ(Row(a), (std::vector<int>{1, 1, 6, 1, 1, 90, 2, 2, 2}));
    EXPECT_EQ(Row(b), (std::vector<int>{43, 3, 3, 3, 1, 0, 1, 1, 1}));
    // 5 and 15 km/h over a limit of 0: bands one and two; 2 deducted ten
    // times over 10 km.
    EXPECT_EQ(Row(c), (std::vector<int>{0, 0, 2, 0, 0, 80, 1, 1, 0}));
    // Only the summary changes: the distance and the event lists stay.
    EXPECT_EQ(Num("D_D1", a, "D_F8"), 999);
    EXPECT_EQ(Text("D_D2", a, "D_F2"), "0100000A0B");
    EXPECT_EQ(Rows("D_D4"), 0);
    EXPECT_EQ(Rows("D_D9"), 0);

    // Counted again under the same standards nothing changes.
    EXPECT_EQ(Apply_New_Standards(*db, cfg(), {}).changed, 0);
    // A stricter brake (a drop of 10) loses trip A its quick brake.
    cfg().B_Val9 = 10;
    EXPECT_EQ(Apply_New_Standards(*db, cfg(), {}).changed, 1);
    EXPECT_EQ(Row(a)[1], 0);
}

TEST_P(Recount, TheRecountWalksTheDaysSecondsAndCountsALongIdlingOnce)
{
    // Idle threshold 5 minutes (300 s). Three runs standing with the engine
    // on: 901 s (three full periods and a second), 1,800 s (six periods),
    // exactly 300 s (not longer than the threshold).
    const QString key = "000500000200260105";
    Car("000500", "");
    Trip(key, 0, {0, 0, 0, 0, 0, 0, 0, 0, 0});
    std::vector<uint8_t> speed(kDayArray, 0), engine(kDayArray, 0);
    auto Idle = [&](int from, int seconds) {
        for (int t = from; t < from + seconds; ++t)
            engine[size_t(t)] = 18;
    };
    Idle(3600, 901);
    Idle(7200, 1800);
    Idle(14400, 300);
    // Driving at 50 km/h through 23:59:59, the last second of the day:
    // element 86,400 (24:00:00) is no second of it.
    for (int t = 86000; t < kDaySeconds; ++t)
        speed[size_t(t)] = 50;
    engine[86000] = 18;
    Day_File(key, speed, engine);

    // The reception counts a run once a full period: 3 + 6 = 9 events, and
    // takes the fall to element 86,400 for a quick brake.
    EventLimits limits;
    limits.idleMinutes = 5;
    const DayEvents reception = Detect_Day_Events(speed, engine, limits);
    EXPECT_EQ(reception.Idle, 9);
    EXPECT_EQ(reception.Brack, 1);

    // The recount walks 00:00:00 to 23:59:59 and counts a run once: 2 idle
    // events, no brake; the rise to 50 at 23:53:20 is a quick acceleration
    // for both. Deductions 2 + 2: a mark of 96.
    Apply_New_Standards(*db, cfg(), {});
    //                                       D_F9 F10 F11 F12 F13 F14 F15 F16 F17
    EXPECT_EQ(Row(key), (std::vector<int>{1, 0, 0, 2, 0, 96, 0, 0, 0}));
}

TEST_P(Recount, WhatCantBeRecountedStaysAndSaysSo)
{
    // A distance that is no number: no distance at all (the minute cells
    // are not read), so the deductions count at face value.
    const QString a = "000100000200260106";
    Trip(a, QVariant(), {0, 0, 0, 0, 0, 0, 0, 0, 0});
    Put("D_D3", a, {"D_F2", Series({{1, 85}})});
    Put("D_D7", a, {"D_F2", Distance_Cells({"99", "99"})});
    // A day file of the wrong size: the old event counts stay, in the log.
    const QString b = "000100000300260106";
    Trip(b, 1000, {4, 5, 0, 6, 7, 0, 0, 0, 0});
    Put("D_D3", b, {"D_F2", Series({})});
    Store_Day_Bytes(*db, Day_File_Path_Of_Key(b), QByteArray(1000, '\1'));
    // A minute series that isn't hexadecimal: the trip stays as it was.
    const QString c = "000100000400260106";
    Trip(c, 10, {1, 1, 1, 1, 1, 1, 1, 1, 1});
    QString bad = Series({});
    bad.replace(0, 2, "ZZ");
    Put("D_D3", c, {"D_F2", bad});

    const Recount_Summary sum = Apply_New_Standards(*db, cfg(), {});
    EXPECT_EQ(sum.done, 3);
    EXPECT_EQ(sum.failed, 1);
    EXPECT_EQ(Row(a), (std::vector<int>{0, 0, 1, 0, 0, 99, 1, 0, 0}));
    // 4x2 + 5x2 + 7x3 + 6x1 = 45 over the base distance of 100 km.
    EXPECT_EQ(Row(b), (std::vector<int>{4, 5, 0, 6, 7, 55, 0, 0, 0}));
    EXPECT_EQ(Row(c), (std::vector<int>{1, 1, 1, 1, 1, 1, 1, 1, 1}));
    QFile log(Err_Log_Path());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(log.readAll());
    EXPECT_TRUE(text.contains(b + ": day file not used")) << text.toStdString();
    EXPECT_TRUE(text.contains(c + " left as it was"));
}

TEST_P(Recount, StandardsMustBeWholeBeforeOldTripsAreRecounted)
{
    // The delivered row is there only when the schema seeds it.
    EXPECT_TRUE(Standards_Missing(*db).isEmpty());
    db->Execute("DELETE * FROM S_D10");
    EXPECT_TRUE(Standards_Missing(*db).contains("기준점수"));
    Put("S_D10", "100", {"D_F2", 100});
    EXPECT_TRUE(Standards_Missing(*db).contains("기준속도"));

    // Saved, the standards are in force at once; what isn't a whole number
    // in range is refused before anything is written.
    Standard_Values values = {"90", "100", "70", "2", "3", "3", "4", "2", "10", "9", "2", "4", "10"};
    Standards_Save(*db, cfg(), values);
    EXPECT_EQ(cfg().B_Val1, "90");
    EXPECT_EQ(cfg().B_Val3, 70);
    EXPECT_EQ(cfg().B_Val13, 10);
    EXPECT_EQ(Standards_Load(*db), values);
    EXPECT_EQ(Rows("S_D10"), 1);
    // A car's own limit left in B_Val3 by a save is not what old trips are
    // counted against: the stored row is.
    cfg().B_Val3 = 95;
    EXPECT_EQ(Standards_Stored(*db, cfg()).B_Val3, 70);
    EXPECT_EQ(Standards_Stored(*db, cfg()).B_Val12, 4);
    cfg().B_Val3 = 70;
    EXPECT_TRUE(Standard_Error(3, "8O").contains("기준속도"));
    EXPECT_FALSE(Standard_Error(2, "32768").isEmpty());
    EXPECT_TRUE(Standard_Error(5, "40000").isEmpty());
    EXPECT_FALSE(Standard_Error(1, "").isEmpty());
    values[2] = "abc";
    EXPECT_THROW(Standards_Save(*db, cfg(), values), RunTimeError);
    EXPECT_EQ(cfg().B_Val3, 70);
}

TEST_P(Recount, ACancelledRecountLeavesEveryRowOldOrNew)
{
    // Thirty trips with impossible old figures, so that a row half old and
    // half new would show. Without day files the event counts stay; the
    // minutes, their bands and the mark are counted again.
    for (int i = 0; i < 30; ++i) {
        const QString key = QStringLiteral("0001000%1260105").arg(i, 5, 10, QLatin1Char('0'));
        Trip(key, 1000, {-1, -1, -1, -1, -1, -1, -1, -1, -1});
        Put("D_D3", key, {"D_F2", Series({{i, 81 + i}})});
    }
    // A job on its own connection to the same database. After ten trips it
    // waits until the caller, told of them, has cancelled.
    Job_Runner runner(db->Target());
    QSemaphore told;
    QObject::connect(&runner, &Job_Runner::Progress, [&](const QString&, int done, int) {
        if (done == 10) {
            runner.Cancel();
            told.release();
        }
    });
    runner.Start([&](Job& job) -> std::any {
        return Apply_New_Standards(
            job.Db(), cfg(),
            [&](int done, int total) {
                job.Progress({}, done, total);
                if (done == 10)
                    told.acquire();
            },
            [&] { return job.Cancelled(); });
    });
    const Job_Result& result = runner.Wait_Events();
    ASSERT_TRUE(result.Ok()) << result.error.toStdString();
    const auto sum = result.Value<Recount_Summary>();
    EXPECT_TRUE(sum.cancelled);
    EXPECT_EQ(sum.done, 10);
    EXPECT_TRUE(sum.error.isEmpty()) << sum.error.toStdString();

    int fresh = 0, old = 0;
    Recordset rs = db->DB_RSet_D_D("SELECT * FROM D_D1");
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        int minusOne = 0;
        for (const int c : {11, 14, 15, 16, 17})
            minusOne += rs.Field(QStringLiteral("D_F%1").arg(c)).toInt() == -1 ? 1 : 0;
        // Old: all five as they were; new: none of them.
        EXPECT_TRUE(minusOne == 0 || minusOne == 5) << rs.Text("D_F1").toStdString() << " " << minusOne;
        (minusOne == 0 ? fresh : old) += 1;
    }
    EXPECT_EQ(fresh, 10);
    EXPECT_EQ(old, 20);
}

TEST_P(Recount, ATripReceivedAgainWhileTheRecountRunsKeepsItsReceptionsCounts)
{
    // Twenty trips; while the first is written, a reception (here its
    // write, on another connection) gives trip 18 new figures. The recount
    // read trip 18 before that: its own figures for it would be of the
    // older data, so the reception's row stands.
    auto Key = [](int i) { return QStringLiteral("000100") + QStringLiteral("%1").arg(i, 6, 10, QLatin1Char('0')) + "260105"; };
    for (int i = 0; i < 20; ++i) {
        Trip(Key(i), 1000, {-1, -1, -1, -1, -1, -1, -1, -1, -1});
        Put("D_D3", Key(i), {"D_F2", Series({{i, 81 + i}})});
    }
    const QString received = Key(18);
    Cls_DB other(db->Target());
    const Recount_Summary sum = Apply_New_Standards(*db, cfg(), [&](int done, int) {
        if (done == 1)
            other.Execute(QStringLiteral("UPDATE D_D1 SET D_F8 = 1200, D_F11 = 7, D_F14 = 93 WHERE D_F1 = ?"), {received});
    });
    EXPECT_EQ(sum.done, 20);
    EXPECT_EQ(sum.failed, 0);
    EXPECT_EQ(sum.receivedMeanwhile, 1);
    EXPECT_EQ(Num("D_D1", received, "D_F11"), 7);
    EXPECT_EQ(Num("D_D1", received, "D_F14"), 93);
    // Its neighbour, read and written as it was, is counted anew: 1 minute
    // over the limit.
    EXPECT_EQ(Num("D_D1", Key(17), "D_F11"), 1);
}

VEX_INGEST_ENGINES(Recount);
