#pragma once
// Runs a spreadsheet report from a window as a job on its own connection: a
// progress dialog stands while it works (the report's own steps when it
// tells them), the window stays alive, and the result is handed to the user
// through Excel_Show. The dialog's Cancel stops the report at its next step;
// a cancelled report saves no workbook.
#include "reports/Excel_Report.h"

#include <functional>

class QWidget;

namespace vex::forms {

using Excel_Job = std::function<Excel_Result(Cls_DB& db, const Excel_Selection&)>;

Excel_Result Excel_Run(QWidget* parent, const QString& what, Excel_Selection sel, const Excel_Job& job);

} // namespace vex::forms
