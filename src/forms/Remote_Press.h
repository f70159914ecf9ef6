#pragma once
// The press of "원격수신": the transfer on a worker thread behind a dialog
// that names each file (the window stays alive), then the loading step with
// its progress, then each message as a box.
#include <QWidget>

namespace vex::forms {

void Remote_Press(QWidget* parent);

} // namespace vex::forms
