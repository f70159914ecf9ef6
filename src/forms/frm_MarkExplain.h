#pragma once
// Why a trip has its mark: the explanation step by step, then the events
// behind each count; a double click on an event opens the seconds view at
// its moment. Printed as a page of its own.
#include "analysis/Trip_Explanation.h"
#include "forms/Vex_Form.h"

#include <QListWidget>
#include <QPushButton>

namespace vex::forms {

class frm_MarkExplain : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_MarkExplain";
    explicit frm_MarkExplain(QWidget* parent = nullptr);

    QListWidget* List1;     // the explanation's lines, the events last
    QPushButton* cmdPrint;  // "인쇄"
    QPushButton* cmdClose;

    // The trip's explanation under the standards in use; false (and the
    // message of a day without data) when the trip is not stored.
    bool Show_Trip(const QString& car, const QString& driver, const QString& day);
    const Trip_Explanation& Explanation() const { return explanation_; }
    // The event of a row in the seconds view (other rows do nothing).
    void Open_Row(int row);

private:
    Trip_Explanation explanation_;
    int firstEvent_ = -1; // the row of the first event
};

} // namespace vex::forms
