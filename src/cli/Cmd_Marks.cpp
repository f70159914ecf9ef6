// vexcli marks explain CAR DRIVER YYMMDD: a trip's mark step by step and the
// events behind it; vexcli marks trend: the drivers month by month.
#include "cli/Commands.h"

#include "analysis/Driver_Trends.h"
#include "analysis/Trip_Explanation.h"
#include "core/Codes.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "registers/Register_Lookup.h"
#include "reports/Report_Trust.h"
#include "store/Cls_DB.h"

#include <QFileInfo>

namespace vex::cli {

namespace {

constexpr const char* kMarksUsage = "usage: vexcli marks explain CARCODE DRIVERCODE YYMMDD\n"
                               "       vexcli marks trend --from YYMM --to YYMM [--driver CODE] [--out FILE.xlsx]\n";

bool Is_Month(const QString& yymm)
{
    return yymm.size() == 4 && Is_Day(yymm + QStringLiteral("01"));
}

int Explain(Context& ctx)
{
    if (ctx.args.size() != 4 || !Is_Code(ctx.args[1]) || !Is_Code(ctx.args[2]) || !Is_Day(ctx.args[3])) {
        ctx.err << "vexcli: marks explain takes a car code, a driver code and a day as YYMMDD\n" << kMarksUsage;
        return 2;
    }
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;
    try {
        const Trip_Explanation e = Explain_Trip(*G().DB, *G().Config, ctx.args[1], ctx.args[2], ctx.args[3]);
        if (!e.found) {
            ctx.err << "vexcli: no stored trip " << ctx.args[1] + ctx.args[2] + ctx.args[3] << "\n";
            return 1;
        }
        for (const QString& line : Explanation_Lines(e))
            ctx.out << line << "\n";
    } catch (const RunTimeError& e) {
        ctx.err << "vexcli: " << e.what() << "\n";
        return 1;
    }
    return 0;
}

int Trend(Context& ctx)
{
    const QString from = Option(ctx.args, QStringLiteral("--from")), to = Option(ctx.args, QStringLiteral("--to"));
    const QString driver = Option(ctx.args, QStringLiteral("--driver"));
    if (!Is_Month(from) || !Is_Month(to) || from > to || (!driver.isEmpty() && !Is_Code(driver))) {
        ctx.err << "vexcli: marks trend takes --from and --to as YYMM, the first not after the second, and a "
                   "driver code\n"
                << kMarksUsage;
        return 2;
    }
    // Named before the start-up moves into the application folder.
    QString out = Option(ctx.args, QStringLiteral("--out"));
    if (!out.isEmpty())
        out = QFileInfo(out).absoluteFilePath();
    if (!Start_App(ctx))
        return 2;
    const std::vector<Driver_Month> rows = Driver_Trends(*G().DB, from, to, driver);
    if (!out.isEmpty()) {
        const Excel_Result r = Excel_Driver_Trend(*G().DB, G().App_Dir, rows, from, to, out);
        if (r.outcome != Excel_Result::Written) {
            ctx.err << "vexcli: " << r.message << "\n";
            return 1;
        }
        ctx.out << "wrote " << r.path << "\n";
        return 0;
    }
    // The columns of the page and the workbook, padded to their widths.
    static const int widths[] = {5, 7, 12, 6, 9, 9, 14, 9, 8, 7};
    auto line = [&](const QStringList& cells) {
        QString text;
        for (int c = 0; c < cells.size(); ++c)
            text += cells[c].leftJustified(widths[c]) + QLatin1Char(' ');
        ctx.out << text.trimmed() << "\n";
    };
    line(Driver_Month_Heads());
    for (const Driver_Month& m : rows)
        line(Driver_Month_Cells(m, Driver_Name_Of(*G().DB, m.driver)));
    if (rows.empty())
        ctx.out << Lang_Text(QStringLiteral("기간에 운행이 없습니다"), QStringLiteral("no trips in the period")) << "\n";
    return 0;
}

} // namespace

int Cmd_Marks(Context& ctx)
{
    const QString what = ctx.args.value(0);
    if (what == QLatin1String("explain"))
        return Explain(ctx);
    if (what == QLatin1String("trend"))
        return Trend(ctx);
    ctx.err << kMarksUsage;
    return 2;
}

} // namespace vex::cli
