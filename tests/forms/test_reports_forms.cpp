// The standards form, the recount of old trips behind its progress dialog,
// the daily report screen from the analysis form, and the print and preview
// buttons of every view and chart: onto a PDF in place of the print dialog,
// into a real print preview, to no printer at all, and through CUPS.
#include "GuiFixture.h"

#include "core/Cls_Config.h"
#include "core/Messages.h"
#include "forms/Report_Print.h"
#include "forms/frmRegister_Average.h"
#include "forms/frmReport_AvgDay.h"
#include "forms/frmReport_DriveDay1.h"
#include "forms/frmReport_Main.h"
#include "forms/frmReport_Operation.h"
#include "forms/frmReport_QuickBrake.h"
#include "forms/frmReport_SecOperation.h"
#include "forms/logic/Nav_Logic.h"
#include "support/PdfRead.h"

#include <QDateTime>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QProgressDialog>
#include <QTimer>

namespace {

using namespace vex;
using namespace vex::forms;

class ReportForms : public test::GuiTest {
protected:
    void TearDown() override
    {
        Set_Printer_List_Hook({});
        Set_Printer_Setup_Hook({});
        test::GuiTest::TearDown();
    }
    // Printing goes to numbered PDF files in place of the print dialog.
    void Print_To_Files()
    {
        Set_Printer_List_Hook([] { return QStringList{"PDF"}; });
        Set_Printer_Setup_Hook([this](QPrinter& p) {
            p.setOutputFormat(QPrinter::PdfFormat);
            p.setOutputFileName(Next_File());
            return true;
        });
    }
    QString Next_File() { return files.filePath(QString::number(++printed) + ".pdf"); }
    QString Last_Text() const { return test::Pdf_Text(files.filePath(QString::number(printed) + ".pdf")); }
    // The daily report screen of 260105 through the analysis form (e8).
    frmReport_DriveDay1* Daily(MDIForm_Main* m, const QDate& day = QDate(2026, 1, 5))
    {
        m->Run(Tree_Action(29));
        auto* f = qobject_cast<frmReport_Main*>(Find_Form("frmReport_Main"));
        EXPECT_NE(f, nullptr);
        if (!f)
            return nullptr;
        EXPECT_EQ(f->Option(), 7);
        f->TDBDate1->setDate(day);
        QTest::mouseClick(f->Command1, Qt::LeftButton);
        QApplication::processEvents();
        return qobject_cast<frmReport_DriveDay1*>(Find_Form("frmReport_DriveDay1"));
    }
    QString Mark(const QString& day)
    {
        return Value("SELECT * FROM D_D1 WHERE D_F1=?", "D_F14", {"12AB00000123" + day});
    }
    QTemporaryDir files;
    int printed = 0;
};

} // namespace

TEST_F(ReportForms, StandardsAreSavedAtOnceAndOldTripsRecountedBehindAProgressDialog)
{
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    m->Run(Tree_Action(16)); // b3: "평가기준 관리"
    auto* f = qobject_cast<frmRegister_Average*>(Find_Form("frmRegister_Average"));
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->windowTitle(), "평가기준 관리");
    EXPECT_EQ(f->SSPanel6->text(), "기준 일자");
    EXPECT_EQ(f->Label1[1]->text(), "기준점수");
    EXPECT_EQ(f->Label1[9]->text(), "급제동 기준(km/h)");
    EXPECT_EQ(f->Label1[13]->text(), "그래프 최저 점수");
    EXPECT_EQ(f->Command3->text(), "새 기준 적용");
    EXPECT_EQ(f->TDBNum_Car[3]->text(), "80");

    // A number field takes no letters; saved, the numbers hold at once.
    f->TDBNum_Car[3]->clear();
    test::Type_Keys(f->TDBNum_Car[3], "8a5");
    EXPECT_EQ(f->TDBNum_Car[3]->text(), "85");
    f->TDBNum_Car[4]->setText("5");
    QTest::mouseClick(f->Command1, Qt::LeftButton);
    EXPECT_EQ(msgs.Last(), "저장 완료되었읍니다 !");
    EXPECT_EQ(Value("SELECT * FROM S_D10", "D_F3"), "85");
    EXPECT_EQ(G().Config->B_Val3, 85);
    EXPECT_EQ(G().Config->B_Val4, 5);
    // An empty field is named and nothing is saved.
    f->TDBNum_Car[2]->clear();
    QTest::mouseClick(f->Command1, Qt::LeftButton);
    EXPECT_TRUE(msgs.Last().contains("기준거리")) << msgs.Last().toStdString();
    EXPECT_EQ(Value("SELECT * FROM S_D10", "D_F2"), "100");
    // No trips: nothing to recount.
    QTest::mouseClick(f->Command3, Qt::LeftButton);
    EXPECT_EQ(msgs.Last(), LoadResString(1135));
}

TEST_F(ReportForms, TheRecountRunsBehindItsProgressAndEndsWithMessage1244)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    const QString before = Mark("260105");
    EXPECT_NE(before, "0");
    auto* f = qobject_cast<frmRegister_Average*>(m->Open_Window("frmRegister_Average"));
    ASSERT_NE(f, nullptr);
    // Five points an overspeed minute: the day of 114 minutes has none left.
    f->TDBNum_Car[4]->setText("5");
    QTest::mouseClick(f->Command1, Qt::LeftButton);
    int maximum = -1;
    QString label;
    QTimer::singleShot(0, f, [&] {
        if (f->Progress) {
            maximum = f->Progress->maximum();
            label = f->Progress->labelText();
        }
    });
    QTest::mouseClick(f->Command3, Qt::LeftButton);
    EXPECT_EQ(msgs.Last(), "수행 성공 !");
    EXPECT_EQ(maximum, 2);
    EXPECT_TRUE(label.startsWith("새 기준 적용")) << label.toStdString();
    EXPECT_EQ(f->Progress, nullptr);
    EXPECT_EQ(Mark("260105"), "0");
}

TEST_F(ReportForms, TheDailyReportScreenShowsTheBlocksOfItsDay)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    frmReport_DriveDay1* d = Daily(m);
    ASSERT_NE(d, nullptr);
    EXPECT_TRUE(d->Label1->text().contains("2026-01-05"));
    // Seventeen sections and the day's total.
    ASSERT_EQ(d->Grid1->rowCount(), 18);
    EXPECT_EQ(d->Grid1->item(0, 1)->text(), "06:30");
    EXPECT_EQ(d->Grid1->item(0, 3)->text(), "운행");
    EXPECT_EQ(d->Grid1->item(1, 3)->text(), "비운행");
    EXPECT_EQ(d->Grid1->item(17, 0)->text(), "일계");
    EXPECT_EQ(d->Grid1->horizontalHeaderItem(9)->text(), "T.Km");
    EXPECT_EQ(d->Grid2->item(0, 7)->text(),
              QString::number(Value("SELECT * FROM D_D1 WHERE D_F1=?", "D_F8", {"12AB00000123260105"}).toDouble() / 10,
                              'f', 1));
    EXPECT_EQ(d->Grid4->item(0, 0)->text(), Mark("260105"));
    ASSERT_EQ(d->VSFlexGrid5->rowCount(), 12);
    EXPECT_EQ(d->VSFlexGrid5->item(0, 0)->text(), "속도 센서");
    EXPECT_EQ(d->VSFlexGrid5->item(11, 1)->text(), "0%");

    // A day without data: message 1135, the analysis form stays alone.
    d->close();
    QApplication::processEvents();
    EXPECT_EQ(Daily(m, QDate(2026, 1, 7)), nullptr);
    EXPECT_EQ(msgs.Last(), LoadResString(1135));
}

TEST_F(ReportForms, EveryPrintButtonPrintsItsReport)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    Print_To_Files();
    frmReport_DriveDay1* d = Daily(m);
    ASSERT_NE(d, nullptr);
    QTest::mouseClick(d->Command2, Qt::LeftButton);
    EXPECT_TRUE(Last_Text().contains("* 별첨 (운행 정보) 참조"));
    d->Option1[1]->setChecked(true);
    QTest::mouseClick(d->Command2, Qt::LeftButton);
    EXPECT_TRUE(Last_Text().contains("배차 번호"));
    d->Option1[2]->setChecked(true);
    QTest::mouseClick(d->Command2, Qt::LeftButton);
    EXPECT_EQ(Last_Text().count("운행 정보"), 2);

    // The minute view, its seconds view, the quick-brake chart and the two
    // charts of marks, each from its own button.
    m->Run(Tree_Action(23));
    auto* f = qobject_cast<frmReport_Main*>(Find_Form("frmReport_Main"));
    ASSERT_NE(f, nullptr);
    QTest::mouseClick(f->Command1, Qt::LeftButton);
    auto* minute = qobject_cast<frmReport_Operation*>(Find_Form("frmReport_Operation"));
    ASSERT_NE(minute, nullptr);
    QTest::mouseClick(minute->Command1, Qt::LeftButton);
    EXPECT_TRUE(Last_Text().contains("차량 운행 상황 분석"));
    EXPECT_TRUE(Last_Text().contains("운전자 코드 : 000123"));
    QTest::mouseClick(minute->Command2, Qt::LeftButton);
    auto* hour = qobject_cast<frmReport_SecOperation*>(Find_Form("frmReport_SecOperation"));
    ASSERT_NE(hour, nullptr);
    QTest::mouseClick(hour->Command1, Qt::LeftButton);
    EXPECT_TRUE(Last_Text().contains("초당 운행 그래프"));
    QTest::mouseClick(f->cmdQuickBrake, Qt::LeftButton);
    auto* brake = qobject_cast<frmReport_QuickBrake*>(Find_Form("frmReport_QuickBrake"));
    ASSERT_NE(brake, nullptr);
    QTest::mouseClick(brake->Command1, Qt::LeftButton);
    EXPECT_TRUE(Last_Text().contains("속도 정밀 분석"));
    QTest::mouseClick(f->cmdAvgDay, Qt::LeftButton);
    auto* avg = qobject_cast<frmReport_AvgDay*>(Find_Form("frmReport_AvgDay"));
    ASSERT_NE(avg, nullptr);
    QTest::mouseClick(avg->Command2, Qt::LeftButton);
    EXPECT_TRUE(Last_Text().contains("운전원 평균 평점 그래프"));
    QTest::mouseClick(f->cmdDayAVG, Qt::LeftButton);
    auto* byDay = qobject_cast<frmReport_DayAVG*>(Find_Form("frmReport_DayAVG"));
    ASSERT_NE(byDay, nullptr);
    QTest::mouseClick(byDay->Command2, Qt::LeftButton);
    EXPECT_TRUE(Last_Text().contains("운전원 일별 평점 그래프"));
    EXPECT_EQ(printed, 8);
    // The views take their own proportions back after paper.
    EXPECT_EQ(minute->Graph_State().Out_Direction, 0);
}

TEST_F(ReportForms, NoPrinterSaysSoAndThePreviewShowsTheSamePages)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    frmReport_DriveDay1* d = Daily(m);
    ASSERT_NE(d, nullptr);

    Set_Printer_List_Hook([] { return QStringList{}; });
    Set_Printer_Setup_Hook([](QPrinter&) {
        ADD_FAILURE() << "no printer, no dialog";
        return false;
    });
    msgs.Clear();
    QTest::mouseClick(d->Command2, Qt::LeftButton);
    ASSERT_EQ(msgs.seen.size(), 1u);
    EXPECT_EQ(msgs.seen[0].text, "설치된 프린터가 없습니다.");
    EXPECT_EQ(msgs.seen[0].title, "출력 오류");
    QTest::mouseClick(d->Command1, Qt::LeftButton);
    EXPECT_EQ(msgs.seen.size(), 2u);

    // With a printer the preview is the routine's own pages.
    Set_Printer_List_Hook([] { return QStringList{"PDF"}; });
    int pages = -1;
    QString title;
    QTimer::singleShot(200, [&] {
        auto* preview = qobject_cast<QPrintPreviewDialog*>(QApplication::activeModalWidget());
        if (!preview)
            return;
        title = preview->windowTitle();
        if (auto* widget = preview->findChild<QPrintPreviewWidget*>())
            pages = widget->pageCount();
        preview->reject();
    });
    QTest::mouseClick(d->Command1, Qt::LeftButton);
    EXPECT_EQ(title, "미리보기");
    EXPECT_EQ(pages, 2);
}

TEST_F(ReportForms, TheDailyReportGoesThroughCupsToItsPrinter)
{
    QString why;
    const QString printer = test::Cups_Printer(&why);
    if (printer.isEmpty())
        GTEST_SKIP() << why.toStdString();
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    frmReport_DriveDay1* d = Daily(m);
    ASSERT_NE(d, nullptr);
    EXPECT_TRUE(Printer_Names().contains(printer));
    // The printer chosen by name, as the dialog would choose it.
    Set_Printer_Setup_Hook([&](QPrinter& p) {
        p.setPrinterName(printer);
        return true;
    });
    const qint64 sent = QDateTime::currentMSecsSinceEpoch();
    QTest::mouseClick(d->Command2, Qt::LeftButton);
    const QString pdf = test::Wait_For_Cups_Pdf(sent);
    ASSERT_FALSE(pdf.isEmpty()) << "cups-pdf wrote nothing";
    EXPECT_EQ(test::Pdf_Pages(pdf), 2);
    EXPECT_TRUE(test::Pdf_Text(pdf).contains("운전일보"));
}
