#pragma once
// What the export, delete and re-key windows share: a period of days and a
// car and a driver list, each with "ALL" before the codes of the registers.
#include "exchange/Exchange_Tables.h"
#include "forms/Vex_Form.h"

#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QPushButton>

namespace vex::forms {

class Selection_Form : public Vex_Form {
    Q_OBJECT
public:
    Selection_Form(const QString& formName, const QString& title, const QString& run, QWidget* parent);

    QDateEdit* TDBDate1[2];
    QComboBox* Combo1;   // cars
    QComboBox* Combo2;   // drivers
    QPushButton* Cmd_Run;
    QPushButton* Cmd_Close;

    // The period as YYMMDD and the two lists as they stand.
    vex::Selection Chosen() const;

protected:
    QGridLayout* grid_;  // a subclass adds its rows below
    virtual void Run() = 0;
};

} // namespace vex::forms
