#pragma once
// The design the three registers share: a grid of rows, a row of fields, four
// buttons (register, edit/save, delete/cancel, close) and a search.
#include "forms/Vex_Form.h"
#include "registers/Register_Rules.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <vector>

namespace vex::forms {

class Register_Form : public Vex_Form {
    Q_OBJECT
public:
    Register_Form(const Register_Def& def, QWidget* parent);

    QTableView* TDBGrid1;
    QStandardItemModel* Model;
    std::vector<QWidget*> Fields;  // QLineEdit, or QDateEdit for a date
    std::vector<QLabel*> Labels;
    QPushButton* Command1[5];      // 0, 1, 2 and 4 (there is no 3)
    QComboBox* cboSearch;          // which field the search takes: 0, 1, 2
    QLineEdit* txtSearch;
    QPushButton* cmdSearch;
    QComboBox* cboCar = nullptr;   // equipment: the car the rows belong to

    Register_Mode Mode() const { return mode_; }
    QString Field_Text(int i) const;
    void Set_Field_Text(int i, const QString& text);
    int Row_Count() const { return Model->rowCount(); }

    void Command1_Click(int index);
    // Filters by the text of the search box on the column of search field k
    // (0, 1, 2); an empty text shows every row.
    void Search(int k, const QString& text);
    void Refresh(const QString& selectCode = {});

protected:
    void closeEvent(QCloseEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    void Show_Row(int row);
    void Clear_To_New();
    void Set_Mode(Register_Mode mode);
    void Update_Buttons();
    QString Scope() const;

    const Register_Def& def_;
    Register_Rows rows_;
    Register_Mode mode_ = Browse;
    int bookmark_ = -1;
    QString searchColumn_, searchText_;
};

} // namespace vex::forms
