#pragma once
// Recorders of the USB kind: instead of a memory pack they leave two binary
// files in the root of a removable drive, "Master00.dat" (who and when) and
// "SPDR0403.dat" (the log). Two models write the log differently:
//
// Model "130", the older round recorder: a file of three regions.
//   0x000000  5,376 blocks of 256 bytes: "FA" start block, "F0" hour block
//             (stamp YYMMDDHH in four bytes of decimal digits, then 60
//             minutes of speed, second channel and metres as four digits),
//             anything else free
//   0x150000  8,192 event records of 10 bytes: stamp YYMMDDHHMMSS, then the
//             speed pulse counts before and after (16 bits, high byte first)
//   0x170000  523 minute records of 125 bytes, then at 0x180000 525 more:
//             stamp YYMMDDHHMM, 60 pairs of speed and a dropped byte
//   The reception files the first 0x200200 bytes into \new as
//   "<car><yymmdd>.dat" and the inbox pass decodes it.
//
// Model "250", the newer square recorder: records of 512 bytes, kind "F0",
// stamp YYMMDDHHMM, 60 samples of 8 bytes (speed, second channel, six bytes
// dropped) and the minute's distance as hundreds of metres and the rest.
// Decoded on the drive into ".ntd" day files in \new, which the inbox pass
// stores.
//
// Every byte is judged as the two hexadecimal characters it would print as:
// a stamp byte is good when both of its digits are decimal. All files are
// read in large blocks and every field through a bounds check, so a short or
// damaged file loses its damaged records and never more.
#include "acquisition/Inbox_Names.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <span>

namespace vex {

class Cls_DB;

inline constexpr qint64 kUsbSmallLog = 3000000;      // a log up to this size is a "130"
inline constexpr qint64 kDat130Filed = 0x200200;     // bytes of a "130" log that are filed
inline constexpr int kBlock130 = 256;
inline constexpr int kHourBlocks130 = 5376;
inline constexpr qint64 kEventRegion130 = 0x150000;
inline constexpr int kEventRecords130 = 8192;
inline constexpr int kEventRecord130 = 10;
inline constexpr qint64 kMinuteRegion130A = 0x170000;
inline constexpr qint64 kMinuteRegion130B = 0x180000;
inline constexpr int kMinuteRecords130A = 523;
inline constexpr int kMinuteRecords130B = 525;
inline constexpr int kMinuteRecord130 = 125;
inline constexpr int kRecord250 = 512;
inline constexpr int kSpeedPulsesPerKm = 5096;       // speed pulses of the "130" per kilometre
// A saved day: 9 bytes of codes and day, then three arrays of 86,401,
// 86,401 and 2,881 entries, each written one byte early over the last entry
// of the one before.
inline constexpr qint64 kSavedNtdFile = 9 + 86401 + 86400 + 2880; // 175,690

// A byte as two capital hexadecimal characters: 10 -> "0A".
QString Hex2(uint8_t value);

// "130" or "250" by the size and block rhythm of a log; empty text when the
// file can't be read or shows neither rhythm.
QString Detect_Model(const QString& spdrPath);

// "The medium holds no recorder log" when SPDR0403.dat is missing, empty or
// can't be read; empty text otherwise.
QString No_Log_Refusal(const QString& spdrPath);

// The refusal for a model chosen against the log at spdrPath: empty when the
// log is of that model, else the message to show (No_Log_Refusal's first).
// A "250" chosen for a log of 3,000,000 bytes or less is refused without
// looking further.
QString Usb_Model_Refusal(const QString& chosen, const QString& spdrPath);

// Master00.dat, the identity of the medium.
struct Usb_Master {
    QString car;     // six hexadecimal characters
    QString driver;  // six hexadecimal characters
    QString start;   // twelve characters; the first six a YYMMDD, the next four the time
    QString end;     // the first eight characters of the end stamp and "0000"
};
// Nothing when the file is missing or shorter than its 18 bytes.
std::optional<Usb_Master> Read_Master(const QString& masterPath);

// The days a log holds by its own stamps, oldest and newest (YYMMDD):
// stamps of years before 05 and after thisYear (two digits) don't count.
// Empty texts when no stamp is good.
struct Usb_Days_Held {
    QString oldest, newest;
};
Usb_Days_Held Usb_Log_Days(const QString& spdrPath, const QString& model, int thisYear);

// The reception under way, as the inbox decoders see it: the codes of the
// medium and the dialog's dates (YYMMDD, both included; empty is open).
struct Usb_Reception {
    QString car, driver;
    QString from, to;
    QStringList stored;   // keys car + driver + day of the days decoded, in order
    QStringList unsaved;  // "YYMMDD (why)": days of a "250" log whose day file could not be written
};
Usb_Reception& Usb_State();

// True when day (YYMMDD) lies within the reception's dates.
bool In_Range(const Usb_Reception& r, const QString& day);

// Model "130": the three regions into the database and the day files, for
// the car, driver and dates of the reception that filed the log (the hour
// blocks and the minute records of those dates; the event region whole).
// False when the file can't be read.
bool Decode_Dat130(Cls_DB& db, const QString& path, const Filing_Note& who);
// The same with the identity from the filing note beside the log; False,
// and nothing decoded, without a good note.
bool Decode_Dat130(Cls_DB& db, const QString& path);
// Model "250": the records of the reception's dates into ".ntd" day files
// under \new, for the reception's car and driver, or without a reception
// those of the Master00.dat beside the log. False when unreadable.
bool Decode_Dat250(Cls_DB& db, const QString& path);
// A saved day (".NTD"): True when its second data were stored; False keeps
// the file for the next pass (unreadable, or shorter than a day).
bool Decode_Ntd(Cls_DB& db, const QString& path);

// One hour of a "130" into D_D3, D_D7 and D_D8 of the day: stamp YYMMDDHH,
// speed and second 120 characters, metres 240 (four digits a minute).
// Minutes already stored stay: the first recording of a minute wins.
// result is -1 when done, 0 when the handler ran.
void usb_File_Read(Cls_DB& db, const QString& car, const QString& driver, const QString& stamp, const QString& speed,
                   const QString& metres, const QString& second, int16_t& result);
// The metres of an hour (240 characters) as the 120-character distance
// string of tenths of a kilometre; the metres below a hundred that each
// minute loses are carried to a later minute of the hour.
QString Compress_Metres(const QString& metres);
// The D_D1 row of a day rebuilt from its stored series and events.
void dd1_File_Read(Cls_DB& db, const QString& car, const QString& driver, const QString& date, int16_t& result);

// km/h of a speed pulse count: count x 3,600 / 5,096, as a whole number.
int Usb_Speed(int count);

// Copies the first 0x200200 bytes of a "130" log to temp.dat in the
// application folder and from there to \new\<car><today>.dat, with the
// reception's identity in its note beside it (written first, so that a log
// in \new always has one). The filed path, or empty text on failure.
QString File_Dat130(const QString& spdrPath, const Filing_Note& who, const QDate& today);

// Registers the ".NTD" and ".DAT" decoders with the inbox pass. Once at
// start-up; a second call changes nothing.
void Register_Usb_Decoders();

} // namespace vex
