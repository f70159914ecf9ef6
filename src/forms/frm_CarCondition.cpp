#include "forms/frm_CarCondition.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Excel_Show.h"
#include "forms/Grid_View.h"
#include "forms/Msg_Box.h"
#include "forms/frm_daystatus.h"
#include "reports/Excel_Grid.h"
#include "store/Cls_DB.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace vex::forms {

frm_CarCondition::frm_CarCondition(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(LoadResString(1257));
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    Opt_Car = new QRadioButton(LoadResString(1044), this);
    Opt_Driver = new QRadioButton(LoadResString(1045), this);
    Opt_Car->setChecked(true);
    Combo2 = new QComboBox(this);
    Combo2->setObjectName(QStringLiteral("Combo2"));
    Combo2->addItems({QStringLiteral("ALL"), QStringLiteral("5"), QStringLiteral("10"), QStringLiteral("15"),
                      QStringLiteral("20")});
    Grid1 = New_Grid(this, "Grid1");
    Grid1->setMinimumSize(900, 300);
    Command1 = new QPushButton(LoadResString(1142), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command2 = new QPushButton(QStringLiteral("일일자료보기"), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    Command3 = new QPushButton(QStringLiteral("Excel"), this);
    Command3->setObjectName(QStringLiteral("Command3"));
    Command4 = new QPushButton(LoadResString(504), this);
    connect(Command1, &QPushButton::clicked, this, &frm_CarCondition::Show_Month);
    connect(Command2, &QPushButton::clicked, this, &frm_CarCondition::Day_Data);
    connect(Command3, &QPushButton::clicked, this, &frm_CarCondition::Excel_Export);
    connect(Command4, &QPushButton::clicked, this, &QWidget::close);
    connect(Grid1, &QTableWidget::cellDoubleClicked, this, &frm_CarCondition::Day_Data);

    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(LoadResString(1042), this));
    top->addWidget(Combo1);
    top->addWidget(new QLabel(LoadResString(1271), this));
    top->addWidget(Opt_Car);
    top->addWidget(Opt_Driver);
    top->addWidget(new QLabel(LoadResString(1264), this));
    top->addWidget(Combo2);
    top->addStretch();
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton* b : {Command1, Command2, Command3, Command4})
        buttons->addWidget(b);
    auto* box = new QVBoxLayout(this);
    box->addLayout(top);
    box->addWidget(Grid1, 1);
    box->addLayout(buttons);

    Guarded(kErrCarCondition, [&] {
        for (const auto& [shown, month] : Month_List(*G().DB))
            Combo1->addItem(shown, month);
    });
    Show_Month();
}

void frm_CarCondition::Show_Month()
{
    month_ = Combo1->currentData().toString();
    byDriver_ = Opt_Driver->isChecked();
    const int limit = Combo2->currentText().toInt(); // "ALL" reads 0: every row
    table_ = {};
    Guarded(kErrCarCondition, [&] { table_ = Car_Condition_Grid(*G().DB, month_, byDriver_, limit); });
    Fill_Grid(Grid1, table_);
}

void frm_CarCondition::Day_Data()
{
    const int row = Grid1->currentRow();
    if (row < 0 || row >= table_.keys.size())
        return;
    Open<frm_daystatus>(parentWidget(), this)->Show(table_.keys[row], byDriver_, month_);
}

void frm_CarCondition::Excel_Export()
{
    Excel_Show(Excel_Grid_Export(G().App_Dir, Car_Condition_Excel(table_, month_, byDriver_)));
}

} // namespace vex::forms
