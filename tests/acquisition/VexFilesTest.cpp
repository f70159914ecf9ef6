#include "acquisition/VexFiles.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vex;

namespace {

// A page of kPageChars: check bytes, codes, start day, then fill; the series
// (from column 65 of a distance page) starts with marker.
QString Page(const QString& codes, const QString& startDay, QChar fill, const QString& marker)
{
    QString p = QStringLiteral("AAAA") + codes + QStringLiteral("0000") + startDay;
    p += QString(64 - p.size(), QLatin1Char('0')) + marker;
    return p + QString(kPageChars - p.size(), fill);
}

QByteArray Bytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void Write_Pack_File(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

const ReadLineStamp kStamp{"1234", "5678", "012345"};

} // namespace

TEST(ReadVex, LinesRoundTripThroughFixedRecords)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("Read.Vex");
    const QString day = Page("FFFFFFFF", "231031", 'd', "D");
    const QString dist = Page("00000000", "231030", 'm', "M");
    const QString third = Page("ABCD9999", "231029", 't', "T");

    ASSERT_TRUE(Append_Read_Line(path, day, ReadLine::Day, kStamp));
    ASSERT_TRUE(Append_Read_Line(path, dist, ReadLine::Distance, kStamp));
    ASSERT_TRUE(Append_Read_Line(path, third, ReadLine::Third, kStamp));

    // Lines of 4,096, 4,096 and 4,102 bytes with their line ends.
    const QByteArray raw = Bytes(path);
    ASSERT_EQ(raw.size(), 4096 + 4096 + 4102);
    EXPECT_EQ(raw.mid(4094, 2), "\r\n");
    EXPECT_EQ(raw.mid(8192), third.toLatin1() + "012345\r\n");

    const auto r = Read_Read(path);
    ASSERT_TRUE(r);
    ASSERT_EQ(r->day.size(), kDayRecordChars);
    EXPECT_EQ(r->day.field(DayPage::CarCode), "1234");
    EXPECT_EQ(r->day.field(DayPage::DriveCode), "5678");
    EXPECT_EQ(r->day.field(DayPage::StartDay), "231031");
    EXPECT_EQ(r->day.text().mid(12), day.mid(12) + "\r\n");

    ASSERT_EQ(r->distance.size(), kMinuteRecordChars);
    EXPECT_EQ(r->distance.field(DistPage::CarCode), "1234");
    EXPECT_EQ(r->distance.field(DistPage::DriveCode), "5678");
    EXPECT_EQ(r->distance.field(DistPage::StartDay), "231030");
    EXPECT_EQ(r->distance.field(DistPage::Sec_Data), dist.mid(64, 2880));

    // The total distance behind the third line lies beyond its record.
    EXPECT_EQ(r->third.text(), third.left(kMinuteRecordChars));
    EXPECT_EQ(r->third.field(DistPage::CarCode), "ABCD");
}

TEST(ReadVex, StampValuesKeepTheirWidths)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("Read.Vex");
    const ReadLineStamp odd{"12", "567890", "12"};
    ASSERT_TRUE(Append_Read_Line(path, Page("FFFFFFFF", "231031", 'd', "D"), ReadLine::Day, odd));
    ASSERT_TRUE(Append_Read_Line(path, Page("FFFFFFFF", "231031", 't', "T"), ReadLine::Third, odd));
    const QByteArray raw = Bytes(path);
    ASSERT_EQ(raw.size(), 4096 + 4102);
    EXPECT_EQ(raw.mid(4, 8), "12  5678");
    EXPECT_EQ(raw.right(8), "12    \r\n");
}

TEST(ReadVex, PageOfWrongLengthIsNotWritten)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("Read.Vex");
    const QString page = Page("FFFFFFFF", "231031", 'd', "D");
    EXPECT_FALSE(Append_Read_Line(path, page.left(kPageChars - 1), ReadLine::Day, kStamp));
    EXPECT_FALSE(Append_Read_Line(path, page + "0", ReadLine::Third, kStamp));
    EXPECT_FALSE(Append_Read_Line(path, QString(), ReadLine::Distance, kStamp));
    EXPECT_FALSE(QFile::exists(path));

    EXPECT_FALSE(Append_Read_Line(dir.filePath("no/such/dir/Read.Vex"), page, ReadLine::Day, kStamp));
}

TEST(ReadVex, TruncatedFileGivesShortRecords)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("Read.Vex");
    const QString day = Page("FFFFFFFF", "231031", 'd', "D");
    const QString dist = Page("00000000", "231030", 'm', "M");
    Write_Pack_File(path, day.toLatin1() + "\r\n" + dist.left(100).toLatin1());

    const auto r = Read_Read(path);
    ASSERT_TRUE(r);
    EXPECT_EQ(r->day.size(), kDayRecordChars);
    EXPECT_EQ(r->distance.field(DistPage::StartDay), "231030");
    EXPECT_EQ(r->distance.field(DistPage::Sec_Data), dist.mid(64, 36));
    EXPECT_EQ(r->third.size(), 0);
    EXPECT_EQ(r->third.field(DistPage::CheckPack), "");

    Write_Pack_File(path, "AAAA12");
    const auto tiny = Read_Read(path);
    ASSERT_TRUE(tiny);
    EXPECT_EQ(tiny->day.field(DayPage::CarCode), "12");
    EXPECT_EQ(tiny->day.field(DayPage::Sec_Data), "");
    EXPECT_EQ(tiny->distance.size(), 0);

    EXPECT_FALSE(Read_Read(dir.filePath("missing.Vex")));
}

TEST(SysReadVex, RoundTripAndShortFiles)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("SysRead.Vex");
    const QString page = QStringLiteral("AA" "11" "1234" "5678") + QString(34, QLatin1Char('0'))
                         + QStringLiteral("231001" "SN000042" "0000" "2310011200" "2310311745"
                                          "012345" "000000" "00067890")
                         + QString(38, QLatin1Char('0')) + QStringLiteral("2310281159" "FF");
    ASSERT_EQ(page.size(), kSysPageChars);

    // A longer earlier file is replaced, not appended to.
    Write_Pack_File(path, QByteArray(500, 'x'));
    ASSERT_TRUE(Write_SysRead(path, page));
    EXPECT_EQ(Bytes(path), page.toLatin1() + "\r\n");

    const auto r = Read_SysRead(path);
    ASSERT_TRUE(r);
    EXPECT_EQ(r->SysCheckPack, "AA");
    EXPECT_EQ(r->SysCheckPack1, "11");
    EXPECT_EQ(r->SysCarCode, "1234");
    EXPECT_EQ(r->SysDriveCode, "5678");
    EXPECT_EQ(r->SysWarehouse, "231001");
    EXPECT_EQ(r->SysSerialNumber, "SN000042");
    EXPECT_EQ(r->SysPackInsert, "2310011200");
    EXPECT_EQ(r->SysPackLastWrite, "2310311745");
    EXPECT_EQ(r->SysTotalDistance, "012345");
    EXPECT_EQ(r->SysTotalEngin, "00067890");
    EXPECT_EQ(r->SysDBWriteDate, "2310281159");

    // An empty reply is written as it came and reads back as a line end.
    ASSERT_TRUE(Write_SysRead(path, QString()));
    EXPECT_EQ(Bytes(path), "\r\n");
    const auto empty = Read_SysRead(path);
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->SysCheckPack, "\r\n");
    EXPECT_EQ(empty->SysCarCode, "");

    Write_Pack_File(path, "AA11123");
    const auto cut = Read_SysRead(path);
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->SysCheckPack1, "11");
    EXPECT_EQ(cut->SysCarCode, "123");
    EXPECT_EQ(cut->SysDriveCode, "");
    EXPECT_EQ(cut->SysDBWriteDate, "");

    EXPECT_FALSE(Read_SysRead(dir.filePath("missing.Vex")));
}
