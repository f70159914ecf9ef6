#include "forms/frmReport_AvgDay.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "forms/logic/View_Logic.h"
#include "store/Cls_DB.h"

#include <QLabel>

namespace vex::forms {

namespace {

constexpr int16_t kErrAvgDay_Command1 = 1051;
constexpr int16_t kErrDayAVG_Command1 = 1053;

} // namespace

frmReport_AvgDay::frmReport_AvgDay(QWidget* parent) : Marks_Form(kName, 625, 804, 805, parent) {}

void frmReport_AvgDay::Search(const QString& start, const QString& end)
{
    Guarded(kErrAvgDay_Command1, [&] {
        const Avg_Days days = DB_Search_AvgDay(*G().DB, start, end);
        TDBText1->setText(QString::number(days.average, 'f', 2));
        TDBText2->setText(QString::number(days.days));
        columns_ = days.columns;
        if (days.days == 0) {
            Msg_Box(1135);
            Back_In_Front();
        }
    });
}

void frmReport_AvgDay::Chart(Graph_Surface& s, const QString& start, const QString& end)
{
    Picture_Avg_Day_Base(s, start, end, columns_);
}

bool frmReport_AvgDay::Report(Cls_Report& report, Report_Printer& printer)
{
    bool ok = false;
    Guarded(kErrAvgDay_Command1, [&] { ok = report.Report_Avg_Day_G(printer, *G().DB); });
    return ok;
}

frmReport_DayAVG::frmReport_DayAVG(QWidget* parent) : Marks_Form(kName, 626, 806, 807, parent)
{
    TDBCombo1 = new QComboBox(this);
    TDBCombo1->setEditable(true);
    TDBCombo1->setObjectName(QStringLiteral("TDBCombo1"));
    TDBText3 = new QLineEdit(Selection().Car_Code, this);
    TDBText3->setObjectName(QStringLiteral("TDBText3"));
    Guarded(1052, [&] {
        Recordset rs = G().DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D2 ORDER BY D_F1"));
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
            TDBCombo1->addItem(rs.Text(QStringLiteral("D_F1")));
    });
    TDBCombo1->setCurrentText(Selection().Driver_Code);
    Fields()->addWidget(new QLabel(LoadResString(632), this), 2, 0);
    Fields()->addWidget(TDBText3, 2, 1);
    Fields()->addWidget(new QLabel(LoadResString(633), this), 2, 2);
    Fields()->addWidget(TDBCombo1, 2, 3);
}

void frmReport_DayAVG::Search(const QString& start, const QString& end)
{
    Guarded(kErrDayAVG_Command1, [&] {
        const QString car = TDBText3->text().trimmed();
        const QString driver = TDBCombo1->currentText().trimmed();
        // The day key holds the car's number at its characters 5 to 8.
        const Day_Marks marks = DB_Search_DayAVG(*G().DB, (car + driver).mid(4, 4), driver, start, end);
        TDBText1->setText(QString::number(marks.average, 'f', 2));
        TDBText2->setText(QString::number(marks.count));
        columns_ = marks.columns;
        if (marks.list.empty()) {
            Msg_Box(1135);
            Back_In_Front();
        }
    });
}

void frmReport_DayAVG::Chart(Graph_Surface& s, const QString& start, const QString& end)
{
    Picture_Day_AVG_Base(s, start, end, columns_);
}

bool frmReport_DayAVG::Report(Cls_Report& report, Report_Printer& printer)
{
    bool ok = false;
    Guarded(kErrDayAVG_Command1, [&] {
        report.Car_Code = TDBText3->text().trimmed();
        report.Driver_Code = TDBCombo1->currentText().trimmed();
        report.Driver_Name.clear();
        ok = report.Report_Day_AVG_G(printer, *G().DB);
    });
    return ok;
}

} // namespace vex::forms
