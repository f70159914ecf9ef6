// The car register: add, duplicate, edit, delete and search, as a user does
// them; the driver register's own search column.
#include "GuiFixture.h"

#include "core/Messages.h"
#include "forms/frmRegister_Car.h"
#include "forms/frmRegister_Driver.h"
#include "forms/frm_Nosun.h"
#include "forms/Form_regio.h"
#include "forms/Frm_drv.h"

#include <QFile>

#include <QLineEdit>

namespace {

using namespace vex;
using namespace vex::forms;
using vex::test::GuiTest;

class RegisterTest : public GuiTest {
protected:
    Register_Form* Open(int node, const char* name)
    {
        if (!MDIForm_Main::Instance() && !Login())
            return nullptr;
        MDIForm_Main::Instance()->Tree_Dispatch(node);
        return static_cast<Register_Form*>(Find_Form(name));
    }
    void Type(Register_Form* f, int field, const QString& text)
    {
        auto* e = qobject_cast<QLineEdit*>(f->Fields[size_t(field)]);
        ASSERT_NE(e, nullptr);
        e->clear();
        vex::test::Type_Keys(e, text);
    }
    void Click(Register_Form* f, int button) { QTest::mouseClick(f->Command1[button], Qt::LeftButton); }
    QString Car(const QString& code, const char* column)
    {
        return Value("SELECT * FROM S_D1 WHERE D_F1 = ?", column, {code});
    }
};

TEST_F(RegisterTest, CarAddDuplicateEditDeleteSearch)
{
    Register_Form* f = Open(14, "frmRegister_Car");
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->windowTitle(), LoadResString(617));
    EXPECT_EQ(f->Model->headerData(0, Qt::Horizontal).toString(), LoadResString(632));
    EXPECT_FALSE(f->Command1[1]->isEnabled()) << "an empty table: nothing to edit";

    // Add: the new row's values, then the code typed.
    Click(f, 0);
    EXPECT_EQ(f->Mode(), Adding);
    EXPECT_EQ(f->Command1[1]->text(), LoadResString(505));
    EXPECT_EQ(f->Field_Text(4), "FF");
    EXPECT_EQ(f->Field_Text(7), "80");
    EXPECT_EQ(f->Field_Text(8), "3.0");
    Click(f, 1);
    EXPECT_EQ(msgs.Last(), LoadResString(152)) << "no code";
    Type(f, 0, "123400");
    Type(f, 1, "A-01");
    Type(f, 2, "서울 12가 3456");
    Type(f, 4, " "); // a single blank stands for "FF"
    Click(f, 1);
    EXPECT_EQ(msgs.Last(), LoadResString(150));
    EXPECT_EQ(f->Mode(), Browse);
    EXPECT_EQ(Car("123400", "D_F3"), "서울 12가 3456");
    EXPECT_EQ(Car("123400", "D_F8"), "FF");
    EXPECT_EQ(Car("123400", "D_F10"), "80");
    EXPECT_EQ(Car("123400", "D_F7"), "3.0");
    EXPECT_EQ(f->Row_Count(), 1);

    // The same code again: 153, still adding.
    Click(f, 0);
    Type(f, 0, "123400");
    Click(f, 1);
    EXPECT_EQ(msgs.Last(), LoadResString(153));
    EXPECT_EQ(f->Mode(), Adding);
    EXPECT_TRUE(f->Fields[0]->hasFocus() || !f->isActiveWindow());
    // An empty IO field stays empty.
    Type(f, 0, "223400");
    Type(f, 1, "B-02");
    Type(f, 4, "");
    Click(f, 1);
    EXPECT_EQ(msgs.Last(), LoadResString(150));
    EXPECT_EQ(Car("223400", "D_F8"), "");
    EXPECT_EQ(f->Row_Count(), 2);

    // Edit the first row: the code stays.
    f->TDBGrid1->setCurrentIndex(f->Model->index(0, 0));
    EXPECT_EQ(f->Field_Text(0), "123400");
    Click(f, 1);
    EXPECT_EQ(f->Mode(), Editing);
    Type(f, 7, "95");
    Click(f, 1);
    EXPECT_EQ(Car("123400", "D_F10"), "95");
    EXPECT_EQ(Rows("SELECT * FROM S_D1"), 2);

    // Cancel goes back to the row of the bookmark.
    Click(f, 1);
    Type(f, 1, "changed");
    Click(f, 2);
    EXPECT_EQ(f->Mode(), Browse);
    EXPECT_EQ(f->Field_Text(1), "A-01");
    EXPECT_EQ(Car("123400", "D_F2"), "A-01");

    // Search by the management number, with the user's wildcard.
    f->cboSearch->setCurrentIndex(1);
    vex::test::Type_Keys(f->txtSearch, "B*");
    QTest::mouseClick(f->cmdSearch, Qt::LeftButton);
    ASSERT_EQ(f->Row_Count(), 1);
    EXPECT_EQ(f->Model->index(0, 0).data().toString(), "223400");
    f->txtSearch->clear();
    QTest::mouseClick(f->cmdSearch, Qt::LeftButton);
    EXPECT_EQ(f->Row_Count(), 2);

    // The window keeps its width however often the grid is filled again.
    QCoreApplication::processEvents();
    const int width = f->width();
    for (int i = 0; i < 3; ++i) {
        QTest::mouseClick(f->cmdSearch, Qt::LeftButton);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(f->width(), width);

    // Delete: No keeps the row, Yes removes it.
    f->TDBGrid1->setCurrentIndex(f->Model->index(1, 0));
    msgs.answer = QMessageBox::No;
    Click(f, 2);
    EXPECT_EQ(msgs.seen[msgs.seen.size() - 2].text, LoadResString(1150));
    EXPECT_EQ(msgs.Last(), LoadResString(155));
    EXPECT_EQ(Rows("SELECT * FROM S_D1"), 2);
    msgs.answer = QMessageBox::Yes;
    Click(f, 2);
    EXPECT_EQ(msgs.Last(), LoadResString(154));
    EXPECT_EQ(Rows("SELECT * FROM S_D1 WHERE D_F1 = ?", {"223400"}), 0);
    EXPECT_EQ(f->Row_Count(), 1);
}

TEST_F(RegisterTest, DriverSearchesByResidentNumberAndWritesSixColumns)
{
    Register_Form* f = Open(15, "frmRegister_Driver");
    ASSERT_NE(f, nullptr);
    Click(f, 0);
    Type(f, 0, "567800");
    Type(f, 1, "김민수");
    Type(f, 3, "800101-1234567");
    Type(f, 6, "010-1111-2222"); // shown, never written
    Click(f, 1);
    EXPECT_EQ(msgs.Last(), LoadResString(150));
    EXPECT_EQ(Value("SELECT * FROM S_D2", "D_F4"), "800101-1234567");
    EXPECT_EQ(Value("SELECT * FROM S_D2", "D_F7"), "");

    f->cboSearch->setCurrentIndex(2);
    vex::test::Type_Keys(f->txtSearch, "800101*");
    QTest::mouseClick(f->cmdSearch, Qt::LeftButton);
    EXPECT_EQ(f->Row_Count(), 1);
    f->txtSearch->clear();
    vex::test::Type_Keys(f->txtSearch, "김*");
    QTest::mouseClick(f->cmdSearch, Qt::LeftButton);
    EXPECT_EQ(f->Row_Count(), 0) << "the third search field is the resident number, not the name";
}

TEST_F(RegisterTest, RoutesAndInputNames)
{
    ASSERT_NE(Login(), nullptr);
    G().DB->Execute("INSERT INTO S_D1 (D_F1, D_F12, D_F10) VALUES ('100100', 'R1', '70')");
    G().DB->Execute("INSERT INTO S_D1 (D_F1) VALUES ('100200')");
    MDIForm_Main::Instance()->Tree_Dispatch(40);
    auto* n = static_cast<frm_Nosun*>(Find_Form("frm_Nosun"));
    ASSERT_NE(n, nullptr);
    EXPECT_FALSE(G().App_Dir_Slash.isEmpty());
    n->TDBCombo1->setCurrentText("R1");
    QTest::mouseClick(n->cmdLookup, Qt::LeftButton);
    ASSERT_EQ(n->List2->count(), 1);
    EXPECT_EQ(n->TDBText2->text(), "70");
    // The route's last car moved away: the route is gone.
    n->List2->setCurrentRow(0);
    QTest::mouseClick(n->SSCommand[3], Qt::LeftButton);
    n->List1->setCurrentRow(n->List1->count() - 1);
    QTest::mouseClick(n->SSCommand[1], Qt::LeftButton);
    n->TDBCombo1->setCurrentText("R2");
    QTest::mouseClick(n->cmdSave, Qt::LeftButton);
    EXPECT_EQ(msgs.Last(), LoadResString(150));
    EXPECT_EQ(Value("SELECT * FROM S_D1 WHERE D_F1 = '100100'", "D_F12"), "R2");
    EXPECT_EQ(n->TDBCombo1->findText("R1"), -1);

    MDIForm_Main::Instance()->Tree_Dispatch(39);
    auto* r = static_cast<Form_regio*>(Find_Form("Form_regio"));
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->TDBTxt_Car[0]->text(), "브레이크");
    r->TDBTxt_Car[5]->clear();
    vex::test::Type_Keys(r->TDBTxt_Car[5], "도어");
    QTest::mouseClick(r->Command5, Qt::LeftButton);
    EXPECT_EQ(msgs.Last(), "저장 완료되었읍니다");
    EXPECT_EQ(G().DI_Name6, "도어");
    EXPECT_EQ(Value("SELECT * FROM S_D4", "D_F6"), "도어");
}

} // namespace

namespace {

using namespace vex;
using namespace vex::forms;

TEST_F(RegisterTest, DriverNumberOntoTheMedium)
{
    const QString medium = app.Path("usb");
    app.Write_File("usb/Master00.dat", QByteArray(64, '\0'));
    app.Write_File("usb/Driverid.dat", QByteArray(8, '\0'));
    qputenv("VEX_USB_ROOTS", medium.toLocal8Bit());
    ASSERT_NE(Login(), nullptr);
    G().DB->Execute("INSERT INTO S_D2 (D_F1, D_F2) VALUES ('1234', 'K')");
    QTest::mouseClick(MDIForm_Main::Instance()->SSCommand[2], Qt::LeftButton);
    auto* d = static_cast<Frm_drv*>(Find_Form("Frm_drv"));
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->Medium(), medium);
    QApplication::processEvents();
    EXPECT_TRUE(msgs.seen.empty()) << "a medium is there";

    // Nothing chosen: nothing happens.
    QTest::mouseClick(d->SSCommand1, Qt::LeftButton);
    EXPECT_TRUE(msgs.seen.empty());
    d->Combo1->setCurrentText("1234");
    QTest::mouseClick(d->SSCommand1, Qt::LeftButton);
    EXPECT_EQ(msgs.Last(), "저장 완료되었읍니다.");
    QFile master(medium + "/Master00.dat");
    ASSERT_TRUE(master.open(QIODevice::ReadOnly));
    const QByteArray bytes = master.readAll();
    EXPECT_EQ(bytes.mid(32, 3), QByteArray::fromHex("001234"));
    EXPECT_EQ(bytes.mid(48, 2), QByteArray::fromHex("AA00"));
}

} // namespace
