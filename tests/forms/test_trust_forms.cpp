// The windows of trust: a medium with a slipping distance sensor received,
// its notes in the ledger window and on the day's event list, each note
// opening the day's graph; the mark explained to its stored value, each
// event opening the seconds view; drivers over time in a table and a chart.
#include "GuiFixture.h"

#include "forms/Frm_oversp.h"
#include "forms/frmReport_DriveDay1.h"
#include "forms/frmReport_Operation.h"
#include "forms/frmReport_SecOperation.h"
#include "forms/frm_DriverTrend.h"
#include "forms/frm_Ledger.h"
#include "forms/frm_MarkExplain.h"
#include "forms/logic/View_Logic.h"

#include <QRegularExpression>

using namespace vex;
using namespace vex::forms;

namespace {

using TrustForms = test::GuiTest;

void Shoot(QWidget* w, const char* name)
{
    if (!qEnvironmentVariableIsSet("VEX_SHOTS"))
        return;
    QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    w->grab().save(qEnvironmentVariable("VEX_SHOTS") + "/" + name);
}

} // namespace

TEST_F(TrustForms, NotesOfASlippingSensorAndAMarkExplainedToItsStoredValue)
{
    QTemporaryDir medium;
    ASSERT_EQ(test::Vexcli({"sample", "usb", "--model", "250", "--out", medium.path(), "--car", "12AB00", "--driver",
                            "000123", "--from", "261103", "--days", "2", "--damage", "slipping-sensor"})
                  .code,
              0);
    ASSERT_EQ(test::Vexcli({"--app-dir", app.Dir(), "driver", "add", "000123", "--name", "홍길동"}).code, 0);
    ASSERT_EQ(test::Vexcli({"--app-dir", app.Dir(), "receive", "usb", "--model", "250", "--medium", medium.path()}).code,
              0);
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);

    // The ledger: the reception, its two days, a distance note on each.
    auto* ledger = Open<frm_Ledger>(m);
    ASSERT_EQ(ledger->Tree->topLevelItemCount(), 1);
    QTreeWidgetItem* reception = ledger->Tree->topLevelItem(0);
    EXPECT_TRUE(reception->text(2).contains("model 250, car 12AB00")) << reception->text(2).toStdString();
    EXPECT_EQ(reception->text(1), "usb");
    ASSERT_EQ(reception->childCount(), 2);
    QTreeWidgetItem* note = reception->child(0)->child(0);
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(note->text(1), "distance");
    EXPECT_TRUE(note->text(2).contains("30% 차이")) << note->text(2).toStdString();
    EXPECT_EQ(ledger->lblCount->text(), "수신 1건, 참고 사항 2건");
    Shoot(ledger, "ledger_window.png");
    // A note of the whole day opens the minute view of the day.
    ledger->Open_Item(note);
    auto* day = qobject_cast<frmReport_Operation*>(Find_Form("frmReport_Operation"));
    ASSERT_NE(day, nullptr);
    EXPECT_EQ(day->Start_Date(), "261103");
    // The day's graph carries the mark of its notes.
    EXPECT_TRUE(day->cmdNotes->isEnabled());
    EXPECT_EQ(day->cmdNotes->text(), "⚠ 참고 사항 1건");
    EXPECT_TRUE(day->cmdNotes->toolTip().contains("분당 거리 127.8 km")) << day->cmdNotes->toolTip().toStdString();
    Shoot(day, "day_graph_with_notes.png");
    // Filtered to another car: nothing; by kind: the notes only.
    ledger->txtCar->setText("12AC00");
    ASSERT_TRUE(ledger->Search());
    EXPECT_EQ(ledger->Tree->topLevelItemCount(), 0);
    ledger->txtCar->clear();
    ledger->txtFrom->setText("2611x4");
    EXPECT_FALSE(ledger->Search());
    EXPECT_TRUE(msgs.Last().contains("YYMMDD"));

    // The day's event list says it has notes and opens the ledger on the day.
    auto* events = Open<Frm_oversp>(m);
    events->Show_Trip("12AB00", "000123", "261104");
    EXPECT_TRUE(events->lblNotes->isVisibleTo(events));
    EXPECT_TRUE(events->lblNotes->text().startsWith("⚠ 참고 사항 1건")) << events->lblNotes->text().toStdString();
    QTest::mouseClick(events->lblNotes, Qt::LeftButton);
    EXPECT_EQ(ledger->txtFrom->text(), "261104");
    EXPECT_EQ(ledger->Tree->topLevelItem(0)->childCount(), 1);

    // The mark explained, ending on the stored mark; an event opens its second.
    QTest::mouseClick(events->cmdMark, Qt::LeftButton);
    auto* mark = qobject_cast<frm_MarkExplain*>(Find_Form("frm_MarkExplain"));
    ASSERT_NE(mark, nullptr);
    const Trip_Explanation& e = mark->Explanation();
    ASSERT_TRUE(e.found);
    EXPECT_EQ(e.mark.mark, QString::number(e.storedMark.toDouble()));
    ASSERT_FALSE(e.events.empty());
    Shoot(mark, "mark_explanation_window.png");
    const int last = mark->List1->count() - 1;
    mark->Open_Row(last);
    auto* seconds = qobject_cast<frmReport_SecOperation*>(Find_Form("frmReport_SecOperation"));
    ASSERT_NE(seconds, nullptr);
    EXPECT_EQ(seconds->Hour(), e.events.back().second / 3600);

    // The daily report screen explains its evaluation the same way.
    mark->close();
    Report_Selection& sel = vex::forms::Selection();
    sel.Car_Code = "12AB00";
    sel.Driver_Code = "000123";
    sel.Start_Date = "261103";
    auto* report = Open<frmReport_DriveDay1>(m);
    ASSERT_TRUE(report->Show_Day());
    QTest::mouseClick(report->cmdMark, Qt::LeftButton);
    mark = qobject_cast<frm_MarkExplain*>(Find_Form("frm_MarkExplain"));
    ASSERT_NE(mark, nullptr);
    EXPECT_EQ(mark->Explanation().day, "261103");
    EXPECT_TRUE(mark->List1->item(0)->text().contains("261103"));

    // Drivers over time: the driver's month, ranked among the month's drivers.
    auto* trend = Open<frm_DriverTrend>(m);
    trend->txtFrom->setText("2610");
    trend->txtTo->setText("2611");
    ASSERT_TRUE(trend->Search());
    ASSERT_EQ(trend->Grid->rowCount(), 1);
    EXPECT_EQ(trend->Grid->item(0, 0)->text(), "2611");
    EXPECT_EQ(trend->Grid->item(0, 2)->text(), "홍길동");
    EXPECT_EQ(trend->Grid->item(0, 8)->text(), "1/1");
    Shoot(trend, "driver_trend_window.png");
}
