// The keeping windows from the main window on received days: optimise,
// export with its delete, import, delete, re-key, rebuild, the check and
// the move, each as a user runs it.
#include "GuiFixture.h"

#include "core/Messages.h"
#include "forms/Frm_st.h"
#include "forms/frmDB_Main.h"
#include "forms/frmDB_Main1.h"
#include "forms/frmPack_delete.h"
#include "forms/frmPack_export.h"
#include "forms/frmPack_export1.h"
#include "forms/frmPack_export2.h"
#include "forms/frm_DBk.h"
#include "forms/frm_dbmove.h"
#include "forms/logic/Nav_Logic.h"
#include "support/CliRun.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

using namespace vex;
using namespace vex::forms;

class KeepingTest : public test::GuiTest {
protected:
    MDIForm_Main* Start_With_Days()
    {
        static QTemporaryDir medium;
        static bool made = false;
        if (!made) {
            const test::CliRun r = test::Vexcli({"sample", "usb", "--model", "250", "--out", medium.path(), "--car",
                                                 "12AB00", "--driver", "000123", "--from", "260105", "--days", "2"});
            EXPECT_EQ(r.code, 0) << r.err.toStdString();
            made = true;
        }
        const test::CliRun r =
            test::Vexcli({"--app-dir", app.Dir(), "receive", "usb", "--model", "250", "--medium", medium.path()});
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        return Login();
    }
    template <class F>
    F* Tree(MDIForm_Main* m, int index)
    {
        m->Run(Tree_Action(index));
        return qobject_cast<F*>(Find_Form(QString::fromLatin1(F::kName)));
    }
    void Click(QWidget* w) { QTest::mouseClick(w, Qt::LeftButton); }
    void Period(QDateEdit* const* dates)
    {
        dates[0]->setDate(QDate(2026, 1, 1));
        dates[1]->setDate(QDate(2026, 1, 31));
    }
};

} // namespace

TEST_F(KeepingTest, ExportDeleteImportFromTheTree)
{
    MDIForm_Main* m = Start_With_Days();
    ASSERT_NE(m, nullptr);
    ASSERT_EQ(Rows("SELECT * FROM D_D1"), 2);

    // Export, and yes to the delete that follows.
    auto* exp = Tree<frmPack_export>(m, 11);
    ASSERT_NE(exp, nullptr);
    Period(exp->TDBDate1);
    exp->Text_Name->setText("gui");
    msgs.answer = QMessageBox::Yes;
    Click(exp->Cmd_Run);
    EXPECT_EQ(msgs.Last(), "삭제 되었습니다.");
    EXPECT_TRUE(QFile::exists(app.Path("Exp/gui.zip")));
    // The question said where the package went and what would go, and
    // Enter would have kept the days.
    ASSERT_GE(msgs.seen.size(), 2u);
    const Msg_Record& question = msgs.seen[msgs.seen.size() - 2];
    EXPECT_TRUE(question.text.contains(QDir::toNativeSeparators(app.Path("exp/gui.zip")))) << question.text.toStdString();
    EXPECT_TRUE(question.text.contains("2일")) << question.text.toStdString();
    EXPECT_TRUE(question.text.endsWith("내보낸 데이터를 삭제하시겠읍니까?"));
    EXPECT_EQ(question.defaultButton, QMessageBox::No);
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 0);

    // Import through frmDB_Main in its second mode: without a file, 1243.
    auto* db = Tree<frmDB_Main>(m, 12);
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(db->Mode(), 2);
    EXPECT_EQ(db->windowTitle(), LoadResString(1197));
    Click(db->Command1[0]);
    EXPECT_EQ(msgs.Last(), LoadResString(1243));
    db->TDBText4->setText(app.Path("Exp/gui.zip"));
    Click(db->Command1[0]);
    // The ledger's line of the package last: its drivers are in no register here.
    EXPECT_EQ(msgs.Last(), "완료\n" + LoadResString(5112).arg(2).arg(2));
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 2);

    // Delete of one car: No keeps, Yes deletes.
    auto* del = Tree<frmPack_delete>(m, 13);
    ASSERT_NE(del, nullptr);
    Period(del->TDBDate1);
    del->Combo1->setCurrentText("12AB00");
    msgs.answer = QMessageBox::No;
    Click(del->Cmd_Run);
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 2);
    EXPECT_TRUE(msgs.Last().startsWith(LoadResString(1150)));
    EXPECT_TRUE(msgs.Last().contains("2일 (차량 12AB00, 모든 운전원, 260101 ~ 260131)")) << msgs.Last().toStdString();
    EXPECT_EQ(msgs.seen.back().defaultButton, QMessageBox::No);
    msgs.answer = QMessageBox::Yes;
    Click(del->Cmd_Run);
    EXPECT_EQ(msgs.Last(), LoadResString(154));
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 0);
}

TEST_F(KeepingTest, OptimiseRekeyRebuildCheckAndMove)
{
    MDIForm_Main* m = Start_With_Days();
    ASSERT_NE(m, nullptr);

    auto* db = Tree<frmDB_Main>(m, 10);
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(db->Mode(), 1);
    EXPECT_FALSE(db->TDBText1->text().isEmpty());
    Click(db->Command1[0]);
    EXPECT_TRUE(msgs.Last().startsWith("최적화가 완료되었읍니다.")) << msgs.Last().toStdString();
    EXPECT_TRUE(QFile::exists(app.Path("db/temp2.mdb")));

    m->Run(Button_Action(12));
    auto* rekey = qobject_cast<frmPack_export2*>(Find_Form("frmPack_export2"));
    ASSERT_NE(rekey, nullptr);
    Period(rekey->TDBDate1);
    rekey->Combo1->setCurrentText("12AB00");
    rekey->Combo2->setCurrentText("000123");
    rekey->Text_New->setText("000777");
    Click(rekey->Cmd_Run);
    EXPECT_EQ(msgs.Last(), "완료");
    EXPECT_EQ(Rows("SELECT * FROM D_D1 WHERE D_F3 = '000777'"), 2);

    auto* rebuild = Tree<frmDB_Main1>(m, 21);
    ASSERT_NE(rebuild, nullptr);
    Click(rebuild->Cmd_Start);
    EXPECT_EQ(msgs.Last(), "차량번호를 입력하세요");
    G().DB->Execute("DELETE * FROM D_D1 WHERE D_F4 = '260106'");
    rebuild->Text_Car->setText("12AB00");
    rebuild->Text_File->setText(app.Path("pack/12AB00/260106/260106000777.vex"));
    Click(rebuild->Cmd_Start);
    EXPECT_EQ(msgs.Last(), "완  료");
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 2);

    auto* check = Tree<frm_DBk>(m, 41);
    ASSERT_NE(check, nullptr);
    EXPECT_EQ(check->Text_Day->text(), "2026-01-06");

    // The move from an older installation: this site's database, copied.
    QDir().mkpath(app.Path("old/db"));
    ASSERT_TRUE(QFile::copy(app.Path("db/morix.mdb"), app.Path("old/db/morix.mdb")));
    G().DB->Execute("DELETE * FROM D_D1");
    m->Run(Button_Action(3));
    auto* move = qobject_cast<frm_dbmove*>(Find_Form("frm_dbmove"));
    ASSERT_NE(move, nullptr);
    EXPECT_EQ(move->Text_Path->text(), "c:\\program files\\morix\\vex\\db\\morix.mdb");
    // Each option says what it reads.
    EXPECT_EQ(move->SSOption[1]->text(), "1: VEX (모든 표, 운행 파일 포함)");
    EXPECT_EQ(move->SSOption[2]->text(), "2: VEX (D_D4, D_D9, D_DI 없음)");
    EXPECT_EQ(move->SSOption[3]->text(), "3: VEX250 (D_D9, D_DI 없음)");
    move->Text_Path->setText(app.Path("old/db/morix.mdb"));
    move->TDBDate1->setDate(QDate(2026, 1, 1));
    Click(move->Cmd_Save);
    EXPECT_TRUE(msgs.Last().startsWith("완료")) << msgs.Last().toStdString();
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 2);
}

TEST_F(KeepingTest, BackupFromItsWindow)
{
    MDIForm_Main* m = Start_With_Days();
    ASSERT_NE(m, nullptr);
    auto* backup = Open<frmPack_export1>(m);
    ASSERT_NE(backup, nullptr);
    EXPECT_EQ(backup->TDBDate1[0]->date(), QDate(2026, 1, 1));
    EXPECT_EQ(backup->TDBDate1[1]->date(), QDate(2026, 1, 31));
    backup->TDBDate1[1]->setDate(QDate(2026, 1, 5));
    Click(backup->Cmd_Save);
    EXPECT_TRUE(msgs.Last().contains("최적화가 완료되었읍니다.")) << msgs.Last().toStdString();
    EXPECT_EQ(backup->ProgressBar1->value(), 16);
    EXPECT_TRUE(QFile::exists(app.Path("Exp/260101260105.zip")));
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 1);
}

TEST_F(KeepingTest, AgencyFilesWithTheirCheckFirst)
{
    MDIForm_Main* m = Start_With_Days();
    ASSERT_NE(m, nullptr);
    m->Run(Button_Action(11));
    auto* st = qobject_cast<Frm_st*>(Find_Form("Frm_st"));
    ASSERT_NE(st, nullptr);
    Click(st->Cmd_Save);
    EXPECT_EQ(msgs.Last(), "회사명과 사업자번호를 입력하신 후 저장 버튼을 누르세요 !");
    st->Text1->setText("운수회사");
    st->Text2->setText("123");
    Click(st->Command2);
    EXPECT_EQ(msgs.Last(), "저장되었습니다");
    Period(st->TDBDate1);
    // The received car has model "250" and its day files: nothing to skip.
    msgs.answer = QMessageBox::Yes;
    Click(st->Cmd_Save);
    EXPECT_EQ(msgs.Last(), "완료");
    EXPECT_EQ(st->Text2->text(), "0000000123");
    EXPECT_EQ(QDir(app.Path("report/1")).entryList(QDir::Files).size(), 2);
    // A day without its day file is listed before the run.
    QFile::remove(app.Path("pack/12AB00/260106/260106000123.vex"));
    msgs.answer = QMessageBox::No;
    Click(st->Cmd_Save);
    EXPECT_TRUE(st->Text_Check->toPlainText().contains("without its day file"));
    EXPECT_EQ(QDir(app.Path("report/1")).entryList(QDir::Files).size(), 2) << "No leaves the last files alone";
}
