#include "forms/Remote_Press.h"

#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "exchange/Remote_Reception.h"
#include "forms/Msg_Box.h"
#include "store/Cls_DB.h"
#include "store/Job_Runner.h"

#include <QProgressDialog>

namespace vex::forms {

void Remote_Press(QWidget* parent)
{
    if (!G().DB || !G().Config)
        return;
    const Ftp_Settings settings = Ftp_Settings_Of(*G().Config);
    QProgressDialog dialog(QStringLiteral("원격수신"), QString(), 0, 0, parent);
    dialog.setObjectName(QStringLiteral("Remote_Progress"));
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setMinimumDuration(0);
    dialog.show();
    // The transfer touches no database; its dialog names each file.
    Job_Runner transfer;
    QObject::connect(&transfer, &Job_Runner::Progress, &dialog, [&dialog](const QString& name) {
        dialog.setLabelText(QStringLiteral("원격수신\n") + name);
    });
    transfer.Start([settings](Job& job) -> std::any {
        return Remote_Transfer(settings, [&job](const QString& name) { job.Progress(name); });
    });
    const Job_Result& sent = transfer.Wait_Events();
    dialog.close();
    Remote_Outcome out;
    if (sent.Ok())
        out = sent.Value<Remote_Outcome>();
    else
        out.messages << sent.error;
    // What the passes said, then the loading step, which says what it finds
    // (message 1241) before it loads.
    for (const QString& m : out.messages)
        Msg_Box(m, QMessageBox::NoIcon);
    if (out.loadingDue) {
        QProgressDialog loading(QStringLiteral("DB Loading..."), QString(), 0, 1, parent);
        loading.setObjectName(QStringLiteral("Keep_Progress"));
        loading.setWindowTitle(loading.labelText());
        loading.setWindowModality(Qt::WindowModal);
        loading.setMinimumDuration(0);
        loading.setValue(0);
        Job_Runner load(G().DB->Target());
        QObject::connect(&load, &Job_Runner::Progress, &loading, [&loading](const QString& stage, int done, int all) {
            if (!stage.isEmpty())
                loading.setLabelText(QStringLiteral("DB Loading...\n") + stage);
            loading.setMaximum(std::max(all, 1));
            loading.setValue(std::min(done, std::max(all, 1)));
        });
        load.Start([out](Job& job) mutable -> std::any {
            // Each message is a box the loading waits for, as it was told.
            Remote_Load(
                job.Db(), out, [&job](const QString& stage, int done, int all) { job.Progress(stage, done, all); },
                [&job](const QString& m) { job.On_Caller([m] { Msg_Box(m, QMessageBox::NoIcon); }); });
            return out;
        });
        const Job_Result& loaded = load.Wait_Events();
        if (loaded.Ok())
            out = loaded.Value<Remote_Outcome>();
        else
            Msg_Box(loaded.error, QMessageBox::Warning);
    }
    const QStringList wrong = out.refused + out.kept + out.rowsRefused;
    if (!wrong.isEmpty())
        Msg_Box(wrong.join(QLatin1Char('\n')), QMessageBox::Warning);
}

} // namespace vex::forms
