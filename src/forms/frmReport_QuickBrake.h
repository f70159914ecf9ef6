#pragma once
// The quick-brake chart: one of the four buffers of seconds before a hard
// brake that the recorder keeps, a cursor stepping sample by sample.
#include "analysis/Quick_Brake_Chart.h"
#include "forms/Graph_Picture.h"
#include "forms/Vex_Form.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>


namespace vex {
class Report_Printer;
}

namespace vex::forms {

class frmReport_QuickBrake : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmReport_QuickBrake";
    explicit frmReport_QuickBrake(QWidget* parent = nullptr);

    QLabel* Label1;           // car, driver and day of the buffers
    Graph_Picture* Picture2;
    QRadioButton* Option1[4]; // slots 1 to 4
    QLineEdit* TDBText1[3];   // sample, time, speed
    QPushButton* Command1;    // print
    QPushButton* Command2;    // close
    QPushButton* Command3;    // preview

    // The buffers of the selection's car; false (message 1135) when none.
    bool Load_Selection();
    void Option1_Click(int index);
    void Form_KeyDown(int keyCode);
    void Picture2_MouseUp(float x);
    int Sample() const { return sample_; }
    const Quick_Brake_Chart& Chart() const { return chart_; }
    // The chart's report on a printer; true when its pages got out.
    bool Print_To(Report_Printer& printer);

protected:
    void keyPressEvent(QKeyEvent* e) override;

private:
    void Move_To(int sample);
    Quick_Brake_Chart chart_;
    int slot_ = 1;
    int sample_ = 1;
};

} // namespace vex::forms
