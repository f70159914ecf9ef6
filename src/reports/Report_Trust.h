#pragma once
// Pages that show where a figure comes from: a trip's mark step by step with
// the events behind it, and the drivers month by month.
#include "analysis/Driver_Trends.h"
#include "analysis/Trip_Explanation.h"
#include "reports/Excel_Report.h"

#include <vector>

namespace vex {

class Cls_DB;
class Report_Printer;

// A driver's month as the cells of a row, and the captions of the columns:
// the same on paper, on screen and in the workbook.
QStringList Driver_Month_Cells(const Driver_Month& m, const QString& name);
QStringList Driver_Month_Heads();

// True when the pages got out; false with the reason in Err_Last() or the
// printer's Error.
bool Report_Mark_Explanation(Report_Printer& printer, Cls_DB& db, const Trip_Explanation& explanation);
bool Report_Driver_Trend(Report_Printer& printer, Cls_DB& db, const std::vector<Driver_Month>& rows,
                         const QString& fromMonth, const QString& toMonth);

// The drivers' months as a workbook of the grid template ("carcondition"),
// under report\drivertrend_FROMTO.xlsx unless out names the file.
Excel_Result Excel_Driver_Trend(Cls_DB& db, const QString& appDir, const std::vector<Driver_Month>& rows,
                                const QString& fromMonth, const QString& toMonth, const QString& out = QString());

} // namespace vex
