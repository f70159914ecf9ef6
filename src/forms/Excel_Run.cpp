#include "forms/Excel_Run.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Excel_Show.h"
#include "store/Cls_DB.h"
#include "store/Job_Runner.h"

#include <QProgressDialog>

namespace vex::forms {

Excel_Result Excel_Run(QWidget* parent, const QString& what, Excel_Selection sel, const Excel_Job& job)
{
    QProgressDialog progress(what, LoadResString(506), 0, 100, parent);
    progress.setObjectName(QStringLiteral("Excel_Progress"));
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(0);
    progress.setValue(0);
    Job_Runner runner(G().DB->Target());
    QObject::connect(&progress, &QProgressDialog::canceled, &runner, &Job_Runner::Cancel);
    QObject::connect(&runner, &Job_Runner::Progress, &progress, [&](const QString& step, int percent) {
        if (progress.wasCanceled())
            return;
        progress.setLabelText(what + QStringLiteral("\n") + step);
        progress.setValue(std::clamp(percent, 0, 99));
    });
    // A cancel stops the report at its next step, before its workbook is
    // saved: the report fails there and saves nothing.
    runner.Start([sel, job](Job& worker) mutable -> std::any {
        sel.progress = [&worker](int percent, const QString& step) { worker.Step(step, percent, 100); };
        return job(worker.Db(), sel);
    });
    const Job_Result& done = runner.Wait_Events();
    Excel_Result r;
    if (done.Ok())
        r = done.Value<Excel_Result>();
    else
        r.message = done.error;
    if (done.cancelled && r.outcome != Excel_Result::Written)
        r.message = Lang_Text(QStringLiteral("작업이 취소되었습니다. 파일은 저장되지 않았습니다."),
                              QStringLiteral("The work was cancelled. No file was saved."));
    progress.reset();
    Excel_Show(r);
    return r;
}

} // namespace vex::forms
