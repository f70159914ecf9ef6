#include "forms/Excel_Run.h"

#include "forms/Excel_Show.h"

#include <QApplication>
#include <QProgressDialog>

namespace vex::forms {

Excel_Result Excel_Run(QWidget* parent, const QString& what, Excel_Selection sel, const Excel_Job& job)
{
    QProgressDialog progress(what, QString(), 0, 100, parent);
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(0);
    progress.setValue(0);
    sel.progress = [&](int percent, const QString& step) {
        progress.setLabelText(what + QStringLiteral("\n") + step);
        progress.setValue(std::clamp(percent, 0, 99));
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    };
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    const Excel_Result r = job(sel);
    progress.reset();
    Excel_Show(r);
    return r;
}

} // namespace vex::forms
