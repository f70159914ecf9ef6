// Spreadsheet reports filled from the shipped templates and read back with
// openpyxl: cells, sheet name, the record row's format on every further row,
// the chart of the speed rate template; and what a report without rows, a
// broken template or a closed report folder leaves behind.
#include "core/Mod_Main.h"
#include "reports/Excel_Report.h"
#include "store/Cls_DB.h"
#include "support/AppSession.h"
#include "support/PutRow.h"
#include "support/XlsxRead.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>

using namespace vex;

namespace {

const QString kSheetCar = QStringLiteral("000101");
const QString kSheetDriver = QStringLiteral("000201");

class Excel_Reports : public ::testing::Test {
protected:
    Excel_Reports() { qputenv("VEX_LANG", "ko"); }
    ~Excel_Reports() override { qunsetenv("VEX_LANG"); }

    Cls_DB& db() { return *G().DB; }

    void Register()
    {
        test::Put_Row(QStringLiteral("S_D1"), kSheetCar, {{QStringLiteral("D_F2"), QStringLiteral("서울12가3456")}});
        test::Put_Row(QStringLiteral("S_D2"), kSheetDriver, {{QStringLiteral("D_F2"), QStringLiteral("홍길동")}});
    }

    // A trip row of D_D1 with its counts.
    void Trip(const QString& car, const QString& driver, const QString& day, const QString& start,
              const QString& end, int tenths, int over, int accel, int brakes, int longOver, int idle, int mark)
    {
        test::Put_Row(QStringLiteral("D_D1"), car + driver + day,
            {{"D_F2", car}, {"D_F3", driver}, {"D_F4", day}, {"D_F5", start}, {"D_F6", day}, {"D_F7", end},
             {"D_F8", tenths}, {"D_F9", accel}, {"D_F10", brakes}, {"D_F11", over}, {"D_F12", idle},
             {"D_F13", longOver}, {"D_F14", mark}});
    }

    Excel_Selection Sel(const QString& car, const QString& driver, const QString& from, const QString& to)
    {
        return Excel_Selection{car, driver, from, to};
    }

    test::AppSession app;
};

} // namespace

TEST_F(Excel_Reports, OverspeedListWalksItemsAcrossSixPairsAndStopsAtAnEmptyItem)
{
    Register();
    // Day 5: two minutes, an empty item, then a minute that must not show.
    test::Put_Row("D_D9", kSheetCar + kSheetDriver + "260105", {{"D_F2", "09325A093364000000094050"}});
    // Day 6: eight minutes fill one row of six pairs and two of the next.
    test::Put_Row("D_D9", kSheetCar + kSheetDriver + "260106",
        {{"D_F2", "100051100152100253100354100455100556100657100758"}});
    const Excel_Result r = CAL_RECORD_DATA(db(), app.Dir(), Sel(kSheetCar, kSheetDriver, "260101", "260131"));
    ASSERT_EQ(r.outcome, Excel_Result::Written) << r.message.toStdString();
    EXPECT_EQ(QFileInfo(r.path).fileName(), "overspeed_260101_260131.xlsx");
    EXPECT_EQ(QFileInfo(r.path).absolutePath(), QDir(app.Path("report")).absolutePath());
    EXPECT_FALSE(QFileInfo::exists(r.path + ".part"));

    const test::Xlsx_Sheet s = test::Read_Xlsx(r.path, "list");
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    EXPECT_EQ(s.sheets, QStringList{"list"});
    EXPECT_EQ(s.Value("A1"), "과속 상황 분석");
    EXPECT_EQ(s.Value("A2"), "시작일");
    EXPECT_EQ(s.Value("B2"), "2026-01-01");
    EXPECT_EQ(s.Value("E2"), "2026-01-31");
    EXPECT_EQ(s.Value("B3"), "000101 / 서울12가3456");
    EXPECT_EQ(s.Value("E3"), "000201 / 홍길동");
    EXPECT_EQ(s.Value("L4"), "과속");
    EXPECT_EQ(s.Value("M5"), "속도(Km/h)");
    // Row 6: day 5, 09:32 at 0x5A = 90, 09:33 at 0x64 = 100; nothing after the empty item.
    EXPECT_EQ(s.Value("A6"), "2026-01-05");
    EXPECT_EQ(s.Value("B6"), "09:32");
    EXPECT_EQ(s.Value("C6"), "90");
    EXPECT_EQ(s.Value("D6"), "09:33");
    EXPECT_EQ(s.Value("E6"), "100");
    EXPECT_EQ(s.Value("F6"), "");
    // Rows 7 and 8: day 6, six pairs then two.
    EXPECT_EQ(s.Value("A7"), "2026-01-06");
    EXPECT_EQ(s.Value("L7"), "10:05");
    EXPECT_EQ(s.Value("M7"), "86");
    EXPECT_EQ(s.Value("B8"), "10:06");
    EXPECT_EQ(s.Value("C8"), "87");
    EXPECT_EQ(s.Value("E8"), "88");
    EXPECT_EQ(s.Value("F8"), "");
    EXPECT_EQ(s.Last_Row(), 8);
    // Every written row carries the record row's format.
    for (const char* col : {"A", "C", "M"})
        for (int row : {7, 8})
            EXPECT_EQ(s.formats.value(col + QString::number(row)), s.formats.value(col + QString("6")))
                << col << row;
    EXPECT_TRUE(s.formats.value("A8").startsWith("thin"));

    // A real spreadsheet program opens it: LibreOffice makes a PDF of it.
    const QString office = QStandardPaths::findExecutable("libreoffice");
    if (office.isEmpty())
        GTEST_SKIP() << "no libreoffice";
    QProcess convert;
    convert.setWorkingDirectory(app.Dir());
    convert.start(office, {"-env:UserInstallation=file://" + app.Path("lo-profile"), "--headless", "--convert-to",
                           "pdf", "--outdir", app.Path("pdf"), r.path});
    ASSERT_TRUE(convert.waitForFinished(180000));
    EXPECT_GT(QFileInfo(app.Path("pdf/overspeed_260101_260131.pdf")).size(), 1000)
        << convert.readAllStandardError().toStdString();
}

TEST_F(Excel_Reports, BrakeAndIdleListsWithAnUnregisteredCar)
{
    // Neither car nor driver has a register row: the name cells stay empty.
    const QString car = "000777", driver = "000888";
    test::Put_Row("D_D2", car + driver + "260110", {{"D_F2", "0715304A200715554B10"}});
    test::Put_Row("D_DI", car + driver + "260110", {{"D_F2", "081000082000001000"}});
    const Excel_Result brake = CAL_QUICK_BRAKE(db(), app.Dir(), Sel(car, driver, "260110", "260110"));
    ASSERT_EQ(brake.outcome, Excel_Result::Written) << brake.message.toStdString();
    const test::Xlsx_Sheet b = test::Read_Xlsx(brake.path, "list");
    ASSERT_TRUE(b.ok) << b.error.toStdString();
    EXPECT_EQ(b.Value("A1"), "급제동 분석");
    EXPECT_EQ(b.Value("B2"), "000777 / ");
    EXPECT_EQ(b.Value("D2"), "000888 / ");
    EXPECT_EQ(b.Value("B3"), "2026-01-10");
    EXPECT_EQ(b.Value("B4"), "제동 시각");
    // One brake a row: 07:15:30 from 74 to 32, 07:15:55 from 75 to 16.
    EXPECT_EQ(b.Value("A5"), "2026-01-10");
    EXPECT_EQ(b.Value("B5"), "07:15:30");
    EXPECT_EQ(b.Value("C5"), "74");
    EXPECT_EQ(b.Value("D5"), "32");
    EXPECT_EQ(b.Value("A6"), "2026-01-10");
    EXPECT_EQ(b.Value("B6"), "07:15:55");
    EXPECT_EQ(b.Value("D6"), "16");
    EXPECT_EQ(b.formats.value("D6"), b.formats.value("D5"));

    const Excel_Result idle = CAL_SECTION_RUN(db(), app.Dir(), Sel(car, driver, "260110", "260110"));
    ASSERT_EQ(idle.outcome, Excel_Result::Written) << idle.message.toStdString();
    const test::Xlsx_Sheet i = test::Read_Xlsx(idle.path, "list");
    ASSERT_TRUE(i.ok) << i.error.toStdString();
    EXPECT_EQ(i.Value("A1"), "IDLE 분석");
    EXPECT_EQ(i.Value("B4"), "IDLE 시작시간");
    EXPECT_EQ(i.Value("B5"), "08:10:00");
    EXPECT_EQ(i.Value("C5"), "08:20:00");
    EXPECT_EQ(i.Value("D5"), "00:10:00");
}

TEST_F(Excel_Reports, CarDayRowsOfOneCarAndOfAllCars)
{
    Register();
    Trip(kSheetCar, kSheetDriver, "260105", "0810", "1742", 1234, 3, 1, 2, 0, 4, 97);
    Trip(kSheetCar, "000202", "260106", "0900", "1200", 0, 0, 0, 0, 0, 0, 100);
    Trip("000102", kSheetDriver, "260105", "0700", "0800", 55, 0, 0, 0, 1, 0, 90);
    const Excel_Result r = Excel_Car_Day(db(), app.Dir(), Sel(kSheetCar, "", "260101", "260131"));
    ASSERT_EQ(r.outcome, Excel_Result::Written) << r.message.toStdString();
    const test::Xlsx_Sheet s = test::Read_Xlsx(r.path, "list");
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    EXPECT_EQ(s.Value("A1"), "일자별 차량 운행 상황 집계");
    EXPECT_EQ(s.Value("B3"), "000101 / 서울12가3456");
    EXPECT_EQ(s.Value("F4"), "운행 실태");
    EXPECT_EQ(s.Value("I5"), "장기과속");
    const QStringList row6 = {"2026-01-05", "000201", "08:10", "17:42", "123.4", "3", "1", "2", "0", "4", "97"};
    for (int c = 0; c < row6.size(); ++c)
        EXPECT_EQ(s.Value(QString(QChar('A' + c)) + "6"), row6[c]) << c;
    EXPECT_EQ(s.Value("B7"), "000202");
    EXPECT_EQ(s.Value("E7"), "0");
    EXPECT_EQ(s.Last_Row(), 7);
    EXPECT_EQ(s.formats.value("E7"), s.formats.value("E6"));
    EXPECT_TRUE(s.formats.value("E7").contains("#,##0.0"));

    const Excel_Result all = Excel_All_Cars_Day(db(), app.Dir(), Sel("", "", "260105", "260105"));
    ASSERT_EQ(all.outcome, Excel_Result::Written) << all.message.toStdString();
    const test::Xlsx_Sheet a = test::Read_Xlsx(all.path, "list");
    ASSERT_TRUE(a.ok) << a.error.toStdString();
    EXPECT_EQ(a.Value("B4"), "자동차 코드");
    QStringList cars = {a.Value("B6"), a.Value("B7")};
    cars.sort();
    EXPECT_EQ(cars, (QStringList{"000101", "000102"}));
    EXPECT_EQ(a.Last_Row(), 7);
}

TEST_F(Excel_Reports, DriverDaysWithTheCarNumberBandsAndIdleTime)
{
    Register();
    Trip(kSheetCar, kSheetDriver, "260105", "0810", "1742", 1234, 3, 1, 2, 0, 4, 97);
    Trip("000555", kSheetDriver, "260106", "0900", "1200", 50, 0, 0, 0, 1, 2, 100);
    Recordset rs = db().DB_RSet_D_D("SELECT * FROM D_D1 WHERE D_F1=?", {kSheetCar + kSheetDriver + "260105"});
    rs.Set("D_F15", 5);
    rs.Set("D_F16", 6);
    rs.Set("D_F17", 7);
    rs.Update();
    // Two idle periods, 10 min and 1 h 2 min 3 s; the third after an empty item is not counted.
    test::Put_Row("D_DI", kSheetCar + kSheetDriver + "260105",
                  {{"D_F2", "081000082000001000090000100203010203000000000000000000101000110000010000"}});
    const Excel_Result r = Excel_Driver_Day(db(), app.Dir(), Sel("", kSheetDriver, "260101", "260131"));
    ASSERT_EQ(r.outcome, Excel_Result::Written) << r.message.toStdString();
    const test::Xlsx_Sheet s = test::Read_Xlsx(r.path, "list");
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    EXPECT_EQ(s.Value("A1"), "일자별 운전원 운행 상황 집계");
    EXPECT_EQ(s.Value("B3"), "000201 / 홍길동");
    // G to I hold overspeed minutes by how far above the limit.
    EXPECT_EQ(s.Value("G4"), "과속 시간");
    EXPECT_EQ(s.Value("G5"), "1~10Km/h 초과(분)");
    EXPECT_EQ(s.Value("H5"), "11~19Km/h 초과(분)");
    EXPECT_EQ(s.Value("I5"), "20Km/h 이상 초과(분)");
    const QStringList row6 = {"2026-01-05", "서울12가3456", "08:10", "17:42", "123.4", "", "5", "6", "7",
                              "3", "1", "2", "0", "4", "01:12:03", "97"};
    for (int c = 0; c < row6.size(); ++c)
        EXPECT_EQ(s.Value(QString(QChar('A' + c)) + "6"), row6[c]) << c;
    // A car without a register row: the name cell stays empty, the row is written.
    EXPECT_EQ(s.Value("A7"), "2026-01-06");
    EXPECT_EQ(s.Value("B7"), "");
    EXPECT_EQ(s.Value("O7"), "00:00:00");
    EXPECT_EQ(s.formats.value("P7"), s.formats.value("P6"));

    // The same heads in English.
    qputenv("VEX_LANG", "en");
    const Excel_Result en = Excel_Driver_Day(db(), app.Dir(), Sel("", kSheetDriver, "260101", "260131"));
    qputenv("VEX_LANG", "ko");
    ASSERT_EQ(en.outcome, Excel_Result::Written) << en.message.toStdString();
    const test::Xlsx_Sheet e = test::Read_Xlsx(en.path, "list");
    EXPECT_EQ(e.Value("G4"), "Overspeed minutes");
    EXPECT_EQ(e.Value("G5"), "1-10 km/h over (min)");
    EXPECT_EQ(e.Value("H5"), "11-19 km/h over (min)");
    EXPECT_EQ(e.Value("I5"), "20+ km/h over (min)");
}

TEST_F(Excel_Reports, NoRowsMissingTemplateAndBrokenTemplates)
{
    // No rows: message 1135 and no workbook.
    const Excel_Result none = CAL_RECORD_DATA(db(), app.Dir(), Sel(kSheetCar, kSheetDriver, "260101", "260131"));
    EXPECT_EQ(none.outcome, Excel_Result::No_Data);
    EXPECT_FALSE(none.message.isEmpty());
    EXPECT_TRUE(QDir(app.Path("report")).entryList(QDir::Files).isEmpty());

    test::Put_Row("D_D2", kSheetCar + kSheetDriver + "260105", {{"D_F2", "0715304A20"}});
    test::Put_Row("D_D6", kSheetCar + kSheetDriver + "260105", {{"D_F2", "081000082000001000"}});
    // The brake report says the file is missing; the long overspeed one ends by its trap.
    QFile::remove(app.Path("Excel/brake.xltx"));
    const Excel_Result missing = CAL_QUICK_BRAKE(db(), app.Dir(), Sel(kSheetCar, kSheetDriver, "260105", "260105"));
    EXPECT_EQ(missing.outcome, Excel_Result::No_Template);
    EXPECT_EQ(missing.message, "엑셀 파일이 존재하지 않습니다!");

    // A template that is no workbook, and one without the sheet "list".
    QFile::remove(app.Path("Excel/longover.XLTX"));
    app.Write_File("Excel/longover.XLTX", "not a zip at all");
    Excel_Result broken = CAL_LONG_OVER(db(), app.Dir(), Sel(kSheetCar, kSheetDriver, "260105", "260105"));
    EXPECT_EQ(broken.outcome, Excel_Result::No_Template);
    EXPECT_TRUE(broken.message.contains("not a workbook")) << broken.message.toStdString();
    QFile::remove(app.Path("Excel/longover.XLTX"));
    QFile::copy(app.Path("Excel/daydr.xltx"), app.Path("Excel/longover.XLTX"));
    broken = CAL_LONG_OVER(db(), app.Dir(), Sel(kSheetCar, kSheetDriver, "260105", "260105"));
    EXPECT_EQ(broken.outcome, Excel_Result::No_Template);
    EXPECT_TRUE(broken.message.contains("no sheet")) << broken.message.toStdString();
    EXPECT_TRUE(QDir(app.Path("report")).entryList(QDir::Files).isEmpty());
}

TEST_F(Excel_Reports, AReportFolderThatCannotBeWrittenLeavesNoFileBehind)
{
    test::Put_Row("D_D9", kSheetCar + kSheetDriver + "260105", {{"D_F2", "09325A"}});
    const QString report = app.Path("report");
    // A read-only folder stops a user; root writes anywhere, so for root the
    // folder is a plain file in the way.
    QFile::setPermissions(report, QFile::ReadOwner | QFile::ExeOwner);
    const bool asRoot = QFileInfo(report).isWritable();
    if (asRoot) {
        QDir(report).removeRecursively();
        app.Write_File("report", "in the way");
    }
    const Excel_Result r = CAL_RECORD_DATA(db(), app.Dir(), Sel(kSheetCar, kSheetDriver, "260105", "260105"));
    EXPECT_EQ(r.outcome, Excel_Result::Failed);
    EXPECT_TRUE(r.message.contains("cannot write")) << r.message.toStdString();
    if (!asRoot) {
        QFile::setPermissions(report, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        EXPECT_TRUE(QDir(report).entryList(QDir::Files).isEmpty());
    }
}

TEST_F(Excel_Reports, EveryTemplateIsAWorkbookWithItsSheetAndTheSpeedRateChart)
{
    const QStringList list = {"overspeed.XLTX", "longover.XLTX", "idle.XLTX", "bat.XLTX", "brake.xltx",
                              "quick_speed.xltx", "driverday1.xltx", "drivertotal1.xltx", "speedrate.xltx",
                              "carday.xltx", "carday1.xltx", "cartotal.xltx"};
    const QStringList condition = {"carcondition.xltx", "day_fuel.xltx", "daystatus2.xltx", "daydr.xltx",
                                   "daystatus.xltx"};
    EXPECT_EQ(QDir(":/Excel").entryList(QDir::Files).size(), list.size() + condition.size());
    for (const QString& name : list + condition) {
        Xlsx_Book book;
        EXPECT_TRUE(Excel_Open(book, list.contains(name) ? "list" : "condition", app.Path("Excel/" + name)))
            << name.toStdString() << " " << book.Error().toStdString();
    }
    const test::Xlsx_Sheet rate = test::Read_Xlsx(app.Path("Excel/speedrate.xltx"), "list");
    ASSERT_TRUE(rate.ok) << rate.error.toStdString();
    EXPECT_EQ(rate.charts, 1);
}
