#include "forms/Remote_Press.h"

#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "exchange/Remote_Reception.h"
#include "forms/Keep_Progress.h"
#include "forms/Msg_Box.h"
#include "store/Cls_DB.h"

#include <QCoreApplication>
#include <QMutex>
#include <QProgressDialog>
#include <atomic>
#include <thread>

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
    QString current;
    QMutex lock;
    Remote_Outcome out;
    std::atomic<bool> finished = false;
    std::thread transfer([&] {
        out = Remote_Transfer(settings, [&](const QString& name) {
            QMutexLocker hold(&lock);
            current = name;
        });
        finished = true;
    });
    while (!finished) {
        {
            QMutexLocker hold(&lock);
            if (!current.isEmpty())
                dialog.setLabelText(QStringLiteral("원격수신\n") + current);
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }
    transfer.join();
    dialog.close();
    // What the passes said, then the loading step, which says what it finds
    // (message 1241) before it loads.
    for (const QString& m : out.messages)
        Msg_Box(m, QMessageBox::NoIcon);
    if (out.loadingDue) {
        const auto say = [](const QString& m) { Msg_Box(m, QMessageBox::NoIcon); };
        Keep_With_Progress(parent, QStringLiteral("DB Loading..."), [&](const Exchange_Progress& p) {
            Remote_Load(*G().DB, out, p, say);
            return Exchange_Report{};
        });
    }
    const QStringList wrong = out.refused + out.kept + out.rowsRefused;
    if (!wrong.isEmpty())
        Msg_Box(wrong.join(QLatin1Char('\n')), QMessageBox::Warning);
}

} // namespace vex::forms
