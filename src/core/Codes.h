#pragma once
// What a code or a day must look like before it names a file or keys a row.
// Codes and days come from file names, media, packs and other sites'
// packages; each is checked before it forms a path of a day file or a key.
#include <QString>

namespace vex {

// Six characters 0-9 and A-F (capitals, as the recorders print them): a car
// or driver code.
bool Is_Code(const QString& code);
// Six digits YYMMDD with a month of 1 to 12 and a day of 1 to 31.
bool Is_Day(const QString& yymmdd);

} // namespace vex
