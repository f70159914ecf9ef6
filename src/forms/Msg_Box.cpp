#include "forms/Msg_Box.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"

#include <QApplication>
#include <QDesktopServices>
#include <cstdio>
#include <cstdlib>

namespace vex::forms {

namespace {

Msg_Hook& The_Msg_Hook()
{
    static Msg_Hook hook;
    return hook;
}

End_Hook& The_End_Hook()
{
    static End_Hook hook;
    return hook;
}

Url_Hook& The_Url_Hook()
{
    static Url_Hook hook;
    return hook;
}

} // namespace

Msg_Hook Set_Msg_Hook(Msg_Hook hook)
{
    Msg_Hook old = std::move(The_Msg_Hook());
    The_Msg_Hook() = std::move(hook);
    return old;
}

QMessageBox::StandardButton Msg_Box(const QString& text, QMessageBox::Icon icon, const QString& title,
                                    QMessageBox::StandardButtons buttons)
{
    Msg_Record r{text, title.isEmpty() ? G().Prog_Title : title, icon, buttons};
    if (r.title.isEmpty())
        r.title = QStringLiteral("VEX");
    if (The_Msg_Hook())
        return The_Msg_Hook()(r);
    QMessageBox box(icon, r.title, text, buttons, QApplication::activeWindow());
    return QMessageBox::StandardButton(box.exec());
}

QMessageBox::StandardButton Msg_Box(int id, QMessageBox::Icon icon, const QString& title,
                                    QMessageBox::StandardButtons buttons)
{
    return Msg_Box(LoadResString(id), icon, title, buttons);
}

QString Not_Built_Text(const QString& what)
{
    return QStringLiteral("%1: 이 기능은 아직 준비되지 않았습니다. (not built yet)").arg(what);
}

void Not_Built(const QString& what)
{
    Msg_Box(Not_Built_Text(what), QMessageBox::Information);
}

End_Hook Set_End_Hook(End_Hook hook)
{
    End_Hook old = std::move(The_End_Hook());
    The_End_Hook() = std::move(hook);
    return old;
}

void End_Process(int code)
{
    if (The_End_Hook()) {
        The_End_Hook()(code);
        return;
    }
    // The process ends here and now; what the system holds (the port, the
    // database file) is released by the end of the process.
    std::fflush(nullptr);
    std::_Exit(code);
}

Url_Hook Set_Url_Hook(Url_Hook hook)
{
    Url_Hook old = std::move(The_Url_Hook());
    The_Url_Hook() = std::move(hook);
    return old;
}

void Open_Url(const QUrl& url)
{
    if (The_Url_Hook()) {
        The_Url_Hook()(url);
        return;
    }
    QDesktopServices::openUrl(url);
}

Msg_Recorder::Msg_Recorder()
{
    previous = Set_Msg_Hook([this](const Msg_Record& r) {
        seen.push_back(r);
        return answer;
    });
}

Msg_Recorder::~Msg_Recorder()
{
    Set_Msg_Hook(std::move(previous));
}

} // namespace vex::forms
