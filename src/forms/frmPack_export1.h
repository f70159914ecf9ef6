#pragma once
// The backup: a period of whole months cut out of the live database into a
// package, the period deleted, the database compacted.
#include "forms/Vex_Form.h"

#include <QDateEdit>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace vex::forms {

class frmPack_export1 : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmPack_export1";
    explicit frmPack_export1(QWidget* parent = nullptr);

    QDateEdit* TDBDate1[2];
    QLabel* Label1;           // the stage text
    QProgressBar* ProgressBar1;
    QPushButton* Cmd_Save;
    QPushButton* Cmd_Close;
    QPushButton* Cmd_Cancel; // stops the running step; shown only while it runs

    void Cmd_Save_Click();
};

} // namespace vex::forms
