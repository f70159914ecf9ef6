// vexcli fuel day|month: the fuel estimates of a day and the excess cost of
// a month, printed as the forms' grids.
#include "cli/Commands.h"
#include "cli/Graph_Output.h"

#include "acquisition/Inbox_Names.h"
#include "analysis/Fuel.h"
#include "analysis/Status_Grids.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"

#include <cmath>

namespace vex::cli {

namespace {

int Fuel_Usage(Context& ctx, const QString& what)
{
    ctx.err << "vexcli: " << what << "\n"
            << "  fuel day YYMMDD\n"
            << "  fuel month YYMM --speed N --rates OVER,ACCEL,IDLE,BRAKE --price P\n";
    return 2;
}

// A grid as the window shows it, tab-separated.
void Print_Table(Context& ctx, const Grid_Table& table)
{
    ctx.out << table.heads.join(QLatin1Char('\t')) << '\n';
    for (const QStringList& row : table.rows)
        ctx.out << row.join(QLatin1Char('\t')) << '\n';
}

} // namespace

int Cmd_Fuel(Context& ctx)
{
    QStringList args = ctx.args;
    const QString kind = args.isEmpty() ? QString() : args.takeFirst();
    Fuel_Rates rates;
    if (kind == QLatin1String("day")) {
        if (args.size() != 1 || !Is_Day(args[0]))
            return Fuel_Usage(ctx, QStringLiteral("fuel day takes YYMMDD"));
    } else if (kind == QLatin1String("month")) {
        bool ok = true, okSpeed = false, okPrice = false;
        rates.speed = Take_Option(args, QStringLiteral("--speed")).toInt(&okSpeed);
        rates.price = Take_Option(args, QStringLiteral("--price")).toDouble(&okPrice);
        const QStringList r = Take_Option(args, QStringLiteral("--rates")).split(QLatin1Char(','));
        double* into[] = {&rates.over, &rates.accel, &rates.idle, &rates.brake};
        ok = r.size() == 4;
        for (int i = 0; ok && i < 4; ++i)
            *into[i] = r[i].toDouble(&ok);
        // A price or a rate is an amount: never below zero, never endless.
        for (const double amount : {rates.price, rates.over, rates.accel, rates.idle, rates.brake})
            ok = ok && std::isfinite(amount) && amount >= 0;
        if (!ok || !okSpeed || !okPrice || args.size() != 1 || args[0].size() != 4 || !All_Digits(args[0]))
            return Fuel_Usage(ctx, QStringLiteral("wrong words for fuel month"));
    } else {
        return Fuel_Usage(ctx, QStringLiteral("fuel day|month"));
    }
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;
    try {
        if (kind == QLatin1String("day")) {
            const Fuel_Day day = Fuel_Estimate_Day(*G().DB, G().Config->U_PackDir, args[0]);
            Print_Table(ctx, Fuel_Day_Table(day));
            if (!day.error.isEmpty()) {
                ctx.err << "vexcli: " << day.error << "\n";
                return 1;
            }
        } else {
            Print_Table(ctx, Fuel_Month_Table(Fuel_Excess_Month(*G().DB, args[0], rates, G().Config->B_Val12)));
        }
    } catch (const std::exception& e) {
        ctx.err << "vexcli: " << e.what() << "\n";
        return 2;
    }
    return 0;
}

} // namespace vex::cli
