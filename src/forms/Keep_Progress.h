#pragma once
// A long keeping step behind a progress dialog: the work runs on this thread
// and the window stays alive, since every step it reports lets the events
// through. The dialog shows the step's stage text and steps done of all.
#include "exchange/Exchange_Tables.h"

#include <QWidget>
#include <functional>

namespace vex::forms {

Exchange_Report Keep_With_Progress(QWidget* parent, const QString& title,
                                   const std::function<Exchange_Report(const Exchange_Progress&)>& work);

// What a delete of the selection takes, for its question: "3 day(s) of
// car 12AB00, every driver, 260101 to 260131" in the window's language.
QString Days_To_Delete(const vex::Selection& s);

// Car and driver codes of the registers, "ALL" first, for the selection lists.
QStringList Register_Codes(const QString& table);

} // namespace vex::forms
