// Marks that explain themselves: a trip's mark step by step, worked by hand;
// every trip of a sample fleet explained to exactly its stored mark,
// before and after a recount under new standards; drivers month by month.
#include "analysis/Driver_Trends.h"
#include "analysis/Trip_Explanation.h"
#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "registers/Settings_Load.h"
#include "store/Cls_DB.h"
#include "support/AppSession.h"
#include "support/CliRun.h"
#include "support/PutRow.h"

#include <gtest/gtest.h>

using namespace vex;

namespace {

void Put_Trip(const QString& key, double tenths, double accel, double brakes, double over, double idle, double longOver,
              double mark)
{
    test::Put_Row("D_D1", key, {{"D_F2", key.left(6)}, {"D_F3", key.mid(6, 6)}, {"D_F4", key.right(6)},
                                {"D_F5", "0800"}, {"D_F6", key.right(6)}, {"D_F7", "1700"}, {"D_F8", tenths},
                                {"D_F9", accel}, {"D_F10", brakes}, {"D_F11", over}, {"D_F12", idle},
                                {"D_F13", longOver}, {"D_F14", mark}});
}

Cls_Config Standards()
{
    Cls_Config cfg;
    cfg.B_Val1 = "100";
    cfg.B_Val2 = 100; // km
    cfg.B_Val4 = 2;   // an overspeed minute
    cfg.B_Val5 = 3;   // a quick brake
    cfg.B_Val6 = 2;   // a quick acceleration
    cfg.B_Val7 = 5;   // a long overspeed
    cfg.B_Val8 = 1;   // an idle event
    return cfg;
}

} // namespace

TEST(TripExplanation, AMarkWorkedByHandWithTheEventsBehindItsCounts)
{
    test::AppSession session;
    qputenv("VEX_LANG", "en");
    // 12 overspeed minutes, 3 quick accelerations, 1 quick brake, 2 long
    // overspeeds and 4 idle events on 250.0 km: 24 + 6 + 3 + 10 + 4 = 47
    // points, times 100 / 250 = 18.8, from 100: 81.2, so 81.
    Put_Trip("12AB00000123261105", 2500, 3, 1, 12, 4, 2, 81);
    test::Put_Row("D_D2", "12AB00000123261105", {{"D_F2", "1023454C3F" + QString("0000000000")}});
    test::Put_Row("D_D6", "12AB00000123261105", {{"D_F2", "101500101730000230"}});
    const Trip_Explanation e = Explain_Trip(*G().DB, Standards(), "12AB00", "000123", "261105");
    ASSERT_TRUE(e.found);
    EXPECT_EQ(e.mark.mark, "81");
    EXPECT_DOUBLE_EQ(e.mark.deductions, 47);
    EXPECT_DOUBLE_EQ(e.mark.factor, 0.4);
    const QStringList lines = Explanation_Lines(e);
    const QStringList expected{
        "the mark of trip 12AB00 000123 261105",
        "  standard score 100",
        "  - overspeed minutes: 12 × 2 = 24",
        "  - quick accelerations: 3 × 2 = 6",
        "  - quick brakes: 1 × 3 = 3",
        "  - long overspeeds: 2 × 5 = 10",
        "  - idle events: 4 × 1 = 4",
        "  deductions 47",
        "  distance factor = standard distance 100 km / trip 250 km = 0.4",
        "  100 - 0.4 × 47 = 81.2, rounded 81",
        "  mark 81 (stored 81)",
        "  events:",
        "    10:23:45  quick brakes  76→63 km/h",
        "    10:15:00  long overspeeds  10:15:00-10:17:30",
    };
    EXPECT_EQ(lines, expected) << lines.join('\n').toStdString();

    // A trip of no distance takes the deductions at face value; a mark
    // counted under other standards says so.
    Put_Trip("12AB00000123261106", 0, 0, 0, 3, 0, 0, 90);
    const Trip_Explanation still = Explain_Trip(*G().DB, Standards(), "12AB00", "000123", "261106");
    EXPECT_EQ(still.mark.mark, "94");
    EXPECT_TRUE(Explanation_Lines(still).contains("  a trip of no distance: distance factor 1"));
    EXPECT_TRUE(Explanation_Lines(still).contains(
        "  the stored mark was counted under other standards: recount with the new standards"));
    qputenv("VEX_LANG", "ko");
    EXPECT_EQ(Explanation_Lines(e)[8], "  거리 계수 = 기준 거리 100 km / 운행 거리 250 km = 0.4");
    qunsetenv("VEX_LANG");
}

TEST(TripExplanation, EveryTripOfASampleFleetIsExplainedToItsStoredMark)
{
    test::AppSession session;
    const QString app = session.Dir();
    auto cli = [&](const QStringList& args) { return test::Vexcli(QStringList{"--app-dir", app} + args); };
    ASSERT_EQ(cli({"sample", "fleet", "--cars", "4", "--days", "8", "--from", "261101"}).code, 0);
    ASSERT_EQ(cli({"sample", "usb", "--model", "130", "--out", session.Path("usb130"), "--car", "12AC00", "--driver",
                   "000130", "--from", "261101", "--days", "3"})
                  .code,
              0);
    ASSERT_EQ(cli({"receive", "usb", "--model", "130", "--medium", session.Path("usb130")}).code, 0);

    auto every_trip_agrees = [&](const char* when) {
        Load_Settings(*G().DB, *G().Config, G());
        Recordset trips = G().DB->DB_RSet_D_D("SELECT D_F1, D_F14 FROM D_D1");
        ASSERT_EQ(trips.RecordCount(), 4 * 8 + 3);
        for (trips.MoveFirst(); !trips.EOF_(); trips.MoveNext()) {
            const QString key = trips.Text("D_F1");
            const Trip_Explanation e = Explain_Trip(*G().DB, *G().Config, key.left(6), key.mid(6, 6), key.right(6));
            EXPECT_EQ(e.mark.mark, QString::number(trips.Field("D_F14").toDouble())) << when << " " << key.toStdString();
        }
    };
    every_trip_agrees("as received");
    ASSERT_EQ(cli({"standards", "set", "2=50", "4=3", "5=4", "8=2"}).code, 0);
    ASSERT_EQ(cli({"recalc"}).code, 0);
    every_trip_agrees("after the recount");
}

TEST(DriverTrends, AverageMarkEventsRankAndChangeMonthByMonth)
{
    test::AppSession session;
    // September: A 80, B 90. October: A 70 and 90 (80), B 80, C 80 on no distance.
    Put_Trip("12AB00000AAA260915", 1000, 1, 1, 10, 0, 0, 80);
    Put_Trip("12AB00000BBB260916", 2000, 0, 0, 0, 0, 0, 90);
    Put_Trip("12AB00000AAA261001", 1000, 2, 1, 5, 1, 0, 70);
    Put_Trip("12AC00000AAA261002", 3000, 0, 0, 0, 0, 0, 90);
    Put_Trip("12AB00000BBB261003", 500, 1, 0, 7, 0, 0, 80);
    Put_Trip("12AC00000CCC261004", 0, 1, 0, 0, 0, 0, 80);

    const auto rows = Driver_Trends(*G().DB, "2610", "2610");
    ASSERT_EQ(rows.size(), 3u);
    // Equal marks share the first rank; then by code.
    EXPECT_EQ(rows[0].driver, "000AAA");
    EXPECT_EQ(rows[0].trips, 2);
    EXPECT_DOUBLE_EQ(rows[0].km, 400);
    EXPECT_DOUBLE_EQ(rows[0].averageMark, 80);
    EXPECT_DOUBLE_EQ(rows[0].eventsPer100Km, 1.0); // 4 events on 400 km
    EXPECT_DOUBLE_EQ(rows[0].overspeedMinutes, 5);
    EXPECT_EQ(rows[0].rank, 1);
    EXPECT_EQ(rows[0].drivers, 3);
    ASSERT_TRUE(rows[0].change);
    EXPECT_DOUBLE_EQ(*rows[0].change, 0);
    EXPECT_EQ(rows[1].driver, "000BBB");
    EXPECT_EQ(rows[1].rank, 1);
    EXPECT_DOUBLE_EQ(rows[1].eventsPer100Km, 2.0); // 1 event on 50 km
    EXPECT_DOUBLE_EQ(*rows[1].change, -10);
    EXPECT_EQ(rows[2].driver, "000CCC");
    EXPECT_EQ(rows[2].rank, 1);
    EXPECT_DOUBLE_EQ(rows[2].eventsPer100Km, 0);
    EXPECT_FALSE(rows[2].change);

    const auto one = Driver_Trends(*G().DB, "2609", "2610", "000BBB");
    ASSERT_EQ(one.size(), 2u);
    EXPECT_EQ(one[0].month, "2609");
    EXPECT_EQ(one[0].rank, 1); // 90 against A's 80
    EXPECT_EQ(one[0].drivers, 2);
    EXPECT_FALSE(one[0].change); // August has no trips
    EXPECT_EQ(one[1].month, "2610");
}
