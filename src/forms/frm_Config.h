#pragma once
// The settings window: shows the row of S_D14 and, after Edit, saves it.
#include "forms/Vex_Form.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace vex::forms {

class frm_Config : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_Config";
    explicit frm_Config(QWidget* parent = nullptr);

    QLineEdit* TDBText_Config[20]; // 1 to 19
    QLabel* Label1[20];            // the label of each field
    QCheckBox* Check[5];           // 1 to 4
    QPushButton* Command1[3];      // Edit, Save, Close
    QPushButton* Command2;         // browse for the pack folder

    bool Editing() const { return editing_; }
    bool Company_Shown() const { return companyShown_; }

    void Command1_Click(int index);
    void Check2_Click();
    void Command2_Click();
    void Toggle_Company_Code();

protected:
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    void Set_Locked(int from, bool locked);
    bool editing_ = false;
    bool companyShown_ = false;
};

} // namespace vex::forms
