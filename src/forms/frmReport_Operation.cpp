#include "forms/frmReport_Operation.h"

#include "analysis/Graph_Geometry.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Frm_oversp.h"
#include "forms/Msg_Box.h"
#include "forms/frmReport_SecOperation.h"
#include "forms/logic/View_Logic.h"
#include "store/Cls_DB.h"

#include <QBoxLayout>
#include <algorithm>

namespace vex::forms {

frmReport_Operation::frmReport_Operation(QWidget* parent)
    : Operation_View(kName, false, {1, 2, 6, 12, 24}, 16, parent)
{
    setWindowTitle(LoadResString(629));
    const QStringList captions = Minute_Field_Captions();
    for (int i = 0; i < 16; ++i)
        Label3[size_t(i)]->setText(captions[i]);
    Command2->setText(QStringLiteral("초당 속도보기"));
    Command4 = new QPushButton(QStringLiteral("이벤트 목록"), this);
    Command4->setObjectName(QStringLiteral("Command4"));
    Command4->setFocusPolicy(Qt::NoFocus);
    static_cast<QBoxLayout*>(layout()->itemAt(0)->layout())->insertWidget(9, Command4);
    connect(Command2, &QPushButton::clicked, this, &frmReport_Operation::Command2_Click);
    connect(Command4, &QPushButton::clicked, this, &frmReport_Operation::Command4_Click);
}

bool frmReport_Operation::Fetch()
{
    const Report_Selection& sel = Selection();
    return og_.DB_Search_Data(nullptr, sel.Car_Code, sel.Driver_Code, sel.Start_Date);
}

bool frmReport_Operation::Load_Selection()
{
    bool found = false;
    Guarded(kErrOperation_Load, [&] {
        og_.Set_Zoom_Window(24, 0, 24);
        Option1[4]->setChecked(true);
        found = Fetch();
        Redraw(0);
        // Nothing plotted, no cursor.
        if (og_.Current_Point == 0)
            Picture2->Set_Cursor(-1, 0, 0);
        Show_Date();
        if (!found) {
            Clear_Fields();
            Msg_Box(1135);
            Back_In_Front();
            return;
        }
        // Opening: the start of the trip in the time field, speed and
        // distance "0" until the cursor moves.
        Set_Fields(Opening_Fields(og_));
    });
    return found;
}

void frmReport_Operation::Show_Date()
{
    Label1->setText(Date_Dash(og_.Trip.startDay));
    Show_Notes(og_.Trip.car, og_.Trip.driver, og_.Trip.startDay);
}

void frmReport_Operation::Fill_Fields()
{
    Guarded(kErrOperation_Cal_Speed, [&] {
        // Without an RPM input the RPM field and its caption go.
        const bool rpm = Rpm_Input();
        TDBText1[15]->setVisible(rpm);
        Label3[15]->setVisible(rpm);
        if (og_.Trip.speed.isEmpty() || cursorX_ <= 0)
            return;
        Set_Fields(Minute_Fields(og_, point_, TDBText1[14]->text()));
    });
}

void frmReport_Operation::Page(int keyCode)
{
    Report_Selection& sel = Selection();
    sel.Start_Date = Step_Day(sel.Start_Date, keyCode == 33 ? 1 : -1);
    if (!og_.DB_Search_Data_Move_Date(sel.Car_Code, sel.Driver_Code, sel.Start_Date, nullptr, keyCode)) {
        // The day asked for stays; the old picture stays until the next draw.
        Clear_Fields();
        Msg_Box(1135);
        return;
    }
    sel.Start_Date = og_.Trip.startDay;
    Show_Date();
    Redraw(point_);
    if (auto* list = qobject_cast<Frm_oversp*>(Find_Form(QString::fromLatin1(Frm_oversp::kName))))
        list->Show_Trip(sel.Car_Code, sel.Driver_Code, sel.Start_Date);
}

bool frmReport_Operation::Report(Report_Printer& printer)
{
    // The sixteen fields as they stand, under their captions.
    QStringList captions, texts;
    for (size_t i = 0; i < TDBText1.size(); ++i) {
        captions << Label3[i]->text();
        texts << TDBText1[i]->text();
    }
    return Selection().Report_Operation(printer, og_, captions, texts);
}

void frmReport_Operation::Command2_Click()
{
    const Report_Selection& sel = Selection();
    const int hour = std::clamp(point_ / 60, 0, 23);
    auto* view = Open<frmReport_SecOperation>(parentWidget(), this);
    view->Show_Hour(sel.Car_Code, sel.Driver_Code, sel.Start_Date, hour, -1);
}

void frmReport_Operation::Command4_Click()
{
    const Report_Selection& sel = Selection();
    auto* list = Open<Frm_oversp>(parentWidget(), this);
    list->Show_Trip(sel.Car_Code, sel.Driver_Code, sel.Start_Date);
}

} // namespace vex::forms
