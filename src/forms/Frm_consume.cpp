#include "forms/Frm_consume.h"

#include "analysis/Fuel.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Excel_Show.h"
#include "forms/Grid_View.h"
#include "forms/Msg_Box.h"
#include "reports/Excel_Grid.h"
#include "store/Cls_DB.h"


namespace vex::forms {

Frm_consume::Frm_consume(const QString& formName, QWidget* parent) : Vex_Form(formName, parent)
{
    setWindowTitle(QStringLiteral("연료소모량 조회"));
    TDBDate1 = New_Day_Edit(this, "TDBDate1");
    TDBDate1->setDate(QDate::currentDate());
    Grid1 = New_Grid(this, "Grid1");
    Grid1->setMinimumSize(700, 300);
    Command1 = New_Button(this, LoadResString(1142), "Command1");
    Command2 = New_Button(this, LoadResString(704), "Command2");
    Command3 = New_Button(this, QStringLiteral("Excel"), "Command3");
    Command4 = new QPushButton(LoadResString(504), this);
    connect(Command1, &QPushButton::clicked, this, &Frm_consume::Query);
    connect(Command2, &QPushButton::clicked, this, [this] {
        Print_Grid(this, windowTitle(), LoadResString(1033) + QStringLiteral(" ") + Date_Dash(day_), table_);
    });
    connect(Command3, &QPushButton::clicked, this, &Frm_consume::Excel_Export);
    connect(Command4, &QPushButton::clicked, this, &QWidget::close);

    Grid_Window_Layout(this, {{LoadResString(1033), TDBDate1}}, {Command1, Command2, Command3, Command4}, Grid1);
}

void Frm_consume::Show_Day(const QDate& day)
{
    TDBDate1->setDate(day);
    Query();
}

void Frm_consume::Query()
{
    day_ = TDBDate1->date().toString(QStringLiteral("yyMMdd"));
    Fuel_Day day;
    Guarded(kErrFuelDay, [&] { day = Fuel_Estimate_Day(*G().DB, G().Config ? G().Config->U_PackDir : QString(), day_); });
    table_ = Fuel_Day_Table(day);
    Fill_Grid(Grid1, table_);
    // A car rated 0 ends the list there; the rows before it stand.
    if (!day.error.isEmpty())
        Msg_Box(day.error, QMessageBox::Warning);
}

void Frm_consume::Excel_Export()
{
    Excel_Show(Excel_Grid_Export(G().App_Dir, Fuel_Day_Excel(table_, day_)));
}

} // namespace vex::forms
