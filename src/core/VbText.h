#pragma once
// The text rules that recorder fields are judged by: the number a text
// starts with, whether a text is a number at all, and fixed-width fields.
#include <QString>
#include <array>
#include <cstdint>

namespace vex {

// The number at the start of text: blanks skipped, an optional sign, digits
// with an optional decimal point and exponent; reading stops at the first
// character that doesn't fit, and no number at all reads as 0. "12AB" is 12,
// "FF" is 0.
double Val(const QString& text);

// True when the whole text, blanks around it aside, is one number of the
// form above that fits a double ("12", "-3.5", "12E012"); empty text isn't.
bool Is_Numeric(const QString& text);

// True when text is not empty and every character is a decimal digit.
bool All_Digits(const QString& text);

// Value of a hexadecimal digit (capital or small), or -1 for any other
// character. Inline, by a table: the minute series are read a cell at a
// time, millions of cells for a month's fuel.
inline constexpr auto kHexValues = [] {
    std::array<int8_t, 128> v{};
    for (int c = 0; c < 128; ++c)
        v[size_t(c)] = int8_t(c >= '0' && c <= '9' ? c - '0'
                              : c >= 'A' && c <= 'F' ? c - 'A' + 10
                              : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                                     : -1);
    return v;
}();
inline int Hex_Digit(QChar c)
{
    const char16_t u = c.unicode();
    return u < 128 ? kHexValues[u] : -1;
}

// Value of two decimal digits ("07" is 7), or -1 when either isn't one: the
// quick reading of a minute cell of text or of its bytes; a cell of another
// form is for Val or toInt to read.
inline int Two_Digits(char16_t a, char16_t b)
{
    return a >= u'0' && a <= u'9' && b >= u'0' && b <= u'9' ? (a - u'0') * 10 + (b - u'0') : -1;
}

// A fixed-width field: a shorter value is padded with blanks on the right, a
// longer one cut on the right.
QString Fixed(const QString& value, int width);

// "HHMM" of minutes past midnight, wrapping at a day (-1 is "2359").
QString HHMM_Of_Minutes(int minutes);

// "HH:MM:SS" of a second of the day.
QString Clock_Of_Second(int second);

} // namespace vex
