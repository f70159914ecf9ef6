#include "forms/Vex_Form.h"

#include "core/Mod_Main.h"

#include <QApplication>
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

Vex_Form* Open_Form(const QString& name, QWidget* corner, const std::function<Vex_Form*(QWidget*)>& make)
{
    Vex_Form* form = Find_Form(name);
    if (!form) {
        form = make(corner);
        Place_Size(form);
    }
    if (corner)
        form->move(corner->pos());
    form->show();
    form->raise();
    form->activateWindow();
    return form;
}

} // namespace vex::forms
