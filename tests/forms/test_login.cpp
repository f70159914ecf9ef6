// The login window: prefill, Enter moving on, the joined key, the three
// attempts, the settings loaded on every press, the pending optimise.
#include "GuiFixture.h"

#include "core/Cls_Config.h"
#include "core/Messages.h"
#include "exchange/Db_Compaction.h"
#include "registers/Register_Rules.h"
#include "store/DbTarget.h"

#include <QFile>

namespace {

using namespace vex;
using namespace vex::forms;
using vex::test::GuiTest;

using LoginTest = GuiTest;

TEST_F(LoginTest, PrefillEnterMovesFocusAndSecondEnterLogsIn)
{
    frm_Splash* s = Start();
    EXPECT_EQ(s->windowTitle(), LoadResString(603));
    EXPECT_EQ(s->cmdOK->text(), LoadResString(507));
    EXPECT_EQ(s->cmdCancel->text(), LoadResString(504));
    EXPECT_EQ(s->txtUserName->text(), "qemba");
    EXPECT_EQ(s->txtPassword->text(), "qemba");
    ASSERT_TRUE(QTest::qWaitForWindowActive(s));
    EXPECT_TRUE(s->txtUserName->hasFocus());

    QTest::keyClick(s->txtUserName, Qt::Key_Return);
    EXPECT_TRUE(s->txtPassword->hasFocus());
    QTest::keyClick(s->txtPassword, Qt::Key_Return);
    EXPECT_TRUE(s->cmdOK->hasFocus());
    EXPECT_EQ(MDIForm_Main::Instance(), nullptr) << "Enter in the password only moves the focus";

    QTest::keyClick(s->cmdOK, Qt::Key_Return);
    MDIForm_Main* m = MDIForm_Main::Instance();
    ASSERT_NE(m, nullptr);
    EXPECT_TRUE(G().Login_OK);
    EXPECT_EQ(G().Login_User, "qemba");
    EXPECT_EQ(m->Panel[1]->text(), "User : QEMBA");
    EXPECT_EQ(m->windowTitle(), "VEX");
    EXPECT_TRUE(msgs.seen.empty());
    EXPECT_TRUE(ends.empty());
}

TEST_F(LoginTest, KeyIsJoinedAndCaseBlind)
{
    frm_Splash* s = Start();
    G().DB->Execute("UPDATE S_D14 SET D_F5 = ?, D_F6 = ?", {"ADMIN", "Pw"});
    // "ad" + "minpw" joins to the same key as "ADMIN" + "Pw".
    s->txtUserName->clear();
    QTest::keyClicks(s->txtUserName, "ad");
    s->txtPassword->clear();
    QTest::keyClicks(s->txtPassword, "minpw");
    QTest::mouseClick(s->cmdOK, Qt::LeftButton);
    ASSERT_NE(MDIForm_Main::Instance(), nullptr);
    EXPECT_EQ(G().Login_User, "ad");
    EXPECT_EQ(MDIForm_Main::Instance()->Panel[1]->text(), "User : AD");
}

TEST_F(LoginTest, TwoSilentFailuresThenRightOneSucceeds)
{
    frm_Splash* s = Start();
    ASSERT_TRUE(QTest::qWaitForWindowActive(s));
    s->cmdOK->setFocus();
    for (int i = 1; i <= 2; ++i) {
        s->txtPassword->clear();
        QTest::keyClicks(s->txtPassword, "wrong");
        QTest::mouseClick(s->cmdOK, Qt::LeftButton);
        EXPECT_EQ(s->Failed_Attempts(), i);
        EXPECT_TRUE(s->txtUserName->hasFocus());
    }
    EXPECT_TRUE(msgs.seen.empty());
    EXPECT_TRUE(ends.empty());
    s->txtPassword->clear();
    QTest::keyClicks(s->txtPassword, "QEMBA");
    QTest::mouseClick(s->cmdOK, Qt::LeftButton);
    EXPECT_NE(MDIForm_Main::Instance(), nullptr);
    EXPECT_TRUE(ends.empty());
}

TEST_F(LoginTest, ThirdFailureTellsAndEnds)
{
    frm_Splash* s = Start();
    for (int i = 0; i < 3; ++i) {
        s->txtPassword->clear();
        QTest::keyClicks(s->txtPassword, "nope");
        QTest::mouseClick(s->cmdOK, Qt::LeftButton);
    }
    ASSERT_EQ(msgs.seen.size(), 1u);
    EXPECT_EQ(msgs.seen[0].text, LoadResString(157));
    EXPECT_EQ(msgs.seen[0].title, "Login Error");
    EXPECT_EQ(msgs.seen[0].icon, QMessageBox::Critical);
    ASSERT_EQ(ends.size(), 1u);
    EXPECT_EQ(MDIForm_Main::Instance(), nullptr);
}

TEST_F(LoginTest, EmptyFieldsAndNullUserIdDontCount)
{
    frm_Splash* s = Start();
    s->txtUserName->clear();
    QTest::mouseClick(s->cmdOK, Qt::LeftButton);
    EXPECT_EQ(s->Failed_Attempts(), 0);
    s->txtUserName->setText("qemba");
    s->txtPassword->clear();
    QTest::mouseClick(s->cmdOK, Qt::LeftButton);
    EXPECT_EQ(s->Failed_Attempts(), 0);

    // A Null user id ends the press silently, without counting.
    G().DB->Execute("UPDATE S_D14 SET D_F5 = NULL");
    s->txtPassword->setText("qemba");
    for (int i = 0; i < 4; ++i)
        QTest::mouseClick(s->cmdOK, Qt::LeftButton);
    EXPECT_EQ(s->Failed_Attempts(), 0);
    EXPECT_TRUE(msgs.seen.empty());
    EXPECT_TRUE(ends.empty());
    EXPECT_EQ(MDIForm_Main::Instance(), nullptr);
}

TEST_F(LoginTest, SettingsLoadedOnEveryPressAndCancelEnds)
{
    frm_Splash* s = Start();
    G().DB->Execute("UPDATE S_D14 SET D_F17 = 150, D_F15 = 1, D_F18 = 4000, D_F19 = 50");
    G().DB->Execute("UPDATE S_D4 SET D_F1 = ?", {"BRAKE-X"});
    s->txtPassword->setText("bad");
    QTest::mouseClick(s->cmdOK, Qt::LeftButton);
    EXPECT_EQ(s->Failed_Attempts(), 1);
    EXPECT_FLOAT_EQ(G().Max_Speed_Axis, 150.f);
    EXPECT_EQ(G().Max_RPM_Axis, 4000);
    EXPECT_FLOAT_EQ(G().RPM_Tick10, 50.f);
    EXPECT_EQ(G().DI_Name1, "BRAKE-X");
    EXPECT_EQ(G().Config->B_Val3, 80) << "the evaluation standard of the load";

    QTest::mouseClick(s->cmdCancel, Qt::LeftButton);
    ASSERT_EQ(ends.size(), 1u);
    EXPECT_FALSE(G().Login_OK);
}

TEST_F(LoginTest, PendingOptimiseReplacesTheLiveDatabaseOnlyWhileItIsTheSame)
{
    const QString live = app.Path("db/morix.mdb");
    const QString pending = app.Path("db/temp2.mdb");
    auto Optimise_Then = [&](const std::function<void(Cls_DB&)>& after) {
        G().App_Dir = app.Dir();
        Cls_DB db(Parse_DB_Server(live, app.Dir()));
        ASSERT_EQ(db.DB_State(), 1);
        ASSERT_TRUE(Optimise(db).ok);
        after(db);
    };
    // The copy (marked here by a car only it has) takes the live file's place.
    Optimise_Then([&](Cls_DB&) {
        Cls_DB copy(Parse_DB_Server(pending, app.Dir()));
        ASSERT_EQ(Register_Save(copy, Car_Register(), Adding, {"777700", "OPT", "", "2026-01-01"}), 150);
    });
    frm_Splash* s = Start();
    EXPECT_FALSE(QFile::exists(pending));
    EXPECT_EQ(Rows("SELECT * FROM S_D1 WHERE D_F1 = ?", {"777700"}), 1);
    QTest::mouseClick(s->cmdOK, Qt::LeftButton);
    EXPECT_NE(MDIForm_Main::Instance(), nullptr);
}

TEST_F(LoginTest, PendingOptimiseOlderThanTheLiveDatabaseIsDiscardedWithAWord)
{
    const QString live = app.Path("db/morix.mdb");
    {
        G().App_Dir = app.Dir();
        Cls_DB db(Parse_DB_Server(live, app.Dir()));
        ASSERT_TRUE(Optimise(db).ok);
        // Received after the optimise.
        ASSERT_EQ(Register_Save(db, Car_Register(), Adding, {"888800", "NEW", "", "2026-01-01"}), 150);
    }
    Start();
    EXPECT_FALSE(QFile::exists(app.Path("db/temp2.mdb")));
    EXPECT_EQ(Rows("SELECT * FROM S_D1 WHERE D_F1 = ?", {"888800"}), 1);
    EXPECT_EQ(msgs.Last(), Stale_Compaction_Message());
}

} // namespace
