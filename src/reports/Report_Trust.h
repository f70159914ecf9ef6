#pragma once
// Pages that show where a figure comes from: a trip's mark step by step with
// the events behind it, and the drivers month by month.
#include "analysis/Driver_Trends.h"
#include "analysis/Trip_Explanation.h"

#include <vector>

namespace vex {

class Cls_DB;
class Report_Printer;

// True when the pages got out; false with the reason in Err_Last() or the
// printer's Error.
bool Report_Mark_Explanation(Report_Printer& printer, Cls_DB& db, const Trip_Explanation& explanation);
bool Report_Driver_Trend(Report_Printer& printer, Cls_DB& db, const std::vector<Driver_Month>& rows,
                         const QString& fromMonth, const QString& toMonth);

} // namespace vex
