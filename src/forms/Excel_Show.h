#pragma once
// Hands a filled spreadsheet report to the user: the desktop's spreadsheet
// program opens the saved workbook; with none, or when the report was not
// written, a box says where the file is or why.
#include "reports/Excel_Report.h"

#include <functional>

namespace vex::forms {

void Excel_Show(const Excel_Result& result);

// Tests replace the desktop's opener; the previous one is answered.
using Excel_Opener = std::function<bool(const QString& path)>;
Excel_Opener Set_Excel_Opener(Excel_Opener opener);

} // namespace vex::forms
