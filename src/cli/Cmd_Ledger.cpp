// vexcli ledger: the receptions, what became of each day and the notes of
// the days stored, newest first.
#include "cli/Commands.h"

#include "analysis/Plausibility.h"
#include "core/Codes.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "exchange/Reception_Ledger.h"

namespace vex::cli {

namespace {

constexpr const char* kLedgerUsage =
    "usage: vexcli ledger [--from YYMMDD] [--to YYMMDD] [--car CODE] [--driver CODE] [--kind KIND] [--findings]\n"
    "kinds: distance jump no-distance engine-off flat over-200 clock future older overlap copied driver\n";

bool Known_Kind(const QString& name)
{
    for (int k = 0; k <= int(Finding_Kind::Unknown_Driver); ++k)
        if (Finding_Kind_Name(Finding_Kind(k)) == name)
            return true;
    return false;
}

} // namespace

void Tell_Ledger(Context& ctx, Ledger_Road road, const QString& source, const QString& summary,
                 std::vector<Ledger_Day> days)
{
    try {
        const Ledger_Entry entry = Record_Reception(*G().DB, road, source, summary, std::move(days));
        ctx.out << Ledger_Line(entry) << "\n";
        for (const Ledger_Day& d : entry.days)
            for (const Finding& f : d.findings)
                ctx.out << "  " << d.what << "  " << Finding_Text(f) << "\n";
    } catch (const RunTimeError& e) {
        ctx.err << "vexcli: the ledger could not be written: " << e.what() << "\n";
    }
}

int Cmd_Ledger(Context& ctx)
{
    Ledger_Filter filter;
    for (int i = 0; i < ctx.args.size(); ++i) {
        const QString& a = ctx.args[i];
        const QString value = ctx.args.value(i + 1);
        QString* into = a == QLatin1String("--from")     ? &filter.from
                        : a == QLatin1String("--to")     ? &filter.to
                        : a == QLatin1String("--car")    ? &filter.car
                        : a == QLatin1String("--driver") ? &filter.driver
                        : a == QLatin1String("--kind")   ? &filter.kind
                                                         : nullptr;
        if (a == QLatin1String("--findings")) {
            filter.findingsOnly = true;
        } else if (into && !value.isEmpty()) {
            *into = value;
            ++i;
        } else {
            ctx.err << "vexcli: ledger does not take " << a << "\n" << kLedgerUsage;
            return 2;
        }
    }
    if ((!filter.from.isEmpty() && !Is_Day(filter.from)) || (!filter.to.isEmpty() && !Is_Day(filter.to))) {
        ctx.err << "vexcli: --from and --to take days as YYMMDD\n";
        return 2;
    }
    if ((!filter.car.isEmpty() && !Is_Code(filter.car)) || (!filter.driver.isEmpty() && !Is_Code(filter.driver))) {
        ctx.err << "vexcli: --car and --driver take codes of six characters 0-9 and A-F\n";
        return 2;
    }
    if (!filter.kind.isEmpty() && !Known_Kind(filter.kind)) {
        ctx.err << "vexcli: no finding kind " << filter.kind << "\n" << kLedgerUsage;
        return 2;
    }
    if (!Start_App(ctx))
        return 2;
    const std::vector<Ledger_Entry> entries = Read_Ledger(*G().DB, filter);
    for (const Ledger_Entry& e : entries) {
        ctx.out << e.when << "  " << Road_Name(e.road) << "  " << e.source << "  (" << e.pc << ")\n";
        if (!e.summary.isEmpty())
            ctx.out << "  " << e.summary << "\n";
        for (const Ledger_Day& d : e.days) {
            ctx.out << "  " << d.outcome << "  " << d.what;
            if (!d.first.isEmpty())
                ctx.out << "  " << d.first.mid(6, 2) << ":" << d.first.mid(8, 2) << "-" << d.last.mid(6, 2) << ":"
                        << d.last.mid(8, 2);
            if (!d.why.isEmpty())
                ctx.out << "  " << d.why;
            ctx.out << "\n";
            for (const Finding& f : d.findings)
                ctx.out << "    " << Finding_Kind_Name(f.kind) << "  " << Finding_Text(f) << "\n";
        }
    }
    if (entries.empty())
        ctx.out << "no reception in the ledger" << (filter.findingsOnly ? " with a note" : "") << "\n";
    return 0;
}

} // namespace vex::cli
