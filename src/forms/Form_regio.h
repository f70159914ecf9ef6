#pragma once
// Names of the six digital inputs of the recorder.
#include "forms/Vex_Form.h"

#include <QLineEdit>
#include <QPushButton>

namespace vex::forms {

class Form_regio : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "Form_regio";
    explicit Form_regio(QWidget* parent = nullptr);

    QLineEdit* TDBTxt_Car[6];
    QPushButton* Command5; // save
    QPushButton* Command3; // close

    void Command5_Click();
};

} // namespace vex::forms
