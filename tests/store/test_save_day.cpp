// A decoded day into its rows: the full path, the pack path and the event
// merge, on every engine.
#include "store/DayFile.h"
#include "store/IngestFixture.h"

#include "core/Pack_Day.h"

using namespace vex;
using test::Series;

namespace {

class SaveDay : public test::Ingest {
protected:
    // The full save with the given series and events.
    int16_t Save(QString speed, QString engine, int32_t accel, const QString& accelList, int32_t brake,
                 const QString& brakeList, int16_t idle = 0, const QString& idleList = {}, int16_t lk = 0,
                 const QString& lkList = {})
    {
        QString car = "000100", driver = "000200", day = "240131";
        QString il = idleList, bl = brakeList, al = accelList, ll = lkList;
        return db->DB_Save_D_D1(car, driver, speed, day, accel, brake, idle, il, bl, al, lk, ll, engine);
    }
    const QString key = "000100000200240131";
};

} // namespace

TEST_P(SaveDay, FullPathWritesEverySeriesAndRepeatedSaveOverwrites)
{
    cfg().B_Val2 = 1; // 1 km base: the 1.7 km of the day weigh the deductions 1/1.7
    QString distance(2880, '0'); // decimal cells: 1.2 and 0.5 km
    distance.replace(1200, 4, "1205");
    Put("D_D7", key, {"D_F2", distance});
    // Speed 40, limit+10, limit+20, limit+11; engine from 09:50 to 11:50.
    const QString speed = Series({{600, 40}, {601, 90}, {602, 100}, {603, 91}, {700, 16}});
    QString engine = Series({});
    for (int m = 590; m <= 710; ++m)
        engine.replace(2 * m, 2, "20");

    ASSERT_EQ(Save(speed, engine, 2, "1000000A121000010A12", 1, "1001005A40"), -1) << Err_Last().toStdString();
    EXPECT_EQ(Rows("D_D1"), 1);
    EXPECT_EQ(Text("D_D1", key, "D_F2"), "000100");
    EXPECT_EQ(Text("D_D1", key, "D_F3"), "000200");
    EXPECT_EQ(Text("D_D1", key, "D_F4"), "240131");
    EXPECT_EQ(Text("D_D1", key, "D_F5"), "0950");
    EXPECT_EQ(Text("D_D1", key, "D_F6"), "240131");
    EXPECT_EQ(Text("D_D1", key, "D_F7"), "1150");
    EXPECT_EQ(Num("D_D1", key, "D_F8"), 17);  // the cells of D_D7
    EXPECT_EQ(Num("D_D1", key, "D_F9"), 2);
    EXPECT_EQ(Num("D_D1", key, "D_F10"), 1);
    EXPECT_EQ(Num("D_D1", key, "D_F11"), 3);
    EXPECT_EQ(Num("D_D1", key, "D_F12"), 0);
    EXPECT_EQ(Num("D_D1", key, "D_F14"), 95); // 100 - (3 + 4 + 2) / 1.7
    EXPECT_EQ(Num("D_D1", key, "D_F15"), 1);  // 90: limit+10 is band 1
    EXPECT_EQ(Num("D_D1", key, "D_F16"), 1);  // 91
    EXPECT_EQ(Num("D_D1", key, "D_F17"), 1);  // 100: limit+20 is band 3
    EXPECT_EQ(Text("D_D9", key, "D_F2"), "10015A" "100264" "10035B");
    EXPECT_EQ(Text("D_D3", key, "D_F2"), speed);
    EXPECT_EQ(Text("D_D8", key, "D_F2"), engine);
    EXPECT_EQ(Text("D_D2", key, "D_F2"), "1001005A40");
    EXPECT_EQ(Text("D_D4", key, "D_F2"), "1000000A121000010A12");
    EXPECT_EQ(Rows("D_DI"), 0); // no events: no row
    EXPECT_EQ(Rows("D_D6"), 0);
    // The car and the driver registered themselves.
    EXPECT_EQ(Text("S_D1", "000100", "D_F5"), "4.25");
    EXPECT_EQ(Text("S_D1", "000100", "D_F6"), "250");
    EXPECT_EQ(Text("S_D1", "000100", "D_F7"), "3.0");
    EXPECT_EQ(Text("S_D1", "000100", "D_F8"), "FF");
    EXPECT_EQ(Text("S_D1", "000100", "D_F10"), "80");
    EXPECT_EQ(Text("S_D2", "000200", "D_F2"), "000200");

    // The car gets its own limit of 90: this save still counts against 80,
    // the next one against 90.
    Put("S_D1", "000100", {"D_F10", "90"});
    const QString later = Series({{800, 85}});
    ASSERT_EQ(Save(later, Series({}), 0, {}, 0, {}, 1, "080000081000001000"), -1) << Err_Last().toStdString();
    EXPECT_EQ(cfg().B_Val3, 90);
    EXPECT_EQ(Rows("D_D1"), 1);
    EXPECT_EQ(Text("D_D1", key, "D_F5"), "1320"); // from the speed series now
    EXPECT_EQ(Text("D_D1", key, "D_F7"), "1320");
    EXPECT_EQ(Num("D_D1", key, "D_F11"), 1);
    EXPECT_EQ(Num("D_D1", key, "D_F15"), 1);
    EXPECT_EQ(Num("D_D1", key, "D_F17"), 0);
    EXPECT_EQ(Num("D_D1", key, "D_F12"), 1);
    EXPECT_EQ(Text("D_D3", key, "D_F2"), later);
    EXPECT_EQ(Text("D_D9", key, "D_F2"), "132055");
    EXPECT_EQ(Text("D_DI", key, "D_F2"), "080000081000001000");
    EXPECT_EQ(Text("D_D2", key, "D_F2"), "1001005A40"); // no brakes this time: the row stays
    EXPECT_EQ(Rows("D_D3"), 1);
    EXPECT_EQ(Rows("S_D1"), 1);

    Save(Series({{800, 85}}), Series({}), 0, {}, 0, {});
    EXPECT_EQ(Num("D_D1", key, "D_F11"), 0); // 85 is below the car's 90
}

TEST_P(SaveDay, EmptyAndEngineOnlyDays)
{
    EXPECT_EQ(Save(Series({}), Series({}), 1, "1000000A12", 1, "1001005A40"), 0);
    for (const char* t : {"D_D1", "D_D2", "D_D3", "D_D4", "D_D8", "S_D1", "S_D2"})
        EXPECT_EQ(Rows(t), 0) << t;

    ASSERT_EQ(Save(Series({}), Series({{100, 5}, {200, 7}}), 0, {}, 0, {}), -1);
    EXPECT_EQ(Text("D_D1", key, "D_F5"), "0140");
    EXPECT_EQ(Text("D_D1", key, "D_F7"), "0320");
    EXPECT_EQ(Num("D_D1", key, "D_F11"), 0);
    EXPECT_EQ(Num("D_D1", key, "D_F8"), 0); // no D_D7 row
    EXPECT_EQ(Rows("D_D9"), 0);

    // A cell that isn't hexadecimal ends the save in its handler.
    QString bad = Series({{3, 10}});
    bad[10] = 'G';
    EXPECT_EQ(Save(bad, bad, 0, {}, 0, {}), 0);
    EXPECT_TRUE(Err_Last().contains("DB_Save_D_D1"));
}

TEST_P(SaveDay, PackPathWritesItsColumnsAndCleansTheDistanceFlag)
{
    Pack_Day day;
    day.car = "000100";
    day.driver = "000200";
    day.startDay = "240131";
    day.endDay = "240201";
    day.startTime = "0800";
    day.endTime = "0100";
    day.distance = 150;
    day.accelerations = 2;
    day.brakes = 1;
    day.longOverspeeds = 1;
    day.brakeRecords = QString("1000005A40").leftJustified(100, '0');
    day.brakeBuffer = QString(480, 'B');
    day.brakeTimes = QString(40, 'T');
    day.longOverspeedRecords = QString("100010150000000500").leftJustified(120, '0');
    day.speed = Series({{600, 81}, {601, 85}});
    cfg().B_Val4 = 80;
    day.overspeedMinutes = db->CAL_OVERSPEED_CNT(day.speed);
    cfg().B_Val4 = 1;
    day.distanceSeries = Series({}).replace(0, 6, "951580");
    ASSERT_EQ(db->DB_Save_D_D1_pack(day), -1) << Err_Last().toStdString();
    ASSERT_EQ(db->DB_Save_D_D2_pack(day), -1);
    ASSERT_EQ(db->DB_Save_D_D3_pack(day), -1);
    ASSERT_EQ(db->DB_Save_D_D5_pack(day), -1);

    EXPECT_EQ(Text("D_D1", key, "D_F6"), "240201");
    EXPECT_EQ(Text("D_D1", key, "D_F7"), "0100");
    EXPECT_EQ(Num("D_D1", key, "D_F8"), 150);
    EXPECT_EQ(Num("D_D1", key, "D_F11"), 2);
    EXPECT_EQ(Num("D_D1", key, "D_F12"), 0);
    EXPECT_EQ(Num("D_D1", key, "D_F13"), 1);
    EXPECT_EQ(Num("D_D1", key, "D_F14"), 27); // 100 - (2 + 4 + 2 + 3) x 100 / 15 km
    EXPECT_TRUE(Is_Null("D_D1", key, "D_F15")); // no bands on this path
    EXPECT_EQ(Rows("S_D1"), 0);
    EXPECT_EQ(Text("D_D2", key, "D_F3"), day.brakeBuffer);
    EXPECT_EQ(Text("D_D2", key, "D_F4"), day.brakeTimes);
    EXPECT_EQ(Text("D_D6", key, "D_F2"), day.longOverspeedRecords);
    EXPECT_EQ(Text("D_D3", key, "D_F2"), day.speed);
    EXPECT_EQ(Text("D_D7", key, "D_F2").left(6), "151500"); // the flag of 8 taken off the first digit

    // The same day again: still one row of each.
    ASSERT_EQ(db->DB_Save_D_D1_pack(day), -1);
    ASSERT_EQ(db->DB_Save_D_D5_pack(day), -1);
    EXPECT_EQ(Rows("D_D1"), 1);
    EXPECT_EQ(Rows("D_D7"), 1);
}

TEST_P(SaveDay, EventMergeNeverRepeatsATimeAndEventRowsAlone)
{
    QString car = "000100", driver = "000200", day = "240131", brake = "55", accel = "AA";
    QString list = "1000005A40" "1100006010";
    ASSERT_EQ(db->DB_Save_UD_D2(car, driver, brake, day, list), -1) << Err_Last().toStdString();
    QString more = "1100006010" "1200007020";
    ASSERT_EQ(db->DB_Save_UD_D2(car, driver, brake, day, more), -1);
    ASSERT_EQ(db->DB_Save_UD_D2(car, driver, brake, day, more), -1);
    EXPECT_EQ(Text("D_D2", key, "D_F2"), "1000005A40" "1100006010" "1200007020");
    QString none = "12345";
    ASSERT_EQ(db->DB_Save_UD_D2(car, driver, accel, day, none), -1); // any other type: D_D4, even short
    EXPECT_EQ(Text("D_D4", key, "D_F2"), "12345");
    ASSERT_EQ(db->DB_Save_UD_D2(car, driver, brake, day, none), -1);
    EXPECT_EQ(Text("D_D2", key, "D_F2"), "1000005A40" "1100006010" "1200007020");

    ASSERT_EQ(db->DB_Save_D_D1_st(key, 0, "x", "", "2000000A12", 1, "100010150000000500", ""), -1);
    EXPECT_EQ(Rows("D_DI"), 0);
    EXPECT_EQ(Text("D_D6", key, "D_F2"), "100010150000000500");
    EXPECT_EQ(Text("D_D4", key, "D_F2"), "2000000A12");
    EXPECT_EQ(Text("D_D2", key, "D_F2"), "1000005A40" "1100006010" "1200007020");
}

TEST_P(SaveDay, DayFileThroughTheDetectorIntoTheSummary)
{
    std::vector<uint8_t> speed(kDayArray, 0), engine(kDayArray, 0);
    std::vector<float> metres(kDayMinutes + 1, 0.0f);
    for (int s = 36000; s < 36600; ++s) { // 10:00 to 10:10 at 90 km/h, engine on
        speed[s] = 90;
        engine[s] = 50;
    }
    for (int m = 601; m <= 610; ++m)
        metres[m] = 1500;
    std::vector<uint8_t> half(kHalfArray, 0);
    QString car = "000100", driver = "000200", day = "240131";
    ASSERT_EQ(db->DB_Save_D_D2(car, driver, speed, engine, metres, day, half), -1) << Err_Last().toStdString();
    ASSERT_EQ(db->DB_Save_D_D1_file(car, driver, day), -1) << Err_Last().toStdString();
    // Element i is second i of the day: 36000 opens the clock minute 10:00.
    EXPECT_EQ(Text("D_D1", key, "D_F5"), "1000");
    EXPECT_EQ(Text("D_D1", key, "D_F7"), "1009");
    EXPECT_EQ(Num("D_D1", key, "D_F8"), 150);
    EXPECT_EQ(Num("D_D1", key, "D_F9"), 1);  // 0 to 90 at 10:00:00
    EXPECT_EQ(Num("D_D1", key, "D_F10"), 1); // 90 to 0 at 10:10:00
    EXPECT_EQ(Num("D_D1", key, "D_F13"), 1); // 600 s above 80
    EXPECT_EQ(Text("D_D6", key, "D_F2"), "100000101000001000");
    EXPECT_EQ(Num("D_D1", key, "D_F11"), 10); // minutes 10:00 to 10:09, no more
    // The minute series takes each clock minute's own 60 seconds.
    const QString d3 = Text("D_D3", key, "D_F2");
    EXPECT_EQ(d3.mid(2 * 599, 2), "00");
    EXPECT_EQ(d3.mid(2 * 600, 2), "5A");
    EXPECT_EQ(d3.mid(2 * 609, 2), "5A");
    EXPECT_EQ(d3.mid(2 * 610, 2), "00");

    // A day without its file: the handler and the message, no row touched.
    QStringList shown;
    db->Msg_Box = [&](const QString& m) { shown << m; };
    QString other = "240201";
    EXPECT_EQ(db->DB_Save_D_D1_file(car, driver, other), 0);
    EXPECT_EQ(shown, QStringList{"분당 데이터 생성 에러"});
    EXPECT_EQ(Rows("D_D1"), 1);
}

VEX_INGEST_ENGINES(SaveDay);
