#pragma once
// The two work files that carry a pack image between the analyzer and the
// decoder: SysRead.Vex (the system page) and Read.Vex (the three pages of one
// day). Both are single-byte text with "\r\n" line ends.
#include "acquisition/PackLayout.h"

#include <QByteArray>
#include <QString>
#include <optional>

namespace vex {

// SysRead.Vex as the decoder sees it: its first 152 characters at the system
// page's columns. A short file gives short or empty fields.
struct SysReadRecord {
    QString SysCheckPack;
    QString SysCheckPack1;
    QString SysCarCode;
    QString SysDriveCode;
    QString SysWarehouse;
    QString SysSerialNumber;
    QString SysPackInsert;
    QString SysPackLastWrite;
    QString SysTotalDistance;
    QString SysTotalEngin;
    QString SysDBWriteDate;
};

// Replaces the file by the system page text as it came (an empty reply too)
// and a line end. False when the file can't be written.
bool Write_SysRead(const QString& path, const QString& sysPageText);

// Empty when the file can't be opened.
std::optional<SysReadRecord> Read_SysRead(const QString& path);

// Which page a line of Read.Vex carries; lines are appended in this order.
enum class ReadLine { Day, Distance, Third };

// The system page values that go into Read.Vex lines.
struct ReadLineStamp {
    QString SysCarCode;        // columns 5-8 of the day and distance lines
    QString SysDriveCode;      // columns 9-12 of the day and distance lines
    QString SysTotalDistance;  // six characters behind the third line
};

// Appends one page to Read.Vex. The day and distance pages get the codes of
// stamp in place of their own; the third page keeps its codes and gets the
// total distance behind it. Inserted values are blank-padded or cut to their
// width, so the line positions hold. Only a page of exactly 4,094 characters
// is written; false otherwise, and when the file can't be written.
bool Append_Read_Line(const QString& path, const QString& pageText, ReadLine kind,
                      const ReadLineStamp& stamp);

// Read.Vex is read as fixed records, not lines: a day line with its line end
// is 4,096 bytes, a distance line as well, so the records stand at fixed
// places whatever the third line carries.
inline constexpr int kDayRecordChars = 4096;   // at byte 0; day page, line end in its last run
inline constexpr int kDistanceRecordAt = 4096; // distance page
inline constexpr int kThirdRecordAt = 8192;    // third page
inline constexpr int kMinuteRecordChars = kDistReadChars;  // 64 of header, 2,880 of series

struct ReadRecords {
    PageText day;       // fields of DayPage
    PageText distance;  // fields of DistPage
    PageText third;     // fields of DistPage
};

// All of Read.Vex that its records span.
inline constexpr int kReadVexChars = kThirdRecordAt + kMinuteRecordChars;

// The three records of the bytes of Read.Vex; short bytes give short or
// empty records.
ReadRecords Read_Records(const QByteArray& bytes);

// The three records of the file; empty when the file can't be opened.
std::optional<ReadRecords> Read_Read(const QString& path);

} // namespace vex
