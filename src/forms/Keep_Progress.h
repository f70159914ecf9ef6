#pragma once
// A long keeping step behind a progress dialog: the work runs as a job on
// its own connection, and the window stays alive while the dialog shows the
// step's stage text and steps done of all. The dialog's Cancel stops the
// step at its next progress call, which fails as the step's own run-time
// error would: an all-or-nothing step rolls back, rows it keeps written
// stay, and the report says it was cancelled and what stayed.
#include "exchange/Exchange_Tables.h"

#include <QPushButton>
#include <QWidget>
#include <functional>

namespace vex::forms {

// The keeping routine on the job's connection; what it reads of the window
// is read before, on the window's thread.
using Keep_Work = std::function<Exchange_Report(Cls_DB& db, const Exchange_Progress& progress)>;

Exchange_Report Keep_With_Progress(QWidget* parent, const QString& title, Keep_Work work);

// The same in a window that shows the progress itself (show, on the
// window's thread): its cancel button, hidden otherwise, stands while the
// step runs.
Exchange_Report Keep_In_Window(QPushButton* cancel, const Exchange_Progress& show, Keep_Work work);

// The closing message of a step the user cancelled: that it was, what the
// step said, and the rows and files it left written.
QString Cancelled_Message(const Exchange_Report& r);

// What a delete of the selection takes, for its question: "3 day(s) of
// car 12AB00, every driver, 260101 to 260131" in the window's language.
QString Days_To_Delete(const vex::Selection& s);

// Car and driver codes of the registers, "ALL" first, for the selection lists.
QStringList Register_Codes(const QString& table);

} // namespace vex::forms
