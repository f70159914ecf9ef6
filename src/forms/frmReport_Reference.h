#pragma once
// "조회": the reference reports as workbooks. A driver's days, the totals
// of every driver, a driver's speed classes, a car's days, the totals of
// every car, and every car's days; the driver or the car is chosen by the
// report, the period for all.
#include "forms/Vex_Form.h"

#include <QComboBox>
#include <QDateEdit>
#include <QPushButton>
#include <QRadioButton>

namespace vex::forms {

class frmReport_Reference : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmReport_Reference";
    explicit frmReport_Reference(QWidget* parent = nullptr);

    QRadioButton* Opt_Report_Type[6];
    QRadioButton* Opt_Driver; // 1045 by driver
    QRadioButton* Opt_Car;    // 1044 by car
    QDateEdit* TDBDate1;      // 1214 start
    QDateEdit* TDBDate2;      // 1215 end
    QComboBox* TDBCombo1;     // 632 cars, "ALL" first
    QComboBox* TDBCombo2;     // 633 drivers, "ALL" first
    QPushButton* Command1;    // 1142 runs the report
    QPushButton* Command2;    // 504 close

    int Option() const { return option_; }
    void Option_Button_Change(int option);
    void Command1_Click();

private:
    int option_ = 0;
};

} // namespace vex::forms
