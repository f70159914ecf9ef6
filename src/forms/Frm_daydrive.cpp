#include "forms/Frm_daydrive.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "forms/Excel_Show.h"
#include "forms/Frm_consume.h"
#include "forms/Frm_oversp.h"
#include "forms/Grid_View.h"
#include "forms/Msg_Box.h"
#include "forms/frmReport_Operation.h"
#include "forms/frmReport_SecOperation.h"
#include "forms/logic/View_Logic.h"
#include "reports/Excel_Grid.h"
#include "store/Cls_DB.h"


namespace vex::forms {

namespace {

constexpr int kMinuteColumn = 12, kSecondColumn = 13;

} // namespace

Frm_daydrive::Frm_daydrive(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(LoadResString(1256));
    TDBDate1 = New_Day_Edit(this, "TDBDate1");
    Command1 = new QPushButton(LoadResString(704), this);
    Command2 = new QPushButton(QStringLiteral("Excel"), this);
    Grid1 = New_Grid(this, "Grid1");
    Grid1->setMinimumSize(1000, 300); // every column, the two of the views too
    Command3 = New_Button(this, QStringLiteral("연료소모량"), "Command3");
    connect(Grid1, &QTableWidget::cellClicked, this, &Frm_daydrive::Cell_Clicked);
    connect(Grid1, &QTableWidget::cellDoubleClicked, this, [this](int row, int) { Row_Double_Clicked(row); });
    connect(TDBDate1, &QDateEdit::dateChanged, this, &Frm_daydrive::Show_Day);
    connect(Command1, &QPushButton::clicked, this, [this] {
        Print_Grid(this, windowTitle(), LoadResString(1033) + QStringLiteral(" ") +
                                            TDBDate1->date().toString(QStringLiteral("yyyy-MM-dd")), table_);
    });
    connect(Command2, &QPushButton::clicked, this, &Frm_daydrive::Excel_Export);
    // The fuel estimate of the same day.
    connect(Command3, &QPushButton::clicked, this,
            [this] { Open<Frm_consume1>(parentWidget(), this)->Show_Day(TDBDate1->date()); });

    Grid_Window_Layout(this, {{LoadResString(1033), TDBDate1}}, {Command1, Command2, Command3}, Grid1);

    const QSignalBlocker quiet(TDBDate1);
    TDBDate1->setDate(Newest_Stored_Day(1054));
    Show_Day();
}

void Frm_daydrive::Show_Day()
{
    table_ = {};
    Guarded(1056, [&] { table_ = Day_Drive_Grid(*G().DB, TDBDate1->date().toString(QStringLiteral("yyMMdd"))); });
    Fill_Grid(Grid1, table_, {QStringLiteral("분당 운행그래프"), LoadResString(1298)});
}

void Frm_daydrive::Excel_Export()
{
    // The grid as it stands, without the two view columns.
    Excel_Show(Excel_Grid_Export(G().App_Dir,
                                 Day_Drive_Excel(table_, TDBDate1->date().toString(QStringLiteral("yyMMdd")))));
}

void Frm_daydrive::Cell_Clicked(int row, int column)
{
    if (row < 0 || row >= table_.keys.size() || (column != kMinuteColumn && column != kSecondColumn))
        return;
    Report_Selection& sel = Selection();
    sel.Car_Code = table_.keys[row].left(6);
    sel.Driver_Code = table_.keys[row].mid(6, 6);
    sel.Start_Date = table_.keys[row].right(6);
    if (column == kMinuteColumn) {
        Open<frmReport_Operation>(parentWidget(), this)->Load_Selection();
    } else {
        const int hour = Grid1->item(row, 3)->text().left(2).toInt();
        Open<frmReport_SecOperation>(parentWidget(), this)->Show_Hour(sel.Car_Code, sel.Driver_Code, sel.Start_Date, hour, -1);
    }
}

void Frm_daydrive::Row_Double_Clicked(int row)
{
    if (row < 0 || row >= table_.keys.size())
        return;
    Open<Frm_oversp>(parentWidget(), this)->Show_Trip(table_.keys[row].left(6), table_.keys[row].mid(6, 6), table_.keys[row].right(6));
}

} // namespace vex::forms
