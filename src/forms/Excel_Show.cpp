#include "forms/Excel_Show.h"

#include "forms/Msg_Box.h"

#include <QDesktopServices>
#include <QDir>
#include <QUrl>

namespace vex::forms {

namespace {

Excel_Opener& Opener()
{
    static Excel_Opener opener = [](const QString& path) {
        return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
    };
    return opener;
}

} // namespace

Excel_Opener Set_Excel_Opener(Excel_Opener opener)
{
    Excel_Opener old = std::move(Opener());
    Opener() = std::move(opener);
    return old;
}

void Excel_Show(const Excel_Result& result)
{
    if (result.outcome != Excel_Result::Written) {
        Msg_Box(result.message, result.outcome == Excel_Result::No_Data ? QMessageBox::Information
                                                                        : QMessageBox::Warning);
        return;
    }
    if (!Opener()(result.path))
        Msg_Box(QDir::toNativeSeparators(result.path));
}

} // namespace vex::forms
