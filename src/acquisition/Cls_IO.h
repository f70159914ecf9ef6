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
#include "core/Pack_Day.h"
#include "core/Pack_System_Page.h"

#include <QDate>
#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

namespace vex {

class AnalyzerLink;
class Cls_DB;

class Cls_IO {
public:
    // ---- Reception of a memory pack. The pack routines work on the shared
    // objects: the connected analyzer (Link), the connection G().DB, the
    // settings of G().Config and the application folder.

    AnalyzerLink* Link = nullptr;  // set while an analyzer is connected
    bool Range_Selected = false;   // the dialog's date range is ticked
    QString m_Sel_SDate, m_Sel_EDate;
    QString Car_Code, Drive_Code;  // six characters, of the day being decoded
    QString Read_Day;              // YYMMDD of the day being read from the pack
    // The pack's system page as Pack_SysFile_Read repaired it; with a date
    // range the dialog sets the three stamps.
    Pack_System_Page System_Page;
    // The day the last Pack_File_Read1 stored.
    Pack_Day Decoded;
    std::function<QDate()> Today;  // the desk's date; the clock when unset
    // Told after each day of Pack_Reads: days done, days in all, the date.
    std::function<void(int, int, const QDate&)> Progress;
    // Shows a message of the table (the link test of a write failing: 207).
    std::function<void(int)> Message;
    // Why the last Pack_File_Read or Pack_File_Read1 passed its file over
    // (empty file, no pack day, codes or date that can't be a key); empty
    // when it didn't.
    QString Refusal;
    // True when the last Pack_File_Read1 found an erased day page: the pack
    // holds the page, but nothing was driven on it (every field reads as
    // erased memory, "FF", but the codes). Nothing is stored, and it is no
    // refusal.
    bool Erased = false;
    // The days of the last Pack_Reads that were not filed, with why; the
    // closing write marks them read all the same.
    struct Skipped_Day {
        QDate day;
        QString why;
    };
    std::vector<Skipped_Day> Skipped;

    // Appends text and a line end to the file; True when written.
    bool Write_File(const QString& text, const QString& path);

    // The system page into SysRead.Vex and System_Page.
    bool Pack_SysReads();
    // 0 no link or a fresh pack ("AA" "11"/"00"), 1 normal, 5 second check
    // byte wrong, 6 first check byte wrong, 7 system page unreadable.
    int16_t Pack_Checks();
    // The three pages of a day into Read.Vex: "0" when the third was
    // written, "1" otherwise.
    QString New_Pack_Read(const QString& bank, const QString& page, const QString& offset);
    // Reads the new days of the pack into \new and \mpack and marks the pack.
    int16_t Pack_Reads();
    // Writes system page bytes: mode 0 car code, 1 driver code, 2 the stamp
    // of how far the desktop has read. False for another mode or a dead link.
    bool Pack_Writes(int16_t& mode, const QString& value);

    // Decodes SysRead.Vex into System_Page.
    bool Pack_SysFile_Read();
    // Judges the day in Read.Vex and files it under \new and \mpack; 0.
    int16_t Pack_File_Read(const QString& path);
    // Decodes one pack file (Decode_Pack_Day), registers its car and driver
    // and stores it: 0 decoded, 1 refused
    // (check byte, empty file, or a car, driver or day that can't be a key
    // after the repairs; Refusal says which).
    int16_t Pack_File_Read1(Cls_DB& db, const QString& path);

    QDate Today_Date() const { return Today ? Today() : QDate::currentDate(); }

    // ---- The hex-string family.
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
