#pragma once
// The events of a day's trip, a title row for each kind and a row for each
// event; a double click on an event opens the seconds view on its hour
// with the cursor on its second.
#include "forms/Vex_Form.h"
#include "forms/logic/View_Logic.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>

class QPagedPaintDevice;

namespace vex::forms {

class Frm_oversp : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "Frm_oversp";
    explicit Frm_oversp(QWidget* parent = nullptr);

    QLabel* Label1;       // car, driver and name, day
    QListWidget* List1;
    QPushButton* Command1; // the minute view of the day
    QPushButton* cmdMark;  // how the trip's mark was counted
    QPushButton* lblNotes; // the day's notes in the ledger, shown when it has any
    QPushButton* cmdPrint; // "인쇄"
    QPushButton* cmdClose; // "종료"

    // The list of a trip, cleared first.
    void Show_Trip(const QString& car, const QString& driver, const QString& day);
    // The event of a row in the seconds view (rows of titles do nothing).
    void Open_Event(int row);
    void Print_List(QPagedPaintDevice& device);

private:
    QString car_, driver_, day_;
    std::vector<Event_Row> rows_;
};

} // namespace vex::forms
