#include "forms/frm_daystatus.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Excel_Show.h"
#include "forms/Grid_View.h"
#include "reports/Excel_Grid.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace vex::forms {

frm_daystatus::frm_daystatus(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(LoadResString(1256));
    Label1 = new QLabel(this);
    Grid1 = New_Grid(this, "Grid1");
    Grid1->setMinimumSize(800, 300);
    Command1 = new QPushButton(QStringLiteral("엑셀출력"), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command2 = new QPushButton(LoadResString(504), this);
    connect(Command1, &QPushButton::clicked, this, &frm_daystatus::Excel_Export);
    connect(Command2, &QPushButton::clicked, this, &QWidget::close);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(Label1, 1);
    buttons->addWidget(Command1);
    buttons->addWidget(Command2);
    auto* box = new QVBoxLayout(this);
    box->addLayout(buttons);
    box->addWidget(Grid1, 1);
}

void frm_daystatus::Show(const QString& code, bool byDriver, const QString& yymm)
{
    code_ = code;
    byDriver_ = byDriver;
    month_ = yymm;
    // The title names the car (or driver) whose days these are.
    setWindowTitle(LoadResString(byDriver ? 633 : 632) + QStringLiteral(" ") + code);
    Label1->setText(QStringLiteral("20%1/%2").arg(yymm.left(2), yymm.mid(2, 2)));
    table_ = {};
    Guarded(kErrDayStatus, [&] { table_ = Day_Status_Grid(*G().DB, code, byDriver, yymm); });
    Fill_Grid(Grid1, table_);
}

void frm_daystatus::Excel_Export()
{
    Excel_Show(Excel_Grid_Export(G().App_Dir, Day_Status_Excel(table_, code_, byDriver_, month_)));
}

} // namespace vex::forms
