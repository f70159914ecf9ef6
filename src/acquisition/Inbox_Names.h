#pragma once
// What the inbox trusts of a name. Codes and days taken from file names,
// media and packs form paths of day files and keys of rows, so each is
// checked before it is used: a car or driver code is six hexadecimal
// characters, a day six digits of a month and a day. A filed "130" log
// keeps the identity of the reception that filed it in a note beside it
// ("<log>.id"), since its name holds the car and the filing day only.
#include "core/Codes.h"
#include "platform/AppFolder.h" // Inside_Folder

#include <QByteArray>
#include <QString>
#include <optional>

namespace vex {

// "<car><yymmdd>.dat", the name a "130" log is filed under in \new; nothing
// when the name isn't of that form.
struct Dat130_Name {
    QString car, day;
};
std::optional<Dat130_Name> Parse_Dat130_Name(const QString& fileName);

// "<car>_<driver>_<from>_<to>.dat": the seconds export written into \new
// for the user, which the inbox passes over as no recording.
QString Speed_File_Name(const QString& car, const QString& driver, const QString& from, const QString& to);
bool Is_Speed_File_Name(const QString& fileName);

// The reception a filed log belongs to: codes of its medium and the dates
// of the dialog (YYMMDD, both included).
struct Filing_Note {
    QString car, driver, from, to;
};
// The note's text, "car=...\ndriver=...\nfrom=...\nto=...\n".
QByteArray Filing_Note_Text(const Filing_Note& note);
// Nothing unless every field is there and good.
std::optional<Filing_Note> Parse_Filing_Note(const QByteArray& text);
// The note's path beside a filed log.
QString Filing_Note_Path(const QString& logPath);
// The note beside a filed log; nothing when missing or not good.
std::optional<Filing_Note> Read_Filing_Note(const QString& logPath);

} // namespace vex
