#pragma once
// Routes: cars grouped under a route name, with the route's standard speed.
#include "forms/Vex_Form.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

namespace vex::forms {

class frm_Nosun : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_Nosun";
    explicit frm_Nosun(QWidget* parent = nullptr);

    QComboBox* TDBCombo1;  // route name, chosen or typed
    QLineEdit* TDBText2;   // standard speed of the route
    QRadioButton* Option1[2]; // List1: all other cars, or those on no route
    QListWidget* List1;    // cars not on the route
    QListWidget* List2;    // cars of the route
    QPushButton* SSCommand[5]; // 1 add one, 2 add all, 3 remove one, 4 remove all
    QPushButton* cmdSave;
    QPushButton* cmdDelete;
    QPushButton* cmdLookup;
    QPushButton* cmdClose;

    void Route_Chosen();
    void Move(bool toRoute, bool all);
    void Save();
    void Delete_Route();
    void Fill_Routes();

private:
    QStringList removed_; // cars taken off the route since it was chosen
};

} // namespace vex::forms
