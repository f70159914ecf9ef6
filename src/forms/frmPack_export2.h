#pragma once
// "운전원 코드 변경": a car's days of one driver moved to another driver code.
#include "forms/Selection_Form.h"

#include <QLineEdit>

namespace vex::forms {

class frmPack_export2 : public Selection_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmPack_export2";
    explicit frmPack_export2(QWidget* parent = nullptr);
    QLineEdit* Text_New; // the new driver code

protected:
    void Run() override;
};

} // namespace vex::forms
