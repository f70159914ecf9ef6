#pragma once
// The version window, with the way to the system information.
#include "forms/Vex_Form.h"

#include <QLabel>
#include <QPushButton>

namespace vex::forms {

class frm_About : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_About";
    explicit frm_About(QWidget* parent = nullptr);

    QLabel* lblVersion;
    QLabel* Label3;
    QPushButton* Command1; // close
    QPushButton* Command2; // system information

    void Command2_Click();

protected:
    void keyPressEvent(QKeyEvent* e) override;
};

// What this system tells about itself: kernel, operating system, Qt; empty
// when none of it can be had.
QString System_Information();

} // namespace vex::forms
