#pragma once
// The daily report screen: the blocks of the printed daily report of one
// car, driver and day as grids (the sections, the working time, the
// equipment, the evaluation, the maintenance shares), with its print and
// its preview; the report may be the daily report, the one with the
// dispatch and cost blocks, or the attachment of the sections alone.
#include "forms/Vex_Form.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>

#include <memory>

namespace vex {
class Cls_Report;
class Operation_Graph;
class Report_Printer;
}

namespace vex::forms {

class frmReport_DriveDay1 : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmReport_DriveDay1";
    explicit frmReport_DriveDay1(QWidget* parent = nullptr);
    ~frmReport_DriveDay1() override;

    QLabel* Label1;               // car, driver and day
    QTableWidget* Grid1;          // the sections and the day's total
    QTableWidget* Grid2;          // the working time
    QTableWidget* Grid3;          // the equipment
    QTableWidget* Grid4;          // the evaluation
    QTableWidget* VSFlexGrid5;    // the maintenance shares
    QRadioButton* Option1[3];     // 627 daily report, 841 with dispatch, 1132 the sections
    QPushButton* Command1;        // 628 preview
    QPushButton* Command2;        // 704 print
    QPushButton* Command3;        // 504 close
    QPushButton* cmdMark;         // how the day's mark (the evaluation) was counted

    // The selection's car, driver and day into the grids; false (message
    // 1135) when the day is not stored.
    bool Show_Day();
    // The chosen report on a printer; true when its pages got out.
    bool Print_To(Report_Printer& printer);

private:
    bool Data_View();
    void DB_View();
    void Grid_Draw();
    bool Routine(Cls_Report& report, Report_Printer& printer);
    std::unique_ptr<Operation_Graph> og_; // the day in hand
};

} // namespace vex::forms
