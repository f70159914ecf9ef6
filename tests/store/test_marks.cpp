// The mark of a trip and the overspeed minutes of the pack path.
#include "store/IngestFixture.h"

#include "core/Pack_Day.h"
#include "store/Marks.h"

using namespace vex;
using test::Series;

namespace {
class Marks : public test::Ingest {};
} // namespace

TEST_P(Marks, MarkIsBaseLessDeductionsPerBaseDistance)
{
    // Deductions 5x1 + 1x2 + 1x2 + 1x3 + 1x1 = 13.
    EXPECT_EQ(db->CAL_AVG(5, 1, 1, 1, 1, 0), "87");     // no distance: at face value
    EXPECT_EQ(db->CAL_AVG(5, 1, 1, 1, 1, 2000), "94");  // 200 km: half, 93.5 rounds up
    EXPECT_EQ(db->CAL_AVG(5, 1, 1, 1, 1, 500), "74");   // 50 km: twice
    EXPECT_EQ(db->CAL_AVG(0, 0, 0, 0, 0, 123), "100");
    EXPECT_EQ(db->CAL_AVG(101, 0, 0, 0, 0, 0), "0");    // below 0 is 0
    cfg().B_Val2 = 0;
    EXPECT_EQ(db->CAL_AVG(5, 1, 1, 1, 1, 1000), "0");   // no base distance: 0 whatever the events
    cfg().B_Val2 = 100;

    // Integer counts multiply as 16-bit integers: an overflow is the
    // routine's error and answers empty; the decimal counts don't overflow.
    cfg().B_Val4 = 1000;
    EXPECT_EQ(db->CAL_AVG(40, 0, 0, 0, 0, 0), "");
    EXPECT_TRUE(Err_Last().contains("CAL_AVG"));
    cfg().B_Val4 = 1;
    cfg().B_Val6 = 1000;
    EXPECT_EQ(db->CAL_AVG(0, 40, 0, 0, 0, 0), "0");
}

TEST_P(Marks, OverspeedMinutesOfThePackCountAgainstB_Val4)
{
    cfg().B_Val3 = 50;
    cfg().B_Val4 = 80; // the pack path tests this, not the standard speed
    QString speed = Series({{10, 80}, {11, 81}, {12, 200}, {13, 60}});
    EXPECT_EQ(db->CAL_OVERSPEED_CNT(speed), 2);
    EXPECT_EQ(Pack_Overspeed_Minutes(speed, cfg()), 2);
    EXPECT_EQ(db->CAL_OVERSPEED_COUNT(Series({{5, 81}})), 1);
    EXPECT_EQ(db->CAL_OVERSPEED_COUNT("0051"), 0); // short series: the handler's 0
    speed.replace(0, 2, "ZZ");
    EXPECT_EQ(db->CAL_OVERSPEED_CNT(speed), 0);
    EXPECT_TRUE(Err_Last().contains("CAL_OVERSPEED_CNT"));
}

TEST_P(Marks, PackLongOverspeedNeverExceedsTheOverspeedMinutes)
{
    Pack_Day day;
    day.car = "000100";
    day.driver = "000200";
    day.startDay = day.endDay = "240131";
    day.startTime = "0800";
    day.endTime = "1700";
    const QString key = "000100000200240131";

    day.longOverspeeds = 3;
    day.overspeedMinutes = 2;
    EXPECT_EQ(day.Stored_Long_Overspeeds(), 0);
    ASSERT_EQ(db->DB_Save_D_D1_pack(day), -1) << Err_Last().toStdString();
    EXPECT_EQ(Num("D_D1", key, "D_F13"), 0);
    EXPECT_EQ(Num("D_D1", key, "D_F14"), 98); // 2 overspeed minutes at face value

    day.longOverspeeds = 2;
    ASSERT_EQ(db->DB_Save_D_D1_pack(day), -1);
    EXPECT_EQ(Num("D_D1", key, "D_F13"), 2);
    EXPECT_EQ(Num("D_D1", key, "D_F14"), 92);

    day.longOverspeeds = 1;
    day.overspeedMinutes = 0;
    ASSERT_EQ(db->DB_Save_D_D1_pack(day), -1);
    EXPECT_EQ(Num("D_D1", key, "D_F13"), 0);
    EXPECT_EQ(Rows("D_D1"), 1);
}

VEX_INGEST_ENGINES(Marks);
