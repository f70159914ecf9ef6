#include "forms/Excel_Show.h"

#include "core/Messages.h"
#include "forms/Msg_Box.h"

#include <QDesktopServices>
#include <QDir>
#include <QProcess>
#include <QUrl>

namespace vex::forms {

namespace {

Excel_Opener& Opener()
{
    // The desktop's program for the file's type; without a desktop that
    // knows one, the spreadsheet program most desks here have.
    static Excel_Opener opener = [](const QString& path) {
        return QDesktopServices::openUrl(QUrl::fromLocalFile(path))
               || QProcess::startDetached(QStringLiteral("libreoffice"), {QStringLiteral("--calc"), path});
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
    // Nothing could open it: where it was saved, to be copied from the box.
    if (!Opener()(result.path))
        Msg_Box(Lang_Text(QStringLiteral("스프레드시트를 저장했습니다:\n%1\n\n이 파일을 열 프로그램을 찾지 못했습니다. "
                                         "LibreOffice Calc를 설치하거나 파일을 직접 여십시오."),
                          QStringLiteral("The spreadsheet was saved as\n%1\n\nNo program to open it was found: "
                                         "install LibreOffice Calc, or open the file yourself."))
                    .arg(QDir::toNativeSeparators(result.path)),
                QMessageBox::Information);
}

} // namespace vex::forms
