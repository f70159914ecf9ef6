// The event lists of the analysis form as workbooks: each report of a
// received day opened through the desktop's opener and read back, message
// 1135 for a list without rows, and the saved file named in a box when no
// spreadsheet program opens it.
#include "GuiFixture.h"

#include "forms/Excel_Show.h"
#include "forms/Frm_daydrive.h"
#include "forms/MDIForm_Main.h"
#include "core/Messages.h"
#include "forms/frmReport_Main.h"
#include "forms/logic/Nav_Logic.h"
#include "support/XlsxRead.h"

#include <QFileInfo>
#include <gtest/gtest.h>

using namespace vex;
using namespace vex::forms;

namespace {

class ExcelForms : public test::GuiTest {
protected:
    void TearDown() override
    {
        Set_Excel_Opener({});
        test::GuiTest::TearDown();
    }
};

} // namespace

TEST_F(ExcelForms, EveryEventListOfTheAnalysisFormIsAWorkbookOrMessage1135)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    QStringList opened;
    Set_Excel_Opener([&](const QString& path) {
        opened << path;
        return true;
    });
    m->Run(Tree_Action(23));
    auto* f = qobject_cast<frmReport_Main*>(Find_Form("frmReport_Main"));
    ASSERT_NE(f, nullptr);
    f->TDBCombo1->setCurrentText("12AB00");
    f->TDBCombo2->setCurrentText("000123");
    f->TDBDate1->setDate(QDate(2026, 1, 1));
    // option, table, template name
    const struct { int option; const char* table; const char* file; const char* title; } lists[] = {
        {2, "D_D2", "brake", "급제동 분석"}, {3, "D_D9", "overspeed", "과속 상황 분석"},
        {4, "D_D6", "longover", "장기 과속 분석"}, {5, "D_D4", "quick_speed", "급가속 분석"},
        {6, "D_DI", "idle", "IDLE 분석"}};
    int written = 0;
    for (const auto& l : lists) {
        f->Opt_Report_Type[l.option]->click();
        f->TDBDate2->setDate(QDate(2026, 1, 31));
        opened.clear();
        msgs.Clear();
        QTest::mouseClick(f->Command1, Qt::LeftButton);
        const int rows = Rows(QStringLiteral("SELECT * FROM %1").arg(l.table));
        if (rows == 0) {
            EXPECT_TRUE(opened.isEmpty()) << l.file;
            EXPECT_EQ(msgs.Last(), LoadResString(1135)) << l.file;
            continue;
        }
        ASSERT_EQ(opened.size(), 1) << l.file << " " << msgs.Last().toStdString();
        EXPECT_EQ(QFileInfo(opened[0]).fileName(), QString(l.file) + "_260101_260131.xlsx");
        const test::Xlsx_Sheet s = test::Read_Xlsx(opened[0], "list");
        ASSERT_TRUE(s.ok) << s.error.toStdString();
        EXPECT_EQ(s.Value("A1"), QString::fromUtf8(l.title));
        EXPECT_TRUE(s.Last_Row() >= 5);
        ++written;
    }
    EXPECT_GT(written, 0);

    // No spreadsheet program: the box names the saved file and what to do.
    Set_Excel_Opener([](const QString&) { return false; });
    f->Opt_Report_Type[2]->click();
    f->TDBDate2->setDate(QDate(2026, 1, 31));
    msgs.Clear();
    QTest::mouseClick(f->Command1, Qt::LeftButton);
    if (Rows("SELECT * FROM D_D2") > 0)
        EXPECT_TRUE(msgs.Last().contains("brake_260101_260131.xlsx\n")) << msgs.Last().toStdString();
}

TEST_F(ExcelForms, TheDayGridGoesIntoItsTemplateAsItStands)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    QStringList opened;
    Set_Excel_Opener([&](const QString& path) {
        opened << path;
        return true;
    });
    QTest::mouseClick(m->SSCommand[6], Qt::LeftButton);
    auto* grid = qobject_cast<Frm_daydrive*>(Find_Form("Frm_daydrive"));
    ASSERT_NE(grid, nullptr);
    ASSERT_GE(grid->Grid1->rowCount(), 1);
    QTest::mouseClick(grid->Command2, Qt::LeftButton);
    ASSERT_EQ(opened.size(), 1) << msgs.Last().toStdString();
    const test::Xlsx_Sheet s = test::Read_Xlsx(opened[0], "condition");
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    EXPECT_EQ(s.Value("A1"), "일일운행실태");
    EXPECT_EQ(s.Value("A2"), LoadResString(1033));
    EXPECT_EQ(s.Value("B2"), grid->TDBDate1->date().toString("yyyy-MM-dd"));
    EXPECT_EQ(s.Value("B4"), LoadResString(632));
    const int rows = grid->Grid1->rowCount();
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < 12; ++c) {
            const QString ref = QString(QChar('A' + c)) + QString::number(5 + r);
            const QString cell = grid->Grid1->item(r, c)->text();
            // Figures come back as numbers ("12.0" may read as "12.0" or "12").
            EXPECT_TRUE(s.Value(ref) == cell || s.Value(ref).toDouble() == cell.toDouble()) << ref.toStdString();
        }
    EXPECT_EQ(s.Last_Row(), 4 + rows);
    EXPECT_EQ(s.formats.value(QString("L%1").arg(4 + rows)), s.formats.value("L5"));
}

TEST_F(ExcelForms, AWorkbookNothingCanOpenIsShownWithACopyablePath)
{
    Set_Excel_Opener([](const QString&) { return false; });
    Excel_Result r;
    r.outcome = Excel_Result::Written;
    r.path = app.Path("report/carday.xlsx");
    Excel_Show(r);
    ASSERT_EQ(msgs.seen.size(), 1u);
    EXPECT_TRUE(msgs.Last().contains(r.path)) << msgs.Last().toStdString();
    EXPECT_TRUE(msgs.Last().contains("LibreOffice Calc")) << msgs.Last().toStdString();
}
