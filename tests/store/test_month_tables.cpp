// Monthly tables, the recorder identity of a system page and the per-car
// counters.
#include "store/IngestFixture.h"
#include "core/Pack_System_Page.h"

using namespace vex;

namespace {

class MonthTables : public test::Ingest {
protected:
    void Day(const QString& car, const QString& driver, const QString& day, double distance, double mark,
             double band2, double band3)
    {
        Put("D_D1", car + driver + day,
            {"D_F2", car, "D_F3", driver, "D_F4", day, "D_F8", distance, "D_F9", 1, "D_F10", 2, "D_F11", 3,
             "D_F12", 4, "D_F13", 5, "D_F14", mark, "D_F15", 6, "D_F16", band2, "D_F17", band3});
    }
};

} // namespace

TEST_P(MonthTables, MonthSumRewritesAndAnEmptyMonthLeavesTheTables)
{
    Day("000100", "000200", "240101", 100, 90, 2, 7);
    Day("000100", "000200", "240115", 300, 80, 4, 1);
    Day("000300", "000200", "240120", 50, 70, 1, 0);
    Day("000100", "000200", "240201", 999, 10, 9, 9);

    for (int run = 0; run < 2; ++run) {
        ASSERT_EQ(db->DB_Month_Sum("2401"), -1) << Err_Last().toStdString();
        EXPECT_EQ(Rows("D_M1"), 2);
        EXPECT_EQ(Rows("D_Y1"), 1);
        const QString k = "2401000100000200";
        EXPECT_EQ(Text("D_M1", k, "D_F2"), "000100");
        EXPECT_EQ(Text("D_M1", k, "D_F3"), "000200");
        EXPECT_EQ(Text("D_M1", k, "D_F4"), "2401");
        EXPECT_EQ(Num("D_M1", k, "D_F5"), 400);  // distance
        EXPECT_EQ(Num("D_M1", k, "D_F6"), 8);    // band 3 comes second
        EXPECT_EQ(Num("D_M1", k, "D_F7"), 2);
        EXPECT_EQ(Num("D_M1", k, "D_F11"), 10);
        EXPECT_EQ(Num("D_M1", k, "D_F12"), 170); // the marks summed
        EXPECT_EQ(Num("D_M1", k, "D_F13"), 12);
        EXPECT_EQ(Num("D_M1", k, "D_F14"), 3);   // band 2 averaged
        EXPECT_EQ(Num("D_Y1", "2401", "D_F2"), 450);
        EXPECT_EQ(Num("D_Y1", "2401", "D_F9"), 240);
        EXPECT_EQ(Num("D_Y1", "2401", "D_F11"), 2); // average of 3 and 1
    }

    // A month without days adds nothing and takes nothing away.
    ASSERT_EQ(db->DB_Month_Sum("2403"), -1);
    EXPECT_EQ(Rows("D_M1"), 2);
    EXPECT_EQ(Rows("D_Y1"), 1);
    EXPECT_EQ(Num("D_Y1", "2401", "D_F2"), 450);
}

TEST_P(MonthTables, SystemPageKeepsItsFirstCodesAndCountersAccumulate)
{
    Pack_System_Page page;
    page.car = "0001";
    page.driver = "0002";
    page.serialNumber = "SN77";
    page.warehouse = "W1";
    page.packInsert = "2401010800";
    page.packLastWrite = "2401311800";
    page.totalDistance = "001000";
    page.totalEngine = "00000100";
    ASSERT_EQ(db->DB_Save_SYSTEM(page), -1) << Err_Last().toStdString();
    const QString key = "00010002SN77";
    EXPECT_EQ(Text("D_Y", key, "D_F4"), "W1");
    EXPECT_TRUE(Is_Null("D_Y", key, "D_F6"));

    page.warehouse = "W2";
    page.totalDistance = "002000";
    ASSERT_EQ(db->DB_Save_SYSTEM(page), -1);
    EXPECT_EQ(Rows("D_Y"), 1);
    EXPECT_EQ(Text("D_Y", key, "D_F2"), "0001");
    EXPECT_EQ(Text("D_Y", key, "D_F3"), "0002");
    EXPECT_EQ(Text("D_Y", key, "D_F4"), "W1");
    EXPECT_EQ(Text("D_Y", key, "D_F9"), "002000");

    ASSERT_EQ(db->DB_SAVE_S_D13("000100", "10,5"), -1) << Err_Last().toStdString();
    ASSERT_EQ(db->DB_SAVE_S_D13("000100", "1"), -1);
    EXPECT_EQ(Rows("S_D13"), 1);
    EXPECT_EQ(Num("S_D13", "000100", "D_F2"), -11);
    EXPECT_EQ(Num("S_D13", "000100", "D_F3"), -5);
    EXPECT_TRUE(Is_Null("S_D13", "000100", "D_F4"));
}

VEX_INGEST_ENGINES(MonthTables);
