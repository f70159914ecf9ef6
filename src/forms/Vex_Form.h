#pragma once
// What every window of the program shares: its name (the name the tree and
// the buttons open it by), one instance at a time, opened modeless at the
// main window's corner, gone when closed.
#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>

namespace vex::forms {

// The unit of window sizes in the table of Form_Place: 15 twips a pixel.
constexpr int Twips(int twips) { return twips / 15; }

class Vex_Form : public QWidget {
    Q_OBJECT
public:
    Vex_Form(const QString& formName, QWidget* parent);
    ~Vex_Form() override;
    const QString& Form_Name() const { return name_; }

private:
    QString name_;
};

// The open window of that name, or null.
Vex_Form* Find_Form(const QString& name);

// Creates the window on first use (make), or takes the one that stands
// open; sets its size from Form_Place's table (never smaller than its
// contents need), puts it at the corner of `corner` (when given) and shows
// it modeless in front.
Vex_Form* Open_Form(const QString& name, QWidget* corner, const std::function<Vex_Form*(QWidget*)>& make);

template <class F>
F* Open(QWidget* corner)
{
    return static_cast<F*>(Open_Form(QString::fromLatin1(F::kName), corner,
                                     [](QWidget* parent) -> Vex_Form* { return new F(parent); }));
}

// Sizes every open window to its Form_Place size (used once it is built).
void Place_Size(Vex_Form* form);

} // namespace vex::forms
