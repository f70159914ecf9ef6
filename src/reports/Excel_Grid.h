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
    QString title;        // empty: the template's own
    QString periodLabel;  // A2
    QString period;       // B2, and the file name's period
    QString fileTag;      // the file name's period when B2 holds more
    QStringList heads;    // row 4
    std::vector<QStringList> rows;
};

Excel_Result Excel_Grid_Export(const QString& appDir, const Excel_Grid& grid, const QString& out = {});

// The status windows' grids as their workbooks: the trips of a day
// (daystatus), a month by car or driver (carcondition), one car's or
// driver's days of a month (daystatus2, columns A to H), the driving
// sections of a day (daydr).
struct Grid_Table;
Excel_Grid Day_Drive_Excel(const Grid_Table& table, const QString& day);
Excel_Grid Car_Condition_Excel(const Grid_Table& table, const QString& yymm, bool byDriver);
Excel_Grid Day_Status_Excel(const Grid_Table& table, const QString& code, bool byDriver, const QString& yymm);
Excel_Grid Day_Report_Excel(const Grid_Table& table, const QString& day);

// The same from a selection, for the command line: the day or month of
// `from`; carcondition and daystatus2 by driver when a driver is given; the
// sections split at the configured stop threshold.
Excel_Result Excel_Day_Drive(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});
Excel_Result Excel_Car_Condition(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});
Excel_Result Excel_Day_Status(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});
Excel_Result Excel_Day_Report(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});

// The fuel estimate of a day (sel.from) as its grid and workbook.
Excel_Grid Fuel_Day_Excel(const Grid_Table& table, const QString& yymmdd);
Excel_Result Excel_Day_Fuel(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out = {});

} // namespace vex
