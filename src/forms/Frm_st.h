#pragma once
// "공단제출배열": the agency submission files of a period, with the company
// name and business number kept for the next time, and beforehand the list
// of what the run will pass over or write differently.
#include "forms/Vex_Form.h"

#include <QDateEdit>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>

namespace vex::forms {

class Frm_st : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "Frm_st";
    explicit Frm_st(QWidget* parent = nullptr);

    QLineEdit* Text1;          // company name
    QLineEdit* Text2;          // business number
    QDateEdit* TDBDate1[2];
    QProgressBar* ProgressBar1;
    QPlainTextEdit* Text_Check; // what the run will pass over
    QPushButton* Cmd_Save;     // create the files
    QPushButton* Command1;     // close
    QPushButton* Command2;     // keep company name and business number

    void Cmd_Save_Click();
    void Command2_Click();
};

} // namespace vex::forms
