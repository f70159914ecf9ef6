// The main window: the tree of functions and its dispatcher, the buttons,
// the status bar, the database size test, Help and Exit.
#include "GuiFixture.h"

#include "core/Cls_Config.h"

#include "core/Messages.h"
#include "forms/Vex_Form.h"
#include "forms/frmReport_Main.h"
#include "forms/logic/Nav_Logic.h"

#include <QFile>
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QProgressDialog>
#include <QTimer>
#include <functional>
#include <typeinfo>

namespace {

using namespace vex;
using namespace vex::forms;
using vex::test::GuiTest;

using MainWindowTest = GuiTest;

void Double_Click(MDIForm_Main* m, int index)
{
    QTreeWidgetItem* item = m->Node(index);
    ASSERT_NE(item, nullptr);
    for (QTreeWidgetItem* p = item->parent(); p; p = p->parent())
        p->setExpanded(true);
    QApplication::processEvents();
    m->TreeView1->doItemsLayout();
    m->TreeView1->scrollToItem(item);
    QApplication::processEvents();
    const QRect r = m->TreeView1->visualItemRect(item);
    // What a real double click delivers: press, release, double click, release.
    QWidget* vp = m->TreeView1->viewport();
    const QPointF at = r.center();
    QTest::mouseClick(vp, Qt::LeftButton, {}, r.center());
    QMouseEvent dbl(QEvent::MouseButtonDblClick, at, vp->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                    Qt::NoModifier);
    QApplication::sendEvent(vp, &dbl);
    QMouseEvent up(QEvent::MouseButtonRelease, at, vp->mapToGlobal(at), Qt::LeftButton, Qt::NoButton,
                   Qt::NoModifier);
    QApplication::sendEvent(vp, &up);
}

TEST_F(MainWindowTest, TreeHoldsTheFortySixNodes)
{
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    int count = 0;
    QTreeWidgetItemIterator it(m->TreeView1);
    for (; *it; ++it)
        ++count;
    EXPECT_EQ(count, 46);
    EXPECT_EQ(m->TreeView1->topLevelItemCount(), 10);
    for (const Tree_Node& n : Tree_Nodes()) {
        QTreeWidgetItem* item = m->Node(n.index);
        ASSERT_NE(item, nullptr) << n.index;
        EXPECT_EQ(item->data(0, Qt::UserRole + 1).toString(), n.key);
        const QString parentKey = item->parent() ? item->parent()->data(0, Qt::UserRole + 1).toString() : "";
        EXPECT_EQ(parentKey, n.parent) << n.index;
    }
    EXPECT_EQ(m->Node(1)->text(0), "파일");
    EXPECT_EQ(m->Node(31)->text(0), "베터리전압 출력");
    EXPECT_EQ(m->Node(43)->text(0), "VEX 버전");
    EXPECT_TRUE(m->Node(5)->isExpanded());
    EXPECT_FALSE(m->Node(1)->isExpanded());
    EXPECT_EQ(m->SSCommand[6]->text(), LoadResString(1256));
    EXPECT_EQ(m->SSCommand[9]->text(), "데이터 수신");
    EXPECT_EQ(m->Panel[4]->text(), "ISA");
}

TEST_F(MainWindowTest, EnglishCaptionsBesideFixedKorean)
{
    qputenv("VEX_LANG", "en");
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(m->Node(1)->text(0), "File");
    EXPECT_EQ(m->Node(14)->text(0), LoadResString(617, Lang::English));
    EXPECT_EQ(m->Node(18)->text(0), "일일운행실태");
    EXPECT_EQ(m->SSCommand[8]->text(), LoadResString(1257, Lang::English));
    EXPECT_TRUE(m->Help_File().endsWith("Helpeng/VEXeng.html"));
}

TEST_F(MainWindowTest, DispatchByIndexOpensOneWindowEach)
{
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    m->move(40, 30);

    Double_Click(m, 14);
    Vex_Form* car = Find_Form("frmRegister_Car");
    ASSERT_NE(car, nullptr) << m->Node_Index(m->TreeView1->currentItem()) << " " << msgs.Last().toStdString()
                            << " " << m->Node(2)->isExpanded();
    EXPECT_TRUE(car->isVisible());
    EXPECT_EQ(car->pos(), m->pos());

    // A parent node has no action; the click still moves the highlight.
    Double_Click(m, 2);
    EXPECT_TRUE(msgs.seen.empty());
    EXPECT_EQ(m->TreeView1->currentItem(), m->Node(2));

    // Enter on a node runs it too; several windows stand open at once.
    m->TreeView1->setCurrentItem(m->Node(38));
    QTest::keyClick(m->TreeView1, Qt::Key_Return);
    EXPECT_NE(Find_Form("frm_Config"), nullptr);
    EXPECT_TRUE(car->isVisible());

    // Opening again brings up the same window.
    car->move(300, 300);
    Double_Click(m, 14);
    EXPECT_EQ(Find_Form("frmRegister_Car"), car);
    EXPECT_EQ(car->pos(), m->pos());

    // e9 is the section distance window, e10 the battery voltage option 8.
    msgs.Clear();
    Double_Click(m, 30);
    EXPECT_NE(Find_Form("frm_dayreport"), nullptr);
    // The analysis entries open the analysis window on their option.
    Double_Click(m, 31);
    EXPECT_TRUE(msgs.seen.empty()) << msgs.Last().toStdString();
    auto* analysis = qobject_cast<frmReport_Main*>(Find_Form("frmReport_Main"));
    ASSERT_NE(analysis, nullptr);
    EXPECT_EQ(analysis->Option(), 8);
    Double_Click(m, 22);
    EXPECT_EQ(analysis->Option(), 0);
    EXPECT_EQ(Tree_Action(29).option, 7);
    EXPECT_EQ(Tree_Action(37).form, "frmReport_Reference");
    EXPECT_EQ(Tree_Action(37).option, 5);
    EXPECT_EQ(Tree_Action(10).dbType, 0);
    EXPECT_EQ(Tree_Action(12).dbType, 2);
    EXPECT_EQ(Tree_Action(5).kind, Nav_Action::None);
    EXPECT_EQ(Tree_Action(44).kind, Nav_Action::None);

    // The version window.
    Double_Click(m, 43);
    EXPECT_NE(Find_Form("frm_About"), nullptr);
    EXPECT_TRUE(ends.empty());
}

TEST_F(MainWindowTest, ButtonsOpenTheirWindows)
{
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    QTest::mouseClick(m->SSCommand[9], Qt::LeftButton);
    EXPECT_NE(Find_Form("frmPack_Read1"), nullptr);
    QTest::mouseClick(m->SSCommand[2], Qt::LeftButton);
    EXPECT_NE(Find_Form("Frm_drv"), nullptr);
    msgs.Clear();
    QTest::mouseClick(m->SSCommand[4], Qt::LeftButton);
    auto* analysis = qobject_cast<frmReport_Main*>(Find_Form("frmReport_Main"));
    ASSERT_NE(analysis, nullptr);
    EXPECT_EQ(analysis->Option(), 1);
    EXPECT_FALSE(Button_Action(4).optionChange);
    EXPECT_TRUE(Button_Action(1).optionChange);
    // A new installation has no remote account ("00000000", read back at
    // the login): the button connects to nobody, says so, and the loading
    // step looks only at what lies in "\exp" (no package: nothing to load).
    EXPECT_EQ(G().Config->S_CompanyCode, "00000000");
    msgs.Clear();
    QTest::mouseClick(m->SSCommand[10], Qt::LeftButton);
    EXPECT_TRUE(std::any_of(msgs.seen.begin(), msgs.seen.end(), [](const Msg_Record& r) { return r.text == "연결실패"; }));
    EXPECT_FALSE(msgs.Last().contains("(")) << "no connection was tried: " << msgs.Last().toStdString();
}

TEST_F(MainWindowTest, HelpByLanguageAndExit)
{
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    Double_Click(m, 42);
    ASSERT_EQ(urls.size(), 1u);
    EXPECT_EQ(urls[0].toLocalFile(), app.Path("Help/VEX.html"));
    EXPECT_TRUE(QFile::exists(app.Path("Help/VEX.html")));

    // A help path unknown to all three comparisons: Help does nothing.
    m->Set_Help_File(app.Path("Help/other.html"));
    Double_Click(m, 42);
    EXPECT_EQ(urls.size(), 1u);
    EXPECT_EQ(Help_File_For(app.Dir(), "French"), app.Path("Helpeng/VEXeng.html"));
    EXPECT_EQ(Help_File_For(app.Dir(), "Chinese"), app.Path("Helpchinese/VEXchinese.html"));

    Double_Click(m, 9);
    ASSERT_EQ(ends.size(), 1u);
    EXPECT_EQ(G().DB, nullptr) << "Exit runs Main_Shutdown";
}

TEST_F(MainWindowTest, ClosingTheWindowShutsDownAsExitDoes)
{
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    ASSERT_NE(G().DB, nullptr);
    m->close();
    ASSERT_EQ(ends.size(), 1u);
    EXPECT_EQ(ends[0], 0);
    EXPECT_EQ(G().DB, nullptr) << "the connection is closed before the end";
    EXPECT_EQ(G().IO, nullptr);
}

TEST_F(MainWindowTest, DatabaseSizeTest)
{
    EXPECT_FALSE(DB_Size_Fires(1899999999));
    EXPECT_TRUE(DB_Size_Fires(1900000000));
    EXPECT_TRUE(DB_Size_Fires(-1));
    // Lengths as the file system gives them, on sparse files.
    const QString path = app.Path("big.mdb");
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    ASSERT_TRUE(f.resize(1899999999));
    EXPECT_FALSE(DB_Size_Fires(DB_File_Length(path)));
    ASSERT_TRUE(f.resize(1900000000));
    EXPECT_TRUE(DB_Size_Fires(DB_File_Length(path)));
    ASSERT_TRUE(f.resize(qint64(3) << 30));
    EXPECT_LT(DB_File_Length(path), 0);
    f.close();

    // A database of normal size: every activation passes without a word.
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    m->Form_Activate();
    m->Form_Activate();
    EXPECT_TRUE(msgs.seen.empty());
    EXPECT_EQ(Live_DB_File(), app.Path("db/morix.mdb"));
}

// Closes every modal dialog but a progress dialog as it is shown, so that
// nothing a window opens can stop the run; what it closed is kept to be told.
class Modal_Closer : public QObject {
public:
    Modal_Closer() { qApp->installEventFilter(this); }
    ~Modal_Closer() override { qApp->removeEventFilter(this); }
    QStringList closed;

protected:
    bool eventFilter(QObject* watched, QEvent* e) override
    {
        auto* w = qobject_cast<QWidget*>(watched);
        if (e->type() == QEvent::Show && w && w->isWindow() && w->isModal() && !qobject_cast<Vex_Form*>(w) &&
            !qobject_cast<QProgressDialog*>(w)) {
            closed << w->windowTitle();
            QTimer::singleShot(0, w, [w] { w->close(); });
        }
        return false;
    }
};

// A window of the program itself, not a placeholder: its own class, in the
// factory's list, shown, with controls to use.
testing::AssertionResult Built_Window(const QString& name)
{
    Vex_Form* f = Find_Form(name);
    if (!f)
        return testing::AssertionFailure() << "no window " << name.toStdString();
    if (typeid(*f) == typeid(Vex_Form) || !Built_Forms().contains(name))
        return testing::AssertionFailure() << name.toStdString() << " is no window of its own";
    if (!f->isVisible() || f->windowTitle().isEmpty())
        return testing::AssertionFailure() << name.toStdString() << " is not shown with a title";
    const int controls = int(f->findChildren<QAbstractButton*>().size() + f->findChildren<QLineEdit*>().size() +
                             f->findChildren<QAbstractItemView*>().size() + f->findChildren<QLabel*>().size());
    if (controls == 0)
        return testing::AssertionFailure() << name.toStdString() << " has no controls";
    return testing::AssertionSuccess();
}

void Close_All_Forms()
{
    for (const QString& name : Built_Forms())
        if (Vex_Form* f = Find_Form(name))
            f->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(MainWindowTest, EveryNodeAndEveryButtonReachesABuiltWindow)
{
    Receive_Usb_Days();
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    Modal_Closer modals;
    int opened = 0;
    const auto reach = [&](const Nav_Action& a, const std::function<void()>& press, const std::string& what) {
        switch (a.kind) {
        case Nav_Action::None:
        case Nav_Action::Exit: // pressed last, below
            return;
        case Nav_Action::Help: {
            const size_t before = urls.size();
            press();
            EXPECT_EQ(urls.size(), before + 1) << what;
            return;
        }
        case Nav_Action::Open:
            break;
        }
        msgs.Clear();
        press();
        if (a.remote) {
            // No remote account: the press says it reached nobody.
            EXPECT_FALSE(msgs.seen.empty()) << what;
            return;
        }
        EXPECT_TRUE(Built_Window(a.form)) << what;
        ++opened;
        Close_All_Forms();
    };
    int exitNode = 0;
    for (const Tree_Node& n : Tree_Nodes()) {
        const Nav_Action a = Tree_Action(n.index);
        if (a.kind == Nav_Action::Exit)
            exitNode = n.index;
        reach(a, [&] { Double_Click(m, n.index); }, "node " + std::to_string(n.index));
    }
    for (int b = 1; b <= 13; ++b)
        reach(Button_Action(b), [&] { QTest::mouseClick(m->SSCommand[b], Qt::LeftButton); },
              "button " + std::to_string(b));
    EXPECT_GE(opened, 40);
    EXPECT_TRUE(modals.closed.isEmpty()) << modals.closed.join(", ").toStdString();
    EXPECT_TRUE(ends.empty());

    ASSERT_NE(exitNode, 0);
    Double_Click(m, exitNode);
    EXPECT_EQ(ends.size(), 1u);
}

} // namespace
