#pragma once
// The grids of the status and fuel windows: a table of the core shown in a
// QTableWidget, and the same table on paper through the print dialog.
#include <QString>
#include <cstdint>
#include <QStringList>
#include <utility>
#include <vector>

class QDate;
class QDateEdit;
class QPushButton;
class QTableWidget;
class QWidget;

namespace vex {
struct Grid_Table;
}

namespace vex::forms {

// The table's heads and rows (plus `extraHeads` columns whose cells repeat
// the head, the buttons of a row) into the grid; read-only, whole rows
// selected.
void Fill_Grid(QTableWidget* grid, const Grid_Table& table, const QStringList& extraHeads = {});
QTableWidget* New_Grid(QWidget* parent, const char* objectName);
// A day field (yyyy-MM-dd, with the calendar) and a named button.
QDateEdit* New_Day_Edit(QWidget* parent, const char* objectName);
QPushButton* New_Button(QWidget* parent, const QString& caption, const char* objectName);
// The layout of a grid window: a bar of labelled fields (label, field,
// label, field ...) and the buttons at its right, the grid below it.
void Grid_Window_Layout(QWidget* window, const std::vector<std::pair<QString, QWidget*>>& fields,
                        const std::vector<QPushButton*>& buttons, QTableWidget* grid);

// The newest day of the stored trips, or today when none is stored: where
// the day windows open. A failure is logged under errCode.
QDate Newest_Stored_Day(int16_t errCode);

// The table as ruled rows on A4 landscape, title and subtitle above, pages
// as needed; the system's print dialog chooses the printer.
void Print_Grid(QWidget* parent, const QString& title, const QString& subtitle, const Grid_Table& table);

} // namespace vex::forms
