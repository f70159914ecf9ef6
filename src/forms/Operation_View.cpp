#include "forms/Operation_View.h"

#include "analysis/Graph_Surface.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Report_Print.h"
#include "forms/frm_Ledger.h"
#include "forms/logic/View_Logic.h"
#include "store/Cls_DB.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>

namespace vex::forms {

namespace {

constexpr int16_t kErrOperation_Command1 = 1074;
constexpr int16_t kErrOperation_Form_KeyDown = 1076;
constexpr int16_t kErrOperation_Option1_Click = 1079;
constexpr int16_t kErrOperation_Button_Click = 1080;

} // namespace

int Key_Code(const QKeyEvent& e)
{
    const bool keypad = e.modifiers() & Qt::KeypadModifier;
    switch (e.key()) {
    case Qt::Key_PageUp: return 33;
    case Qt::Key_PageDown: return 34;
    case Qt::Key_Left: return 37;
    case Qt::Key_Right: return 39;
    case Qt::Key_4: return keypad ? 100 : 0;
    case Qt::Key_6: return keypad ? 102 : 0;
    }
    return 0;
}

Operation_View::Operation_View(const char* name, bool hour, const std::vector<int>& zooms, int fields,
                               QWidget* parent)
    : Vex_Form(QString::fromLatin1(name), parent), og_(*G().DB), hour_(hour), zooms_(zooms)
{
    setFocusPolicy(Qt::StrongFocus);
    Picture2 = new Graph_Picture(this);
    Picture2->Draw = [this](Graph_Surface& s) {
        og_.Out_Direction = 0;
        if (hour_)
            og_.Draw_Hour(s);
        else
            og_.Draw_Day(s);
    };
    Picture2->Clicked = [this](float x, float) { Picture2_MouseUp(x); };
    Picture2->Resized = [this] { Form_Resize(); };

    auto* top = new QHBoxLayout;
    const QString unit = LoadResString(hour ? 1121 : 849);
    for (int i = 0; i < 5; ++i) {
        Option1[i] = new QRadioButton(QStringLiteral("%1 - %2").arg(zooms_[size_t(i)]).arg(unit), this);
        Option1[i]->setObjectName(QStringLiteral("Option1_%1").arg(i));
        Option1[i]->setFocusPolicy(Qt::NoFocus);
        connect(Option1[i], &QRadioButton::clicked, this, [this, i] { Option1_Click(i); });
        top->addWidget(Option1[i]);
    }
    Option1[4]->setChecked(true);
    Label1 = new QLabel(this);
    Label1->setObjectName(QStringLiteral("Label1"));
    top->addSpacing(12);
    top->addWidget(Label1);
    top->addStretch();
    Command2 = new QPushButton(this);
    Command2->setObjectName(QStringLiteral("Command2"));
    Command1 = new QPushButton(LoadResString(503), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command3 = new QPushButton(LoadResString(504), this);
    Command3->setObjectName(QStringLiteral("Command3"));
    Command5 = new QPushButton(LoadResString(628), this);
    Command5->setObjectName(QStringLiteral("Command5"));
    for (QPushButton* b : {Command2, Command5, Command1, Command3}) {
        b->setFocusPolicy(Qt::NoFocus);
        top->addWidget(b);
    }
    connect(Command1, &QPushButton::clicked, this, &Operation_View::Print);
    connect(Command5, &QPushButton::clicked, this, &Operation_View::Preview);
    connect(Command3, &QPushButton::clicked, this, &QWidget::close);

    auto* grid = new QGridLayout;
    for (int i = 0; i < fields; ++i) {
        auto* caption = new QLabel(this);
        auto* field = new QLineEdit(this);
        field->setObjectName(QStringLiteral("TDBText1_%1").arg(i));
        field->setReadOnly(true);
        field->setFocusPolicy(Qt::NoFocus);
        Label3.push_back(caption);
        TDBText1.push_back(field);
        grid->addWidget(caption, i / 4, (i % 4) * 2);
        grid->addWidget(field, i / 4, (i % 4) * 2 + 1);
    }
    // The mark of a day with notes takes the free cells after the last
    // field and stands there empty on a day without: its text never moves
    // the layout, so neither the picture nor the cursor changes with it.
    cmdNotes = new QPushButton(this);
    cmdNotes->setObjectName(QStringLiteral("cmdNotes"));
    cmdNotes->setFlat(true);
    cmdNotes->setFocusPolicy(Qt::NoFocus);
    cmdNotes->setEnabled(false);
    cmdNotes->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    if (!TDBText1.empty())
        cmdNotes->setFixedHeight(TDBText1.front()->sizeHint().height());
    cmdNotes->setStyleSheet(QStringLiteral("color: #b00000; text-align: left"));
    const int column = (fields % 4) * 2;
    grid->addWidget(cmdNotes, fields / 4, column, 1, 8 - column);
    auto* box = new QVBoxLayout(this);
    box->addLayout(top);
    box->addWidget(Picture2, 1);
    box->addLayout(grid);
}

void Operation_View::Geometry()
{
    if (hour_)
        vex::Graph_Init_360(Picture2->Scale_Width(), Picture2->Scale_Height(), 0);
    else
        vex::Graph_Init(Picture2->Scale_Width(), Picture2->Scale_Height(), 0);
}

float Operation_View::X_Of(int point) const
{
    const Graph_Geometry& g = Graph();
    const float x = hour_ ? og_.Make_X360(float(point)) : og_.Make_X(float(point));
    return std::clamp(x, g.Graph_Left, g.Graph_Right);
}

void Operation_View::Move_Cursor(float x)
{
    const Graph_Geometry& g = Graph();
    cursorX_ = x;
    point_ = hour_ ? Second_At(og_, x) : Minute_At(og_, x);
    Picture2->Set_Cursor(x, g.Graph_Top, g.Graph_Bottom);
    Fill_Fields();
}

void Operation_View::Redraw(int point)
{
    Picture2->Invalidate();
    Picture2->Image();
    Geometry();
    const Cursor_Track t = hour_ ? Hour_Track(og_) : Day_Track(og_);
    Move_Cursor(t.Snap(X_Of(point)));
}

void Operation_View::Set_Fields(const QStringList& texts)
{
    for (size_t i = 0; i < TDBText1.size(); ++i)
        TDBText1[i]->setText(int(i) < texts.size() ? texts[int(i)] : QString());
}

void Operation_View::Clear_Fields()
{
    for (QLineEdit* f : TDBText1)
        f->clear();
}

void Operation_View::Form_KeyDown(int keyCode)
{
    Guarded(kErrOperation_Form_KeyDown, [&] {
        Geometry();
        const Cursor_Track t = hour_ ? Hour_Track(og_) : Day_Track(og_);
        switch (keyCode) {
        case 33:
        case 34: Page(keyCode); break;
        case 37:
        case 100: Move_Cursor(t.Left(cursorX_)); break;
        case 39:
        case 102: Move_Cursor(t.Right(cursorX_)); break;
        }
    });
}

void Operation_View::Option1_Click(int index)
{
    Guarded(kErrOperation_Option1_Click, [&] {
        if (index < 0 || index >= 5)
            return;
        Option1[index]->setChecked(true);
        const int zoom = zooms_[size_t(index)];
        const int point = point_;
        // The window holds the cursor's hour (minute), as near its middle as
        // the day (hour) allows.
        og_.Set_Zoom_Window(int16_t(zoom), point / 60 - zoom / 2, hour_ ? 60 : 24);
        Fetch();
        Redraw(point);
    });
}

void Operation_View::Picture2_MouseUp(float x)
{
    Guarded(kErrOperation_Button_Click, [&] {
        Geometry();
        const Graph_Geometry& g = Graph();
        const Cursor_Track t = hour_ ? Hour_Track(og_) : Day_Track(og_);
        Move_Cursor(t.Snap(std::clamp(x, g.Graph_Left, g.Graph_Right)));
        for (int i = 0; i < 5; ++i)
            if (zooms_[size_t(i)] == og_.Zoom_Type)
                Option1_Click(i);
    });
}

void Operation_View::Cursor_To(int point)
{
    const int span = hour_ ? 60 : 24;
    const int unit = point / 60;
    if (unit < og_.Zoom_Time || unit >= og_.Zoom_ETime)
        og_.Set_Zoom_Window(og_.Zoom_Type, unit - og_.Zoom_Type / 2, span);
    Redraw(point);
}

void Operation_View::Form_Resize()
{
    // The picture's geometry again; the cursor stays on its point.
    Geometry();
    const Cursor_Track t = hour_ ? Hour_Track(og_) : Day_Track(og_);
    const int point = point_;
    cursorX_ = t.Snap(X_Of(point));
    Picture2->Set_Cursor(cursorX_, Graph().Graph_Top, Graph().Graph_Bottom);
    Fill_Fields();
}

void Operation_View::keyPressEvent(QKeyEvent* e)
{
    const int code = Key_Code(*e);
    if (code == 0) {
        Vex_Form::keyPressEvent(e);
        return;
    }
    Form_KeyDown(code);
}

bool Operation_View::Print_To(Report_Printer& printer)
{
    bool ok = false;
    Guarded(kErrOperation_Command1, [&] { ok = Report(printer); });
    // Paper proportions stay behind; the window takes its own again.
    Geometry();
    return ok;
}

void Operation_View::Print()
{
    Print_Report(this, Selection(), [this](Cls_Report&, Report_Printer& p) { return Print_To(p); });
}

void Operation_View::Preview()
{
    Preview_Report(this, Selection(), [this](Cls_Report&, Report_Printer& p) { return Print_To(p); });
}

void Operation_View::Show_Notes(const QString& car, const QString& driver, const QString& day)
{
    const QString key = car + driver + day;
    const std::vector<Finding> notes = G().DB ? Notes_Of_Day(*G().DB, key) : std::vector<Finding>{};
    cmdNotes->setEnabled(!notes.empty());
    cmdNotes->disconnect();
    if (notes.empty()) {
        cmdNotes->setText(QString());
        cmdNotes->setToolTip(QString());
        return;
    }
    cmdNotes->setText(Lang_Text(QStringLiteral("⚠ 참고 사항 %1건"), QStringLiteral("⚠ %1 notes")).arg(notes.size()));
    cmdNotes->setToolTip(Finding_Text(notes.front()));
    connect(cmdNotes, &QPushButton::clicked, this, [this, key] { Open<frm_Ledger>(parentWidget(), this)->Show_Day(key); });
}

} // namespace vex::forms
