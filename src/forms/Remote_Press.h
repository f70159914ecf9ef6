#pragma once
// The press of "원격수신": the transfer as a job behind a dialog that names
// each file (the window stays alive), then the loading step as a job on its
// own connection with its progress, then each message as a box.
#include <QWidget>

namespace vex::forms {

void Remote_Press(QWidget* parent);

} // namespace vex::forms
