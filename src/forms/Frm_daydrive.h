#pragma once
// "일일운행실태": the trips of a day, one row each; a click in the row's
// last two columns opens its minute or seconds view, a double click
// elsewhere its event list. "출력" prints the grid, "Excel" writes it into
// daystatus.xltx.
#include "analysis/Status_Grids.h"
#include "forms/Vex_Form.h"

#include <QDateEdit>
#include <QPushButton>
#include <QTableWidget>

namespace vex::forms {

class Frm_daydrive : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "Frm_daydrive";
    explicit Frm_daydrive(QWidget* parent = nullptr);

    QDateEdit* TDBDate1;  // 1033 the day
    QTableWidget* Grid1;
    QPushButton* Command1; // 704 print
    QPushButton* Command2; // "Excel"
    QPushButton* Command3; // "연료소모량": the day's fuel estimate

    // The trips of the day into the grid.
    void Show_Day();
    // A click on a cell: the last two columns open the views.
    void Cell_Clicked(int row, int column);
    void Excel_Export(); // "Excel": the grid into daystatus.xltx
    void Row_Double_Clicked(int row);

private:
    Grid_Table table_; // its keys: car, driver and day of each row
};

} // namespace vex::forms
