#pragma once
// Selective reception from a USB medium, by a range of days.
#include "forms/Vex_Form.h"

#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>

namespace vex::forms {

class frmPack_Read : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmPack_Read";
    explicit frmPack_Read(QWidget* parent = nullptr);

    QLineEdit* TDBText_Config; // the medium found
    QDateEdit* TDBDate1[2];
    QPushButton* Cmd_Save;
    QPushButton* Command1;

    void Cmd_Save_Click();

private:
    QString root_;
    QString model_;
};

} // namespace vex::forms
