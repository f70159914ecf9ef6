#pragma once
// The spreadsheet reports: each routine reads its rows, fills a copy of its
// template from the application folder's Excel folder and saves it as .xlsx
// under the report folder. Opening the file is the caller's part.
#include "reports/Xlsx_Book.h"

#include <QString>
#include <exception>
#include <functional>

namespace vex {

class Cls_DB;

struct Excel_Selection {
    QString car;    // six characters, empty for every car
    QString driver; // six characters, empty for every driver
    QString from;   // YYMMDD
    QString to;     // YYMMDD
    QString fromTime = QStringLiteral("0000"); // HHmm, the seconds export's bounds
    QString toTime = QStringLiteral("2359");
    // Long reports say how far they are: a share from 0 to 100 and a word.
    std::function<void(int percent, const QString& what)> progress;
};

struct Excel_Result {
    enum Outcome { Written, No_Data, No_Template, Failed };
    Outcome outcome = Failed;
    QString path;    // the saved workbook
    QString message; // what the user is told when it is not written
};

// Opens the template and its sheet; false with book.Error() set.
bool Excel_Open(Xlsx_Book& book, const QString& sheetName, const QString& templatePath);

QString Excel_Template_Path(const QString& appDir, const QString& templateName);
// "<report>_<from>_<to>.xlsx" under the report folder.
QString Excel_Report_Path(const QString& appDir, const QString& report, const Excel_Selection& sel);

// The five event lists (overspeed, long overspeed, idle, brakes, accelerations).
Excel_Result CAL_RECORD_DATA(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});
Excel_Result CAL_LONG_OVER(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});
Excel_Result CAL_SECTION_RUN(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});
Excel_Result CAL_QUICK_BRAKE(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});
Excel_Result CAL_TIME_SPEED(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});

// Day rows of one car (carday) or of every car (carday1).
Excel_Result Excel_Car_Day(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});
Excel_Result Excel_All_Cars_Day(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});

// One driver's days (driverday1).
Excel_Result Excel_Driver_Day(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});

// The period summed a row a driver (drivertotal1) or a car (cartotal), with
// the sums and the daily average below; an empty code takes every one.
Excel_Result Excel_Driver_Total(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});
Excel_Result Excel_Car_Total(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});

// The minutes and kilometres of a driver's (every driver's when empty)
// period by speed class of 10 km/h, under the template's chart (speedrate).
Excel_Result Excel_Speed_Rate(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});

// Every second of the period from the day files: the workbook (bat, a
// sheet a further day) and the text file under "\new".
Excel_Result CAL_SPEED_DIST(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});
Excel_Result CAL_SPEED_FILE(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});

// Internal pieces shared by the routines.
namespace excel_detail {
// The reference form's reports have no labelled trap: a failure is told on
// the form, and Err_Proc passes over code 0.
inline constexpr int16_t kErrUnlabelled = 0;
Excel_Result No_Data();
Excel_Result Missing_Template(bool sayIt, int16_t errCode, const QString& why);
Excel_Result Save(Xlsx_Book& book, const QString& path, int16_t errCode);
Excel_Result Failed(int16_t errCode, const QString& why);
// Runs a routine; a run-time error (database, file) is logged under the
// routine's code and answered as a failure.
template <class Body>
Excel_Result Trapped(int16_t errCode, Body&& body)
{
    try {
        return body();
    } catch (const std::exception& e) {
        return Failed(errCode, QString::fromUtf8(e.what()));
    }
}
// A row loop's step: sel.progress told the share of rows done (the row
// count as its word), where a cancel may stop the report before it saves.
void Tell_Rows(const Excel_Selection& sel, int done, int all);
QString Car_Name(Cls_DB& db, const QString& car);   // S_D1.D_F2, else D_F3
QString Driver_Name(Cls_DB& db, const QString& driver); // S_D2.D_F2; empty without a row
QString Hh_Mm(const QString& hhmm);                  // "0932" -> "09:32"
QString Hh_Mm_Ss(const QString& hhmmss);             // "093215" -> "09:32:15"
// The two header rows of the period reports: A2 start, D2 end; A3 the
// label and B3 "code / name" when a code is given.
void Put_Period(Xlsx_Book& book, const Excel_Selection& sel, const QString& label, const QString& codeAndName);
// Heads of the three overspeed columns (D_F15 to D_F17), minutes by how far
// above the limit: 1 to 10, 11 to 19, 20 km/h and more; and of their group.
QStringList Overspeed_Band_Heads();
QString Overspeed_Band_Group();
} // namespace excel_detail

} // namespace vex
