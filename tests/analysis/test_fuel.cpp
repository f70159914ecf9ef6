// Fuel estimates: the factor table at its edges, a day's trip from its
// second file and minute distance, a car rated 0, and a month's excess cost
// with its sum row, all against figures worked out by hand.
#include "analysis/Fuel.h"
#include "analysis/Status_Grids.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "reports/Excel_Grid.h"
#include "support/AppSession.h"
#include "support/PutRow.h"
#include "support/XlsxRead.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace vex;

namespace {

class Fuel : public ::testing::Test {
protected:
    Cls_DB& db() { return *G().DB; }
    // Minute series of 1,440 two-character cells, "00" but where given.
    static QString Minutes(const QMap<int, QString>& cells)
    {
        QString s(2880, QLatin1Char('0'));
        for (auto it = cells.begin(); it != cells.end(); ++it)
            s.replace(2 * it.key(), 2, it.value());
        return s;
    }
    test::AppSession app;
};

} // namespace

TEST(Fuel_Factor, EdgesOfTheTable)
{
    const std::pair<int, double> table[] = {{0, 0.7},   {19, 0.7},  {20, 0.8},  {39, 0.8},  {40, 0.85}, {59, 0.85},
                                            {60, 0.9},  {70, 0.9},  {71, 1.0},  {85, 1.0},  {86, 1.0},  {90, 0.96},
                                            {96, 0.9},  {97, 0.8},  {109, 0.8}, {110, 0.9}, {255, 0.9}};
    for (const auto& [speed, factor] : table)
        EXPECT_NEAR(Fuel_Factor(speed), factor, 1e-12) << speed;
}

TEST_F(Fuel, ADayFromItsSecondsAndACarRatedZero)
{
    // Car 000200 (8 km/l) drives 08:10 to 08:11 at 90 km/h, 1.5 km each minute.
    test::Put_Row("S_D1", "000200", {{"D_F7", 8}});
    test::Put_Row("S_D1", "000100", {{"D_F7", 0}});
    const QString key = "000200000301260105";
    test::Put_Row("D_D1", key,
                  {{"D_F2", "000200"}, {"D_F3", "000301"}, {"D_F4", "260105"}, {"D_F5", "0810"}, {"D_F7", "0811"}});
    test::Put_Row("D_D7", key, {{"D_F2", Minutes({{490, "15"}, {491, "15"}})}});
    DayFile file;
    file.speed.assign(kDayArray, 0);
    file.engine.assign(kDayArray, 0);
    for (int s = 8 * 3600 + 600; s < 8 * 3600 + 720; ++s)
        file.speed[s] = 90;
    file.speed[8 * 3600 + 900] = 100; // after the trip: not counted
    const QString path = Local_Path(Day_File_Name("000200", "000301", "260105"));
    QDir().mkpath(QFileInfo(path).absolutePath());
    Write_Day_File(path, file);

    Fuel_Day day = Fuel_Estimate_Day(db(), QString(), "260105");
    ASSERT_EQ(day.rows.size(), 1u);
    EXPECT_TRUE(day.error.isEmpty()) << day.error.toStdString();
    // 120 s x 90 km/h x 0.96 / 8 km/l / 3000 = 0.432 l; rated 3.0 km / 8 = 0.375 l.
    const Fuel_Day_Row& r = day.rows[0];
    EXPECT_EQ(r.car, "000200");
    EXPECT_NEAR(r.km, 3.0, 1e-9);
    EXPECT_NEAR(r.litres, 0.432, 1e-9);
    EXPECT_NEAR(r.excess, 0.057, 1e-9);
    EXPECT_NEAR(r.kmPerLitre, 3.0 / 0.432, 1e-9);

    // The same day as the fuel workbook.
    const Excel_Result x = Excel_Day_Fuel(db(), app.Dir(), Excel_Selection{{}, {}, "260105", "260105"});
    ASSERT_EQ(x.outcome, Excel_Result::Written) << x.message.toStdString();
    const test::Xlsx_Sheet s = test::Read_Xlsx(x.path, "condition");
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    EXPECT_EQ(s.Value("A1"), "일일소모량조회");
    EXPECT_EQ(s.Value("B2"), "2026-01-05");
    EXPECT_EQ(s.Value("B5"), "000200");
    EXPECT_EQ(s.Value("E5"), "0.43");
    EXPECT_TRUE(s.formats.value("E5").contains("#0.00"));

    // A car rated 0 after it (cars in descending order) ends the list there.
    test::Put_Row("D_D1", "000100000301260105",
                  {{"D_F2", "000100"}, {"D_F3", "000301"}, {"D_F5", "0900"}, {"D_F7", "0901"}});
    day = Fuel_Estimate_Day(db(), QString(), "260105");
    EXPECT_EQ(day.rows.size(), 1u);
    EXPECT_TRUE(day.error.contains("000100"));
}

TEST_F(Fuel, ADayWithoutSecondDataHasNoEstimate)
{
    // A memory pack car: 63.6 km of minute distance, rated 3 km/l, no day
    // file. Its litres are unknown, so no excess and no km/l either.
    qputenv("VEX_LANG", "ko");
    test::Put_Row("S_D1", "000700", {{"D_F7", 3}});
    const QString key = "000700000301260105";
    test::Put_Row("D_D1", key,
                  {{"D_F2", "000700"}, {"D_F3", "000301"}, {"D_F4", "260105"}, {"D_F5", "0800"}, {"D_F7", "0931"}});
    QMap<int, QString> cells;
    for (int m = 480; m < 480 + 30; ++m)
        cells[m] = "20";
    cells[510] = "36";
    test::Put_Row("D_D7", key, {{"D_F2", Minutes(cells)}});

    const Fuel_Day day = Fuel_Estimate_Day(db(), QString(), "260105");
    ASSERT_EQ(day.rows.size(), 1u);
    EXPECT_FALSE(day.rows[0].estimated);
    const Grid_Table g = Fuel_Day_Table(day);
    ASSERT_EQ(g.rows.size(), 1u);
    EXPECT_EQ(g.rows[0], (QStringList{"1", "000700", "000301", "63.6", "초당 자료 없음", "", ""}));

    const Excel_Result x = Excel_Day_Fuel(db(), app.Dir(), Excel_Selection{{}, {}, "260105", "260105"});
    ASSERT_EQ(x.outcome, Excel_Result::Written) << x.message.toStdString();
    const test::Xlsx_Sheet s = test::Read_Xlsx(x.path, "condition");
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    EXPECT_EQ(s.Value("D5"), "63.6");
    EXPECT_EQ(s.Value("E5"), "초당 자료 없음");
    EXPECT_EQ(s.Value("F5"), "");
    EXPECT_EQ(s.Value("G5"), "");
    qunsetenv("VEX_LANG");
}

TEST_F(Fuel, AMonthOfExcessCostWithItsSumRowAndAnEmptyMonth)
{
    const QString key = "000200000301260105";
    test::Put_Row("D_D1", key, {{"D_F2", "000200"}, {"D_F9", 3}, {"D_F10", 2}, {"D_F12", 1}});
    // Minutes at 90, 80 and 81 km/h over a limit of 80: 1.2 + 0.5 km count.
    test::Put_Row("D_D3", key, {{"D_F2", Minutes({{0, "5A"}, {1, "50"}, {2, "51"}})}});
    test::Put_Row("D_D7", key, {{"D_F2", Minutes({{0, "12"}, {1, "13"}, {2, "05"}})}});
    Fuel_Rates rates;
    rates.speed = 80;
    rates.over = 10;
    rates.accel = 5;
    rates.idle = 2;
    rates.brake = 4;
    rates.price = 1500;
    const std::vector<Fuel_Month_Row> rows = Fuel_Excess_Month(db(), "2601", rates, 10);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].car, "000200");
    EXPECT_NEAR(rows[0].overKm, 1.7, 1e-9);
    EXPECT_EQ(rows[0].brakes, 2);
    EXPECT_EQ(rows[0].accels, 3);
    EXPECT_EQ(rows[0].idleMinutes, 10);
    // (1.7 x 10 + 2 x 4 + 3 x 5 + 10 / 4 x 2) % of 1500 x 0.1 = 67.5
    EXPECT_NEAR(rows[0].cost, 67.5, 1e-9);
    EXPECT_EQ(rows[1].car, "소 계");
    EXPECT_NEAR(rows[1].cost, 67.5, 1e-9);

    EXPECT_TRUE(Fuel_Excess_Month(db(), "2602", rates, 10).empty());

    // Cells as text reads them: a lower-case speed, distances " 7" and "+3";
    // a character of more than one byte in a distance series moves none of
    // the cells after it; a distance series that ends early.
    const QString odd = "000300000301260305";
    test::Put_Row("D_D1", odd, {{"D_F2", "000300"}});
    test::Put_Row("D_D3", odd, {{"D_F2", Minutes({{0, "5a"}, {1, "51"}, {10, "FF"}, {20, "60"}})}});
    test::Put_Row("D_D7", odd, {{"D_F2", Minutes({{0, " 7"}, {1, "+3"}, {4, "가1"}, {10, "09"}}).left(40)}});
    const std::vector<Fuel_Month_Row> march = Fuel_Excess_Month(db(), "2603", rates, 10);
    ASSERT_EQ(march.size(), 2u);
    EXPECT_NEAR(march[0].overKm, 0.7 + 0.3 + 0.9, 1e-9);
    // A speed cell that is no number stops the month, as it always did.
    db().Execute("UPDATE D_D3 SET D_F2 = ? WHERE D_F1 = ?", {Minutes({{3, "G1"}}), odd});
    EXPECT_THROW(Fuel_Excess_Month(db(), "2603", rates, 10), RunTimeError);
}
