#pragma once
// The day file of second data: one binary ".vex" file for one car, driver
// and day under "\pack\<car>\<day>\<day><driver>.vex". No header; arrays of
// unsigned bytes written whole, element 0 first, so that second s of the day
// lies at byte s of its array and an hour is one seek and one read:
//
//   speed        86,401 bytes at 0        km/h
//   engine       86,401 bytes at 86,401   engine byte, above 0 while it runs
//   half-second 172,801 bytes at 172,802  two entries a second, kept as delivered
//
// A file of the two first arrays only (172,802 bytes) is whole as well. Files
// are written beside their target and renamed, so a failure never leaves
// half a file; a shorter file than its arrays is refused, never read in part.
#include "store/EventDetector.h"
#include "store/Recordset.h"

#include <QString>
#include <cstdint>
#include <span>
#include <vector>

namespace vex {

class Cls_DB;

inline constexpr qint64 kDayFileTwo = 2LL * kDayArray;              // 172,802
inline constexpr qint64 kDayFileFull = kDayFileTwo + kHalfArray;    // 345,603
inline constexpr int kNtdHeader = 10;
inline constexpr int kNtdDistance = 2 * kDayMinutes + 1;            // 2,881
inline constexpr qint64 kNtdFile = kNtdHeader + kDayFileTwo + kNtdDistance;

struct DayFile {
    std::vector<uint8_t> speed;   // kDayArray
    std::vector<uint8_t> engine;  // kDayArray
    std::vector<uint8_t> half;    // kHalfArray, or empty for a file of two arrays
};

// Paths in the system's form, under the application folder.
QString Day_File_Name(const QString& car, const QString& driver, const QString& day);
QString Day_Folder_Name(const QString& car, const QString& day);
QString Static_File_Name(const QString& car, const QString& driver, const QString& day);
QString Ntd_File_Name(const QString& car, const QString& driver, const QString& day);
// A system path ("\pack\...") as a path of this machine, through G().FS
// when the program has started and the application folder otherwise.
// Throws RunTimeError for a path that leaves the application folder.
QString Local_Path(const QString& systemPath);

// Throws RunTimeError when the file is missing, unreadable, or shorter than
// its arrays.
DayFile Read_Day_File(const QString& localPath);
// Throws RunTimeError when size bytes are no whole day file: neither the two
// first arrays nor all three.
void Check_Day_File_Size(qint64 size, const QString& name);
// The same of bytes read already; localPath names them in a refusal.
DayFile Day_File_Of(const QByteArray& bytes, const QString& localPath);
// The bytes of a day file: the arrays, the half-second one when not empty.
// Throws RunTimeError for arrays of the wrong length.
QByteArray Day_File_Bytes(const DayFile& file);
// Those bytes as a file of this machine, beside the target and renamed.
void Write_Day_File(const QString& localPath, const DayFile& file);
void Write_Whole_File(const QString& localPath, const QByteArray& bytes);

// The merge of two recordings: where the new entry is above 0 and the stored
// one is 0, the new one is taken; the first recording of a second wins.
// Entries from .. to (inclusive) of both.
void Merge_Entries(std::span<uint8_t> stored, std::span<const uint8_t> added, int from, int to);

// The minute distance series of metres a minute (entries 1 to 1440): each
// minute "#0.0" of km, times ten, a single digit padded with "0"; 40 m are
// "00", 1,250 m "13".
QString Minute_Distance_Series(std::span<const float> metres);

// The row of a per-day table for key, found by D_F1 or added; D_F1 is set
// either way. Throws RunTimeError like every recordset.
Recordset Row_Or_New(Cls_DB& db, const QString& table, const QString& key);

} // namespace vex
