#include "forms/frm_dayreport.h"

#include "analysis/Operation_Graph.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Excel_Show.h"
#include "forms/Grid_View.h"
#include "reports/Excel_Grid.h"
#include "store/Cls_DB.h"


namespace vex::forms {

frm_dayreport::frm_dayreport(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("일일운행정보"));
    TDBDate1 = New_Day_Edit(this, "TDBDate1");
    Text1 = new QSpinBox(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setRange(1, 1440);
    Text1->setValue(Stop_Threshold());
    Grid1 = New_Grid(this, "Grid1");
    Grid1->setMinimumSize(600, 300);
    Command1 = New_Button(this, QStringLiteral("조  회"), "Command1");
    Command2 = New_Button(this, LoadResString(704), "Command2");
    Command3 = New_Button(this, QStringLiteral("Excel"), "Command3");
    Command4 = new QPushButton(LoadResString(504), this);
    connect(Command1, &QPushButton::clicked, this, &frm_dayreport::Show_Day);
    connect(Command2, &QPushButton::clicked, this, [this] {
        Print_Grid(this, windowTitle(), QStringLiteral("운행일 ") + Date_Dash(day_), table_);
    });
    connect(Command3, &QPushButton::clicked, this, &frm_dayreport::Excel_Export);
    connect(Command4, &QPushButton::clicked, this, &QWidget::close);

    Grid_Window_Layout(this, {{QStringLiteral("운행일"), TDBDate1}, {QStringLiteral("비운행기준(분)"), Text1}},
                       {Command1, Command2, Command3, Command4}, Grid1);

    TDBDate1->setDate(Newest_Stored_Day(0));
    Show_Day();
}

void frm_dayreport::Show_Day()
{
    day_ = TDBDate1->date().toString(QStringLiteral("yyMMdd"));
    table_ = {};
    Guarded(kErrDayReport, [&] { table_ = Day_Report_Grid(*G().DB, day_, Text1->value()); });
    Fill_Grid(Grid1, table_);
}

void frm_dayreport::Excel_Export()
{
    Excel_Show(Excel_Grid_Export(G().App_Dir, Day_Report_Excel(table_, day_)));
}

} // namespace vex::forms
