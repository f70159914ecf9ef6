// The read side on hand-made rows: series decoded with their faults logged,
// the sections of a day, the long stops, stepping between days, and the
// marks of a period with the standards' own positions.
#include "analysis/Operation_Graph.h"
#include "analysis/Period_Marks.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "support/AppSession.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace vex;

namespace {

const QString kGraphCar = "12AB00", kGraphDriver = "000123";

// A minute series with value v (two digits) in clock minutes [from, to).
QString Run_Series(std::initializer_list<std::tuple<int, int, const char*>> runs)
{
    QString s = QString(2880, QLatin1Char('0'));
    for (const auto& [from, to, v] : runs)
        for (int m = from; m < to; ++m)
            s.replace(2 * m, 2, QLatin1String(v));
    return s;
}

class Search : public ::testing::Test {
protected:
    Cls_DB& db() { return *G().DB; }
    void Put(const QString& table, const QString& key, const QVariantMap& fields)
    {
        Recordset rs = db().DB_RSet_D_D("SELECT * FROM " + table + " WHERE D_F1=?", {key});
        if (rs.RecordCount() < 1) {
            rs.AddNew();
            rs.Set("D_F1", key);
        }
        for (auto it = fields.begin(); it != fields.end(); ++it)
            rs.Set(it.key(), it.value());
        rs.Update();
    }
    void Trip(const QString& car, const QString& driver, const QString& day, const QVariantMap& more = {})
    {
        QVariantMap f{{"D_F2", car}, {"D_F3", driver}, {"D_F4", day}, {"D_F5", "0600"}, {"D_F6", day},
                      {"D_F7", "1141"}, {"D_F8", 0},   {"D_F9", 0},   {"D_F10", 0},     {"D_F11", 0},
                      {"D_F12", 0},     {"D_F13", 0},  {"D_F14", 100}, {"D_F16", 0}};
        for (auto it = more.begin(); it != more.end(); ++it)
            f[it.key()] = it.value();
        Put("D_D1", car + driver + day, f);
    }
    QString Log() const
    {
        QFile f(Err_Log_Path());
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }
    test::AppSession app;
};

// Driving 06:00-08:00, a stop of 8 minutes, driving to 10:00, a stop of
// 30, driving 10:30-11:41; a kilometre each driven minute.
const QString kDrivenSpeed = Run_Series({{360, 480, "3C"}, {488, 600, "50"}, {630, 701, "28"}});
const QString kDrivenDistance = Run_Series({{360, 480, "10"}, {488, 600, "10"}, {630, 701, "10"}});

} // namespace

TEST_F(Search, SeriesDecodeWithBadCellsCountedZeroAndLogged)
{
    Operation_Graph og(db());
    QString speed = Run_Series({{1, 2, "1E"}, {2, 3, "FF"}, {3, 4, "G1"}, {4, 5, "FE"}});
    og.Trip.speed = speed;
    og.Trip.rpm = Run_Series({{1, 2, "10"}});
    og.Trip.distanceSeries = Run_Series({{1, 3, "05"}, {3, 4, "x5"}});
    og.Engine_Factor = 4.25f;
    og.DB_1440_DB();
    // Point k carries clock minute k-1.
    EXPECT_EQ(og.Speed_Search(2), 30);
    EXPECT_EQ(og.Speed_Search(3), 0);   // FF is no speed
    EXPECT_EQ(og.Speed_Search(4), 0);   // G1 is no number
    EXPECT_EQ(og.Speed_Search(5), 254);
    EXPECT_EQ(og.Speed_Search(1441), 0);
    EXPECT_EQ(og.RPM_Search(2), 68);    // 16 x 4.25
    EXPECT_FLOAT_EQ(og.Distance_Search(3), 1.0f); // 0.5 + 0.5, cumulative
    EXPECT_FLOAT_EQ(og.Distance_Search(1440), 1.0f);
    EXPECT_EQ(og.First_Point(), 2);
    EXPECT_EQ(og.Last_Point(), 5);
    EXPECT_TRUE(Log().contains("minute speed (D_D3) series: 1 cell(s) are no number, the first at cell 4"))
        << Log().toStdString();
    EXPECT_TRUE(Log().contains("minute distance (D_D7) series: 1 cell(s)"));

    // A short series: what is there, and the log says how short.
    og.Trip.speed = speed.left(100);
    og.Trip.rpm.clear();
    og.DB_1440_DB();
    EXPECT_EQ(og.Speed_Search(2), 30);
    EXPECT_EQ(og.First_Point(), 2);
    EXPECT_TRUE(Log().contains("holds 100 characters, not 2880"));
}

TEST_F(Search, SectionsAlternateAndAddUpToTheTotal)
{
    G().Idle_Minutes = 10;
    const QString key = kGraphCar + kGraphDriver + "260105";
    Trip(kGraphCar, kGraphDriver, "260105");
    Put("D_D3", key, {{"D_F2", kDrivenSpeed}});
    Put("D_D7", key, {{"D_F2", kDrivenDistance}});
    Operation_Graph og(db());
    og.DB_Search_Data2(nullptr, kGraphCar, kGraphDriver, "260105");
    ASSERT_EQ(og.Sections.size(), 3u);
    const Day_Section& a = og.Sections[0];
    EXPECT_EQ(a.Start, "06:00");
    EXPECT_EQ(a.End, "10:00"); // the stop of 8 minutes stays inside
    EXPECT_EQ(a.Length, "04:00");
    EXPECT_EQ(a.Kind, kDriving);
    EXPECT_NEAR(a.Distance, 232.0, 1e-3);
    EXPECT_EQ(og.Sections[1].Kind, kNotDriving);
    EXPECT_EQ(og.Sections[1].Start_Minute, 600);
    EXPECT_EQ(og.Sections[1].End_Minute, 630);
    EXPECT_NEAR(og.Sections[1].Distance, 0.0, 1e-3);
    EXPECT_EQ(og.Sections[2].Start, "10:30");
    EXPECT_EQ(og.Sections[2].End, "11:41");
    EXPECT_EQ(og.Sections[2].Kind, kDriving);

    ASSERT_TRUE(og.DB_Search_Data(nullptr, kGraphCar, kGraphDriver, "260105"));
    EXPECT_EQ(og.Sum_DriveTime, 240 + 71);
    EXPECT_EQ(og.Sum_BDriveTime, 30);
    EXPECT_EQ(og.Total_Time, 341);

    // A stop of exactly the threshold still belongs to the drive.
    G().Idle_Minutes = 30;
    og.DB_Search_Data2(nullptr, kGraphCar, kGraphDriver, "260105");
    EXPECT_EQ(og.Sections.size(), 1u);

    // A day without a speed row has no sections.
    og.DB_Search_Data2(nullptr, kGraphCar, kGraphDriver, "260106");
    EXPECT_TRUE(og.Sections.empty());
}

TEST_F(Search, LongStopsCountTheDaysEdges)
{
    G().Idle_Minutes = 10;
    // Before the first drive (360), the stop of 30, after the last drive
    // (minutes 702 to 1440 of the day's 1-based count: 739).
    EXPECT_EQ(UnH_Time(kDrivenSpeed), 360 + 30 + 739);
    // Nothing but driving; a standing day is one long stop.
    EXPECT_EQ(UnH_Time(Run_Series({{0, 1440, "20"}})), 0);
    EXPECT_EQ(UnH_Time(Run_Series({})), 1440);
    // The last minute is never read: the stop that reaches minute 1439 runs to 1440.
    EXPECT_EQ(UnH_Time(Run_Series({{0, 1400, "20"}, {1439, 1440, "20"}})), 40);
}

TEST_F(Search, ADayWithoutSpeedClearsEverySeriesAndPageUpPastTheLastDayFindsNothing)
{
    Trip(kGraphCar, kGraphDriver, "260105", {{"D_F8", 2328}, {"D_F14", 91}});
    Trip(kGraphCar, kGraphDriver, "260107", {{"D_F8", 1000}});
    Put("D_D3", kGraphCar + kGraphDriver + "260107", {{"D_F2", kDrivenSpeed}});
    Put("D_D7", kGraphCar + kGraphDriver + "260107", {{"D_F2", kDrivenDistance}});
    Put("D_D7", kGraphCar + kGraphDriver + "260105", {{"D_F2", kDrivenDistance}});
    Operation_Graph og(db());

    // 260105 has its summary and distance but no speed: all three go.
    ASSERT_TRUE(og.DB_Search_Data(nullptr, kGraphCar, kGraphDriver, "260105"));
    EXPECT_EQ(og.Trip.startDay, "260105");
    EXPECT_EQ(og.Trip.distance, "232.8");
    EXPECT_EQ(og.Trip.mark, 91);
    EXPECT_TRUE(og.Trip.speed.isEmpty());
    EXPECT_TRUE(og.Trip.distanceSeries.isEmpty());
    EXPECT_EQ(og.First_Point(), 0);
    EXPECT_TRUE(Log().contains("no minute speed of 12AB00000123260105 in D_D3"));

    // A key that isn't stored.
    EXPECT_FALSE(og.DB_Search_Data(nullptr, kGraphCar, kGraphDriver, "991231"));
    EXPECT_TRUE(Log().contains("no stored day 12AB00000123991231 in D_D1"));

    // Page up from 260106 lands on 260107 with its series; past it, nothing.
    ASSERT_TRUE(og.DB_Search_Data_Move_Date(kGraphCar, kGraphDriver, "260106", nullptr, 33));
    EXPECT_EQ(og.Trip.startDay, "260107");
    EXPECT_EQ(og.Trip.speed, kDrivenSpeed);
    EXPECT_EQ(og.Speed_Search(361), 0x3C);
    EXPECT_FALSE(og.DB_Search_Data_Move_Date(kGraphCar, kGraphDriver, "260108", nullptr, 33));
    EXPECT_TRUE(og.Trip.startDay.isEmpty());
    EXPECT_TRUE(og.Trip.car.isEmpty());
    // Page down from 260106 lands on 260105.
    ASSERT_TRUE(og.DB_Search_Data_Move_Date(kGraphCar, kGraphDriver, "260106", nullptr, 34));
    EXPECT_EQ(og.Trip.startDay, "260105");
}

TEST_F(Search, MarksOfADriverByDayUseTheirOwnStandards)
{
    Cls_Config& c = *G().Config;
    // As delivered: 100 points, limit 80; deductions 2 a brake (B_Val6),
    // 3 an overspeed (B_Val7), 1 an idle (B_Val8), 8 an overspeed run
    // (B_Val10) above B_Val4 = 1.
    ASSERT_EQ(c.B_Val2, 100);
    ASSERT_EQ(c.B_Val3, 80);
    ASSERT_EQ(c.B_Val4, 1);
    ASSERT_EQ(c.B_Val10, 8);
    // 100 km, 2 brakes, 5 overspeeds, 1 idle: 100 - 80/100 x 20 = 84.
    Trip(kGraphCar, kGraphDriver, "260105", {{"D_F8", 1000}, {"D_F10", 2}, {"D_F11", 5}, {"D_F12", 1}, {"D_F16", 4}});
    Put("D_D3", kGraphCar + kGraphDriver + "260105", {{"D_F2", kDrivenSpeed}});
    // No distance: factor 0, the full mark.
    Trip(kGraphCar, kGraphDriver, "260106", {{"D_F10", 9}, {"D_F16", 6}});
    Put("D_D3", kGraphCar + kGraphDriver + "260106", {{"D_F2", kDrivenSpeed}});
    // 50 km and three runs in D_F5 (the first cell twice, the last never
    // read): 100 - 80/50 x 24 = 61.6, "062".
    Trip(kGraphCar, kGraphDriver, "260107", {{"D_F8", 500}, {"D_F16", 3}});
    Put("D_D3", kGraphCar + kGraphDriver + "260107",
        {{"D_F2", kDrivenSpeed}, {"D_F5", Run_Series({{0, 1, "02"}, {2, 3, "05"}, {1439, 1440, "09"}})}});
    // Another driver's day is neither counted nor listed.
    Trip(kGraphCar, "110000", "260106", {{"D_F8", 1000}, {"D_F10", 50}});
    Put("D_D3", kGraphCar + "110000" + "260106", {{"D_F2", kDrivenSpeed}});

    EXPECT_EQ(Overspeed_Runs(Run_Series({{0, 1, "02"}, {2, 3, "05"}, {1439, 1440, "09"}}), 1), 3);
    // Characters 5 to 8 of the key: "00" of the car, "00" of the driver.
    const Day_Marks m = DB_Search_DayAVG(db(), "0000", kGraphDriver, "260101", "260131");
    EXPECT_EQ(m.count, 3);
    EXPECT_DOUBLE_EQ(m.sum, 84 + 100 + 62);
    EXPECT_DOUBLE_EQ(m.average, 82);
    ASSERT_EQ(m.list.size(), 3u);
    EXPECT_EQ(m.list[0][3], "100.00");
    ASSERT_EQ(m.columns.size(), 3u);
    EXPECT_EQ(m.columns[1].day, "260106");
    EXPECT_EQ(m.columns[1].value, 6);

    // The average of every day, all cars, over D_F16: (4 + 6 + 3 + 0) / 4.
    const Avg_Days a = DB_Search_AvgDay(db(), "260101", "260131");
    EXPECT_EQ(a.days, 3);
    EXPECT_DOUBLE_EQ(a.average, 3.25);
    EXPECT_DOUBLE_EQ(a.columns[1].value, 3); // 260106: (6 + 0) / 2
    EXPECT_EQ(DB_Search_AvgDay(db(), "250101", "250131").days, 0);
}
