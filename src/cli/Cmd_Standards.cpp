// vexcli standards [set N=VALUE...]: the evaluation standards shown and
// changed as their form does; vexcli recalc: every old trip counted again
// under them, in a thread of its own as the form runs it.
#include "cli/Commands.h"

#include "analysis/New_Standards.h"
#include "analysis/Standards.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/Job_Runner.h"

#include <algorithm>
#include <QRegularExpression>

namespace vex::cli {

namespace {

constexpr int16_t kErrCommand1 = 1031;

void Print_Standards(Context& ctx, const Standard_Values& values)
{
    for (int i = 1; i <= kStandards; ++i)
        ctx.out << QString::number(i).rightJustified(2) << "  " << Standard_Caption(i) << " : "
                << values[size_t(i - 1)] << "\n";
}

int Standards_Usage(Context& ctx, const QString& what)
{
    ctx.err << "vexcli: " << what << "\n"
            << "  standards                      the standards stored in S_D10\n"
            << "  standards set N=VALUE ...      field N (1 to 13) to a whole number\n";
    return 2;
}

} // namespace

int Cmd_Standards(Context& ctx)
{
    QStringList args = ctx.args;
    const bool set = !args.isEmpty() && args.first() == QLatin1String("set");
    if (set)
        args.removeFirst();
    if ((!set && !args.isEmpty()) || (set && args.isEmpty()))
        return Standards_Usage(ctx, QStringLiteral("standards takes nothing, or set and N=VALUE pairs"));
    // Every pair is checked before anything is written.
    std::vector<std::pair<int, QString>> changes;
    static const QRegularExpression pair(QStringLiteral("^(\\d{1,2})=(.*)$"));
    for (const QString& a : args) {
        const auto m = pair.match(a);
        const int i = m.hasMatch() ? m.captured(1).toInt() : 0;
        if (i < 1 || i > kStandards)
            return Standards_Usage(ctx, QStringLiteral("\"%1\" is no N=VALUE with N from 1 to 13").arg(a));
        const QString why = Standard_Error(i, m.captured(2));
        if (!why.isEmpty())
            return Standards_Usage(ctx, why);
        changes.emplace_back(i, m.captured(2).trimmed());
    }
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;
    Cls_DB& db = *G().DB;
    Standard_Values values;
    if (!Guarded(kErrCommand1, [&] { values = Standards_Load(db); })) {
        ctx.err << "vexcli: " << Err_Last() << "\n";
        return 2;
    }
    if (!set) {
        const bool none = std::all_of(values.begin(), values.end(), [](const QString& v) { return v.isEmpty(); });
        if (none)
            ctx.err << "vexcli: S_D10 holds no standards\n";
        Print_Standards(ctx, values);
        return none ? 1 : 0;
    }
    for (const auto& [i, value] : changes)
        values[size_t(i - 1)] = value;
    for (int i = 1; i <= kStandards; ++i)
        if (!Standard_Error(i, values[size_t(i - 1)]).isEmpty())
            return Standards_Usage(ctx, QStringLiteral("S_D10 holds no value of field %1 (%2): give it as %1=VALUE")
                                        .arg(i)
                                        .arg(Standard_Caption(i)));
    if (!Guarded(kErrCommand1, [&] { Standards_Save(db, *G().Config, values); })) {
        ctx.err << "vexcli: " << Err_Last() << "\n";
        return 2;
    }
    ctx.out << "저장 완료되었읍니다 !\n";
    Print_Standards(ctx, values);
    return 0;
}

int Cmd_Recalc(Context& ctx)
{
    if (!ctx.args.isEmpty()) {
        ctx.err << "vexcli: recalc takes no arguments\n";
        return 2;
    }
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;
    Cls_DB& db = *G().DB;
    QString missing;
    Cls_Config standards;
    if (!Guarded(1032, [&] {
            missing = Standards_Missing(db);
            standards = Standards_Stored(db, *G().Config);
        })) {
        ctx.err << "vexcli: " << Err_Last() << "\n";
        return 2;
    }
    if (!missing.isEmpty()) {
        ctx.err << "vexcli: " << missing << "\n";
        return 2;
    }
    // The recount on the runner's own connection, as the form runs it; its
    // progress on stderr, a line a trip.
    Job_Runner runner(db.Target());
    QObject::connect(&runner, &Job_Runner::Progress, [&](const QString& notice, int done, int total) {
        if (total > 0)
            ctx.err << "recalc " << done << "/" << total << "\n";
        else
            ctx.err << "vexcli: " << notice << "\n";
        ctx.err.flush();
    });
    runner.Start([standards](Job& job) -> std::any {
        // A write that waits for another program says so, as the main
        // connection's writes do.
        job.Db().Wait_Notice = [&job](const QString& text) { job.Progress(text); };
        return Recount_Job(job, standards);
    });
    const Job_Result& result = runner.Wait_Events();
    Recount_Summary s;
    if (result.Ok())
        s = result.Value<Recount_Summary>();
    else
        s.error = result.error;
    if (!s.error.isEmpty()) {
        ctx.err << "vexcli: " << s.error << "\n";
        return 2;
    }
    if (s.total == 0) {
        ctx.err << "vexcli: " << LoadResString(1135) << "\n";
        return 1;
    }
    ctx.out << "trips " << s.total << ", recounted " << s.done << ", rows changed " << s.changed
            << ", events kept for want of a day file " << s.withoutDayFile << ", left after an error " << s.failed
            << "\n";
    if (s.receivedMeanwhile > 0)
        ctx.out << "received again while counting, left as their reception counted them " << s.receivedMeanwhile
                << "\n";
    if (s.failed > 0) {
        ctx.err << "vexcli: " << s.failed << " trip(s) left as they were: " << Err_Log_Path() << "\n";
        return 2;
    }
    ctx.out << LoadResString(1244) << "\n";
    return 0;
}

} // namespace vex::cli
