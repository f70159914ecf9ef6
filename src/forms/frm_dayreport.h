#pragma once
// "일일운행정보" ("구간거리" in the tree): the driving sections of every trip
// of a day, split at stops longer than "비운행기준(분)", with the distance
// of each; printed, or written into daydr.xltx.
#include "analysis/Status_Grids.h"
#include "forms/Vex_Form.h"

#include <QDateEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>

namespace vex::forms {

class frm_dayreport : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_dayreport";
    explicit frm_dayreport(QWidget* parent = nullptr);

    QDateEdit* TDBDate1;  // "운행일"
    QSpinBox* Text1;      // "비운행기준(분)"
    QTableWidget* Grid1;
    QPushButton* Command1; // "조  회"
    QPushButton* Command2; // 704 print
    QPushButton* Command3; // "Excel"
    QPushButton* Command4; // 504 close

    void Show_Day();
    void Excel_Export();

private:
    Grid_Table table_;
    QString day_;
};

} // namespace vex::forms
