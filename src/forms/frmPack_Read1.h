#pragma once
// The reception window: four sources and a two-step button, first to show
// what the source holds, then to receive it.
#include "forms/Vex_Form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>

namespace vex::forms {

class frmPack_Read1 : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmPack_Read1";
    explicit frmPack_Read1(QWidget* parent = nullptr);

    QRadioButton* SSOption[5]; // 1 pack, 2 "130", 3 "250", 4 "260"
    QCheckBox* Check1;         // use the date range
    QDateEdit* TDBDate1[2];    // start and end of the range
    QLineEdit* Text1;          // last reception, YY-MM-DD
    QLineEdit* Text2;          // car code in the source
    QLineEdit* TDBText_Config; // USB path or pack folder
    QComboBox* Drive1;
    QProgressBar* ProgressBar1; // one run: days read, then days stored
    QLabel* Label_Result;       // the connection's state and what the last reception did
    QPushButton* Cmd_Save;     // its caption is Label2's: "정보보기" or "수신"
    QPushButton* Command3;     // connect analyzer
    QPushButton* Cmd2;         // pack folder
    QPushButton* Command1;     // close
    QPushButton* Cmd_Cancel;   // stops the running reception; shown only while it runs

    const QString& Source() const { return source_; }
    bool Busy() const { return busy_; }
    // "정보보기" or "수신".
    QString Step() const { return Cmd_Save->text(); }

    void Cmd_Save_Click();
    void Command3_Click();
    void Cmd2_Click();
    void Choose_Source(const QString& source);

private:
    void Info_Step();
    void Receive_Step();
    void Set_Step(bool receive);
    void Progress(int done, int all);

    QString source_ = QStringLiteral("pack");
    QString root_; // the USB medium found by the info step
    bool folderChosen_ = false;
    bool busy_ = false; // the re-entry guard of a running step
};

} // namespace vex::forms
