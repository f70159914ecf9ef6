#pragma once
// Cls_IO: the pack and recorder file side of the system. A pack byte reaches
// the desktop as two hexadecimal characters and stays text from then on; the
// hex-string family below converts such texts and the numbers that go into
// analyzer commands.
//
// The family takes its input as it stands, without trimming. Bad input
// (empty text, a character that isn't a digit of the base, a value too wide
// for the result) is a run-time error of the procedure: it is passed to
// Err_Proc under the procedure's code and the result is empty text.
#include <QString>
#include <cstdint>

namespace vex {

class Cls_IO {
public:
    // Value of a hexadecimal text (capital or small letters, at most 64 bits)
    // as decimal digits. Zero gives "00", not "0": "00" -> "00", "0A" -> "10".
    static QString Hex_Dec(const QString& hex);

    // Capital hexadecimal digits, no padding. A negative value gives its
    // 16-bit two's complement: -1 -> "FFFF".
    static QString Dec_Hex(int16_t value);

    // Value of an octal text (at most 64 bits) as decimal digits; zero is "0".
    static QString Oct_Dec(const QString& octal);

    // Octal digits, no padding; a negative value as 16-bit two's complement.
    static QString Dec_Oct(int16_t value);

    // The value of a hexadecimal text of any length cut to its low 16 bits,
    // in octal digits: "12345" -> "21505" (of 2345 hex).
    static QString Hex_Oct(const QString& hex);

    // The decimal digits of value read as octal, in capital hexadecimal:
    // 17 -> "F". A digit 8 or 9, or a negative value, is bad input.
    static QString Oct_Hex(int16_t value);

    // Binary digits of a hexadecimal text (at most 64 bits), left-padded with
    // "0" to at least 8: "1" -> "00000001", "0" -> "00000000", "1FF" keeps 9.
    static QString Hex_Bit(const QString& hex);

    // Value of a text of "0" and "1", 1 to 101 characters, as decimal digits.
    // Exact over the whole width (101 bits don't fit a machine word).
    static QString Bit_Dec(const QString& bits);

    // Binary digits of value, no padding. value is halved down to 1 in the
    // process and the caller sees that: 6 gives "110" and leaves 1. 0 and 1
    // give "0" and "1" and stay; a negative value is bad input and stays.
    static QString Dec_Bit(int16_t& value);

    // Capital hexadecimal digits left-padded with "0" to 4: 32 -> "0020". A
    // negative value gives its 32-bit two's complement.
    static QString Dec_4Hex(int32_t value);
};

} // namespace vex
