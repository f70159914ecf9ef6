#pragma once
// The mark charts: the average of every day over all cars
// (frmReport_AvgDay), and one driver's trips by day (frmReport_DayAVG).
#include "forms/Marks_Form.h"

#include <QComboBox>

namespace vex::forms {

class frmReport_AvgDay : public Marks_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmReport_AvgDay";
    explicit frmReport_AvgDay(QWidget* parent = nullptr);

protected:
    void Search(const QString& start, const QString& end) override;
    void Chart(Graph_Surface& s, const QString& start, const QString& end) override;
    bool Report(Cls_Report& report, Report_Printer& printer) override;
};

class frmReport_DayAVG : public Marks_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmReport_DayAVG";
    explicit frmReport_DayAVG(QWidget* parent = nullptr);

    QComboBox* TDBCombo1; // 633 driver
    QLineEdit* TDBText3;  // 632 car

protected:
    void Search(const QString& start, const QString& end) override;
    void Chart(Graph_Surface& s, const QString& start, const QString& end) override;
    bool Report(Cls_Report& report, Report_Printer& printer) override;
};

} // namespace vex::forms
