// vexcli excel KIND ...: the spreadsheet reports through the same routines
// as the analysis and reference forms.
#include "cli/Commands.h"
#include "cli/Graph_Output.h"

#include "core/Mod_Main.h"
#include "reports/Excel_Grid.h"
#include "store/Cls_DB.h"

#include <QFileInfo>
#include <map>

namespace vex::cli {

namespace {

using Excel_Routine = Excel_Result (*)(Cls_DB&, const QString&, const Excel_Selection&, const QString&);

struct Excel_Kind {
    Excel_Routine run;
    bool needsCar;
    bool needsDriver;
    const char* ending = ".xlsx"; // of the file written
};

// Reports of a day take the day of --from, those of a month its month.
const std::map<QString, Excel_Kind>& Kinds()
{
    static const std::map<QString, Excel_Kind> kinds = {
        {QStringLiteral("overspeed"), {CAL_RECORD_DATA, true, true}},
        {QStringLiteral("longover"), {CAL_LONG_OVER, true, true}},
        {QStringLiteral("idle"), {CAL_SECTION_RUN, true, true}},
        {QStringLiteral("brake"), {CAL_QUICK_BRAKE, true, true}},
        {QStringLiteral("quick_speed"), {CAL_TIME_SPEED, true, true}},
        {QStringLiteral("bat"), {CAL_SPEED_DIST, true, true}},
        {QStringLiteral("speedfile"), {CAL_SPEED_FILE, true, true, ".dat"}},
        {QStringLiteral("carday"), {Excel_Car_Day, true, false}},
        {QStringLiteral("carday1"), {Excel_All_Cars_Day, false, false}},
        {QStringLiteral("cartotal"), {Excel_Car_Total, false, false}},
        {QStringLiteral("driverday1"), {Excel_Driver_Day, false, true}},
        {QStringLiteral("drivertotal1"), {Excel_Driver_Total, false, false}},
        {QStringLiteral("speedrate"), {Excel_Speed_Rate, false, false}},
        {QStringLiteral("daystatus"), {Excel_Day_Drive, false, false}},
        {QStringLiteral("carcondition"), {Excel_Car_Condition, false, false}},
        {QStringLiteral("daystatus2"), {Excel_Day_Status, false, false}},
        {QStringLiteral("daydr"), {Excel_Day_Report, false, false}},
        {QStringLiteral("day_fuel"), {Excel_Day_Fuel, false, false}},
    };
    return kinds;
}

int Excel_Usage(Context& ctx, const QString& what)
{
    ctx.err << "vexcli: " << what << "\n"
            << "  excel " << Excel_Kind_Names().join(QLatin1Char('|'))
            << " [--car CODE] [--driver CODE] --from YYMMDD --to YYMMDD [--out FILE.xlsx]\n"
            << "  (daystatus, daydr, day_fuel: the day of --from; carcondition, daystatus2: its month,\n"
            << "   by driver when --driver is given; bat and speedfile: every second of the period)\n";
    return 2;
}

} // namespace

QStringList Excel_Kind_Names()
{
    QStringList names;
    for (const auto& [name, kind] : Kinds())
        names << name;
    return names;
}

int Cmd_Excel(Context& ctx)
{
    QStringList args = ctx.args;
    const QString name = args.isEmpty() ? QString() : args.takeFirst();
    const auto kind = Kinds().find(name);
    if (kind == Kinds().end())
        return Excel_Usage(ctx, QStringLiteral("no report kind ") + name);
    Excel_Selection sel;
    sel.car = Take_Option(args, QStringLiteral("--car"));
    sel.driver = Take_Option(args, QStringLiteral("--driver"));
    sel.from = Take_Option(args, QStringLiteral("--from"));
    sel.to = Take_Option(args, QStringLiteral("--to"));
    const QString out = Take_Out_Path(args);
    const bool ok = args.isEmpty() && Day_Word(sel.from) && Day_Word(sel.to) && sel.from <= sel.to &&
                    (!kind->second.needsCar || sel.car.size() == 6) &&
                    (!kind->second.needsDriver || sel.driver.size() == 6) &&
                    (out.isEmpty() || out.endsWith(QLatin1String(kind->second.ending), Qt::CaseInsensitive));
    // daystatus2 is one car's or one driver's month.
    const bool oneOfThem = name != QLatin1String("daystatus2") || sel.car.size() == 6 || sel.driver.size() == 6;
    if (!ok || !oneOfThem)
        return Excel_Usage(ctx, QStringLiteral("wrong words for excel ") + name);
    // A workbook goes into a folder that is there, as every other output.
    if (!out.isEmpty() && !QFileInfo(QFileInfo(out).absolutePath()).isDir()) {
        ctx.err << "vexcli: cannot write " << out << "\n";
        return 2;
    }
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;

    const Excel_Result r = kind->second.run(*G().DB, G().App_Dir, sel, out);
    if (r.outcome == Excel_Result::Written) {
        ctx.out << r.path << "\n";
        return 0;
    }
    ctx.err << r.message << "\n";
    return r.outcome == Excel_Result::No_Data ? 1 : 2;
}

} // namespace vex::cli
