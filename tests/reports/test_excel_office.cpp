// One workbook of every kind, made from a small received month and handed
// to LibreOffice in one run: a real spreadsheet program opens each and
// prints it to a PDF that holds the report's title.
#include "core/Mod_Main.h"
#include "reports/Excel_Grid.h"
#include "reports/Excel_Report.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "support/AppSession.h"
#include "support/PdfRead.h"
#include "support/PutRow.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>

using namespace vex;

namespace {

using Routine = Excel_Result (*)(Cls_DB&, const QString&, const Excel_Selection&, const QString&);

void A_Received_Day()
{
    const QString key = "000101000201260105";
    test::Put_Row("S_D1", "000101", {{"D_F2", "서울12가3456"}, {"D_F3", "경기34나5678"}, {"D_F7", "8"}});
    test::Put_Row("S_D2", "000201", {{"D_F2", "홍길동"}});
    test::Put_Row("D_D1", key, {{"D_F2", "000101"}, {"D_F3", "000201"}, {"D_F4", "260105"}, {"D_F5", "0800"},
                                {"D_F6", "260105"}, {"D_F7", "0830"}, {"D_F8", 75}, {"D_F9", 1}, {"D_F10", 2},
                                {"D_F11", 3}, {"D_F12", 1}, {"D_F13", 1}, {"D_F14", 95}});
    QString speed(2880, '0'), km(2880, '0');
    for (int m = 480; m < 510; ++m) {
        speed.replace(2 * m, 2, "1E");
        km.replace(2 * m, 2, "05");
    }
    test::Put_Row("D_D3", key, {{"D_F2", speed}});
    test::Put_Row("D_D7", key, {{"D_F2", km}});
    test::Put_Row("D_D9", key, {{"D_F2", "080564"}});
    test::Put_Row("D_D6", key, {{"D_F2", "080500081000000500"}});
    test::Put_Row("D_DI", key, {{"D_F2", "082000082500000500"}});
    test::Put_Row("D_D2", key, {{"D_F2", "0810304A20"}});
    test::Put_Row("D_D4", key, {{"D_F2", "0811100A30"}});
    DayFile f;
    f.speed.assign(kDayArray, 0);
    f.engine.assign(kDayArray, 0);
    for (int s = 8 * 3600; s < 8 * 3600 + 1800; ++s) {
        f.speed[size_t(s)] = 30;
        f.engine[size_t(s)] = 0x30;
    }
    const QString path = Local_Path(Day_File_Name("000101", "000201", "260105"));
    QDir().mkpath(QFileInfo(path).absolutePath());
    Write_Day_File(path, f);
}

} // namespace

TEST(Excel_Office, EveryKindOpensInASpreadsheetProgram)
{
    qputenv("VEX_LANG", "ko");
    test::AppSession app;
    A_Received_Day();
    const std::pair<const char*, Routine> kinds[] = {
        {"overspeed", CAL_RECORD_DATA}, {"longover", CAL_LONG_OVER},       {"idle", CAL_SECTION_RUN},
        {"bat", CAL_SPEED_DIST},        {"brake", CAL_QUICK_BRAKE},        {"quick_speed", CAL_TIME_SPEED},
        {"driverday1", Excel_Driver_Day}, {"drivertotal1", Excel_Driver_Total}, {"speedrate", Excel_Speed_Rate},
        {"carday", Excel_Car_Day},      {"carday1", Excel_All_Cars_Day},   {"cartotal", Excel_Car_Total},
        {"carcondition", Excel_Car_Condition}, {"day_fuel", Excel_Day_Fuel}, {"daystatus2", Excel_Day_Status},
        {"daydr", Excel_Day_Report},    {"daystatus", Excel_Day_Drive}};
    Excel_Selection sel{"000101", "000201", "260105", "260105"};
    sel.fromTime = "0800";
    sel.toTime = "0805";
    QStringList books;
    for (const auto& [name, run] : kinds) {
        // The month reports by car: no driver.
        Excel_Selection one = sel;
        if (QString(name) == "carcondition" || QString(name) == "daystatus2")
            one.driver.clear();
        const Excel_Result r = run(*G().DB, app.Dir(), one, app.Path(QString("books/%1.xlsx").arg(name)));
        ASSERT_EQ(r.outcome, Excel_Result::Written) << name << ": " << r.message.toStdString();
        books << r.path;
    }
    EXPECT_EQ(books.size(), QDir(":/Excel").entryList(QDir::Files).size());

    const QString office = QStandardPaths::findExecutable("libreoffice");
    if (office.isEmpty())
        GTEST_SKIP() << "no libreoffice";
    QProcess convert;
    convert.setWorkingDirectory(app.Dir());
    convert.start(office, QStringList{"-env:UserInstallation=file://" + app.Path("lo-profile"), "--headless",
                                      "--convert-to", "pdf", "--outdir", app.Path("pdf")} + books);
    ASSERT_TRUE(convert.waitForFinished(300000));
    const struct { const char* name; const char* title; } titles[] = {
        {"overspeed", "과속 상황 분석"}, {"drivertotal1", "운전원별 운행 상황 총괄표"},
        {"speedrate", "운전원 운행 속도별 집계표"}, {"cartotal", "차량별 운행 상황 총괄표"},
        {"carcondition", "월간운행실태(차량)"}, {"daydr", "일일운행정보"}, {"day_fuel", "일일소모량조회"}};
    for (const QString& book : books) {
        const QString pdf = app.Path("pdf/" + QFileInfo(book).completeBaseName() + ".pdf");
        EXPECT_GT(QFileInfo(pdf).size(), 1000) << pdf.toStdString() << convert.readAllStandardError().toStdString();
    }
    for (const auto& t : titles) {
        const QString text = test::Pdf_Text(app.Path(QString("pdf/%1.pdf").arg(t.name)));
        EXPECT_TRUE(text.contains(QString::fromUtf8(t.title))) << t.name << ": " << text.left(200).toStdString();
    }
    qunsetenv("VEX_LANG");
}
