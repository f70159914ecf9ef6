#pragma once
// The seconds view: one hour of the day file, the cursor walking it by the
// second, the neighbouring stored hours by SSCommand1 and SSCommand3 (and
// page down and up).
#include "forms/Operation_View.h"

namespace vex::forms {

class frmReport_SecOperation : public Operation_View {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmReport_SecOperation";
    explicit frmReport_SecOperation(QWidget* parent = nullptr);

    QPushButton* SSCommand1; // the stored hour before
    QPushButton* SSCommand3; // the stored hour after

    // An hour of car, driver and day, the whole hour shown; with second
    // (of the hour) 0 or more the cursor on that second. False (message
    // 1135) when the day has no second data.
    bool Show_Hour(const QString& car, const QString& driver, const QString& day, int hour, int second);
    int Hour() const { return hour_; }
    // The neighbouring stored hour; "데이터가 없습니다" when there is none.
    void Move_Hour(int step);

protected:
    bool Fetch() override;
    void Fill_Fields() override;
    void Page(int keyCode) override;
    bool Report(Report_Printer& printer) override;

private:
    QString car_, driver_, day_;
    int hour_ = 0;
};

} // namespace vex::forms
