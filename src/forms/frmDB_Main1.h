#pragma once
// "데이터 불러오기": a day rebuilt from its day file.
#include "forms/Vex_Form.h"

#include <QLineEdit>
#include <QPushButton>

namespace vex::forms {

class frmDB_Main1 : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmDB_Main1";
    explicit frmDB_Main1(QWidget* parent = nullptr);

    QLineEdit* Text_Car;   // the car number
    QLineEdit* Text_File;  // the chosen ".vex"
    QPushButton* Cmd_File;
    QPushButton* Cmd_Start; // "시 작"
    QPushButton* Cmd_Close;

    void Cmd_Start_Click();
};

} // namespace vex::forms
