#pragma once
// "평가기준 관리": the thirteen evaluation standards, saved into S_D10 and
// put to use at once, and "새 기준 적용", every old trip counted again under
// them in a thread of its own behind a progress dialog.
#include "forms/Vex_Form.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

class QProgressDialog;

namespace vex::forms {

class frmRegister_Average : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmRegister_Average";
    explicit frmRegister_Average(QWidget* parent = nullptr);

    QLabel* SSPanel6;             // 1067 "기준 일자"
    QLineEdit* TDBNum_Car[14];    // 1 to 13: field i is S_D10.D_Fi and B_Val i
    QLabel* Label1[14];           // their captions
    QPushButton* Command1;        // 505 save
    QPushButton* Command3;        // 1272 "새 기준 적용"
    QPushButton* Command2;        // 504 close
    // The progress of a running recount ("trips done / all"), else null.
    QProgressDialog* Progress = nullptr;

    void Command1_Click();
    // Runs to its end (or its cancel) before it returns.
    void Command3_Click();

private:
    void Form_Load();
};

} // namespace vex::forms
