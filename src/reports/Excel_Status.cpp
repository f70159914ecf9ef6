// The status windows' grids written through the grid export, and the same
// reports made from a selection for the command line.
#include "reports/Excel_Grid.h"

#include "analysis/Operation_Graph.h"
#include "analysis/Status_Grids.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"

namespace vex {

namespace {

Excel_Grid From_Table(const Grid_Table& table, const char* templ, const QString& report)
{
    Excel_Grid grid;
    grid.templ = QLatin1String(templ);
    grid.report = report;
    grid.heads = table.heads;
    grid.rows = table.rows;
    return grid;
}

QString Month_Dash(const QString& yymm)
{
    return QStringLiteral("20") + yymm.left(2) + QLatin1Char('-') + yymm.mid(2, 2);
}

} // namespace

Excel_Grid Day_Drive_Excel(const Grid_Table& table, const QString& day)
{
    Excel_Grid grid = From_Table(table, "daystatus.xltx", QStringLiteral("daystatus"));
    grid.title = LoadResString(1256);
    grid.periodLabel = LoadResString(1033);
    grid.period = Date_Dash(day);
    return grid;
}

Excel_Grid Car_Condition_Excel(const Grid_Table& table, const QString& yymm, bool byDriver)
{
    Excel_Grid grid = From_Table(table, "carcondition.xltx",
                                 byDriver ? QStringLiteral("carcondition_driver") : QStringLiteral("carcondition"));
    grid.title = Car_Condition_Title(byDriver);
    grid.periodLabel = LoadResString(1042);
    grid.period = Month_Dash(yymm);
    return grid;
}

Excel_Grid Day_Status_Excel(const Grid_Table& table, const QString& code, bool byDriver, const QString& yymm)
{
    Excel_Grid grid = From_Table(table, "daystatus2.xltx", QStringLiteral("daystatus2_") + code);
    // The sheet has the columns A to H of the window's grid.
    grid.heads = grid.heads.mid(0, 8);
    for (QStringList& row : grid.rows)
        row = row.mid(0, 8);
    grid.periodLabel = LoadResString(byDriver ? 633 : 632) + QStringLiteral(" / ") + LoadResString(1042);
    grid.period = code + QStringLiteral(" / ") + Month_Dash(yymm);
    grid.fileTag = yymm;
    return grid;
}

Excel_Grid Day_Report_Excel(const Grid_Table& table, const QString& day)
{
    Excel_Grid grid = From_Table(table, "daydr.xltx", QStringLiteral("daydr"));
    grid.title = LoadResString(1255);
    grid.periodLabel = QStringLiteral("운행일");
    grid.period = Date_Dash(day);
    return grid;
}

Excel_Grid Fuel_Day_Excel(const Grid_Table& table, const QString& yymmdd)
{
    Excel_Grid grid = From_Table(table, "day_fuel.xltx", QStringLiteral("day_fuel"));
    grid.title = QStringLiteral("일일소모량조회");
    grid.periodLabel = LoadResString(1033);
    grid.period = Date_Dash(yymmdd);
    return grid;
}

Excel_Result Excel_Day_Drive(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return excel_detail::Trapped(0, [&] {
        return Excel_Grid_Export(appDir, Day_Drive_Excel(Day_Drive_Grid(db, sel.from), sel.from), out);
    });
}

Excel_Result Excel_Car_Condition(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return excel_detail::Trapped(0, [&] {
        const bool byDriver = !sel.driver.isEmpty();
        const QString month = sel.from.left(4);
        return Excel_Grid_Export(appDir, Car_Condition_Excel(Car_Condition_Grid(db, month, byDriver, 0), month, byDriver),
                                 out);
    });
}

Excel_Result Excel_Day_Status(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return excel_detail::Trapped(0, [&] {
        const bool byDriver = !sel.driver.isEmpty();
        const QString code = byDriver ? sel.driver : sel.car;
        const QString month = sel.from.left(4);
        return Excel_Grid_Export(appDir, Day_Status_Excel(Day_Status_Grid(db, code, byDriver, month), code, byDriver, month),
                                 out);
    });
}

Excel_Result Excel_Day_Report(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return excel_detail::Trapped(0, [&] {
        return Excel_Grid_Export(appDir, Day_Report_Excel(Day_Report_Grid(db, sel.from, Stop_Threshold()), sel.from),
                                 out);
    });
}

} // namespace vex
