#pragma once
// "분석": the choice of an analysis, a car, a driver and a period. The
// seconds view (0), the minute view (1) and the daily report (7) open from
// here, the event lists (2 to 6) and the seconds export (8, to a workbook or
// a text file by "출력방향") are written as workbooks, and the quick-brake
// chart and the two mark charts open from their buttons.
#include "forms/Vex_Form.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTimeEdit>

namespace vex::forms {

class frmReport_Main : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmReport_Main";
    explicit frmReport_Main(QWidget* parent = nullptr);

    QRadioButton* Opt_Report_Type[9];
    QDateEdit* TDBDate1;  // 1117 start day
    QTimeEdit* TDBTime1;  // 821 start time
    QDateEdit* TDBDate2;  // 1118 end day
    QTimeEdit* TDBTime2;  // 822 end time
    QComboBox* TDBCombo1; // 632 car
    QComboBox* TDBCombo2; // 633 driver
    QComboBox* Combo1;    // "출력방향": Excel, Text
    QPushButton* Command1; // 628 preview: runs the chosen analysis
    QPushButton* Command2; // 504 close
    QPushButton* cmdQuickBrake; // 630 the quick-brake chart of the car
    QPushButton* cmdAvgDay;     // 625 the average marks of every day
    QPushButton* cmdDayAVG;     // 626 the driver's marks by day

    int Option() const { return option_; }
    // Enables what the analysis of option needs.
    void Option_Button_Change(int option);
    void Command1_Click();
    // The selection of the fields into the report selection; the standard
    // speed in force into B_Val3 (the car's own when it has one).
    void Take_Selection();

private:
    void Fill_Lists();
    int option_ = 0;
};

} // namespace vex::forms
