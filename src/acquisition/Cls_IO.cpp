#include "acquisition/Cls_IO.h"

#include "core/Err_Proc.h"
#include "core/VbText.h"

#include <limits>
#include <string>

namespace vex {

namespace {

// Handler codes of the hex-string family, the last ten of the Cls_IO block.
// Dec_Hex, Dec_Oct and Dec_4Hex have no failure path; their codes only keep
// their places in the numbering.
enum : int16_t {
    kErrHex_Dec = 1143,
    kErrDec_Hex,
    kErrOct_Dec,
    kErrDec_Oct,
    kErrHex_Oct,
    kErrOct_Hex,
    kErrHex_Bit,
    kErrBit_Dec,
    kErrDec_Bit,
    kErrDec_4Hex,
};
static_assert(kErrDec_4Hex == 1152);

constexpr int kMaxBitDigits = 101;

// Value of one digit character in base, or -1 when it isn't one.
int Digit_Value(QChar c, int base)
{
    const int v = Hex_Digit(c);
    return v < base ? v : -1;
}

// Throws on empty text and on a character that isn't a digit of base.
void Require_Digits(const QString& text, int base)
{
    if (text.isEmpty())
        throw RunTimeError(QStringLiteral("empty number text"));
    for (QChar c : text) {
        if (Digit_Value(c, base) < 0)
            throw RunTimeError(QStringLiteral("not a base-%1 digit in \"%2\"").arg(base).arg(text));
    }
}

// The value of a text of digits of base; throws on bad digits and on a value
// beyond 64 bits.
quint64 Parse_Digits(const QString& text, int base)
{
    Require_Digits(text, base);
    constexpr quint64 kMax = std::numeric_limits<quint64>::max();
    quint64 v = 0;
    for (QChar c : text) {
        const auto d = static_cast<quint64>(Digit_Value(c, base));
        if (v > (kMax - d) / static_cast<quint64>(base))
            throw RunTimeError(QStringLiteral("number too large: \"%1\"").arg(text));
        v = v * base + d;
    }
    return v;
}

QString Digits(quint64 v, int base)
{
    return QString::number(v, base).toUpper();
}

quint64 As_16Bit(int16_t value)
{
    return static_cast<uint16_t>(value);
}

// Runs body under the procedure's handler; the result stays empty when it fails.
template <class Body>
QString Run(int16_t code, Body&& body)
{
    QString result;
    Guarded(code, [&] { result = body(); });
    return result;
}

} // namespace

QString Cls_IO::Hex_Dec(const QString& hex)
{
    return Run(kErrHex_Dec, [&] {
        const quint64 v = Parse_Digits(hex, 16);
        return v == 0 ? QStringLiteral("00") : QString::number(v);
    });
}

QString Cls_IO::Dec_Hex(int16_t value)
{
    return Digits(As_16Bit(value), 16);
}

QString Cls_IO::Oct_Dec(const QString& octal)
{
    return Run(kErrOct_Dec, [&] { return QString::number(Parse_Digits(octal, 8)); });
}

QString Cls_IO::Dec_Oct(int16_t value)
{
    return Digits(As_16Bit(value), 8);
}

QString Cls_IO::Hex_Oct(const QString& hex)
{
    return Run(kErrHex_Oct, [&] {
        Require_Digits(hex, 16);
        // Only the last four digits survive the cut, so any length is fine.
        return Digits(Parse_Digits(hex.right(4), 16), 8);
    });
}

QString Cls_IO::Oct_Hex(int16_t value)
{
    return Run(kErrOct_Hex, [&] {
        if (value < 0)
            throw RunTimeError(QStringLiteral("negative octal value %1").arg(value));
        return Digits(Parse_Digits(QString::number(value), 8), 16);
    });
}

QString Cls_IO::Hex_Bit(const QString& hex)
{
    return Run(kErrHex_Bit, [&] {
        return Digits(Parse_Digits(hex, 16), 2).rightJustified(8, QLatin1Char('0'));
    });
}

QString Cls_IO::Bit_Dec(const QString& bits)
{
    return Run(kErrBit_Dec, [&] {
        Require_Digits(bits, 2);
        if (bits.size() > kMaxBitDigits)
            throw RunTimeError(QStringLiteral("more than %1 binary digits").arg(kMaxBitDigits));
        // Decimal digits, least significant first; doubled and incremented
        // once per bit.
        std::string dec(1, 0);
        for (QChar c : bits) {
            int carry = c == QLatin1Char('1') ? 1 : 0;
            for (char& d : dec) {
                const int x = d * 2 + carry;
                d = static_cast<char>(x % 10);
                carry = x / 10;
            }
            if (carry)
                dec.push_back(static_cast<char>(carry));
        }
        QString out;
        out.reserve(static_cast<qsizetype>(dec.size()));
        for (auto it = dec.rbegin(); it != dec.rend(); ++it)
            out += QChar(u'0' + *it);
        return out;
    });
}

QString Cls_IO::Dec_Bit(int16_t& value)
{
    return Run(kErrDec_Bit, [&] {
        if (value < 0)
            throw RunTimeError(QStringLiteral("negative value %1").arg(value));
        QString out;
        int16_t n = value;
        while (n >= 2) {
            out.prepend(QChar(u'0' + n % 2));
            n = static_cast<int16_t>(n / 2);
        }
        out.prepend(QChar(u'0' + n));
        value = n;
        return out;
    });
}

QString Cls_IO::Dec_4Hex(int32_t value)
{
    return Digits(static_cast<uint32_t>(value), 16).rightJustified(4, QLatin1Char('0'));
}

} // namespace vex
