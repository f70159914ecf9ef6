#pragma once
// The days of one car (or driver) in a month, opened from "월간운행실태";
// "엑셀출력" writes them into daystatus2.xltx.
#include "analysis/Status_Grids.h"
#include "forms/Vex_Form.h"

#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

namespace vex::forms {

class frm_daystatus : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_daystatus";
    explicit frm_daystatus(QWidget* parent = nullptr);

    QLabel* Label1;
    QTableWidget* Grid1;
    QPushButton* Command1; // "엑셀출력"
    QPushButton* Command2; // 504 close

    void Show(const QString& code, bool byDriver, const QString& yymm);
    void Excel_Export();

private:
    Grid_Table table_;
    QString code_, month_;
    bool byDriver_ = false;
};

} // namespace vex::forms
