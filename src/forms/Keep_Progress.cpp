#include "forms/Keep_Progress.h"

#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

#include <QCoreApplication>
#include <QProgressDialog>

namespace vex::forms {

Exchange_Report Keep_With_Progress(QWidget* parent, const QString& title,
                                   const std::function<Exchange_Report(const Exchange_Progress&)>& work)
{
    QProgressDialog dialog(title, QString(), 0, 1, parent);
    dialog.setObjectName(QStringLiteral("Keep_Progress"));
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setMinimumDuration(0);
    dialog.setValue(0);
    const Exchange_Report r = work([&](const QString& stage, int done, int all) {
        if (!stage.isEmpty())
            dialog.setLabelText(title + QLatin1Char('\n') + stage);
        dialog.setMaximum(std::max(all, 1));
        dialog.setValue(std::min(done, std::max(all, 1)));
        QCoreApplication::processEvents();
    });
    dialog.setValue(dialog.maximum());
    return r;
}

QStringList Register_Codes(const QString& table)
{
    QStringList codes{QStringLiteral("ALL")};
    if (!G().DB)
        return codes;
    Guarded(1089, [&] {
        Recordset rs = G().DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM ") + table + QStringLiteral(" ORDER BY D_F1"));
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
            codes << rs.Text(QStringLiteral("D_F1"));
    });
    return codes;
}

} // namespace vex::forms
