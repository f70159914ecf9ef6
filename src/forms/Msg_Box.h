#pragma once
// The one way the desktop program talks to the user in a box, and the two
// other things a window may do to the world outside it: end the process and
// open a document. Each goes through a hook so that tests record what would
// have happened instead of blocking on a modal box or ending the test run.
#include <QMessageBox>
#include <QString>
#include <QUrl>
#include <functional>
#include <vector>

namespace vex::forms {

struct Msg_Record {
    QString text;
    QString title;
    QMessageBox::Icon icon = QMessageBox::Information;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton; // the one Enter presses
};

using Msg_Hook = std::function<QMessageBox::StandardButton(const Msg_Record&)>;

// With a hook set, Msg_Box calls it instead of showing a box and answers
// what the hook answers. Returns the former hook.
Msg_Hook Set_Msg_Hook(Msg_Hook hook);

// A box with the text, the icon and the title; an empty title shows the
// program's title, as a box without a title of its own does. The box is
// wide enough for its whole title, and its text can be selected and copied
// (a path, a reason). defaultButton is the one Enter presses; a question
// whose Yes destroys data makes No the default.
QMessageBox::StandardButton Msg_Box(const QString& text, QMessageBox::Icon icon = QMessageBox::Information,
                                    const QString& title = {},
                                    QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);
// The box Msg_Box shows for a record (the caller owns it): for the
// screenshots, which look at a box without waiting on it.
QMessageBox* Make_Box(const Msg_Record& r, QWidget* parent);
// The same with the text of a message of the table.
QMessageBox::StandardButton Msg_Box(int id, QMessageBox::Icon icon = QMessageBox::Information,
                                    const QString& title = {},
                                    QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);

// The box for an entry whose window this program doesn't have yet.
void Not_Built(const QString& what);
QString Not_Built_Text(const QString& what);

// Ends the process (Cancel on the login, the third wrong login, Exit).
// A hook takes the exit code instead.
using End_Hook = std::function<void(int)>;
End_Hook Set_End_Hook(End_Hook hook);
void End_Process(int code);

// Opens a document with the desktop's viewer; a hook takes the address.
using Url_Hook = std::function<void(const QUrl&)>;
Url_Hook Set_Url_Hook(Url_Hook hook);
void Open_Url(const QUrl& url);

// A hook that records every box and answers `answer`, for tests and the
// screenshot run.
struct Msg_Recorder {
    std::vector<Msg_Record> seen;
    QMessageBox::StandardButton answer = QMessageBox::Ok;
    Msg_Hook previous;
    Msg_Recorder();
    ~Msg_Recorder();
    Msg_Recorder(const Msg_Recorder&) = delete;
    Msg_Recorder& operator=(const Msg_Recorder&) = delete;
    QString Last() const { return seen.empty() ? QString() : seen.back().text; }
    void Clear() { seen.clear(); }
};

} // namespace vex::forms
