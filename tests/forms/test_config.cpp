// The settings window: view and edit modes, Save with its order and the RPM
// count check, the hidden company code.
#include "GuiFixture.h"

#include "core/Cls_Config.h"
#include "core/Messages.h"
#include "forms/frm_Config.h"

namespace {

using namespace vex;
using namespace vex::forms;
using vex::test::GuiTest;

class ConfigTest : public GuiTest {
protected:
    frm_Config* Open_Config()
    {
        MDIForm_Main* m = Login();
        if (!m)
            return nullptr;
        m->Tree_Dispatch(38);
        return static_cast<frm_Config*>(Find_Form("frm_Config"));
    }
    void Type(frm_Config* f, int field, const QString& text)
    {
        f->TDBText_Config[field]->selectAll();
        f->TDBText_Config[field]->clear();
        vex::test::Type_Keys(f->TDBText_Config[field], text);
    }
    QString Stored(const char* column) { return Value("SELECT * FROM S_D14", column); }
};

TEST_F(ConfigTest, ViewModeThenEditAndSave)
{
    frm_Config* f = Open_Config();
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->windowTitle(), LoadResString(602));
    EXPECT_EQ(f->TDBText_Config[5]->text(), "qemba");
    EXPECT_EQ(f->TDBText_Config[17]->text(), "0") << "no RPM input: the count is 0";
    EXPECT_TRUE(f->TDBText_Config[1]->isReadOnly());
    EXPECT_FALSE(f->Command1[1]->isEnabled());
    // Typing in view mode changes nothing.
    vex::test::Type_Keys(f->TDBText_Config[1], "X");
    EXPECT_EQ(f->TDBText_Config[1]->text(), "");

    QTest::mouseClick(f->Command1[0], Qt::LeftButton);
    EXPECT_TRUE(f->Editing());
    EXPECT_FALSE(f->TDBText_Config[1]->isReadOnly());
    EXPECT_TRUE(f->Check[4]->isEnabled());
    Type(f, 1, "한국운수");
    Type(f, 6, "first");
    Type(f, 8, "second"); // the confirmation overwrites, nothing compares
    Type(f, 15, "160");
    Type(f, 16, "3500");
    Type(f, 17, "9");
    Type(f, 18, "7");
    QTest::mouseClick(f->Check[2], Qt::LeftButton, {}, QPoint(8, f->Check[2]->height() / 2)); // RPM input
    EXPECT_EQ(f->TDBText_Config[16]->text(), "3000") << "from the stored row";
    EXPECT_EQ(f->TDBText_Config[17]->text(), "4");
    EXPECT_FALSE(f->TDBText_Config[17]->isReadOnly());
    Type(f, 16, "3500");
    Type(f, 17, "9");
    QTest::mouseClick(f->Command1[1], Qt::LeftButton);

    ASSERT_EQ(msgs.seen.size(), 1u);
    EXPECT_EQ(msgs.Last(), LoadResString(150));
    EXPECT_FALSE(f->Editing());
    EXPECT_TRUE(f->TDBText_Config[1]->isReadOnly());
    EXPECT_EQ(Stored("D_F1"), "한국운수");
    EXPECT_EQ(Stored("D_F6"), "second");
    EXPECT_EQ(Stored("D_F15"), "1");
    EXPECT_EQ(Stored("D_F17").toDouble(), 160.0);
    EXPECT_EQ(Stored("D_F18"), "3500");
    EXPECT_EQ(Stored("D_F19").toDouble(), 90.0);
    EXPECT_EQ(Stored("D_F21"), "7");
    // At once, without a new start.
    EXPECT_EQ(G().Config->U_Name, "한국운수");
    EXPECT_FLOAT_EQ(G().RPM_Tick10, 90.f);
    EXPECT_EQ(G().Max_RPM_Axis, 3500);
    EXPECT_EQ(G().Idle_Minutes, 7);

    // The next opening shows the count as it was typed.
    f->close();
    QApplication::processEvents();
    MDIForm_Main::Instance()->Tree_Dispatch(38);
    auto* again = static_cast<frm_Config*>(Find_Form("frm_Config"));
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->TDBText_Config[17]->text(), "9");
}

TEST_F(ConfigTest, RpmCountCheckAndBadNumbers)
{
    frm_Config* f = Open_Config();
    ASSERT_NE(f, nullptr);
    QTest::mouseClick(f->Command1[0], Qt::LeftButton);
    Type(f, 17, "10");
    QTest::mouseClick(f->Command1[1], Qt::LeftButton);
    ASSERT_EQ(msgs.seen.size(), 1u);
    EXPECT_EQ(msgs.Last(), LoadResString(1143));
    EXPECT_TRUE(f->Editing()) << "editing stays on";
    EXPECT_EQ(Stored("D_F19").toDouble(), 40.0) << "nothing written";

    // Empty count: Save ends silently, still editing, nothing written.
    Type(f, 1, "Firm A");
    Type(f, 17, "");
    QTest::mouseClick(f->Command1[1], Qt::LeftButton);
    EXPECT_EQ(msgs.seen.size(), 1u);
    EXPECT_TRUE(f->Editing());
    EXPECT_EQ(Stored("D_F1"), "");
    EXPECT_EQ(G().Config->U_Name, "Firm A") << "fields before the failure are in the class";

    // 9.5 passes the test and is rounded by the integer conversion.
    Type(f, 17, "9.5");
    QTest::mouseClick(f->Command1[1], Qt::LeftButton);
    EXPECT_EQ(msgs.Last(), LoadResString(150));
    EXPECT_EQ(Stored("D_F19").toDouble(), 100.0);
    EXPECT_EQ(Stored("D_F15"), "0") << "saved with the RPM input off";

    // Save when editing is off changes nothing.
    msgs.Clear();
    f->Command1_Click(1);
    EXPECT_TRUE(msgs.seen.empty());
}

TEST_F(ConfigTest, CtrlVOpensTheCompanyCode)
{
    frm_Config* f = Open_Config();
    ASSERT_NE(f, nullptr);
    EXPECT_TRUE(f->TDBText_Config[14]->isHidden());
    QTest::keyClick(f->TDBText_Config[3], Qt::Key_V, Qt::ControlModifier);
    EXPECT_FALSE(f->TDBText_Config[14]->isHidden());
    EXPECT_EQ(f->TDBText_Config[14]->text(), "00000000") << "the company code is read back at the login";
    QTest::keyClick(f->TDBText_Config[1], Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(f->TDBText_Config[14]->isHidden());
}

} // namespace
