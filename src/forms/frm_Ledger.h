#pragma once
// The ledger of receptions: each reception with what became of its days and
// the notes of the plausibility checks, filtered by days, car, driver and
// kind of note. A double click on a note opens the day in the seconds view
// at the note's moment (the minute view for a note of the whole day).
#include "exchange/Reception_Ledger.h"
#include "forms/Vex_Form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

namespace vex::forms {

class frm_Ledger : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_Ledger";
    explicit frm_Ledger(QWidget* parent = nullptr);

    QLineEdit* txtFrom;     // yyMMdd, empty: open
    QLineEdit* txtTo;
    QLineEdit* txtCar;
    QLineEdit* txtDriver;
    QComboBox* cboKind;     // any, or one kind of note
    QCheckBox* chkNotes;    // receptions with notes only
    QPushButton* cmdSearch;
    QPushButton* cmdClose;
    QTreeWidget* Tree;      // receptions > days > notes
    QLabel* lblCount;

    // Reads the ledger with the filter of the fields; false with a message
    // when a field is not a day or a code.
    bool Search();
    // A day of a stored key, with its notes, as a filter would show it.
    void Show_Day(const QString& key);
    // What a double click on the item opens.
    void Open_Item(QTreeWidgetItem* item);

private:
    std::vector<Ledger_Entry> entries_;
};

} // namespace vex::forms
