#include "forms/frmReport_QuickBrake.h"

#include "analysis/Graph_Surface.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "forms/Operation_View.h"
#include "forms/Report_Print.h"
#include "forms/logic/View_Logic.h"
#include "store/Cls_DB.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace vex::forms {

namespace {

constexpr int16_t kErrQuickBrake_Load = 1081;
constexpr int16_t kErrQuickBrake_Command1 = 1082;
constexpr int16_t kErrQuickBrake_MouseUp = 1083;
constexpr int16_t kErrQuickBrake_Form_KeyDown = 1084;
constexpr int16_t kErrQuickBrake_Cal_Speed = 1085;

} // namespace

frmReport_QuickBrake::frmReport_QuickBrake(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(LoadResString(630));
    setFocusPolicy(Qt::StrongFocus);
    Picture2 = new Graph_Picture(this);
    Picture2->Draw = [this](Graph_Surface& s) {
        chart_.Out_Direction = 0;
        chart_.Quick_Brack_Graph(s, slot_);
    };
    Picture2->Clicked = [this](float x, float) { Picture2_MouseUp(x); };
    Picture2->Resized = [this] { Move_To(sample_); };
    auto* top = new QHBoxLayout;
    for (int i = 0; i < 4; ++i) {
        Option1[i] = new QRadioButton(QString::number(i + 1), this);
        Option1[i]->setObjectName(QStringLiteral("Option1_%1").arg(i));
        Option1[i]->setFocusPolicy(Qt::NoFocus);
        connect(Option1[i], &QRadioButton::clicked, this, [this, i] { Option1_Click(i); });
        top->addWidget(Option1[i]);
    }
    Option1[0]->setChecked(true);
    top->addStretch();
    Command1 = new QPushButton(LoadResString(503), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command2 = new QPushButton(LoadResString(504), this);
    Command3 = new QPushButton(LoadResString(628), this);
    Command3->setObjectName(QStringLiteral("Command3"));
    for (QPushButton* b : {Command3, Command1, Command2}) {
        b->setFocusPolicy(Qt::NoFocus);
        top->addWidget(b);
    }
    connect(Command1, &QPushButton::clicked, this,
            [this] { Print_Report(this, Selection(), [this](Cls_Report&, Report_Printer& p) { return Print_To(p); }); });
    connect(Command3, &QPushButton::clicked, this, [this] {
        Preview_Report(this, Selection(), [this](Cls_Report&, Report_Printer& p) { return Print_To(p); });
    });
    connect(Command2, &QPushButton::clicked, this, &QWidget::close);
    auto* fields = new QGridLayout;
    const QString captions[3] = {QStringLiteral("No."), LoadResString(814), LoadResString(818)};
    for (int i = 0; i < 3; ++i) {
        TDBText1[i] = new QLineEdit(this);
        TDBText1[i]->setObjectName(QStringLiteral("TDBText1_%1").arg(i));
        TDBText1[i]->setReadOnly(true);
        TDBText1[i]->setFocusPolicy(Qt::NoFocus);
        fields->addWidget(new QLabel(captions[i], this), 0, 2 * i);
        fields->addWidget(TDBText1[i], 0, 2 * i + 1);
    }
    Label1 = new QLabel(this);
    Label1->setObjectName(QStringLiteral("Label1"));
    auto* box = new QVBoxLayout(this);
    box->addLayout(top);
    box->addWidget(Label1);
    box->addWidget(Picture2, 1);
    box->addLayout(fields);
}

bool frmReport_QuickBrake::Load_Selection()
{
    bool found = false;
    Guarded(kErrQuickBrake_Load, [&] {
        const QString car = Selection().Car_Code;
        found = chart_.Load(*G().DB, car);
        const QString gap = QStringLiteral("     ");
        Label1->setText(LoadResString(632) + QStringLiteral(" : ") + car + gap + LoadResString(633) +
                        QStringLiteral(" : ") + chart_.Driver_Code + gap + LoadResString(837) +
                        QStringLiteral(" : ") + Date_Dash(chart_.Day));
        Option1_Click(0);
        if (!found) {
            Msg_Box(1135);
            Back_In_Front();
        }
    });
    return found;
}

void frmReport_QuickBrake::Option1_Click(int index)
{
    slot_ = index + 1;
    Option1[index]->setChecked(true);
    Picture2->Invalidate();
    Picture2->Image();
    Move_To(1);
}

void frmReport_QuickBrake::Move_To(int sample)
{
    Guarded(kErrQuickBrake_Cal_Speed, [&] {
        Picture2->Image(); // the chart's geometry of the present size
        sample_ = sample;
        if (chart_.QB_Current_Point <= 0) {
            Picture2->Set_Cursor(-1, 0, 0);
            for (QLineEdit* f : TDBText1)
                f->clear();
            return;
        }
        Picture2->Set_Cursor(chart_.Sample_X(sample), chart_.BTop, chart_.BBottom);
        TDBText1[0]->setText(QString::number(sample));
        TDBText1[1]->setText(chart_.Stamp);
        TDBText1[2]->setText(QString::number(chart_.QB_Speed_Search(sample)));
    });
}

void frmReport_QuickBrake::Form_KeyDown(int keyCode)
{
    Guarded(kErrQuickBrake_Form_KeyDown, [&] {
        const int n = int(chart_.BX_Count);
        if (keyCode == 37 || keyCode == 100)
            Move_To(sample_ > 1 ? sample_ - 1 : n);
        else if (keyCode == 39 || keyCode == 102)
            Move_To(sample_ < n ? sample_ + 1 : 1);
    });
}

void frmReport_QuickBrake::Picture2_MouseUp(float x)
{
    Guarded(kErrQuickBrake_MouseUp, [&] {
        if (chart_.BX_Gap <= 0)
            return;
        const int n = int(std::lround((x - chart_.BX2) / chart_.BX_Gap));
        Move_To(std::clamp(n, 1, int(chart_.BX_Count)));
    });
}

void frmReport_QuickBrake::keyPressEvent(QKeyEvent* e)
{
    const int code = Key_Code(*e);
    if (code == 0)
        Vex_Form::keyPressEvent(e);
    else
        Form_KeyDown(code);
}

bool frmReport_QuickBrake::Print_To(Report_Printer& printer)
{
    bool ok = false;
    Guarded(kErrQuickBrake_Command1, [&] { ok = Selection().Report_Quick_Brake(printer, *G().DB, chart_, slot_); });
    // The chart's geometry of the window again.
    Picture2->Invalidate();
    Picture2->Image();
    return ok;
}

} // namespace vex::forms
