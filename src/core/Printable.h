#pragma once
// Names and keys from other sites go into reports, the terminal and the
// log; their control bytes must not (an escape sequence would rewrite the
// terminal, a line end forge a report line).
#include <QString>

namespace vex {

// text with each control character as \xHH, cut to maxChars characters
// ("..." marks the cut).
QString Printable(const QString& text, int maxChars);

} // namespace vex
