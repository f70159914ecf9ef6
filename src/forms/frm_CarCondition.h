#pragma once
// "월간운행실태": a month's trips summed by car or by driver and ranked by
// the average mark; the number of rows shown is chosen ("ALL", 5 to 20).
// "일일자료보기" opens the days of the chosen row in frm_daystatus; "Excel"
// writes the grid into carcondition.xltx.
#include "analysis/Status_Grids.h"
#include "forms/Vex_Form.h"

#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>

namespace vex::forms {

class frm_CarCondition : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_CarCondition";
    explicit frm_CarCondition(QWidget* parent = nullptr);

    QComboBox* Combo1;       // 1042 month
    QRadioButton* Opt_Car;   // 1271 "대상": cars
    QRadioButton* Opt_Driver; //          or drivers
    QComboBox* Combo2;       // 1264 rows: ALL, 5, 10, 15, 20
    QTableWidget* Grid1;
    QPushButton* Command1;   // 1142 query
    QPushButton* Command2;   // "일일자료보기"
    QPushButton* Command3;   // "Excel"
    QPushButton* Command4;   // 504 close

    void Show_Month();
    void Day_Data();   // the chosen row's days
    void Excel_Export();

private:
    Grid_Table table_;
    QString month_;
    bool byDriver_ = false;
};

} // namespace vex::forms
