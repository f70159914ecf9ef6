// The totals, speed classes, seconds export and grid exports, read back
// with openpyxl against figures worked out by hand from the rows put in:
// a trip over midnight, a driver and a car without a register row, the idle
// of a later month in the car totals, a text that is no number.
#include "analysis/Status_Grids.h"
#include "acquisition/Inbox.h"
#include "core/Mod_Main.h"
#include "reports/Excel_Grid.h"
#include "reports/Excel_Report.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "support/AppSession.h"
#include "support/PutRow.h"
#include "support/XlsxRead.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace vex;

namespace {

class Excel_Totals : public ::testing::Test {
protected:
    Excel_Totals() { qputenv("VEX_LANG", "ko"); }
    ~Excel_Totals() override { qunsetenv("VEX_LANG"); }

    Cls_DB& db() { return *G().DB; }

    void Trip(const QString& car, const QString& driver, const QString& day, const QString& start,
              const QString& endDay, const QString& end, int tenths, int over, int accel, int brakes, int longOver,
              int idle, int mark, QVariantList bands = {0, 0, 0})
    {
        test::Put_Row("D_D1", car + driver + day,
            {{"D_F2", car}, {"D_F3", driver}, {"D_F4", day}, {"D_F5", start}, {"D_F6", endDay}, {"D_F7", end},
             {"D_F8", tenths}, {"D_F9", accel}, {"D_F10", brakes}, {"D_F11", over}, {"D_F12", idle},
             {"D_F13", longOver}, {"D_F14", mark}, {"D_F15", bands[0]}, {"D_F16", bands[1]}, {"D_F17", bands[2]}});
    }

    // Three trips of January and an idle list of February.
    void Month()
    {
        test::Put_Row("S_D1", "000101", {{"D_F2", "서울12가3456"}, {"D_F3", "경기34나5678"}});
        test::Put_Row("S_D2", "000201", {{"D_F2", "홍길동"}});
        Trip("000101", "000201", "260105", "0810", "260105", "1742", 1234, 3, 1, 2, 0, 4, 97, {5, 6, 7});
        Trip("000102", "000201", "260106", "0900", "260106", "1200", 50, 0, 0, 1, 1, 2, 100);
        // Over midnight: 23:00 to 00:30 is 90 minutes.
        Trip("000101", "000999", "260107", "2300", "260108", "0030", 100, 1, 1, 1, 1, 1, 80);
        test::Put_Row("D_DI", "000101000201260105", {{"D_F2", "081000082000001000"}});
        test::Put_Row("D_DI", "000101000999260107", {{"D_F2", "230000230500000500"}});
        test::Put_Row("D_DI", "000101000201260215", {{"D_F2", "100000110000010000"}});
    }

    static Excel_Selection Sel(const QString& car, const QString& driver, const QString& from, const QString& to)
    {
        return Excel_Selection{car, driver, from, to};
    }

    static void Expect_Row(const test::Xlsx_Sheet& s, int row, const QStringList& cells)
    {
        for (int c = 0; c < cells.size(); ++c) {
            const QString ref = QString(QChar('A' + c)) + QString::number(row);
            bool number = false;
            const double want = cells[c].toDouble(&number);
            if (number && !cells[c].startsWith('0'))
                EXPECT_NEAR(s.Value(ref).toDouble(), want, 0.05) << ref.toStdString() << " " << s.Value(ref).toStdString();
            else
                EXPECT_EQ(s.Value(ref), cells[c]) << ref.toStdString();
        }
    }

    test::AppSession app;
};

} // namespace

TEST_F(Excel_Totals, DriverAndCarTotalsWithSumsAndDailyAverage)
{
    Month();
    const Excel_Result d = Excel_Driver_Total(db(), app.Dir(), Sel("", "", "260101", "260131"));
    ASSERT_EQ(d.outcome, Excel_Result::Written) << d.message.toStdString();
    EXPECT_EQ(QFileInfo(d.path).fileName(), "drivertotal1_260101_260131.xlsx");
    const test::Xlsx_Sheet s = test::Read_Xlsx(d.path, "list");
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    EXPECT_EQ(s.Value("A1"), "운전원별 운행 상황 총괄표");
    EXPECT_EQ(s.Value("C4"), "근무일");
    EXPECT_EQ(s.Value("L4"), "1~10Km/h 초과(분)");
    EXPECT_EQ(s.Value("M4"), "11~19Km/h 초과(분)");
    EXPECT_EQ(s.Value("N4"), "20Km/h 이상 초과(분)");
    // 572 + 180 minutes; bands of the first trip only; idle of its list.
    Expect_Row(s, 5, {"000201", "홍길동", "2", "12:32", "128.4", "3", "1", "3", "1", "6", "00:10:00", "5", "6", "7",
                      "98.5", "2026-01-06", "12:00", ""});
    // No register row: the name stays empty, the row is written.
    Expect_Row(s, 6, {"000999", "", "1", "01:30", "10", "1", "1", "1", "1", "1", "00:05:00", "0", "0", "0", "80",
                      "2026-01-08", "00:30"});
    Expect_Row(s, 7, {"집계", "", "3", "14:02", "138.4", "4", "2", "4", "2", "7", "00:15:00", "5", "6", "7", "92.3"});
    // Over the 3 days worked: 842 / 3 minutes, 900 / 3 seconds of idle.
    Expect_Row(s, 8, {"일평균", "", "", "04:41", "46.1", "1.3", "0.7", "1.3", "0.7", "2.3", "00:05:00", "1.7", "2",
                      "2.3", "92.3"});
    EXPECT_EQ(s.Last_Row(), 8);
    EXPECT_EQ(s.formats.value("E8"), s.formats.value("E5"));

    const Excel_Result c = Excel_Car_Total(db(), app.Dir(), Sel("", "", "260101", "260131"));
    ASSERT_EQ(c.outcome, Excel_Result::Written) << c.message.toStdString();
    const test::Xlsx_Sheet t = test::Read_Xlsx(c.path, "list");
    ASSERT_TRUE(t.ok) << t.error.toStdString();
    EXPECT_EQ(t.Value("A1"), "차량별 운행 상황 총괄표");
    EXPECT_EQ(t.Value("N4"), "최종운행시간");
    // The car's idle from the first day on: February's hour counts too.
    Expect_Row(t, 5, {"000101", "경기34나5678", "2", "11:02", "133.4", "4", "2", "3", "1", "5", "01:15:00", "88.5",
                      "2026-01-08", "00:30"});
    Expect_Row(t, 6, {"000102", "", "1", "03:00", "5", "0", "0", "1", "1", "2", "00:00:00", "100", "2026-01-06",
                      "12:00"});
    Expect_Row(t, 7, {"집계", "", "3", "14:02", "138.4", "4", "2", "4", "2", "7", "01:15:00", "92.3"});
    EXPECT_EQ(t.Last_Row(), 8);

    // One driver chosen: his row and the head names him.
    const Excel_Result one = Excel_Driver_Total(db(), app.Dir(), Sel("", "000201", "260101", "260131"));
    ASSERT_EQ(one.outcome, Excel_Result::Written) << one.message.toStdString();
    const test::Xlsx_Sheet o = test::Read_Xlsx(one.path, "list");
    EXPECT_EQ(o.Value("B3"), "000201 / 홍길동");
    EXPECT_EQ(o.Value("A6"), "집계");
    // A month with no rows: message 1135, no workbook.
    EXPECT_EQ(Excel_Car_Total(db(), app.Dir(), Sel("", "", "260301", "260331")).outcome, Excel_Result::No_Data);
}

TEST_F(Excel_Totals, SpeedClassesFillTheRowsUnderTheChart)
{
    // Minutes 0 to 5: 5, 15, 55, 100, 150 km/h and a cell of FF (no value).
    QString speed = "050F376496FF" + QString(2880 - 12, '0');
    QString km = "010309172500" + QString(2880 - 12, '0');
    test::Put_Row("D_D3", "000101000201260105", {{"D_F2", speed}});
    test::Put_Row("D_D7", "000101000201260105", {{"D_F2", km}});
    test::Put_Row("D_D3", "000101000999260105", {{"D_F2", "64" + QString(2878, '0')}});
    const Excel_Result r = Excel_Speed_Rate(db(), app.Dir(), Sel("", "000201", "260101", "260131"));
    ASSERT_EQ(r.outcome, Excel_Result::Written) << r.message.toStdString();
    const test::Xlsx_Sheet s = test::Read_Xlsx(r.path, "list");
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    EXPECT_EQ(s.charts, 1);
    EXPECT_EQ(s.Value("B3"), "000201 / ");
    Expect_Row(s, 5, {"시간(분)", "1", "1", "0", "0", "0", "1", "0", "0", "0", "0", "2"});
    Expect_Row(s, 6, {"거리(km)", "0.1", "0.3", "0", "0", "0", "0.9", "0", "0", "0", "0", "4.2"});
    // Every driver: the other driver's 100 km/h minute joins the last class.
    const Excel_Result all = Excel_Speed_Rate(db(), app.Dir(), Sel("", "", "260101", "260131"));
    ASSERT_EQ(all.outcome, Excel_Result::Written);
    EXPECT_EQ(test::Read_Xlsx(all.path, "list").Value("L5"), "3");
}

TEST_F(Excel_Totals, SecondsOfAPeriodASheetADayAndTheTextFileTheInboxLeavesAlone)
{
    test::Put_Row("S_D1", "000101", {{"D_F2", "서울12가3456"}});
    // 180 km/h with the engine on from 23:59:30 to 00:00:29 of the next day.
    for (const QString day : {"260105", "260106"}) {
        DayFile f;
        f.speed.assign(kDayArray, 0);
        f.engine.assign(kDayArray, 0);
        const int from = day == "260105" ? 86370 : 0, to = day == "260105" ? 86399 : 29;
        for (int s = from; s <= to; ++s) {
            f.speed[size_t(s)] = 180;
            f.engine[size_t(s)] = 0x40;
        }
        const QString path = Local_Path(Day_File_Name("000101", "000201", day));
        QDir().mkpath(QFileInfo(path).absolutePath());
        Write_Day_File(path, f);
    }
    Excel_Selection sel = Sel("000101", "000201", "260105", "260106");
    sel.fromTime = "2359";
    sel.toTime = "0000";
    QStringList steps;
    sel.progress = [&](int, const QString& what) { steps << what; };
    const Excel_Result r = CAL_SPEED_DIST(db(), app.Dir(), sel);
    ASSERT_EQ(r.outcome, Excel_Result::Written) << r.message.toStdString();
    EXPECT_EQ(steps.first(), "DB processing...");
    EXPECT_EQ(steps.last(), "완료");
    EXPECT_TRUE(steps.contains("23시"));

    const test::Xlsx_Sheet a = test::Read_Xlsx(r.path, "list");
    ASSERT_TRUE(a.ok) << a.error.toStdString();
    EXPECT_EQ(a.sheets, (QStringList{"list", "2026-01-06"}));
    EXPECT_EQ(a.Value("B3"), "000101 / 서울12가3456");
    Expect_Row(a, 5, {"2026-01-05", "23:59:00", "00", "00", "0", "noidle", "비작동"});
    Expect_Row(a, 35, {"2026-01-05", "23:59:30", "B4", "40", "0.1", "idle", "장치작동"});
    Expect_Row(a, 64, {"2026-01-05", "23:59:59", "B4", "40", "1.5", "idle", "장치작동"});
    EXPECT_EQ(a.Last_Row(), 64);
    const test::Xlsx_Sheet b = test::Read_Xlsx(r.path, "2026-01-06");
    ASSERT_TRUE(b.ok) << b.error.toStdString();
    // The head and widths travel to the further sheet.
    EXPECT_EQ(b.Value("A1"), a.Value("A1"));
    EXPECT_EQ(b.Value("B4"), a.Value("B4"));
    Expect_Row(b, 5, {"2026-01-06", "00:00:00", "B4", "40"});
    Expect_Row(b, 34, {"2026-01-06", "00:00:29", "B4", "40", "3", "idle"});
    Expect_Row(b, 35, {"2026-01-06", "00:00:30", "00", "00", "3", "noidle", "비작동"});
    EXPECT_EQ(b.Last_Row(), 64);
    EXPECT_EQ(b.formats.value("E64"), a.formats.value("E5"));

    const Excel_Result t = CAL_SPEED_FILE(db(), app.Dir(), sel);
    ASSERT_EQ(t.outcome, Excel_Result::Written) << t.message.toStdString();
    EXPECT_EQ(QDir(app.Path("new")).absoluteFilePath("000101_000201_260105_260106.dat"), t.path);
    QFile text(t.path);
    ASSERT_TRUE(text.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = text.readAll().split('\n');
    ASSERT_EQ(lines.size(), 121); // 120 lines and the end
    EXPECT_EQ(QString::fromUtf8(lines[30]), "2026-01-05\t23:59:30\tB4\t40\t0.1\tidle\t장치작동\r");
    EXPECT_EQ(QString::fromUtf8(lines[119]), "2026-01-06\t00:00:59\t00\t00\t3.0\tnoidle\t비작동\r");
    // The next reception passes over it.
    EXPECT_EQ(Inbox_Pass(*G().DB, {}), 0);
    EXPECT_TRUE(QFile::exists(t.path));

    // No day file in the period: message 1135.
    EXPECT_EQ(CAL_SPEED_DIST(db(), app.Dir(), Sel("000101", "000201", "260201", "260228")).outcome,
              Excel_Result::No_Data);
}

TEST_F(Excel_Totals, MonthDaySectionAndNotANumberGrids)
{
    Month();
    EXPECT_EQ(Month_List(db()), (std::vector<std::pair<QString, QString>>{{"2026/01", "2601"}}));
    // Ranked by the average mark; "5" keeps five, 1 keeps the best.
    Grid_Table month = Car_Condition_Grid(db(), "2601", false, 0);
    ASSERT_EQ(month.rows.size(), 2u);
    EXPECT_EQ(month.rows[0], (QStringList{"1", "000102", "", "0", "0", "0", "0", "0", "1", "1", "2", "00:00:00",
                                          "100.0"}));
    EXPECT_EQ(month.rows[1], (QStringList{"2", "000101", "경기34나5678", "5", "6", "7", "4", "2", "3", "1", "5",
                                          "00:15:00", "88.5"}));
    EXPECT_EQ(Car_Condition_Grid(db(), "2601", false, 1).rows.size(), 1u);
    const Grid_Table drivers = Car_Condition_Grid(db(), "2601", true, 0);
    ASSERT_EQ(drivers.rows.size(), 2u);
    EXPECT_EQ(drivers.rows[0][1], "000201");
    EXPECT_EQ(drivers.rows[0][2], "홍길동");

    const Excel_Result cond = Excel_Grid_Export(app.Dir(), Car_Condition_Excel(month, "2601", false));
    ASSERT_EQ(cond.outcome, Excel_Result::Written) << cond.message.toStdString();
    EXPECT_EQ(QFileInfo(cond.path).fileName(), "carcondition_202601.xlsx");
    const test::Xlsx_Sheet c = test::Read_Xlsx(cond.path, "condition");
    ASSERT_TRUE(c.ok) << c.error.toStdString();
    EXPECT_EQ(c.Value("A1"), "월간운행실태(차량)");
    EXPECT_EQ(c.Value("B2"), "2026-01");
    EXPECT_EQ(c.Value("D4"), "10Km/h이내");
    EXPECT_EQ(c.Value("B6"), "000101");
    EXPECT_EQ(c.Value("M6"), "88.5");

    // One car's days; the sheet takes columns A to H.
    const Grid_Table days = Day_Status_Grid(db(), "000101", false, "2601");
    ASSERT_EQ(days.rows.size(), 2u);
    EXPECT_EQ(days.rows[0], (QStringList{"000101", "08:10~17:42", "2026-01-05", "000201", "3", "1", "2", "0", "4",
                                         "97"}));
    const Excel_Result ds = Excel_Grid_Export(app.Dir(), Day_Status_Excel(days, "000101", false, "2601"));
    ASSERT_EQ(ds.outcome, Excel_Result::Written) << ds.message.toStdString();
    const test::Xlsx_Sheet d = test::Read_Xlsx(ds.path, "condition");
    EXPECT_EQ(d.Value("H5"), "0");
    EXPECT_EQ(d.Value("I5"), "");
    EXPECT_EQ(d.Value("C6"), "2026-01-07");

    // Sections: 08:00-08:10 driven, a 15-minute stop, 08:25-08:30 driven.
    QString speed(2880, '0'), km(2880, '0');
    for (int m : {480, 481, 482, 483, 484, 485, 486, 487, 488, 489, 505, 506, 507, 508, 509}) {
        speed.replace(2 * m, 2, "1E");
        km.replace(2 * m, 2, "05");
    }
    test::Put_Row("D_D3", "000101000201260105", {{"D_F2", speed}});
    test::Put_Row("D_D7", "000101000201260105", {{"D_F2", km}});
    Grid_Table sections = Day_Report_Grid(db(), "260105", 10);
    ASSERT_EQ(sections.rows.size(), 2u);
    EXPECT_EQ(sections.rows[0], (QStringList{"000101", "2026-01-05 08:00", "2026-01-05 08:10", "5.0"}));
    EXPECT_EQ(sections.rows[1], (QStringList{"000101", "2026-01-05 08:25", "2026-01-05 08:30", "2.5"}));
    sections = Day_Report_Grid(db(), "260105", 20);
    ASSERT_EQ(sections.rows.size(), 1u);
    EXPECT_EQ(sections.rows[0][3], "7.5");

    // A count that is no number reads 0; the row is still there.
    Recordset rs = db().DB_RSet_D_D("SELECT * FROM D_D1 WHERE D_F1=?", {"000101000201260105"});
    rs.Set("D_F9", "x1");
    rs.Set("D_F8", "abc");
    rs.Update();
    const Grid_Table day = Day_Drive_Grid(db(), "260105");
    ASSERT_EQ(day.rows.size(), 1u);
    EXPECT_EQ(day.rows[0][7], "0");
    EXPECT_EQ(day.rows[0][11], "0.0");
    EXPECT_EQ(Excel_Car_Day(db(), app.Dir(), Sel("000101", "", "260101", "260131")).outcome, Excel_Result::Written);
}
