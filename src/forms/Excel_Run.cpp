#include "forms/Excel_Run.h"

#include "core/Mod_Main.h"
#include "forms/Excel_Show.h"
#include "store/Cls_DB.h"
#include "store/Job_Runner.h"

#include <QProgressDialog>

namespace vex::forms {

Excel_Result Excel_Run(QWidget* parent, const QString& what, Excel_Selection sel, const Excel_Job& job)
{
    QProgressDialog progress(what, QString(), 0, 100, parent);
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(0);
    progress.setValue(0);
    Job_Runner runner(G().DB->Target());
    QObject::connect(&runner, &Job_Runner::Progress, &progress, [&](const QString& step, int percent) {
        progress.setLabelText(what + QStringLiteral("\n") + step);
        progress.setValue(std::clamp(percent, 0, 99));
    });
    runner.Start([sel, job](Job& worker) mutable -> std::any {
        sel.progress = [&worker](int percent, const QString& step) { worker.Progress(step, percent, 100); };
        return job(worker.Db(), sel);
    });
    const Job_Result& done = runner.Wait_Events();
    Excel_Result r;
    if (done.Ok())
        r = done.Value<Excel_Result>();
    else
        r.message = done.error;
    progress.reset();
    Excel_Show(r);
    return r;
}

} // namespace vex::forms
