#pragma once
// Every paper report of the program, drawn on the printer the caller hands
// over (the system's printer, a preview, a PDF file): text, ruled rows and
// the graph canvas of the views. A form puts its selection into the
// properties and calls one routine; the routine prints a whole page set and
// ends the document. A preview runs the same routine.
//
// Each routine opens alike: with no printer it says so (messages 168 and 169)
// and ends; else A4 in its orientation, the face "바탕", the title at 20
// points, the print date and the company. A graph goes through the canvas
// at the routine's Out_Direction, which returns to 0 at the end (the caller's
// window computes its geometry again). True when the pages got out; a
// run-time error is logged under the routine's code and answers false.
#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>

namespace vex {

class Cls_DB;
class Operation_Graph;
class Quick_Brake_Chart;
class Report_Page;
class Report_Printer;

class Cls_Report {
public:
    QString m_Maintenance;
    QString m_C_Oil;
    QString Car_Government; // the car's number (S_D1.D_F3)
    QString Driver_Name;
    QString Car_Code, Driver_Code;
    QString Start_Date, Start_Time; // yyMMdd, HHmm
    QString End_Date, End_Time;
    int16_t Report_Type = 0; // set by no form; kept as a property

    // The boxes a routine shows itself (168 with 169); nothing while unset.
    std::function<void(const QString& text, const QString& title)> Msg_Box;

    // 625: the average mark of every day from Start_Date to End_Date.
    bool Report_Avg_Day_G(Report_Printer& printer, Cls_DB& db);
    // 626: the driver's trips by day, Start_Date to End_Date.
    bool Report_Day_AVG_G(Report_Printer& printer, Cls_DB& db);
    // 630: one slot of the quick-brake chart loaded for Car_Code.
    bool Report_Quick_Brake(Report_Printer& printer, Cls_DB& db, Quick_Brake_Chart& chart, int slot);
    // 629, landscape: the minute view's detail fields (captions and texts
    // as the view shows them) and its canvas at the view's zoom.
    bool Report_Operation(Report_Printer& printer, Operation_Graph& og, const QStringList& captions,
                          const QStringList& texts);
    // 1298, landscape: the seconds view's fields, the hour's events and
    // highest values, and its canvas.
    bool Report_Operation_360(Report_Printer& printer, Operation_Graph& og, const QStringList& captions,
                              const QStringList& texts);
    // 627: the daily operation report of Car_Code, Driver_Code and
    // Start_Date; a day of more sections than its table holds carries the
    // note and the attachment on the pages after.
    bool Report_Drive_Day(Report_Printer& printer, Cls_DB& db);
    // 627: the same with the dispatch and cost blocks to be filled in.
    bool Report_inspection_Day(Report_Printer& printer, Cls_DB& db);
    // 1132: the attachment alone, every section of the day.
    bool Report_Drive_Sections(Report_Printer& printer, Cls_DB& db);

    // Rows of sections the daily report's table holds; more go to the
    // attachment.
    static constexpr int kDayTableRows = 12;

private:
    bool No_Printer(Report_Printer& printer);
    // A landscape page of a view's canvas under the header the caller lays
    // from y.
    bool Canvas_Report(Report_Printer& printer, Operation_Graph& og, int titleId, bool hour,
                       const std::function<void(Report_Page&, float y)>& header);
    bool Daily(Report_Printer& printer, Cls_DB& db, bool inspection, int16_t errCode);
};

} // namespace vex
