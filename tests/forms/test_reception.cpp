// The reception window against the analyzer emulator: connect, show what the
// pack holds, receive it into the database, with and without a date range.
#include "GuiFixture.h"

#include "acquisition/AnalyzerLink.h"
#include "core/Messages.h"
#include "forms/frmPack_Read1.h"
#include "forms/logic/Reception_Logic.h"
#include "platform/AppFolder.h"
#include "store/Job_Runner.h"
#include "support/CliRun.h"
#include "support/Emulator.h"

#include <algorithm>

#include <QDir>
#include <QTemporaryDir>
#include <QThread>

namespace {

using namespace vex;
using namespace vex::forms;
using vex::test::GuiTest;

class ReceptionTest : public GuiTest {
protected:
    void SetUp() override
    {
        GuiTest::SetUp();
        savedPorts_ = qgetenv("VEX_SERIAL_PORTS");
        hadPorts_ = qEnvironmentVariableIsSet("VEX_SERIAL_PORTS");
        image_ = tmp_.filePath("pack.img");
        // Three days of car 1234 and driver 5678 up to yesterday, the pack
        // last read at the start of the first (a pack without that stamp is
        // taken as read four days ago).
        first_ = QDate::currentDate().addDays(-3);
        const vex::test::CliRun r = vex::test::Vexcli(
            {"sample", "pack", "--out", image_, "--car", "1234", "--driver", "5678", "--from", Day(first_), "--days",
             "3", "--last-read", Day(first_) + "0000"});
        ASSERT_EQ(r.code, 0) << r.err.toStdString();
    }
    void TearDown() override
    {
        if (G().Port)
            G().Port->close();
        G().Link_Type = 0;
        if (hadPorts_)
            qputenv("VEX_SERIAL_PORTS", savedPorts_);
        else
            qunsetenv("VEX_SERIAL_PORTS");
        GuiTest::TearDown();
    }
    frmPack_Read1* Open_Reception()
    {
        MDIForm_Main* m = Login();
        if (!m)
            return nullptr;
        QTest::mouseClick(m->SSCommand[9], Qt::LeftButton);
        return static_cast<frmPack_Read1*>(Find_Form("frmPack_Read1"));
    }
    void Press(QPushButton* b) { QTest::mouseClick(b, Qt::LeftButton); }
    // The dialog connected to the emulator and past its info step; null
    // (with the failure reported) when a step didn't come through.
    frmPack_Read1* Ready_To_Receive(const vex::test::Emulator& emulator)
    {
        EXPECT_TRUE(emulator.Tty().startsWith("/dev/"));
        qputenv("VEX_SERIAL_PORTS", emulator.Tty().toLocal8Bit());
        frmPack_Read1* f = Open_Reception();
        if (!f)
            return nullptr;
        Press(f->Command3);
        Press(f->Cmd_Save);
        EXPECT_EQ(G().Link_Type, 1);
        EXPECT_EQ(f->Step(), "수신");
        return f->Step() == "수신" ? f : nullptr;
    }
    int Days_Of_Car() { return Rows("SELECT * FROM D_D1 WHERE D_F2 = ?", {"001234"}); }

    static QString Day(const QDate& d) { return d.toString("yyMMdd"); }

    QTemporaryDir tmp_;
    QString image_;
    QDate first_;

private:
    QByteArray savedPorts_;
    bool hadPorts_ = false;
};

TEST_F(ReceptionTest, PackFromTheAnalyzerEmulator)
{
    vex::test::Emulator emulator(image_);
    ASSERT_TRUE(emulator.Tty().startsWith("/dev/")) << emulator.Tty().toStdString();
    qputenv("VEX_SERIAL_PORTS", emulator.Tty().toLocal8Bit());
    frmPack_Read1* f = Open_Reception();
    ASSERT_NE(f, nullptr);
    MDIForm_Main* m = MDIForm_Main::Instance();
    EXPECT_EQ(f->windowTitle(), "데이터 수신");
    EXPECT_EQ(f->Step(), "정보보기");
    EXPECT_EQ(f->TDBDate1[0]->date(), QDate::currentDate());

    // Not connected yet.
    Press(f->Cmd_Save);
    EXPECT_EQ(msgs.Last(), "분석기 연결버튼을 누르세요");
    EXPECT_EQ(f->Step(), "정보보기");

    Press(f->Command3);
    EXPECT_EQ(G().Link_Type, 1);
    EXPECT_EQ(m->Panel[4]->text(), "SIO");
    EXPECT_EQ(m->Panel[1]->text(), "분석기 연결 완료");

    // Info: the pack's car, no reception yet, the pack's period.
    msgs.Clear();
    Press(f->Cmd_Save);
    EXPECT_TRUE(msgs.seen.empty()) << msgs.Last().toStdString();
    EXPECT_EQ(f->Text2->text(), "1234");
    EXPECT_EQ(f->Text1->text(), "00-00-00");
    EXPECT_EQ(f->Step(), "수신");
    EXPECT_EQ(f->TDBDate1[1]->date(), first_.addDays(2));
    EXPECT_LE(f->TDBDate1[0]->date(), first_);

    // Receive: three days stored, back to the first step. One bar runs
    // forward over the days read and stored; no second window covers it.
    std::vector<int> values;
    QObject::connect(f->ProgressBar1, &QProgressBar::valueChanged, [&](int v) {
        values.push_back(100 * v / std::max(1, f->ProgressBar1->maximum()));
        EXPECT_EQ(Find_Form("frm_Pack_check"), nullptr);
    });
    Press(f->Cmd_Save);
    // The last line is the ledger's: the pack's driver is in no register, a note on each day.
    EXPECT_EQ(msgs.Last(), "수신완료\n" + LoadResString(5001).arg(3) + "\n" + LoadResString(5112).arg(3).arg(3));
    EXPECT_EQ(Rows("SELECT * FROM X_LEDGER WHERE D_F3 = 'pack' AND D_F6 = '3'"), 1);
    EXPECT_EQ(Rows("SELECT * FROM X_FINDING WHERE D_F7 = 'driver'"), 3);
    EXPECT_EQ(f->Label_Result->text(), LoadResString(5001).arg(3));
    EXPECT_EQ(Days_Of_Car(), 3);
    EXPECT_EQ(f->Step(), "정보보기");
    EXPECT_EQ(f->ProgressBar1->value(), f->ProgressBar1->maximum());
    EXPECT_TRUE(std::is_sorted(values.begin(), values.end())) << "the bar never runs back";
    EXPECT_GE(values.size(), 6u);
    EXPECT_FALSE(f->Busy());
    // The analyzer's port, lent to the reception's job, is back on this
    // thread for the next info step.
    EXPECT_EQ(G().Port->Device()->thread(), f->thread());

    // The last reception is searched under "00" + the pack's car code, newest
    // first: rows whose day has letters or a 13th month are passed over.
    G().DB->Execute("INSERT INTO D_D1 (D_F1, D_F2, D_F4) VALUES ('0012345678ZZZZZZ', '001234', 'ABCDEF')");
    G().DB->Execute("INSERT INTO D_D1 (D_F1, D_F2, D_F4) VALUES ('001234567800BBBB', '001234', '991340')");
    Press(f->Cmd_Save);
    EXPECT_EQ(f->Text1->text(), first_.addDays(2).toString("yy-MM-dd")) << "the newest real day";

    // Another source clears the shown values and starts over; without a
    // medium the USB source says so.
    QTest::mouseClick(f->SSOption[2], Qt::LeftButton);
    EXPECT_EQ(f->Source(), "130");
    EXPECT_EQ(f->Step(), "정보보기");
    EXPECT_EQ(f->Text2->text(), "");
    msgs.Clear();
    Press(f->Cmd_Save);
    EXPECT_EQ(msgs.Last(), "USB가 없읍니다!");
}

TEST_F(ReceptionTest, AFailedConnectionIsSaidInTheDialog)
{
    qputenv("VEX_SERIAL_PORTS", tmp_.filePath("no-such-tty").toLocal8Bit());
    frmPack_Read1* f = Open_Reception();
    ASSERT_NE(f, nullptr);
    Press(f->Command3);
    EXPECT_EQ(G().Link_Type, 0);
    EXPECT_EQ(f->Label_Result->text(), "분석기와 연결되지 않았읍니다.");
    EXPECT_TRUE(f->Label_Result->isVisible());
}

TEST_F(ReceptionTest, EqualDatesOfTheRangeReadOneDay)
{
    vex::test::Emulator emulator(image_);
    frmPack_Read1* f = Ready_To_Receive(emulator);
    ASSERT_NE(f, nullptr);
    QTest::mouseClick(f->Check1, Qt::LeftButton, {}, QPoint(8, f->Check1->height() / 2));
    ASSERT_TRUE(f->Check1->isChecked());
    f->TDBDate1[0]->setDate(first_.addDays(1));
    f->TDBDate1[1]->setDate(first_.addDays(1));
    Press(f->Cmd_Save);
    EXPECT_EQ(msgs.Last(), "수신완료\n" + LoadResString(5001).arg(1) + "\n" + LoadResString(5112).arg(1).arg(1));
    EXPECT_EQ(Days_Of_Car(), 1);
    EXPECT_EQ(Rows("SELECT * FROM D_D1 WHERE D_F4 = ?", {Day(first_.addDays(1))}), 1);
}

TEST_F(ReceptionTest, ASecondClickDuringAStepDoesNothing)
{
    vex::test::Emulator emulator(image_);
    frmPack_Read1* f = Ready_To_Receive(emulator);
    ASSERT_NE(f, nullptr);

    // Once the bar moves, the user clicks again; the click waits in the
    // event queue, reaches the window while the reception runs and keeps it
    // alive, and is dropped.
    bool clicked = false, sawBusy = false;
    QObject::connect(f->ProgressBar1, &QProgressBar::valueChanged, f, [&] {
        if (clicked)
            return;
        clicked = true;
        QMetaObject::invokeMethod(
            f,
            [&] {
                sawBusy = f->Busy();
                f->Cmd_Save_Click();
            },
            Qt::QueuedConnection);
    });
    msgs.Clear();
    Press(f->Cmd_Save);
    EXPECT_TRUE(sawBusy);
    EXPECT_EQ(std::count_if(msgs.seen.begin(), msgs.seen.end(), [](const auto& m) { return m.text.startsWith("수신완료"); }), 1);
    EXPECT_EQ(Days_Of_Car(), 3);
    EXPECT_EQ(f->Step(), "정보보기");
}

} // namespace

TEST_F(ReceptionTest, ADayLeftUndrivenSinceTheLastReceptionIsSaidPlainly)
{
    // Last read the evening before the first day, nothing driven after:
    // that day's page is still erased.
    const QString before = Day(first_.addDays(-1));
    const vex::test::CliRun r = vex::test::Vexcli({"sample", "pack", "--out", image_, "--car", "1234", "--driver",
                                                   "5678", "--from", Day(first_), "--days", "3", "--last-read",
                                                   before + "1800"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    vex::test::Emulator emulator(image_);
    frmPack_Read1* f = Ready_To_Receive(emulator);
    ASSERT_NE(f, nullptr);
    Press(f->Cmd_Save);
    const QString summary = LoadResString(5001).arg(3) + "; " + LoadResString(5019).arg(before);
    EXPECT_EQ(f->Label_Result->text(), summary);
    EXPECT_EQ(msgs.Last(), "수신완료\n" + summary + "\n" + LoadResString(5112).arg(3).arg(3));
    EXPECT_FALSE(msgs.Last().contains(LoadResString(5004).left(4))) << "no refusal";
    EXPECT_EQ(Days_Of_Car(), 3);
    // For a person to look at: VEX_SHOTS=DIR keeps the dialog as a picture.
    if (qEnvironmentVariableIsSet("VEX_SHOTS")) {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
        f->grab().save(qEnvironmentVariable("VEX_SHOTS") + "/reception_undriven_day.png");
    }
}

TEST_F(ReceptionTest, AUsbMediumIsStoredBehindTheWindowsProgress)
{
    // Two generated days of a model "250" medium, found among the roots.
    const vex::test::CliRun sample = vex::test::Vexcli({"sample", "usb", "--model", "250", "--out", tmp_.filePath("medium"),
                                                        "--car", "12AB00", "--driver", "000123", "--from", "260105",
                                                        "--days", "2"});
    ASSERT_EQ(sample.code, 0) << sample.err.toStdString();
    qputenv("VEX_USB_ROOTS", tmp_.filePath("medium").toLocal8Bit());
    frmPack_Read1* f = Open_Reception();
    ASSERT_NE(f, nullptr);
    QTest::mouseClick(f->SSOption[3], Qt::LeftButton);
    Press(f->Cmd_Save);
    ASSERT_EQ(f->Step(), "수신") << msgs.Last().toStdString();
    EXPECT_EQ(f->Text2->text(), "12AB00");

    // The bar moves on this thread while the job stores the days.
    std::vector<int> values;
    QObject::connect(f->ProgressBar1, &QProgressBar::valueChanged, f, [&](int v) {
        EXPECT_EQ(QThread::currentThread(), f->thread());
        values.push_back(v);
    });
    msgs.Clear();
    Press(f->Cmd_Save);
    EXPECT_TRUE(msgs.Last().startsWith("수신완료")) << msgs.Last().toStdString();
    EXPECT_EQ(Rows("SELECT * FROM D_D1 WHERE D_F2 = ?", {"12AB00"}), 2);
    EXPECT_GE(values.size(), 2u);
    EXPECT_EQ(f->ProgressBar1->value(), f->ProgressBar1->maximum());
    EXPECT_EQ(f->Step(), "정보보기");
}

TEST_F(ReceptionTest, ACancelledReceptionKeepsWhatItStoredAndLeavesTheRestInNew)
{
    vex::test::Emulator emulator(image_);
    frmPack_Read1* f = Ready_To_Receive(emulator);
    ASSERT_NE(f, nullptr);
    EXPECT_FALSE(f->Cmd_Cancel->isVisible());
    const QDir inbox(App_Path(G().App_Dir, "\\new"));
    const auto waiting = [&] { return inbox.entryList({"*.vex"}, QDir::Files).size(); };

    // The three days read into \new; Cancel once the first of them is stored.
    bool pressed = false;
    qsizetype leftThen = -1;
    Job_Runner::Set_Start_Hook([&](Job_Runner& runner) {
        QObject::connect(&runner, &Job_Runner::Progress, &runner, [&](const QString& text) {
            if (pressed || !text.startsWith("file "))
                return;
            pressed = true;
            leftThen = waiting();
            EXPECT_TRUE(f->Cmd_Cancel->isVisible());
            QTest::mouseClick(f->Cmd_Cancel, Qt::LeftButton);
        });
    });
    msgs.Clear();
    Press(f->Cmd_Save);
    Job_Runner::Set_Start_Hook({});
    ASSERT_TRUE(pressed);
    EXPECT_EQ(leftThen, 2);
    EXPECT_EQ(Days_Of_Car(), 1);
    EXPECT_EQ(waiting(), 2);
    EXPECT_TRUE(msgs.Last().startsWith("수신이 취소되었습니다.")) << msgs.Last().toStdString();
    EXPECT_TRUE(msgs.Last().contains(LoadResString(5001).arg(1))) << msgs.Last().toStdString();
    EXPECT_FALSE(f->Cmd_Cancel->isVisible());
    EXPECT_EQ(f->Step(), "정보보기");

    // The next pass takes the files left.
    Reception_Outcome next;
    Run_Inbox(*G().DB, next);
    EXPECT_EQ(Days_Of_Car(), 3);
    EXPECT_EQ(waiting(), 0);
}

TEST_F(ReceptionTest, ACancelBetweenPackDaysStoresNothingAndTheNextReceptionReadsThemAgain)
{
    vex::test::Emulator emulator(image_);
    frmPack_Read1* f = Ready_To_Receive(emulator);
    ASSERT_NE(f, nullptr);
    bool pressed = false;
    Job_Runner::Set_Start_Hook([&](Job_Runner& runner) {
        QObject::connect(&runner, &Job_Runner::Progress, &runner, [&](const QString& text) {
            if (pressed || !text.startsWith("read "))
                return;
            pressed = true;
            QTest::mouseClick(f->Cmd_Cancel, Qt::LeftButton);
        });
    });
    msgs.Clear();
    Press(f->Cmd_Save);
    Job_Runner::Set_Start_Hook({});
    ASSERT_TRUE(pressed);
    EXPECT_TRUE(msgs.Last().startsWith("수신이 취소되었습니다.")) << msgs.Last().toStdString();
    EXPECT_EQ(Days_Of_Car(), 0);

    // The pack was not marked: the next reception reads every day.
    Press(f->Cmd_Save);
    ASSERT_EQ(f->Step(), "수신") << msgs.Last().toStdString();
    Press(f->Cmd_Save);
    EXPECT_TRUE(msgs.Last().startsWith("수신완료")) << msgs.Last().toStdString();
    EXPECT_EQ(Days_Of_Car(), 3);
}
