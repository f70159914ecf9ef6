#include "forms/frm_overfuel.h"

#include "analysis/Fuel.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Frm_consume.h"
#include "forms/Grid_View.h"
#include "forms/Msg_Box.h"
#include "store/Cls_DB.h"

#include <QDoubleValidator>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace vex::forms {

frm_overfuel::frm_overfuel(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("연료 과소모 조회"));
    Combo4 = new QComboBox(this);
    Combo4->setObjectName(QStringLiteral("Combo4"));
    const int speed = G().Config ? G().Config->B_Val3 : 80;
    QLineEdit** texts[] = {&Text1, &Text2, &Text3, &Text4, &Text5, &Text6};
    const char* values[] = {"", "10", "5", "2", "4", "1500"};
    for (int i = 0; i < 6; ++i) {
        *texts[i] = new QLineEdit(i == 0 ? QString::number(speed) : QLatin1String(values[i]), this);
        (*texts[i])->setObjectName(QStringLiteral("Text%1").arg(i + 1));
        (*texts[i])->setValidator(new QDoubleValidator(0, 1e9, 2, *texts[i]));
    }
    Grid1 = New_Grid(this, "Grid1");
    Grid1->setMinimumSize(700, 260);
    Command1 = new QPushButton(LoadResString(1142), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command2 = new QPushButton(LoadResString(704), this);
    Command3 = new QPushButton(QStringLiteral("일일소모량조회"), this);
    Command3->setObjectName(QStringLiteral("Command3"));
    Command4 = new QPushButton(LoadResString(504), this);
    connect(Command1, &QPushButton::clicked, this, &frm_overfuel::Query);
    connect(Command2, &QPushButton::clicked, this, [this] {
        Print_Grid(this, windowTitle(), LoadResString(1042) + QStringLiteral(" ") + Combo4->currentText(), table_);
    });
    connect(Command3, &QPushButton::clicked, this, [this] {
        const QString month = Combo4->currentData().toString();
        QDate day = QDate::fromString(QStringLiteral("20") + month + QStringLiteral("01"), QStringLiteral("yyyyMMdd"));
        Open<Frm_consume>(parentWidget(), this)->Show_Day(day.isValid() ? day : QDate::currentDate());
    });
    connect(Command4, &QPushButton::clicked, this, &QWidget::close);

    auto* form = new QFormLayout;
    form->addRow(LoadResString(1042), Combo4);
    form->addRow(QStringLiteral("기준속도"), Text1);
    form->addRow(QStringLiteral("과속연비증가율"), Text2);
    form->addRow(QStringLiteral("급가속연비증가율"), Text3);
    form->addRow(QStringLiteral("IDLE연비증가율"), Text4);
    form->addRow(QStringLiteral("급제동연비증가율"), Text5);
    form->addRow(QStringLiteral("연료비"), Text6);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton* b : {Command1, Command2, Command3, Command4})
        buttons->addWidget(b);
    auto* top = new QHBoxLayout;
    top->addLayout(form);
    top->addWidget(Grid1, 1);
    auto* box = new QVBoxLayout(this);
    box->addLayout(top, 1);
    box->addLayout(buttons);

    Guarded(kErrOverFuel, [&] {
        for (const auto& [shown, month] : Month_List(*G().DB))
            Combo4->addItem(shown, month);
    });
}

void frm_overfuel::Query()
{
    Fuel_Rates rates;
    rates.speed = Text1->text().toInt();
    rates.over = Text2->text().toDouble();
    rates.accel = Text3->text().toDouble();
    rates.idle = Text4->text().toDouble();
    rates.brake = Text5->text().toDouble();
    rates.price = Text6->text().toDouble();
    const QString month = Combo4->currentData().toString();
    std::vector<Fuel_Month_Row> rows;
    Guarded(kErrOverFuel, [&] {
        rows = Fuel_Excess_Month(*G().DB, month, rates, G().Config ? G().Config->B_Val12 : 10);
    });
    table_ = Fuel_Month_Table(rows);
    Fill_Grid(Grid1, table_);
}

} // namespace vex::forms
