#include "core/VbText.h"

#include "core/Pad.h"

#include <cmath>
#include <cstdlib>
#include <string>

namespace vex {

namespace {

bool Digit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// Length of the number at text[i...]: sign, digits, point, exponent. Zero
// when no digit stands there.
int Number_Length(const QString& t, int i)
{
    const int start = i;
    if (i < t.size() && (t[i] == QLatin1Char('+') || t[i] == QLatin1Char('-')))
        ++i;
    int digits = 0;
    while (i < t.size() && Digit(t[i]))
        ++i, ++digits;
    if (i < t.size() && t[i] == QLatin1Char('.')) {
        ++i;
        while (i < t.size() && Digit(t[i]))
            ++i, ++digits;
    }
    if (digits == 0)
        return 0;
    if (i < t.size() && (t[i] == QLatin1Char('E') || t[i] == QLatin1Char('e') || t[i] == QLatin1Char('D')
                         || t[i] == QLatin1Char('d'))) {
        int j = i + 1;
        if (j < t.size() && (t[j] == QLatin1Char('+') || t[j] == QLatin1Char('-')))
            ++j;
        const int expStart = j;
        while (j < t.size() && Digit(t[j]))
            ++j;
        if (j > expStart)
            i = j;
    }
    return i - start;
}

double To_Double(const QString& number, bool* ok)
{
    std::string s = number.toStdString();
    for (char& c : s)
        if (c == 'D' || c == 'd')
            c = 'E';
    char* end = nullptr;
    const double v = std::strtod(s.c_str(), &end);
    *ok = end == s.c_str() + s.size() && std::isfinite(v);
    return v;
}

} // namespace

double Val(const QString& text)
{
    int i = 0;
    while (i < text.size() && text[i].isSpace())
        ++i;
    const int n = Number_Length(text, i);
    if (n == 0)
        return 0;
    // Most fields are plain digits: read them without a detour through text.
    int j = i;
    const bool negative = text[j] == QLatin1Char('-');
    if (negative || text[j] == QLatin1Char('+'))
        ++j;
    if (i + n - j <= 15) {
        long long whole = 0;
        int k = j;
        while (k < i + n && Digit(text[k]))
            whole = whole * 10 + text[k++].digitValue();
        if (k == i + n)
            return double(negative ? -whole : whole);
    }
    bool ok = false;
    const double v = To_Double(text.mid(i, n), &ok);
    return ok ? v : 0;
}

bool Is_Numeric(const QString& text)
{
    const QString t = text.trimmed();
    if (t.isEmpty() || Number_Length(t, 0) != t.size())
        return false;
    bool ok = false;
    To_Double(t, &ok);
    return ok;
}

bool All_Digits(const QString& text)
{
    if (text.isEmpty())
        return false;
    for (QChar c : text)
        if (!Digit(c))
            return false;
    return true;
}

QString Fixed(const QString& value, int width)
{
    return value.size() >= width ? value.left(width) : value.leftJustified(width, QLatin1Char(' '));
}

QString HHMM_Of_Minutes(int minutes)
{
    const int m = ((minutes % 1440) + 1440) % 1440;
    return Pad2(QString::number(m / 60)) + Pad2(QString::number(m % 60));
}

QString Clock_Of_Second(int second)
{
    return Pad2(QString::number(second / 3600)) + QLatin1Char(':') + Pad2(QString::number(second / 60 % 60))
           + QLatin1Char(':') + Pad2(QString::number(second % 60));
}

} // namespace vex
