// The operation views on a received day, driven as a user drives them:
// from the main window to the analysis form and the views, the cursor by
// keys and mouse, the zoom around it, page up and down through the days,
// the event list into the seconds view, the charts, and a printed page.
#include "GuiFixture.h"

#include "core/Messages.h"
#include "forms/Frm_daydrive.h"
#include "forms/Frm_oversp.h"
#include "forms/frmReport_AvgDay.h"
#include "forms/frmReport_Main.h"
#include "forms/frmReport_Operation.h"
#include "forms/frmReport_QuickBrake.h"
#include "forms/frmReport_SecOperation.h"
#include "forms/logic/View_Logic.h"
#include "analysis/Graph_Geometry.h"
#include "reports/Report_Printer.h"
#include "support/CliRun.h"

#include <QMouseEvent>
#include <QPrinter>
#include <QProcess>
#include <QTemporaryDir>

namespace {

using namespace vex;
using namespace vex::forms;

class ViewsTest : public test::GuiTest {
protected:
    MDIForm_Main* Start_With_Days()
    {
        Receive_Usb_Days();
        return Login();
    }
    static void Key(QWidget* w, Qt::Key key, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        QTest::keyClick(w, key, mods);
    }
    frmReport_Operation* Minute_View(MDIForm_Main* m)
    {
        m->Run(Tree_Action(23)); // e2: the minute view's analysis
        auto* main = qobject_cast<frmReport_Main*>(Find_Form("frmReport_Main"));
        EXPECT_NE(main, nullptr);
        if (!main)
            return nullptr;
        EXPECT_EQ(main->Option(), 1);
        QTest::mouseClick(main->Command1, Qt::LeftButton);
        QApplication::processEvents();
        return qobject_cast<frmReport_Operation*>(Find_Form("frmReport_Operation"));
    }
};

} // namespace

TEST_F(ViewsTest, TheMinuteViewWalksTheDay)
{
    MDIForm_Main* m = Start_With_Days();
    ASSERT_NE(m, nullptr);
    frmReport_Operation* v = Minute_View(m);
    ASSERT_NE(v, nullptr);
    QApplication::processEvents();
    // The newest day, whole, the cursor at the left edge.
    EXPECT_EQ(v->Label1->text(), "2026-01-06");
    EXPECT_EQ(v->TDBText1[0]->text(), "12AB00");
    EXPECT_EQ(v->TDBText1[3]->text(), "0");
    EXPECT_EQ(v->TDBText1[2]->text(), Time_Text(v->Graph_State().Trip.startTime));
    EXPECT_FALSE(v->TDBText1[15]->isVisibleTo(v)); // no RPM input
    const Graph_Geometry& g = Graph();
    EXPECT_EQ(v->Cursor_X(), g.Graph_Left);

    // Right and left step a minute and wrap at the ends.
    Key(v, Qt::Key_Right);
    EXPECT_EQ(v->TDBText1[2]->text(), "00 : 01");
    Key(v, Qt::Key_Left);
    Key(v, Qt::Key_Left);
    EXPECT_EQ(v->TDBText1[2]->text(), "23 : 59");
    EXPECT_FLOAT_EQ(v->Cursor_X(), g.Graph_Right - g.Graph_XStep);
    Key(v, Qt::Key_6, Qt::KeypadModifier);
    EXPECT_EQ(v->TDBText1[2]->text(), "24 : 00");
    Key(v, Qt::Key_6, Qt::KeypadModifier);
    EXPECT_EQ(v->Cursor_X(), g.Graph_Left);
    Key(v, Qt::Key_4, Qt::KeypadModifier);
    EXPECT_EQ(v->TDBText1[2]->text(), "23 : 59");

    // A click at 08:10 puts the cursor there; the speed is the minute's.
    Operation_Graph& og = v->Graph_State();
    v->Picture2_MouseUp(og.Make_X(8 * 60 + 10) + 2);
    EXPECT_EQ(v->TDBText1[2]->text(), "08 : 10");
    EXPECT_EQ(v->TDBText1[3]->text(), QString::number(og.Speed_Search(491)));
    EXPECT_NE(v->TDBText1[3]->text(), "0");

    // One hour around the cursor: the minute stays, steps are a minute.
    QTest::mouseClick(v->Option1[0], Qt::LeftButton);
    EXPECT_EQ(og.Zoom_Type, 1);
    EXPECT_EQ(og.Zoom_Time, 8);
    EXPECT_EQ(og.Zoom_ETime, 9);
    EXPECT_EQ(v->TDBText1[2]->text(), "08 : 10");
    EXPECT_FLOAT_EQ(v->Cursor_X(), g.Graph_Left + 10 * 24 * g.Graph_XStep);
    Key(v, Qt::Key_Right);
    EXPECT_EQ(v->TDBText1[2]->text(), "08 : 11");

    // A larger window keeps the cursor's minute.
    v->resize(v->width() + 300, v->height() + 100);
    QApplication::processEvents();
    EXPECT_EQ(v->Cursor_Point(), 8 * 60 + 11);
    EXPECT_EQ(v->TDBText1[2]->text(), "08 : 11");
    EXPECT_FLOAT_EQ(v->Cursor_X(), og.Make_X(8 * 60 + 11));

    // Page up past the last day: message 1135, the day asked for kept,
    // the header still on the day shown.
    msgs.Clear();
    Key(v, Qt::Key_PageUp);
    EXPECT_EQ(msgs.Last(), LoadResString(1135));
    EXPECT_EQ(v->Start_Date(), "260107");
    EXPECT_EQ(v->Label1->text(), "2026-01-06");
    EXPECT_TRUE(v->TDBText1[0]->text().isEmpty());
    // Page down twice: the two stored days.
    Key(v, Qt::Key_PageDown);
    EXPECT_EQ(v->Label1->text(), "2026-01-06");
    Key(v, Qt::Key_PageDown);
    EXPECT_EQ(v->Label1->text(), "2026-01-05");
    EXPECT_EQ(v->Start_Date(), "260105");
    EXPECT_EQ(v->TDBText1[0]->text(), "12AB00");
    EXPECT_EQ(msgs.seen.size(), 1u);
}

TEST_F(ViewsTest, AnEventOpensTheSecondsViewOnItsSecond)
{
    MDIForm_Main* m = Start_With_Days();
    ASSERT_NE(m, nullptr);
    frmReport_Operation* v = Minute_View(m);
    ASSERT_NE(v, nullptr);
    QTest::mouseClick(v->Command4, Qt::LeftButton);
    auto* list = qobject_cast<Frm_oversp*>(Find_Form("Frm_oversp"));
    ASSERT_NE(list, nullptr);
    ASSERT_GT(list->List1->count(), 5);
    EXPECT_EQ(list->List1->item(0)->text(), "[급제동]");
    // The first quick acceleration: "HH:MM:SS  속도 ..km/h => .. km/h".
    int row = -1;
    for (int i = 0; i < list->List1->count() && row < 0; ++i)
        if (list->List1->item(i)->text() == "[급가속]" && i + 1 < list->List1->count() &&
            !list->List1->item(i + 1)->text().startsWith('['))
            row = i + 1;
    ASSERT_GE(row, 0);
    const QString text = list->List1->item(row)->text().trimmed();
    const int h = text.mid(0, 2).toInt(), mi = text.mid(3, 2).toInt(), s = text.mid(6, 2).toInt();
    // A double click as the mouse delivers it: press, release, double click, release.
    QListWidgetItem* item = list->List1->item(row);
    QApplication::processEvents();
    list->List1->scrollToItem(item);
    QApplication::processEvents();
    QWidget* vp = list->List1->viewport();
    const QPointF at = list->List1->visualItemRect(item).center();
    QTest::mouseClick(vp, Qt::LeftButton, {}, at.toPoint());
    QMouseEvent dbl(QEvent::MouseButtonDblClick, at, vp->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                    Qt::NoModifier);
    QApplication::sendEvent(vp, &dbl);
    QMouseEvent up(QEvent::MouseButtonRelease, at, vp->mapToGlobal(at), Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(vp, &up);
    QApplication::processEvents();
    auto* sec = qobject_cast<frmReport_SecOperation*>(Find_Form("frmReport_SecOperation"));
    ASSERT_NE(sec, nullptr);
    EXPECT_EQ(sec->Hour(), h);
    EXPECT_EQ(sec->Cursor_Point(), mi * 60 + s);
    EXPECT_EQ(sec->TDBText1[2]->text(), QString("%1 : %2 : %3").arg(h, 2, 10, QChar('0')).arg(mi, 2, 10, QChar('0')).arg(s, 2, 10, QChar('0')));
    // The speed shown is the event's second: the record's second speed.
    const int after = text.section(" => ", 1).section("km/h", 0, 0).trimmed().toInt();
    EXPECT_EQ(sec->TDBText1[3]->text(), QString::number(after));

    // Seconds step by one; the neighbouring stored hours, and none past the last.
    QTest::keyClick(sec, Qt::Key_Right);
    EXPECT_EQ(sec->Cursor_Point(), mi * 60 + s + 1);
    msgs.Clear();
    for (int i = 0; i < 24 && msgs.seen.empty(); ++i)
        QTest::mouseClick(sec->SSCommand3, Qt::LeftButton);
    EXPECT_EQ(msgs.Last(), "데이터가 없습니다");
    const int last = sec->Hour();
    QTest::mouseClick(sec->SSCommand1, Qt::LeftButton);
    EXPECT_LT(sec->Hour(), last);
}

TEST_F(ViewsTest, EveryViewIsReachedFromTheMainWindow)
{
    MDIForm_Main* m = Start_With_Days();
    ASSERT_NE(m, nullptr);
    msgs.Clear();
    // "초당 운행그래프" in the tree: the analysis form on the seconds view.
    m->Run(Tree_Action(22));
    auto* main = qobject_cast<frmReport_Main*>(Find_Form("frmReport_Main"));
    ASSERT_NE(main, nullptr);
    EXPECT_EQ(main->Option(), 0);
    main->TDBTime1->setTime(QTime(9, 0));
    QTest::mouseClick(main->Command1, Qt::LeftButton);
    auto* sec = qobject_cast<frmReport_SecOperation*>(Find_Form("frmReport_SecOperation"));
    ASSERT_NE(sec, nullptr);
    EXPECT_EQ(sec->Hour(), 9);
    EXPECT_TRUE(msgs.seen.empty()) << msgs.Last().toStdString();
    // The quick-brake chart: a USB day keeps no buffers.
    msgs.Clear();
    QTest::mouseClick(main->cmdQuickBrake, Qt::LeftButton);
    auto* brake = qobject_cast<frmReport_QuickBrake*>(Find_Form("frmReport_QuickBrake"));
    ASSERT_NE(brake, nullptr);
    EXPECT_EQ(msgs.Last(), LoadResString(1135));
    // After the message the chart stands in front, not the analysis form.
    QApplication::processEvents();
    EXPECT_EQ(QApplication::activeWindow(), brake);
    EXPECT_TRUE(brake->Label1->text().startsWith(LoadResString(632) + " : 12AB00"));
    // The mark charts of the week up to the day.
    QTest::mouseClick(main->cmdAvgDay, Qt::LeftButton);
    auto* avg = qobject_cast<frmReport_AvgDay*>(Find_Form("frmReport_AvgDay"));
    ASSERT_NE(avg, nullptr);
    EXPECT_EQ(avg->TDBText2->text(), "2");
    EXPECT_EQ(avg->Columns().size(), 2u);
    QTest::mouseClick(main->cmdDayAVG, Qt::LeftButton);
    auto* byDay = qobject_cast<frmReport_DayAVG*>(Find_Form("frmReport_DayAVG"));
    ASSERT_NE(byDay, nullptr);
    EXPECT_EQ(byDay->TDBText2->text(), "2");

    // The day grid: its last two columns open the views of the row.
    QTest::mouseClick(m->SSCommand[6], Qt::LeftButton);
    auto* grid = qobject_cast<Frm_daydrive*>(Find_Form("Frm_daydrive"));
    ASSERT_NE(grid, nullptr);
    ASSERT_EQ(grid->Grid1->rowCount(), 1);
    EXPECT_EQ(grid->Grid1->item(0, 1)->text(), "12AB00");
    grid->Cell_Clicked(0, 12);
    auto* minute = qobject_cast<frmReport_Operation*>(Find_Form("frmReport_Operation"));
    ASSERT_NE(minute, nullptr);
    EXPECT_EQ(minute->Label1->text(), "2026-01-06");
    // The seconds view opens centred on the grid that opened it, on screen,
    // wherever the grid stands.
    const QRect area = grid->screen()->availableGeometry();
    grid->move(area.right() - grid->frameGeometry().width() / 3, area.bottom() - grid->frameGeometry().height() / 3);
    grid->Cell_Clicked(0, 13);
    EXPECT_EQ(sec->Hour(), grid->Grid1->item(0, 3)->text().left(2).toInt());
    EXPECT_EQ(sec->pos(), Centred_On(grid->frameGeometry(), sec->frameGeometry().size(), area));
    EXPECT_TRUE(area.contains(sec->frameGeometry().topLeft()));
    QApplication::processEvents();
    EXPECT_EQ(QApplication::activeWindow(), sec);
    // The buttons of the minute and seconds views open the analysis form.
    EXPECT_TRUE(Button_Action(4).form == "frmReport_Main" && Button_Action(5).form == "frmReport_Main");
}

TEST(Window_Place, CentredOnItsParentAndKeptOnTheScreen)
{
    const QRect screen(0, 0, 1920, 1080);
    // Room enough: the centres meet.
    EXPECT_EQ(Centred_On(QRect(100, 100, 600, 400), QSize(200, 100), screen), QPoint(300, 250));
    // A parent at the bottom right corner: the window stays inside.
    EXPECT_EQ(Centred_On(QRect(1700, 900, 400, 300), QSize(200, 100), screen), QPoint(1720, 980));
    // A parent partly above and left of the screen: the title bar stays on it.
    EXPECT_EQ(Centred_On(QRect(-300, -200, 400, 300), QSize(200, 100), screen), QPoint(0, 0));
    // Larger than the screen: its top-left corner on the screen.
    EXPECT_EQ(Centred_On(QRect(100, 100, 600, 400), QSize(2500, 1200), screen), QPoint(0, 0));
    // A second screen to the right, and no parent: its centre.
    EXPECT_EQ(Centred_On(QRect(), QSize(200, 100), QRect(1920, 0, 1280, 1024)), QPoint(2460, 462));
}

TEST_F(ViewsTest, APrintedPageCarriesTheTitleFieldsAndGraph)
{
    MDIForm_Main* m = Start_With_Days();
    ASSERT_NE(m, nullptr);
    frmReport_Operation* v = Minute_View(m);
    ASSERT_NE(v, nullptr);
    const float left = Graph().Graph_Left;
    QTemporaryDir dir;
    Pdf_Printer printer(dir.filePath("page.pdf"));
    ASSERT_TRUE(v->Print_To(printer));
    // The window's own geometry again.
    EXPECT_EQ(Graph().Graph_Left, left);
    QProcess p;
    p.start("pdftotext", {dir.filePath("page.pdf"), "-"});
    p.waitForFinished(30000);
    const QString text = QString::fromUtf8(p.readAllStandardOutput());
    EXPECT_TRUE(text.contains("차량 운행 상황 분석")) << text.toStdString();
    EXPECT_TRUE(text.contains("운전자 코드 : 000123"));
    EXPECT_TRUE(text.contains("총 주행거리"));
    EXPECT_TRUE(text.contains("12시"));
}
