// Cancel pressed while long work runs: at a progress point the work has
// told (each waits until the window has shown it), so what stayed is known.
// An import keeps the packages taken before, a backup keeps every day
// unless its delete went through whole, a spreadsheet saves nothing.
#include "GuiFixture.h"

#include "core/Messages.h"
#include "forms/Excel_Show.h"
#include "forms/frmDB_Main.h"
#include "forms/frmPack_export1.h"
#include "forms/frmReport_Main.h"
#include "forms/frmReport_Reference.h"
#include "forms/logic/Nav_Logic.h"
#include "store/Job_Runner.h"
#include "support/CliRun.h"

#include <QDir>
#include <QFile>
#include <QProgressDialog>
#include <QPushButton>

namespace {

using namespace vex;
using namespace vex::forms;

const QString kCancelled = QStringLiteral("작업이 취소되었습니다.");

class CancelTest : public test::GuiTest {
protected:
    void TearDown() override
    {
        Job_Runner::Set_Start_Hook({});
        Set_Excel_Opener({});
        test::GuiTest::TearDown();
    }
    // At the first progress of every job for which at(text, done) holds,
    // press(): the work waits there until it has run.
    void Cancel_At(std::function<bool(const QString&, int)> at, std::function<void()> press)
    {
        Job_Runner::Set_Start_Hook([this, at, press](Job_Runner& runner) {
            QObject::connect(&runner, &Job_Runner::Progress, &runner, [this, at, press](const QString& text, int done) {
                if (pressed || !at(text, done))
                    return;
                pressed = true;
                press();
            });
        });
    }
    // The Cancel of the progress dialog of a window, as a user presses it.
    static void Press_Dialog_Cancel(QWidget* window, const char* dialogName)
    {
        auto* dialog = window->findChild<QProgressDialog*>(QString::fromLatin1(dialogName));
        ASSERT_NE(dialog, nullptr);
        auto* cancel = dialog->findChild<QPushButton*>();
        ASSERT_NE(cancel, nullptr);
        ASSERT_TRUE(cancel->isVisible());
        QTest::mouseClick(cancel, Qt::LeftButton);
    }
    void Cli(const QStringList& args)
    {
        const test::CliRun r = test::Vexcli(QStringList{"--app-dir", app.Dir()} + args);
        ASSERT_EQ(r.code, 0) << r.err.toStdString();
    }
    int Days() { return Rows("SELECT * FROM D_D1"); }

    bool pressed = false;
};

} // namespace

TEST_F(CancelTest, AnImportCancelledBeforeItsSecondPackageKeepsTheFirstOnly)
{
    // Two packages of one day each, the days then deleted.
    Receive_Usb_Days();
    QDir().mkpath(app.Path("two"));
    Cli({"export", "--from", "260105", "--to", "260105", "--out", app.Path("two/a.zip")});
    Cli({"export", "--from", "260106", "--to", "260106", "--out", app.Path("two/b.zip")});
    Cli({"delete", "--from", "260101", "--to", "260131", "--car", "ALL", "--yes"});
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    ASSERT_EQ(Days(), 0);
    m->Run(Tree_Action(12));
    auto* db = qobject_cast<frmDB_Main*>(Find_Form(QString::fromLatin1(frmDB_Main::kName)));
    ASSERT_NE(db, nullptr);
    db->TDBText4->setText(app.Path("two"));
    Cancel_At([](const QString& text, int) { return text == "b.zip"; },
              [db] { Press_Dialog_Cancel(db, "Keep_Progress"); });
    QTest::mouseClick(db->Command1[0], Qt::LeftButton);
    ASSERT_TRUE(pressed);
    EXPECT_EQ(Days(), 1);
    EXPECT_EQ(Rows("SELECT * FROM D_D1 WHERE RIGHT(D_F1,6) = '260105'"), 1);
    EXPECT_TRUE(msgs.Last().startsWith(kCancelled)) << msgs.Last().toStdString();
    EXPECT_TRUE(msgs.Last().contains("D_D1 1")) << msgs.Last().toStdString();
    EXPECT_EQ(db->findChild<QProgressDialog*>(), nullptr);
}

TEST_F(CancelTest, ABackupCancelledLeavesEveryDayAndNoPackageOrAWholeOne)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    auto* backup = Open<frmPack_export1>(m);
    ASSERT_NE(backup, nullptr);
    EXPECT_FALSE(backup->Cmd_Cancel->isVisible());
    const QString zip = app.Path("Exp/260101260131.zip");
    const auto press = [backup] {
        EXPECT_TRUE(backup->Cmd_Cancel->isVisible());
        QTest::mouseClick(backup->Cmd_Cancel, Qt::LeftButton);
    };

    // Half way through the export: no package, every day.
    Cancel_At([](const QString& text, int done) { return text == "DB를 백업합니다" && done > 2; }, press);
    QTest::mouseClick(backup->Cmd_Save, Qt::LeftButton);
    ASSERT_TRUE(pressed);
    EXPECT_TRUE(msgs.Last().startsWith(kCancelled)) << msgs.Last().toStdString();
    EXPECT_FALSE(QFile::exists(zip));
    EXPECT_TRUE(QDir(app.Path("Exp")).entryList({"*.zip", "260101260131.mdb"}, QDir::Files).isEmpty());
    EXPECT_EQ(Days(), 2);
    EXPECT_FALSE(backup->Cmd_Cancel->isVisible());
    EXPECT_TRUE(backup->Cmd_Save->isEnabled());

    // During the delete: the package whole on disk, the delete rolled back.
    pressed = false;
    Cancel_At([](const QString& text, int) { return text == "DB를 삭제합니다"; }, press);
    QTest::mouseClick(backup->Cmd_Save, Qt::LeftButton);
    ASSERT_TRUE(pressed);
    EXPECT_TRUE(msgs.Last().startsWith(kCancelled)) << msgs.Last().toStdString();
    EXPECT_TRUE(msgs.Last().contains("260101260131.zip\n")) << msgs.Last().toStdString();
    EXPECT_FALSE(msgs.Last().contains(LoadResString(5067))) << "said as a cancel, not a failure";
    EXPECT_TRUE(QFile::exists(zip));
    EXPECT_EQ(Days(), 2);
}

TEST_F(CancelTest, ASpreadsheetCancelledBetweenItsRowsSavesNoFile)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    QStringList opened;
    Set_Excel_Opener([&](const QString& path) {
        opened << path;
        return true;
    });
    m->Run(Tree_Action(31)); // the seconds of a period
    auto* f = qobject_cast<frmReport_Main*>(Find_Form("frmReport_Main"));
    ASSERT_NE(f, nullptr);
    f->TDBCombo1->setCurrentText("12AB00");
    f->TDBCombo2->setCurrentText("000123");
    f->TDBDate1->setDate(QDate(2026, 1, 5));
    f->TDBTime1->setTime(QTime(0, 0));
    f->TDBDate2->setDate(QDate(2026, 1, 6));
    f->TDBTime2->setTime(QTime(23, 59));
    for (const char* kind : {"Excel", "Text"}) {
        pressed = false;
        msgs.Clear();
        f->Combo1->setCurrentText(kind);
        // On the second day's first sheet rows.
        Cancel_At([](const QString&, int percent) { return percent >= 50; },
                  [f] { Press_Dialog_Cancel(f, "Excel_Progress"); });
        QTest::mouseClick(f->Command1, Qt::LeftButton);
        ASSERT_TRUE(pressed) << kind;
        EXPECT_TRUE(opened.isEmpty()) << kind;
        EXPECT_TRUE(msgs.Last().startsWith(kCancelled)) << kind << " " << msgs.Last().toStdString();
    }

    // A day list between its rows.
    m->Run(Tree_Action(35));
    auto* days = qobject_cast<frmReport_Reference*>(Find_Form("frmReport_Reference"));
    ASSERT_NE(days, nullptr);
    days->TDBDate1->setDate(QDate(2026, 1, 1));
    days->TDBDate2->setDate(QDate(2026, 1, 31));
    days->TDBCombo1->setCurrentText("12AB00");
    pressed = false;
    msgs.Clear();
    Cancel_At([](const QString&, int percent) { return percent >= 50; },
              [days] { Press_Dialog_Cancel(days, "Excel_Progress"); });
    QTest::mouseClick(days->Command1, Qt::LeftButton);
    ASSERT_TRUE(pressed);
    EXPECT_TRUE(opened.isEmpty());
    EXPECT_TRUE(msgs.Last().startsWith(kCancelled)) << msgs.Last().toStdString();
    EXPECT_TRUE(QDir(app.Path("report")).entryList(QDir::Files).isEmpty());
    EXPECT_TRUE(QDir(app.Path("new")).entryList({"12AB00_*"}, QDir::Files | QDir::Hidden).isEmpty());
}
