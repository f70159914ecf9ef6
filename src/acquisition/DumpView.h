#pragma once
// The dump view: a pack file shown as rows of 32 pack bytes under a column
// header, the way a person reads a page of hexadecimal text.
#include <QString>

namespace vex {

// A blank behind each pair of characters; a text of even length gets one
// blank more at its end: "AABB" -> "AA BB  ", "AAB" -> "AA B ".
QString Make_Space(const QString& text);

// The header, a ruler, then one row per 64 characters of the file for the
// running addresses 0000 to 07E0: "0020 :  " and the spaced block. The file
// is taken as it stands, line ends included, so a page's "\r\n" shows inside
// the row it falls in. Empty text when the file can't be read.
QString Make_32Line(const QString& filePath);

} // namespace vex
