#include "forms/frmReport_Main.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "forms/Excel_Run.h"
#include "forms/Excel_Show.h"
#include "forms/Msg_Box.h"
#include "forms/frmReport_AvgDay.h"
#include "forms/frmReport_DriveDay1.h"
#include "forms/frmReport_Operation.h"
#include "forms/frmReport_QuickBrake.h"
#include "forms/frmReport_SecOperation.h"
#include "forms/logic/View_Logic.h"
#include "store/Cls_DB.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

namespace vex::forms {

namespace {

constexpr int16_t kErrMain_Load = 1060;
constexpr int16_t kErrMain_Command1 = 1061;
constexpr int16_t kErrMain_Report_Show = 1062;

QString Option_Caption(int option)
{
    switch (option) {
    case 0: return QStringLiteral("초당 운행그래프");
    case 1: return LoadResString(629);
    case 2: return LoadResString(722);
    case 3: return LoadResString(711);
    case 4: return LoadResString(712);
    case 5: return QStringLiteral("급가속 분석");
    case 6: return QStringLiteral("Idle 분석");
    case 7: return QStringLiteral("운전일보");
    case 8: return QStringLiteral("속도/RPM/Batt 출력");
    }
    return {};
}

QString Code_Of(const QComboBox* combo)
{
    return combo->currentText().section(QLatin1Char(' '), 0, 0).trimmed();
}

} // namespace

frmReport_Main::frmReport_Main(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(LoadResString(1141));
    auto* kinds = new QGroupBox(LoadResString(1235), this);
    auto* kindBox = new QGridLayout(kinds);
    for (int i = 0; i < 9; ++i) {
        Opt_Report_Type[i] = new QRadioButton(Option_Caption(i), kinds);
        Opt_Report_Type[i]->setObjectName(QStringLiteral("Opt_Report_Type_%1").arg(i));
        kindBox->addWidget(Opt_Report_Type[i], i / 3, i % 3);
        connect(Opt_Report_Type[i], &QRadioButton::clicked, this, [this, i] { Option_Button_Change(i); });
    }
    TDBDate1 = new QDateEdit(this);
    TDBDate2 = new QDateEdit(this);
    TDBTime1 = new QTimeEdit(this);
    TDBTime2 = new QTimeEdit(this);
    for (QDateEdit* d : {TDBDate1, TDBDate2}) {
        d->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
        d->setCalendarPopup(true);
    }
    for (QTimeEdit* t : {TDBTime1, TDBTime2})
        t->setDisplayFormat(QStringLiteral("HH:mm"));
    TDBTime2->setTime(QTime(23, 59));
    TDBCombo1 = new QComboBox(this);
    TDBCombo2 = new QComboBox(this);
    for (QComboBox* c : {TDBCombo1, TDBCombo2})
        c->setEditable(true);
    Combo1 = new QComboBox(this);
    Combo1->addItems({QStringLiteral("Excel"), QStringLiteral("Text")});
    TDBDate1->setObjectName(QStringLiteral("TDBDate1"));
    TDBCombo1->setObjectName(QStringLiteral("TDBCombo1"));
    TDBCombo2->setObjectName(QStringLiteral("TDBCombo2"));

    auto* fields = new QGridLayout;
    fields->addWidget(new QLabel(LoadResString(1117), this), 0, 0);
    fields->addWidget(TDBDate1, 0, 1);
    fields->addWidget(new QLabel(LoadResString(821), this), 0, 2);
    fields->addWidget(TDBTime1, 0, 3);
    fields->addWidget(new QLabel(LoadResString(1118), this), 1, 0);
    fields->addWidget(TDBDate2, 1, 1);
    fields->addWidget(new QLabel(LoadResString(822), this), 1, 2);
    fields->addWidget(TDBTime2, 1, 3);
    fields->addWidget(new QLabel(LoadResString(632), this), 2, 0);
    fields->addWidget(TDBCombo1, 2, 1);
    fields->addWidget(new QLabel(LoadResString(633), this), 2, 2);
    fields->addWidget(TDBCombo2, 2, 3);
    fields->addWidget(new QLabel(QStringLiteral("출력방향"), this), 3, 0);
    fields->addWidget(Combo1, 3, 1);

    Command1 = new QPushButton(LoadResString(628), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command2 = new QPushButton(LoadResString(504), this);
    cmdQuickBrake = new QPushButton(LoadResString(630), this);
    cmdQuickBrake->setObjectName(QStringLiteral("cmdQuickBrake"));
    cmdAvgDay = new QPushButton(LoadResString(625), this);
    cmdAvgDay->setObjectName(QStringLiteral("cmdAvgDay"));
    cmdDayAVG = new QPushButton(LoadResString(626), this);
    cmdDayAVG->setObjectName(QStringLiteral("cmdDayAVG"));
    connect(Command1, &QPushButton::clicked, this, &frmReport_Main::Command1_Click);
    connect(Command2, &QPushButton::clicked, this, &QWidget::close);
    connect(cmdQuickBrake, &QPushButton::clicked, this, [this] {
        Take_Selection();
        Open<frmReport_QuickBrake>(parentWidget(), this)->Load_Selection();
    });
    connect(cmdAvgDay, &QPushButton::clicked, this, [this] {
        Take_Selection();
        Open<frmReport_AvgDay>(parentWidget(), this)->Command1_Click();
    });
    connect(cmdDayAVG, &QPushButton::clicked, this, [this] {
        Take_Selection();
        Open<frmReport_DayAVG>(parentWidget(), this)->Command1_Click();
    });
    auto* charts = new QHBoxLayout;
    charts->addWidget(cmdQuickBrake);
    charts->addWidget(cmdAvgDay);
    charts->addWidget(cmdDayAVG);
    charts->addStretch();
    charts->addWidget(Command1);
    charts->addWidget(Command2);

    auto* box = new QVBoxLayout(this);
    box->addWidget(kinds);
    box->addLayout(fields);
    box->addLayout(charts);
    Guarded(kErrMain_Load, [&] { Fill_Lists(); });
    // The entry that opened the form chose the analysis.
    Option_Button_Change(std::clamp<int>(G().Report_Kind, 0, 8));
}

void frmReport_Main::Fill_Lists()
{
    Cls_DB& db = *G().DB;
    for (auto [combo, table] : {std::pair{TDBCombo1, "S_D1"}, std::pair{TDBCombo2, "S_D2"}}) {
        combo->addItem(QStringLiteral("ALL"));
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM %1 ORDER BY D_F1").arg(QLatin1String(table)));
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
            combo->addItem(rs.Text(QStringLiteral("D_F1")));
    }
    // The newest stored day, its car and driver: what was just received.
    Recordset last = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 ORDER BY D_F4 DESC"));
    QDate day = QDate::currentDate();
    if (last.RecordCount() > 0) {
        const QDate stored =
            QDate::fromString(QStringLiteral("20") + last.Text(QStringLiteral("D_F4")), QStringLiteral("yyyyMMdd"));
        if (stored.isValid())
            day = stored;
        TDBCombo1->setCurrentText(last.Text(QStringLiteral("D_F2")));
        TDBCombo2->setCurrentText(last.Text(QStringLiteral("D_F3")));
        TDBTime1->setTime(QTime::fromString(last.Text(QStringLiteral("D_F5")), QStringLiteral("HHmm")));
    }
    TDBDate1->setDate(day);
    TDBDate2->setDate(day);
}

void frmReport_Main::Option_Button_Change(int option)
{
    if (option < 0 || option > 8)
        return;
    option_ = option;
    G().Report_Kind = int16_t(option);
    Opt_Report_Type[option]->setChecked(true);
    // The views read one day; the reports a period.
    const bool view = option <= 1;
    TDBDate2->setEnabled(!view);
    TDBTime2->setEnabled(!view);
    TDBTime1->setEnabled(option != 1);
    Combo1->setEnabled(option == 8);
}

void frmReport_Main::Take_Selection()
{
    Guarded(kErrMain_Report_Show, [&] {
        Report_Selection& sel = Selection();
        sel.Car_Code = Code_Of(TDBCombo1);
        sel.Driver_Code = Code_Of(TDBCombo2);
        sel.Start_Date = TDBDate1->date().toString(QStringLiteral("yyMMdd"));
        sel.Start_Time = TDBTime1->time().toString(QStringLiteral("HHmm"));
        sel.End_Date = TDBDate2->date().toString(QStringLiteral("yyMMdd"));
        sel.End_Time = TDBTime2->time().toString(QStringLiteral("HHmm"));
        Cls_DB& db = *G().DB;
        sel.Driver_Name = Driver_Name(db, sel.Driver_Code);
        Cls_Config& cfg = *G().Config;
        Recordset standards = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D10 ORDER BY D_F1 DESC"));
        if (standards.RecordCount() > 0)
            cfg.B_Val3 = int16_t(Val(standards.Text(QStringLiteral("D_F3"))));
        Recordset car = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1 = ?"), {sel.Car_Code});
        sel.Car_Government.clear();
        if (car.RecordCount() > 0) {
            sel.Car_Government = car.Text(QStringLiteral("D_F3"));
            const QString own = car.Text(QStringLiteral("D_F10")).trimmed();
            if (!own.isEmpty())
                cfg.B_Val3 = int16_t(Val(own));
        }
    });
}

void frmReport_Main::Command1_Click()
{
    Guarded(kErrMain_Command1, [&] {
        Take_Selection();
        const Report_Selection& sel = Selection();
        if (option_ == 0) {
            auto* view = Open<frmReport_SecOperation>(parentWidget(), this);
            if (!view->Show_Hour(sel.Car_Code, sel.Driver_Code, sel.Start_Date, TDBTime1->time().hour(), -1))
                view->close(); // message 1135 said it; this form stays
        } else if (option_ == 1) {
            auto* view = Open<frmReport_Operation>(parentWidget(), this);
            if (!view->Load_Selection())
                view->close();
        } else if (option_ == 7) {
            // The daily report of the day chosen, with its print and preview.
            auto* day = Open<frmReport_DriveDay1>(parentWidget(), this);
            if (!day->Show_Day())
                day->close();
        } else if (option_ >= 2 && option_ <= 6) {
            // The event lists as workbooks from their templates.
            static constexpr Excel_Result (*kLists[])(Cls_DB&, const QString&, const Excel_Selection&,
                                                      const QString&) = {
                CAL_QUICK_BRAKE, CAL_RECORD_DATA, CAL_LONG_OVER, CAL_TIME_SPEED, CAL_SECTION_RUN};
            const Excel_Selection excel{sel.Car_Code, sel.Driver_Code, sel.Start_Date, sel.End_Date};
            Excel_Show(kLists[option_ - 2](*G().DB, G().App_Dir, excel, {}));
        } else if (option_ == 8) {
            // Every second of the period: to a workbook, or to the text file.
            Excel_Selection excel{sel.Car_Code, sel.Driver_Code, sel.Start_Date, sel.End_Date};
            excel.fromTime = sel.Start_Time;
            excel.toTime = sel.End_Time;
            const bool sheet = Combo1->currentText() == QLatin1String("Excel");
            const QString appDir = G().App_Dir;
            Excel_Run(this, Option_Caption(option_), excel, [sheet, appDir](Cls_DB& db, const Excel_Selection& s) {
                return (sheet ? CAL_SPEED_DIST : CAL_SPEED_FILE)(db, appDir, s, {});
            });
        }
    });
}

} // namespace vex::forms
