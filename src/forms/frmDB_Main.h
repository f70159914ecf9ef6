#pragma once
// The database window of two modes: optimise (compaction, taken over at the
// next start) and import of a package.
#include "forms/Vex_Form.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace vex::forms {

class frmDB_Main : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmDB_Main";
    explicit frmDB_Main(QWidget* parent = nullptr);

    // 2 imports a package; any other mode optimises.
    void Set_Mode(int dbType);
    int Mode() const { return mode_; }

    QLineEdit* TDBText1;  // size before, "###,##0"
    QLineEdit* TDBText2;  // size after
    QLineEdit* TDBText4;  // the chosen package
    QLabel* Label_Note;   // what the run did
    QPushButton* Cmd_File;
    QPushButton* Command1[2]; // 0 run, 1 close

    void Command1_Click();

private:
    int mode_ = 1;
};

} // namespace vex::forms
