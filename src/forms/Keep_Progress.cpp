#include "forms/Keep_Progress.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/Job_Runner.h"

#include <QProgressDialog>

namespace vex::forms {

namespace {

// Runs the step on runner, which the caller has wired to its progress and
// cancel, until it ends.
Exchange_Report Run_Keeping(Job_Runner& runner, Keep_Work work)
{
    runner.Start([work = std::move(work)](Job& job) -> std::any {
        return work(job.Db(), [&job](const QString& stage, int done, int all) { job.Step(stage, done, all); });
    });
    const Job_Result& result = runner.Wait_Events();
    Exchange_Report r;
    if (result.Ok())
        r = result.Value<Exchange_Report>();
    else
        r.message = result.error;
    if (result.cancelled && !r.ok)
        r.message = Cancelled_Message(r);
    return r;
}

} // namespace

Exchange_Report Keep_With_Progress(QWidget* parent, const QString& title, Keep_Work work)
{
    QProgressDialog dialog(title, LoadResString(506), 0, 1, parent);
    dialog.setObjectName(QStringLiteral("Keep_Progress"));
    dialog.setWindowTitle(title);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setMinimumDuration(0);
    dialog.setValue(0);
    Job_Runner runner(G().DB->Target());
    QObject::connect(&dialog, &QProgressDialog::canceled, &runner, &Job_Runner::Cancel);
    QObject::connect(&runner, &Job_Runner::Progress, &dialog, [&](const QString& stage, int done, int all) {
        if (dialog.wasCanceled())
            return;
        if (!stage.isEmpty())
            dialog.setLabelText(title + QLatin1Char('\n') + stage);
        dialog.setMaximum(std::max(all, 1));
        dialog.setValue(std::min(done, std::max(all, 1) - 1)); // the full bar would close the dialog and its Cancel
    });
    Exchange_Report r = Run_Keeping(runner, std::move(work));
    dialog.reset();
    return r;
}

Exchange_Report Keep_In_Window(QPushButton* cancel, const Exchange_Progress& show, Keep_Work work)
{
    Job_Runner runner(G().DB->Target());
    QObject::connect(&runner, &Job_Runner::Progress, cancel, show);
    const QMetaObject::Connection pressed = QObject::connect(cancel, &QPushButton::clicked, &runner, [&] {
        runner.Cancel();
        cancel->setEnabled(false);
    });
    cancel->setEnabled(true);
    cancel->show();
    Exchange_Report r = Run_Keeping(runner, std::move(work));
    cancel->hide();
    QObject::disconnect(pressed);
    return r;
}

QString Cancelled_Message(const Exchange_Report& r)
{
    QStringList lines{Lang_Text(QStringLiteral("작업이 취소되었습니다."), QStringLiteral("The work was cancelled."))};
    // What the step said besides its failure by the cancel ("<routine>: cancelled").
    const QString cancelled = QString::fromUtf8(Job_Cancelled().what());
    for (const QString& line : r.message.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        if (!line.endsWith(cancelled))
            lines << line;
    lines << (r.tables.empty() && r.files.isEmpty()
                  ? Lang_Text(QStringLiteral("변경된 자료가 없습니다."), QStringLiteral("Nothing was changed."))
                  : Lang_Text(QStringLiteral("남은 자료: "), QStringLiteral("What stayed: ")) + r.Text());
    return lines.join(QLatin1Char('\n'));
}

QString Days_To_Delete(const vex::Selection& s)
{
    int days = 0;
    if (G().DB)
        Guarded(kErrRegisterCodes, [&] { days = Count_Rows(*G().DB, QStringLiteral("D_D1"), s); });
    const auto Who = [](const QString& code, const QString& korean, const QString& english, const QString& every) {
        return code == QLatin1String("ALL") ? every : Lang_Text(korean, english) + QLatin1Char(' ') + code;
    };
    return Lang_Text(QStringLiteral("삭제할 자료: %1일 (%2, %3, %4 ~ %5)"),
                     QStringLiteral("to be deleted: %1 day(s) (%2, %3, %4 to %5)"))
        .arg(days)
        .arg(Who(s.car, QStringLiteral("차량"), QStringLiteral("car"), Lang_Text(QStringLiteral("모든 차량"), QStringLiteral("every car"))),
             Who(s.driver, QStringLiteral("운전원"), QStringLiteral("driver"),
                 Lang_Text(QStringLiteral("모든 운전원"), QStringLiteral("every driver"))),
             s.from, s.to);
}

QStringList Register_Codes(const QString& table)
{
    QStringList codes{QStringLiteral("ALL")};
    if (!G().DB)
        return codes;
    Guarded(kErrRegisterCodes, [&] {
        Recordset rs = G().DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM ") + table + QStringLiteral(" ORDER BY D_F1"));
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
            codes << rs.Text(QStringLiteral("D_F1"));
    });
    return codes;
}

} // namespace vex::forms
