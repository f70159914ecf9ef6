// The reference, month, day, section and fuel windows on two received
// days, reached from the main window's tree and buttons as a user reaches
// them: every reference report a workbook, the month's grid down to one
// car's days, the sections printed and written, the fuel grids, and the
// seconds export of the analysis form in both directions.
#include "GuiFixture.h"

#include "core/Messages.h"
#include "forms/Excel_Show.h"
#include "forms/Frm_consume.h"
#include "forms/Frm_daydrive.h"
#include "forms/Report_Print.h"
#include "forms/frmReport_Main.h"
#include "forms/frmReport_Reference.h"
#include "forms/frm_CarCondition.h"
#include "forms/frm_dayreport.h"
#include "forms/frm_daystatus.h"
#include "forms/frm_overfuel.h"
#include "forms/logic/Nav_Logic.h"
#include "support/PdfRead.h"
#include "support/XlsxRead.h"

#include <QFileInfo>
#include <QPrinter>
#include <gtest/gtest.h>

using namespace vex;
using namespace vex::forms;

namespace {

class ReferenceForms : public test::GuiTest {
protected:
    void SetUp() override
    {
        test::GuiTest::SetUp();
        Set_Excel_Opener([this](const QString& path) {
            opened << path;
            return true;
        });
    }
    void TearDown() override
    {
        Set_Excel_Opener({});
        Set_Printer_Setup_Hook({});
        Set_Printer_List_Hook({});
        test::GuiTest::TearDown();
    }
    QString Take_Opened()
    {
        const QString last = opened.isEmpty() ? QString() : opened.last();
        opened.clear();
        return last;
    }
    QStringList opened;
};

} // namespace

TEST_F(ReferenceForms, EveryReferenceReportFromTheTreeIsAWorkbook)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    // Tree nodes 32 to 37 open the form at options 0 to 5.
    const struct { int node; const char* file; const char* title; } reports[] = {
        {32, "driverday1_000123_260101_260131.xlsx", "일자별 운전원 운행 상황 집계"},
        {33, "drivertotal1_260101_260131.xlsx", "운전원별 운행 상황 총괄표"},
        {34, "speedrate_000123_260101_260131.xlsx", "운전원 운행 속도별 집계표"},
        {35, "carday_12AB00_260101_260131.xlsx", "일자별 차량 운행 상황 집계"},
        {36, "cartotal_12AB00_260101_260131.xlsx", "차량별 운행 상황 총괄표"},
        {37, "carday1_260101_260131.xlsx", "일자별 차량별 운행상황 집계"}};
    for (const auto& r : reports) {
        m->Run(Tree_Action(r.node));
        auto* f = qobject_cast<frmReport_Reference*>(Find_Form("frmReport_Reference"));
        ASSERT_NE(f, nullptr);
        EXPECT_EQ(f->Option(), r.node - 32);
        EXPECT_TRUE(f->Opt_Report_Type[r.node - 32]->isChecked());
        f->TDBDate1->setDate(QDate(2026, 1, 1));
        f->TDBDate2->setDate(QDate(2026, 1, 31));
        f->TDBCombo1->setCurrentText("12AB00");
        f->TDBCombo2->setCurrentText(r.node == 33 ? "ALL" : "000123");
        msgs.Clear();
        QTest::mouseClick(f->Command1, Qt::LeftButton);
        const QString path = Take_Opened();
        ASSERT_FALSE(path.isEmpty()) << r.file << " " << msgs.Last().toStdString();
        EXPECT_EQ(QFileInfo(path).fileName(), r.file);
        const test::Xlsx_Sheet s = test::Read_Xlsx(path, "list");
        ASSERT_TRUE(s.ok) << s.error.toStdString();
        EXPECT_EQ(s.Value("A1"), QString::fromUtf8(r.title));
        EXPECT_GE(s.Last_Row(), 5);
    }
    // A period without trips: message 1135 and nothing opened.
    auto* f = qobject_cast<frmReport_Reference*>(Find_Form("frmReport_Reference"));
    f->TDBDate1->setDate(QDate(2025, 1, 1));
    f->TDBDate2->setDate(QDate(2025, 1, 31));
    msgs.Clear();
    QTest::mouseClick(f->Command1, Qt::LeftButton);
    EXPECT_TRUE(opened.isEmpty());
    EXPECT_EQ(msgs.Last(), LoadResString(1135));
}

TEST_F(ReferenceForms, TheMonthGridOpensACarsDaysAndBothGoIntoTheirTemplates)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    QTest::mouseClick(m->SSCommand[8], Qt::LeftButton);
    auto* month = qobject_cast<frm_CarCondition*>(Find_Form("frm_CarCondition"));
    ASSERT_NE(month, nullptr);
    EXPECT_EQ(month->Combo1->currentText(), "2026/01");
    ASSERT_EQ(month->Grid1->rowCount(), 1);
    EXPECT_EQ(month->Grid1->item(0, 1)->text(), "12AB00");
    QTest::mouseClick(month->Command3, Qt::LeftButton);
    const test::Xlsx_Sheet c = test::Read_Xlsx(Take_Opened(), "condition");
    ASSERT_TRUE(c.ok) << c.error.toStdString();
    EXPECT_EQ(c.Value("A1"), "월간운행실태(차량)");
    EXPECT_EQ(c.Value("B5"), "12AB00");
    EXPECT_EQ(c.Value("M5").toDouble(), month->Grid1->item(0, 12)->text().toDouble());

    // By driver.
    month->Opt_Driver->click();
    QTest::mouseClick(month->Command1, Qt::LeftButton);
    ASSERT_EQ(month->Grid1->rowCount(), 1);
    EXPECT_EQ(month->Grid1->item(0, 1)->text(), "000123");

    month->Grid1->selectRow(0);
    QTest::mouseClick(month->Command2, Qt::LeftButton);
    auto* days = qobject_cast<frm_daystatus*>(Find_Form("frm_daystatus"));
    ASSERT_NE(days, nullptr);
    ASSERT_EQ(days->Grid1->rowCount(), 2);
    EXPECT_EQ(days->Grid1->item(0, 2)->text(), "2026-01-05");
    EXPECT_EQ(days->Grid1->item(1, 2)->text(), "2026-01-06");
    QTest::mouseClick(days->Command1, Qt::LeftButton);
    const test::Xlsx_Sheet d = test::Read_Xlsx(Take_Opened(), "condition");
    ASSERT_TRUE(d.ok) << d.error.toStdString();
    EXPECT_EQ(d.Value("C5"), "2026-01-05");
    EXPECT_EQ(d.Value("D6"), "000123");
    EXPECT_EQ(d.Last_Row(), 6);
}

TEST_F(ReferenceForms, SectionsOfADayOnPaperAndInTheirWorkbook)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    m->Run(Tree_Action(30)); // e9 "구간거리"
    auto* f = qobject_cast<frm_dayreport*>(Find_Form("frm_dayreport"));
    ASSERT_NE(f, nullptr);
    f->TDBDate1->setDate(QDate(2026, 1, 5));
    f->Text1->setValue(1440);
    QTest::mouseClick(f->Command1, Qt::LeftButton);
    // A threshold of a whole day leaves one section a trip.
    ASSERT_EQ(f->Grid1->rowCount(), 1);
    EXPECT_EQ(f->Grid1->item(0, 0)->text(), "12AB00");
    const double wholeKm = f->Grid1->item(0, 3)->text().toDouble();
    EXPECT_GT(wholeKm, 0);
    f->Text1->setValue(1);
    QTest::mouseClick(f->Command1, Qt::LeftButton);
    ASSERT_GE(f->Grid1->rowCount(), 1);
    double km = 0;
    for (int r = 0; r < f->Grid1->rowCount(); ++r)
        km += f->Grid1->item(r, 3)->text().toDouble();
    EXPECT_NEAR(km, wholeKm, 0.05 * f->Grid1->rowCount());

    QTest::mouseClick(f->Command3, Qt::LeftButton);
    const test::Xlsx_Sheet s = test::Read_Xlsx(Take_Opened(), "condition");
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    EXPECT_EQ(s.Value("A1"), "일일운행정보");
    EXPECT_EQ(s.Value("B2"), "2026-01-05");
    EXPECT_EQ(s.Last_Row(), 4 + f->Grid1->rowCount());

    QTemporaryDir out;
    const QString pdf = out.filePath("sections.pdf");
    Set_Printer_List_Hook([] { return QStringList{"PDF"}; });
    Set_Printer_Setup_Hook([&](QPrinter& p) {
        p.setOutputFormat(QPrinter::PdfFormat);
        p.setOutputFileName(pdf);
        return true;
    });
    QTest::mouseClick(f->Command2, Qt::LeftButton);
    const QString text = test::Pdf_Text(pdf);
    EXPECT_TRUE(text.contains("일일운행정보")) << text.toStdString();
    EXPECT_TRUE(text.contains("12AB00"));
    EXPECT_TRUE(text.contains("운전시작일시"));
}

TEST_F(ReferenceForms, FuelOfTheMonthAndOfTheDay)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    // The car's rating, which the day estimate divides by.
    Recordset car = G().DB->DB_RSet_D_D("SELECT * FROM S_D1 WHERE D_F1=?", {"12AB00"});
    ASSERT_EQ(car.RecordCount(), 1);
    car.Set("D_F7", "8");
    car.Update();

    QTest::mouseClick(m->SSCommand[13], Qt::LeftButton);
    auto* over = qobject_cast<frm_overfuel*>(Find_Form("frm_overfuel"));
    ASSERT_NE(over, nullptr);
    EXPECT_EQ(over->Combo4->currentText(), "2026/01");
    QTest::mouseClick(over->Command1, Qt::LeftButton);
    ASSERT_EQ(over->Grid1->rowCount(), 2);
    EXPECT_EQ(over->Grid1->item(0, 1)->text(), "12AB00");
    EXPECT_EQ(over->Grid1->item(1, 1)->text(), "소 계");
    EXPECT_EQ(over->Grid1->item(1, 6)->text(), over->Grid1->item(0, 6)->text());

    QTest::mouseClick(over->Command3, Qt::LeftButton);
    auto* day = qobject_cast<Frm_consume*>(Find_Form("Frm_consume"));
    ASSERT_NE(day, nullptr);
    day->TDBDate1->setDate(QDate(2026, 1, 5));
    QTest::mouseClick(day->Command1, Qt::LeftButton);
    ASSERT_EQ(day->Grid1->rowCount(), 1);
    EXPECT_GT(day->Grid1->item(0, 4)->text().toDouble(), 0); // litres from the day file
    QTest::mouseClick(day->Command3, Qt::LeftButton);
    const test::Xlsx_Sheet s = test::Read_Xlsx(Take_Opened(), "condition");
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    EXPECT_EQ(s.Value("A1"), "일일소모량조회");
    EXPECT_EQ(s.Value("B5"), "12AB00");
    EXPECT_TRUE(s.formats.value("G5").contains("#0.000"));

    // The same window a second time, from the day's status.
    QTest::mouseClick(m->SSCommand[6], Qt::LeftButton);
    auto* status = qobject_cast<Frm_daydrive*>(Find_Form("Frm_daydrive"));
    ASSERT_NE(status, nullptr);
    QTest::mouseClick(status->Command3, Qt::LeftButton);
    auto* second = qobject_cast<Frm_consume1*>(Find_Form("Frm_consume1"));
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->TDBDate1->date(), status->TDBDate1->date());
    EXPECT_EQ(second->Grid1->rowCount(), status->Grid1->rowCount());

    // A car rated 0: the list ends there and the window says why.
    car = G().DB->DB_RSet_D_D("SELECT * FROM S_D1 WHERE D_F1=?", {"12AB00"});
    car.Set("D_F7", "0");
    car.Update();
    msgs.Clear();
    QTest::mouseClick(day->Command1, Qt::LeftButton);
    EXPECT_EQ(day->Grid1->rowCount(), 0);
    EXPECT_TRUE(msgs.Last().contains("12AB00")) << msgs.Last().toStdString();
}

TEST_F(ReferenceForms, TheSecondsOfAPeriodToAWorkbookOrToText)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    m->Run(Tree_Action(31)); // e10 opens option 8
    auto* f = qobject_cast<frmReport_Main*>(Find_Form("frmReport_Main"));
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->Option(), 8);
    EXPECT_TRUE(f->Combo1->isEnabled());
    f->TDBCombo1->setCurrentText("12AB00");
    f->TDBCombo2->setCurrentText("000123");
    f->TDBDate1->setDate(QDate(2026, 1, 5));
    f->TDBTime1->setTime(QTime(12, 0));
    f->TDBDate2->setDate(QDate(2026, 1, 5));
    f->TDBTime2->setTime(QTime(12, 9));
    f->Combo1->setCurrentText("Excel");
    QTest::mouseClick(f->Command1, Qt::LeftButton);
    const QString sheet = Take_Opened();
    ASSERT_FALSE(sheet.isEmpty()) << msgs.Last().toStdString();
    const test::Xlsx_Sheet s = test::Read_Xlsx(sheet, "list");
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    EXPECT_EQ(s.Value("B5"), "12:00:00");
    EXPECT_EQ(s.Value("B604"), "12:09:59");
    EXPECT_EQ(s.Last_Row(), 604);

    f->Combo1->setCurrentText("Text");
    QTest::mouseClick(f->Command1, Qt::LeftButton);
    const QString text = Take_Opened();
    EXPECT_EQ(QFileInfo(text).fileName(), "12AB00_000123_260105_260105.dat");
    QFile file(text);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().count('\n'), 600);
}
