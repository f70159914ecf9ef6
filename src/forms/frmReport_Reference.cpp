#include "forms/frmReport_Reference.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Excel_Run.h"
#include "forms/Grid_View.h"
#include "forms/Keep_Progress.h"
#include "store/Cls_DB.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

namespace vex::forms {

namespace {

using Routine = Excel_Result (*)(Cls_DB&, const QString&, const Excel_Selection&, const QString&);

struct Reference_Report {
    Routine run;
    bool byDriver; // the driver list chooses; else the car list (none for every car's days)
    bool byCar;
};

const Reference_Report kReports[6] = {
    {Excel_Driver_Day, true, false},  {Excel_Driver_Total, true, false}, {Excel_Speed_Rate, true, false},
    {Excel_Car_Day, false, true},     {Excel_Car_Total, false, true},    {Excel_All_Cars_Day, false, false},
};

QString Caption(int option)
{
    switch (option) {
    case 0: return LoadResString(716);
    case 1: return LoadResString(717);
    case 2: return QStringLiteral("운전원 운행 속도별 집계표");
    case 3: return LoadResString(719);
    case 4: return LoadResString(720);
    case 5: return QStringLiteral("일자별 차량별 운행상황 집계");
    }
    return {};
}

// "ALL" stands for every code: the routines take an empty one.
QString Code_Or_All(const QComboBox* combo)
{
    const QString code = combo->currentText().section(QLatin1Char(' '), 0, 0).trimmed();
    return code == QLatin1String("ALL") ? QString() : code;
}

} // namespace

frmReport_Reference::frmReport_Reference(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(LoadResString(1142));
    auto* kinds = new QGroupBox(LoadResString(1142), this);
    auto* kindBox = new QGridLayout(kinds);
    for (int i = 0; i < 6; ++i) {
        Opt_Report_Type[i] = new QRadioButton(Caption(i), kinds);
        Opt_Report_Type[i]->setObjectName(QStringLiteral("Opt_Report_Type_%1").arg(i));
        kindBox->addWidget(Opt_Report_Type[i], i / 2, i % 2);
        connect(Opt_Report_Type[i], &QRadioButton::clicked, this, [this, i] { Option_Button_Change(i); });
    }
    auto* by = new QGroupBox(this);
    auto* byBox = new QHBoxLayout(by);
    Opt_Driver = new QRadioButton(LoadResString(1045), by);
    Opt_Car = new QRadioButton(LoadResString(1044), by);
    byBox->addWidget(Opt_Driver);
    byBox->addWidget(Opt_Car);
    Opt_Driver->setEnabled(false);
    Opt_Car->setEnabled(false);

    TDBDate1 = New_Day_Edit(this, "TDBDate1");
    TDBDate2 = New_Day_Edit(this, "TDBDate2");
    TDBCombo1 = new QComboBox(this);
    TDBCombo1->setObjectName(QStringLiteral("TDBCombo1"));
    TDBCombo2 = new QComboBox(this);
    TDBCombo2->setObjectName(QStringLiteral("TDBCombo2"));
    Command1 = new QPushButton(LoadResString(1142), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command2 = new QPushButton(LoadResString(504), this);
    connect(Command1, &QPushButton::clicked, this, &frmReport_Reference::Command1_Click);
    connect(Command2, &QPushButton::clicked, this, &QWidget::close);

    auto* fields = new QGridLayout;
    fields->addWidget(new QLabel(LoadResString(1214), this), 0, 0);
    fields->addWidget(TDBDate1, 0, 1);
    fields->addWidget(new QLabel(LoadResString(1215), this), 0, 2);
    fields->addWidget(TDBDate2, 0, 3);
    fields->addWidget(new QLabel(LoadResString(632), this), 1, 0);
    fields->addWidget(TDBCombo1, 1, 1);
    fields->addWidget(new QLabel(LoadResString(633), this), 1, 2);
    fields->addWidget(TDBCombo2, 1, 3);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command1);
    buttons->addWidget(Command2);
    auto* box = new QVBoxLayout(this);
    box->addWidget(kinds);
    box->addWidget(by);
    box->addLayout(fields);
    box->addStretch();
    box->addLayout(buttons);

    // The lists, and the month of the newest stored day as the period.
    TDBCombo1->addItems(Register_Codes(QStringLiteral("S_D1")));
    TDBCombo2->addItems(Register_Codes(QStringLiteral("S_D2")));
    const QDate last = Newest_Stored_Day(0);
    TDBDate1->setDate(QDate(last.year(), last.month(), 1));
    TDBDate2->setDate(last);
    Option_Button_Change(std::clamp<int>(G().Report_Kind, 0, 5));
}

void frmReport_Reference::Option_Button_Change(int option)
{
    if (option < 0 || option > 5)
        return;
    option_ = option;
    Opt_Report_Type[option]->setChecked(true);
    const Reference_Report& k = kReports[option];
    Opt_Driver->setChecked(k.byDriver);
    Opt_Car->setChecked(k.byCar);
    TDBCombo2->setEnabled(k.byDriver);
    TDBCombo1->setEnabled(k.byCar);
}

void frmReport_Reference::Command1_Click()
{
    const Reference_Report& k = kReports[option_];
    Excel_Selection sel;
    sel.car = k.byCar ? Code_Or_All(TDBCombo1) : QString();
    sel.driver = k.byDriver ? Code_Or_All(TDBCombo2) : QString();
    sel.from = TDBDate1->date().toString(QStringLiteral("yyMMdd"));
    sel.to = TDBDate2->date().toString(QStringLiteral("yyMMdd"));
    const QString appDir = G().App_Dir;
    Excel_Run(this, Caption(option_), sel,
              [run = k.run, appDir](Cls_DB& db, const Excel_Selection& s) { return run(db, appDir, s, {}); });
}

} // namespace vex::forms
