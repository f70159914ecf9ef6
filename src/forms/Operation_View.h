#pragma once
// What the minute view and the seconds view share: the picture with its
// cursor, the zoom buttons, the detail fields that follow the cursor, the
// keys (page up and down, left and right, keypad 4 and 6), the mouse and
// printing. The day or hour itself, and what the fields show, are the
// views' own.
#include "analysis/Operation_Graph.h"
#include "forms/Graph_Picture.h"
#include "forms/Vex_Form.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <cstdint>
#include <vector>


namespace vex {
class Report_Printer;
}

namespace vex::forms {

// The handler codes both views report under: the load and the speed
// calculation of the minute view (1073, 1077), which the seconds view
// repeats.
inline constexpr int16_t kErrOperation_Load = 1073;
inline constexpr int16_t kErrOperation_Cal_Speed = 1077;

class Operation_View : public Vex_Form {
    Q_OBJECT
public:
    Graph_Picture* Picture2;
    QRadioButton* Option1[5];
    std::vector<QLineEdit*> TDBText1; // detail fields
    std::vector<QLabel*> Label3;      // their captions
    QLabel* Label1;                   // the day shown
    QPushButton* Command1;            // print
    QPushButton* Command2;            // the other view
    QPushButton* Command3;            // close
    QPushButton* Command5;            // preview
    QPushButton* cmdNotes;            // the day's notes in the ledger; empty and disabled on a day without

    Operation_Graph& Graph_State() { return og_; }
    // Cursor X (twips of the picture) and the point under it.
    float Cursor_X() const { return cursorX_; }
    int Cursor_Point() const { return point_; }

    // A key as the form's key preview sees it: 33, 34, 37, 39, 100, 102.
    void Form_KeyDown(int keyCode);
    // Option1(index) clicked: the zoom of that index around the cursor.
    void Option1_Click(int index);
    // A click in the picture at x (twips): the cursor there, the window
    // around it at the same zoom.
    void Picture2_MouseUp(float x);
    // The cursor on a point of the window (minute of the day, second of
    // the hour), the window moved to hold it.
    void Cursor_To(int point);
    // The view's report on a printer (the window's geometry again
    // afterwards); true when its pages got out.
    bool Print_To(Report_Printer& printer);
    void Print();
    void Preview();
    // The mark of a day the ledger holds notes on, one click from them.
    void Show_Notes(const QString& car, const QString& driver, const QString& day);

protected:
    Operation_View(const char* name, bool hour, const std::vector<int>& zooms, int fields, QWidget* parent);
    void keyPressEvent(QKeyEvent* e) override;

    // Fetches the present day (hour) into the graph; false when there is none.
    virtual bool Fetch() = 0;
    // The fields for the point under the cursor.
    virtual void Fill_Fields() = 0;
    // Page up (33) or down (34).
    virtual void Page(int keyCode) = 0;
    // The report routine of the view.
    virtual bool Report(Report_Printer& printer) = 0;

    // Geometry of the picture for this canvas.
    void Geometry();
    // Fetch, draw, cursor on point (clamped into the window) and fields.
    void Redraw(int point);
    void Move_Cursor(float x);
    void Set_Fields(const QStringList& texts);
    void Clear_Fields();
    float X_Of(int point) const;

    Operation_Graph og_;
    bool hour_;
    std::vector<int> zooms_;
    float cursorX_ = 0;
    int point_ = 0;

private:
    void Form_Resize();
};

// A key event as the key code of the system: 33 page up, 34 page down,
// 37 left, 39 right, 100 keypad 4, 102 keypad 6; 0 for any other.
int Key_Code(const QKeyEvent& e);

} // namespace vex::forms
