#pragma once
// The login: the first window of the program and the only way into it.
#include "forms/Vex_Form.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace vex::forms {

class frm_Splash : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_Splash";
    // Runs the load: the pending optimise, Main_Start on appDir, Cls_DB,
    // captions, the evaluation standards.
    explicit frm_Splash(const QString& appDir, QWidget* parent = nullptr);

    QLineEdit* txtUserName;
    QLineEdit* txtPassword;
    QPushButton* cmdOK;
    QPushButton* cmdCancel;
    QLabel* lblLabels[2];
    QLabel* Label2;

    int Failed_Attempts() const { return failed_; }

    void Form_Load();
    void Form_Activate();
    void cmdOK_Click();
    void cmdCancel_Click();

protected:
    void showEvent(QShowEvent* e) override;

private:
    QString appDir_;
    int failed_ = 0;        // wrong attempts so far
    bool settingsOpen_ = false; // the S_D14 table could be opened at the load
};

} // namespace vex::forms
