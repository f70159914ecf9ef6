#pragma once
// A form's grid written as it stands into a "condition" template: the title
// in A1, the day or period in A2 and B2, the captions in row 4 and one row a
// grid row from row 5, each in the format of the template's row 5.
#include "reports/Excel_Report.h"

#include <QStringList>
#include <vector>

namespace vex {

struct Excel_Grid {
    QString templ;        // "daystatus.xltx", ...
    QString report;       // file base name
    QString title;
    QString periodLabel;  // A2
    QString period;       // B2, and the file name's period
    QStringList heads;    // row 4
    std::vector<QStringList> rows;
};

Excel_Result Excel_Grid_Export(const QString& appDir, const Excel_Grid& grid, const QString& out = {});

// The fuel estimate of a day (sel.from) as its grid and workbook.
struct Fuel_Day;
Excel_Grid Fuel_Day_Grid(const Fuel_Day& day, const QString& yymmdd);
Excel_Result Excel_Day_Fuel(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});

} // namespace vex
