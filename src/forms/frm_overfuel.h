#pragma once
// "연료 과소모 조회": the fuel a month's bad driving cost, a row a car and
// the sums ("소 계"): the distance over the speed, the quick brakes and
// accelerations and the idle minutes, each priced by its rate and the fuel
// price. "일일소모량조회" opens the day estimate.
#include "analysis/Status_Grids.h"
#include "forms/Vex_Form.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

namespace vex::forms {

class frm_overfuel : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_overfuel";
    explicit frm_overfuel(QWidget* parent = nullptr);

    QComboBox* Combo4;  // 1042 month
    QLineEdit* Text1;   // "기준속도"
    QLineEdit* Text2;   // "과속연비증가율"
    QLineEdit* Text3;   // "급가속연비증가율"
    QLineEdit* Text4;   // "IDLE연비증가율"
    QLineEdit* Text5;   // "급제동연비증가율"
    QLineEdit* Text6;   // "연료비"
    QTableWidget* Grid1;
    QPushButton* Command1; // 1142 query
    QPushButton* Command2; // 704 print
    QPushButton* Command3; // "일일소모량조회"
    QPushButton* Command4; // 504 close

    void Query();

private:
    Grid_Table table_;
};

} // namespace vex::forms
