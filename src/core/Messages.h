#pragma once
// The numbered message table (ids 101 to 1300) in Korean, English and
// Chinese, delivered as "messages.tsv" (Resource_Path).
#include <QString>

namespace vex {

enum class Lang { Korean = 1042, English = 1033, Chinese = 2052 };

// The language of the system: VEX_LANG (ko, en, zh) when set, else the
// language of QLocale::system(); any language other than the three is English.
Lang System_Lang();

// The row of id in the system's language. Fallback when that row is missing:
// English, then Korean, then empty text.
QString LoadResString(int id);
QString LoadResString(int id, Lang lang);

// A fixed text that the table has no id for: the Korean one on a Korean
// system, else the English one (as the table falls back).
QString Lang_Text(const QString& korean, const QString& english);

// True when the table has a row of id in exactly that language.
bool Has_Message(int id, Lang lang);

} // namespace vex
