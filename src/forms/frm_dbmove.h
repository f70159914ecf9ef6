#pragma once
// "기존DB불러오기": an older installation's database (Jet or SQLite) brought
// over from a day on, by the source kind chosen.
#include "forms/Vex_Form.h"

#include <QDateEdit>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>

namespace vex::forms {

class frm_dbmove : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_dbmove";
    explicit frm_dbmove(QWidget* parent = nullptr);

    QRadioButton* SSOption[4]; // 1 to 3, as the sources
    QLineEdit* Text_Path;
    QDateEdit* TDBDate1;       // the first day
    QProgressBar* ProgressBar1;
    QPushButton* Cmd2;         // another path
    QPushButton* Cmd_Save;
    QPushButton* Cmd_Close;
    QPushButton* Cmd_Cancel; // stops the running step; shown only while it runs

    int Option() const;
    void Cmd_Save_Click();
};

} // namespace vex::forms
