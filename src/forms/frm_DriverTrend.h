#pragma once
// Drivers over time: for months from..to, each driver's average mark, events
// per 100 km, overspeed minutes, rank among the month's drivers and change
// since the month before, in a table and a chart (each driver's average mark
// month by month, the chosen driver drawn bold over the fleet's average).
#include "analysis/Driver_Trends.h"
#include "forms/Vex_Form.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

namespace vex::forms {

class Trend_Chart;

class frm_DriverTrend : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_DriverTrend";
    explicit frm_DriverTrend(QWidget* parent = nullptr);

    QLineEdit* txtFrom;     // yyMM
    QLineEdit* txtTo;
    QLineEdit* txtDriver;   // empty: every driver
    QPushButton* cmdSearch;
    QPushButton* cmdExcel;  // the table as a workbook, opened by the desktop's spreadsheet program
    QPushButton* cmdPrint;
    QPushButton* cmdClose;
    QTableWidget* Grid;
    Trend_Chart* Chart;

    // The months of the fields; false with a message when they are not months.
    bool Search();
    const std::vector<Driver_Month>& Rows() const { return rows_; }

private:
    std::vector<Driver_Month> rows_;
};

} // namespace vex::forms
