// The fuel grid of a day (day_fuel): the day estimate as the fuel form
// shows it, written through the grid export.
#include "reports/Excel_Grid.h"

#include "analysis/Fuel.h"
#include "analysis/Status_Grids.h"
#include "core/Cls_Config.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"

namespace vex {

Excel_Result Excel_Day_Fuel(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return excel_detail::Trapped(0, [&] {
        const QString packDir = G().Config ? G().Config->U_PackDir : QString();
        return Excel_Grid_Export(appDir, Fuel_Day_Excel(Fuel_Day_Table(Fuel_Estimate_Day(db, packDir, sel.from)), sel.from), out);
    });
}

} // namespace vex
