#pragma once
// Driver numbers onto a recorder's USB medium.
#include "forms/Vex_Form.h"

#include <QComboBox>
#include <QPushButton>

namespace vex::forms {

class Frm_drv : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "Frm_drv";
    explicit Frm_drv(QWidget* parent = nullptr);

    QComboBox* Drive1;   // removable drives
    QComboBox* Combo1;   // driver codes
    QPushButton* SSCommand1;
    QPushButton* cmdClose;

    QString Medium() const { return medium_; }
    void SSCommand1_Click();

private:
    QString medium_; // root holding Master00.dat, empty without a medium
};

} // namespace vex::forms
