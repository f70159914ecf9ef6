#pragma once
#include <QString>

namespace vex {

// Value of key in [section] of an INI file, or empty text. Section and key
// compare without regard to case, blanks around them and the value are
// dropped, one pair of surrounding quotes is removed, and the value is cut to
// the 254 characters that the 255-character buffer of the original reader
// holds. A missing or unreadable file reads as empty; nothing throws.
QString Read_INI(const QString& section, const QString& key, const QString& file);

} // namespace vex
