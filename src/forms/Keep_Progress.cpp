#include "forms/Keep_Progress.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/Job_Runner.h"

#include <QProgressDialog>

namespace vex::forms {

Exchange_Report Keep_With_Progress(QWidget* parent, const QString& title, Keep_Work work)
{
    QProgressDialog dialog(title, QString(), 0, 1, parent);
    dialog.setObjectName(QStringLiteral("Keep_Progress"));
    dialog.setWindowTitle(title);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setMinimumDuration(0);
    dialog.setValue(0);
    Job_Runner runner(G().DB->Target());
    QObject::connect(&runner, &Job_Runner::Progress, &dialog, [&](const QString& stage, int done, int all) {
        if (!stage.isEmpty())
            dialog.setLabelText(title + QLatin1Char('\n') + stage);
        dialog.setMaximum(std::max(all, 1));
        dialog.setValue(std::min(done, std::max(all, 1)));
    });
    runner.Start([work = std::move(work)](Job& job) -> std::any {
        return work(job.Db(), [&job](const QString& stage, int done, int all) { job.Progress(stage, done, all); });
    });
    const Job_Result& result = runner.Wait_Events();
    dialog.setValue(dialog.maximum());
    if (result.Ok())
        return result.Value<Exchange_Report>();
    Exchange_Report failed;
    failed.message = result.error;
    return failed;
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
