#pragma once
// The minute view: a day of one car and driver, the cursor walking it by
// the minute, the day before and after by page down and up, the seconds
// view of the cursor's hour, and the day's event list.
#include "forms/Operation_View.h"
#include "forms/logic/View_Logic.h"

namespace vex::forms {

class frmReport_Operation : public Operation_View {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmReport_Operation";
    explicit frmReport_Operation(QWidget* parent = nullptr);

    QPushButton* Command4; // the event list

    // Opens on the selection's car, driver and day (Report_Selection): a
    // whole day, the cursor at the left edge. False (message 1135) when
    // the day has no data.
    bool Load_Selection();
    // The day shown (Start_Date), yyMMdd.
    const QString& Start_Date() const { return Selection().Start_Date; }

    // The seconds view on the cursor's hour.
    void Command2_Click();
    // The event list of the day.
    void Command4_Click();

protected:
    bool Fetch() override;
    void Fill_Fields() override;
    void Page(int keyCode) override;
    bool Report(Report_Printer& printer) override;

private:
    void Show_Date();
};

} // namespace vex::forms
