#include "forms/frmReport_SecOperation.h"

#include "analysis/Graph_Geometry.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "forms/frmReport_Operation.h"
#include "forms/logic/View_Logic.h"
#include "store/Cls_DB.h"

#include <QBoxLayout>

namespace vex::forms {

namespace {

QString Two_Digits(int v)
{
    return QString::number(v).rightJustified(2, QLatin1Char('0'));
}

} // namespace

frmReport_SecOperation::frmReport_SecOperation(QWidget* parent)
    : Operation_View(kName, true, {1, 2, 15, 30, 60}, 5, parent)
{
    setWindowTitle(LoadResString(1298));
    const QStringList captions = Second_Field_Captions();
    for (int i = 0; i < 5; ++i)
        Label3[size_t(i)]->setText(captions[i]);
    Command2->setText(QStringLiteral("분당 운행그래프"));
    SSCommand1 = new QPushButton(QStringLiteral("◀"), this);
    SSCommand1->setObjectName(QStringLiteral("SSCommand1"));
    SSCommand3 = new QPushButton(QStringLiteral("▶"), this);
    SSCommand3->setObjectName(QStringLiteral("SSCommand3"));
    auto* top = static_cast<QBoxLayout*>(layout()->itemAt(0)->layout());
    top->insertWidget(7, SSCommand1);
    top->insertWidget(8, SSCommand3);
    for (QPushButton* b : {SSCommand1, SSCommand3})
        b->setFocusPolicy(Qt::NoFocus);
    connect(SSCommand1, &QPushButton::clicked, this, [this] { Move_Hour(-1); });
    connect(SSCommand3, &QPushButton::clicked, this, [this] { Move_Hour(1); });
    connect(Command2, &QPushButton::clicked, this, [this] {
        Report_Selection& sel = Selection();
        sel.Car_Code = car_;
        sel.Driver_Code = driver_;
        sel.Start_Date = day_;
        auto* view = Open<frmReport_Operation>(parentWidget(), this);
        if (view->Load_Selection())
            view->Cursor_To(hour_ * 60);
    });
}

bool frmReport_SecOperation::Fetch()
{
    QString hour = Two_Digits(hour_);
    const bool found = !og_.DB_Search_SecData2(nullptr, car_, driver_, day_, hour).isEmpty();
    hour_ = int(hour.toInt());
    return found;
}

bool frmReport_SecOperation::Show_Hour(const QString& car, const QString& driver, const QString& day, int hour,
                                       int second)
{
    bool found = false;
    Guarded(kErrOperation_Load, [&] {
        car_ = car;
        driver_ = driver;
        day_ = day;
        hour_ = hour;
        og_.Out_Direction = 0;
        og_.Set_Zoom_Window(60, 0, 60);
        Option1[4]->setChecked(true);
        found = Fetch();
        Label1->setText(Date_Dash(day_) + QStringLiteral("  ") + Two_Digits(hour_) + QStringLiteral("시"));
        if (second >= 0)
            Cursor_To(second);
        else
            Redraw(0);
        if (!found) {
            Clear_Fields();
            Msg_Box(1135);
            Back_In_Front();
        }
    });
    return found;
}

void frmReport_SecOperation::Fill_Fields()
{
    Guarded(kErrOperation_Cal_Speed, [&] {
        const bool rpm = Rpm_Input();
        TDBText1[4]->setVisible(rpm);
        Label3[4]->setVisible(rpm);
        if (og_.Hour.speed.empty() || cursorX_ <= 0)
            return;
        Set_Fields(Second_Fields(og_, car_, driver_, point_));
    });
}

void frmReport_SecOperation::Move_Hour(int step)
{
    const int next = og_.Neighbour_Hour(car_, driver_, day_, hour_, step);
    if (next < 0) {
        Msg_Box(QStringLiteral("데이터가 없습니다"));
        return;
    }
    Show_Hour(car_, driver_, day_, next, -1);
}

void frmReport_SecOperation::Page(int keyCode)
{
    Move_Hour(keyCode == 33 ? 1 : -1);
}

bool frmReport_SecOperation::Report(Report_Printer& printer)
{
    // The hour of this view, whatever the selection holds by now.
    Cls_Report report = Selection();
    report.Car_Code = car_;
    report.Driver_Code = driver_;
    report.Start_Date = day_;
    QStringList captions, texts;
    for (size_t i = 0; i < TDBText1.size(); ++i) {
        captions << Label3[i]->text();
        texts << (TDBText1[i]->isHidden() ? QString() : TDBText1[i]->text());
    }
    return report.Report_Operation_360(printer, og_, captions, texts);
}

} // namespace vex::forms
