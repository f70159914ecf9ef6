// The fuel grid of a day (day_fuel): the day estimate as the fuel form
// shows it, written through the grid export.
#include "reports/Excel_Grid.h"

#include "analysis/Fuel.h"
#include "core/Cls_Config.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"

namespace vex {

Excel_Grid Fuel_Day_Grid(const Fuel_Day& day, const QString& yymmdd)
{
    Excel_Grid grid;
    grid.templ = QStringLiteral("day_fuel.xltx");
    grid.report = QStringLiteral("day_fuel");
    grid.title = QStringLiteral("일일소모량조회");
    grid.periodLabel = LoadResString(1033);
    grid.period = Date_Dash(yymmdd);
    grid.heads = {LoadResString(1265),
                  LoadResString(632),
                  LoadResString(633),
                  QStringLiteral("주행거리(km)"),
                  QStringLiteral("연료소모량(liter)"),
                  QStringLiteral("과소모량(liter)"),
                  QStringLiteral("연비(km/liter)")};
    for (const Fuel_Day_Row& r : day.rows)
        grid.rows.push_back({QString::number(r.rank), r.car, r.driver, QString::number(r.km, 'f', 1),
                             QString::number(r.litres, 'f', 2), QString::number(r.excess, 'f', 2),
                             QString::number(r.kmPerLitre, 'f', 3)});
    return grid;
}

Excel_Result Excel_Day_Fuel(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return excel_detail::Trapped(0, [&] {
        const QString packDir = G().Config ? G().Config->U_PackDir : QString();
        return Excel_Grid_Export(appDir, Fuel_Day_Grid(Fuel_Estimate_Day(db, packDir, sel.from), sel.from), out);
    });
}

} // namespace vex
