#include "forms/Vex_Form.h"

#include "core/Mod_Main.h"

#include <QApplication>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <QMap>

namespace vex::forms {

namespace {

QMap<QString, QPointer<Vex_Form>>& Open_Forms()
{
    static QMap<QString, QPointer<Vex_Form>> forms;
    return forms;
}

} // namespace

Vex_Form::Vex_Form(const QString& formName, QWidget* parent) : QWidget(parent, Qt::Window), name_(formName)
{
    setObjectName(formName);
    setAttribute(Qt::WA_DeleteOnClose);
    Open_Forms()[formName] = this;
}

Vex_Form::~Vex_Form()
{
    auto& forms = Open_Forms();
    auto it = forms.find(name_);
    if (it != forms.end() && (it->isNull() || it->data() == this))
        forms.erase(it);
}

void Vex_Form::Back_In_Front()
{
    raise();
    activateWindow();
}

Vex_Form* Find_Form(const QString& name)
{
    return Open_Forms().value(name).data();
}

void Place_Size(Vex_Form* form)
{
    // A window of the same caption standing open changes one row of the
    // table; the walk over the open windows is the table's own.
    bool captionOpen = false;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w != form && w->isVisible() && w->windowTitle() == form->windowTitle())
            captionOpen = true;
    const Form_Size size = Form_Place_Size(form->Form_Name(), captionOpen);
    const QSize hint = form->sizeHint();
    form->resize(qMax(Twips(size.width), hint.width()), qMax(Twips(size.height), hint.height()));
}

QPoint Centred_On(const QRect& over, const QSize& size, const QRect& screen)
{
    const QRect on = over.isValid() ? over : screen;
    const int x = on.x() + (on.width() - size.width()) / 2;
    const int y = on.y() + (on.height() - size.height()) / 2;
    return {std::clamp(x, screen.x(), std::max(screen.x(), screen.x() + screen.width() - size.width())),
            std::clamp(y, screen.y(), std::max(screen.y(), screen.y() + screen.height() - size.height()))};
}

void Show_In_Front(QWidget* form, QWidget* over)
{
    QWidget* window = over ? over->window() : nullptr;
    const QScreen* screen = window && window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    const QRect area = screen ? screen->availableGeometry() : QRect();
    if (area.isValid())
        form->move(Centred_On(window ? window->frameGeometry() : QRect(), form->frameGeometry().size(), area));
    form->show();
    form->raise();
    form->activateWindow();
}

Vex_Form* Open_Form(const QString& name, QWidget* owner, QWidget* over,
                    const std::function<Vex_Form*(QWidget*)>& make)
{
    Vex_Form* form = Find_Form(name);
    if (!form) {
        form = make(owner);
        Place_Size(form);
    }
    Show_In_Front(form, over ? over : owner);
    return form;
}

} // namespace vex::forms
