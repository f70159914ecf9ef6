#include "forms/Msg_Box.h"

#include "core/Failure_Text.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"

#include <QApplication>
#include <QDesktopServices>
#include <QGridLayout>
#include <cstdio>
#include <cstdlib>
#include <memory>

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

QMessageBox* Make_Box(const Msg_Record& r, QWidget* parent)
{
    auto* box = new QMessageBox(r.icon, r.title, r.text, r.buttons, parent);
    if (r.defaultButton != QMessageBox::NoButton)
        box->setDefaultButton(r.defaultButton);
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    // A message box sizes itself by its text alone and would cut a longer
    // title to "...": a row as wide as the title keeps it whole.
    if (auto* grid = qobject_cast<QGridLayout*>(box->layout())) {
        const int wide = box->fontMetrics().horizontalAdvance(r.title) + 160;
        grid->addItem(new QSpacerItem(wide, 0, QSizePolicy::Minimum, QSizePolicy::Expanding), grid->rowCount(), 0, 1,
                      grid->columnCount());
    }
    return box;
}

QMessageBox::StandardButton Msg_Box(const QString& text, QMessageBox::Icon icon, const QString& title,
                                    QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton)
{
    // A failure's technical reason reaches the person as what to do.
    Msg_Record r{Plain_Failure(text), title.isEmpty() ? G().Prog_Title : title, icon, buttons, defaultButton};
    if (r.title.isEmpty())
        r.title = QStringLiteral("VEX");
    if (The_Msg_Hook())
        return The_Msg_Hook()(r);
    std::unique_ptr<QMessageBox> box(Make_Box(r, QApplication::activeWindow()));
    return QMessageBox::StandardButton(box->exec());
}

QMessageBox::StandardButton Msg_Box(int id, QMessageBox::Icon icon, const QString& title,
                                    QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton)
{
    return Msg_Box(LoadResString(id), icon, title, buttons, defaultButton);
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
