#pragma once
// Zero padding of the hexadecimal fields of analyzer commands (bank, page,
// offset, count) and of two-digit date parts.
#include <QString>

namespace vex {

// A text of exactly one character gets a leading "0"; any other text, empty
// included, comes back unchanged.
QString Pad2(const QString& text);

// Zero to three characters get leading zeros up to four ("" gives "0000");
// four come back unchanged; a longer text gives empty text, so that a value
// too wide for its field never reaches the analyzer.
QString Pad4(const QString& text);

} // namespace vex
