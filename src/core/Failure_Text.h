#pragma once
// A failure as a person can act on it. The routines report what went wrong
// in the words of the engine, the file system or the network, behind the
// label of the routine that trapped it ("Cls_DB - DB_Save_D_D_usb: ... No
// space left on device"). Before such a text reaches a person it becomes:
// what was being done (the system's own words, kept), what failed and what
// to do, in the language of the system's texts, and the technical reason in
// parentheses, without the routine's label.
#include <QString>

namespace vex {

// The text as it stands when it carries no technical reason; otherwise
// rewritten as told above.
QString Plain_Failure(const QString& text);

} // namespace vex
