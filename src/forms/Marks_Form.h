#pragma once
// What the two mark charts share: a period, a search, two figures of the
// period, the column chart of its days, print and close.
#include "analysis/Period_Marks.h"
#include "forms/Graph_Picture.h"
#include "forms/Vex_Form.h"

#include <QDateEdit>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>


namespace vex {
class Cls_Report;
class Report_Printer;
}

namespace vex::forms {

class Marks_Form : public Vex_Form {
    Q_OBJECT
public:
    Graph_Picture* Picture2;
    QDateEdit* TDBDate1; // 800 first day
    QDateEdit* TDBDate2; // 801 last day
    QLineEdit* TDBText1; // the average of the period
    QLineEdit* TDBText2; // the days (trips) counted
    QPushButton* Command1; // search
    QPushButton* Command2; // 503 print
    QPushButton* Command3; // 504 close
    QPushButton* Command4; // 628 preview

    // Searches the period and draws its chart.
    void Command1_Click();
    const std::vector<Mark_Column>& Columns() const { return columns_; }
    // The chart's report of the period on a printer; true when its pages
    // got out.
    bool Print_To(Report_Printer& printer);

protected:
    Marks_Form(const char* name, int titleId, int averageId, int countId, QWidget* parent);
    // The search of the period; the figures into the fields.
    virtual void Search(const QString& start, const QString& end) = 0;
    virtual void Chart(Graph_Surface& s, const QString& start, const QString& end) = 0;
    // The report routine of the chart, for the period in report.
    virtual bool Report(Cls_Report& report, Report_Printer& printer) = 0;
    QGridLayout* Fields() { return fields_; }
    QString Start() const;
    QString End() const;
    std::vector<Mark_Column> columns_;

private:
    QGridLayout* fields_;
    int titleId_;
};

} // namespace vex::forms
