#include "acquisition/VexFiles.h"

#include <QByteArray>
#include <QFile>

namespace vex {

namespace {

constexpr char kCrLf[] = "\r\n";
constexpr int kSysRecordChars = 152;  // the last byte of the system page isn't read
constexpr int kTotalDistanceChars = 6;

bool Write_Bytes(const QString& path, QIODevice::OpenMode mode, const QString& line)
{
    QFile f(path);
    if (!f.open(mode))
        return false;
    const QByteArray bytes = line.toLatin1() + kCrLf;
    return f.write(bytes) == bytes.size();
}

// Reads at most limit bytes from the start of the file.
std::optional<QByteArray> Read_Head(const QString& path, qint64 limit)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return std::nullopt;
    return f.read(limit);
}

// The run of count bytes at byte at; whatever of it exists.
PageText Record(const QByteArray& bytes, qsizetype at, qsizetype count)
{
    return PageText(QString::fromLatin1(bytes.mid(at, count)));
}

} // namespace

bool Write_SysRead(const QString& path, const QString& sysPageText)
{
    return Write_Bytes(path, QIODevice::WriteOnly | QIODevice::Truncate, sysPageText);
}

std::optional<SysReadRecord> Read_SysRead(const QString& path)
{
    const auto bytes = Read_Head(path, kSysRecordChars);
    if (!bytes)
        return std::nullopt;
    const PageText p = Record(*bytes, 0, kSysRecordChars);
    using namespace SysPage;
    return SysReadRecord{
        p.field(SysCheckPack),    p.field(SysCheckPack1),  p.field(SysCarCode),
        p.field(SysDriveCode),    p.field(SysWarehouse),   p.field(SysSerialNumber),
        p.field(SysPackInsert),   p.field(SysPackLastWrite), p.field(SysTotalDistance),
        p.field(SysTotalEngin),   p.field(SysDBWriteDate),
    };
}

bool Append_Read_Line(const QString& path, const QString& pageText, ReadLine kind,
                      const ReadLineStamp& stamp)
{
    if (pageText.size() != kPageChars)
        return false;
    QString line = pageText;
    if (kind == ReadLine::Third) {
        line += stamp.SysTotalDistance.leftJustified(kTotalDistanceChars, QLatin1Char(' '), true);
    } else {
        // The codes stand at columns 5-12 in the day and the distance layout alike.
        Put_Field(line, DayPage::CarCode, stamp.SysCarCode);
        Put_Field(line, DayPage::DriveCode, stamp.SysDriveCode);
    }
    return Write_Bytes(path, QIODevice::WriteOnly | QIODevice::Append, line);
}

ReadRecords Read_Records(const QByteArray& bytes)
{
    return ReadRecords{
        Record(bytes, 0, kDayRecordChars),
        Record(bytes, kDistanceRecordAt, kMinuteRecordChars),
        Record(bytes, kThirdRecordAt, kMinuteRecordChars),
    };
}

std::optional<ReadRecords> Read_Read(const QString& path)
{
    const auto bytes = Read_Head(path, kReadVexChars);
    if (!bytes)
        return std::nullopt;
    return Read_Records(*bytes);
}

} // namespace vex
