#pragma once
// What every window of the program shares: its name (the name the tree and
// the buttons open it by), one instance at a time, opened modeless in front
// of the window it was opened from, gone when closed.
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
    // In front again with the focus, after a message box took it.
    void Back_In_Front();

private:
    QString name_;
};

// The open window of that name, or null.
Vex_Form* Find_Form(const QString& name);

// Creates the window on first use (make, owned by `owner`), or takes the
// one that stands open; sets its size from Form_Place's table (never smaller
// than its contents need) and shows it modeless in front, centred on the
// window of `over` (the one it was opened from; the owner's when none).
Vex_Form* Open_Form(const QString& name, QWidget* owner, QWidget* over,
                    const std::function<Vex_Form*(QWidget*)>& make);

template <class F>
F* Open(QWidget* owner, QWidget* over = nullptr)
{
    return static_cast<F*>(Open_Form(QString::fromLatin1(F::kName), owner, over,
                                     [](QWidget* parent) -> Vex_Form* { return new F(parent); }));
}

// The top-left corner of a window of `size` centred on the frame `over`,
// moved into the screen's free area `screen` so that its title bar can be
// reached; a window larger than the area keeps its top-left corner on it.
QPoint Centred_On(const QRect& over, const QSize& size, const QRect& screen);

// Puts the window centred on the window of `over`, on screen, and shows it
// in front with the focus.
void Show_In_Front(QWidget* form, QWidget* over);

// Sizes every open window to its Form_Place size (used once it is built).
void Place_Size(Vex_Form* form);

} // namespace vex::forms
