// Day files of second data, their merge, the minute distance and the
// monthly file.
#include "store/DayFile.h"
#include "store/Day_Store.h"
#include "core/Hour_Seconds.h"
#include "store/IngestFixture.h"

#include <QFile>

using namespace vex;

namespace {

class DayFiles : public test::Ingest {
protected:
    std::vector<uint8_t> speed = std::vector<uint8_t>(kDayArray, 0);
    std::vector<uint8_t> engine = std::vector<uint8_t>(kDayArray, 0);
    std::vector<uint8_t> half = std::vector<uint8_t>(kHalfArray, 0);
    std::vector<float> metres = std::vector<float>(kDayMinutes + 1, 0.0f);
    void Clear()
    {
        std::fill(speed.begin(), speed.end(), 0);
        std::fill(engine.begin(), engine.end(), 0);
        std::fill(half.begin(), half.end(), 0);
        std::fill(metres.begin(), metres.end(), 0.0f);
    }
    int16_t Save() { return db->DB_Save_D_D2("000100", "000200", speed, engine, metres, "240131", half); }
    // A file of the application folder; a day file under "pack/" wherever
    // the engine keeps it.
    QByteArray File(const QString& rel)
    {
        if (rel.startsWith("pack/")) {
            const Day_File_Ref ref = Find_Day_File(*db, "\\" + QString(rel).replace('/', '\\'));
            return ref.Found() ? Read_Day_Bytes(*db, ref) : QByteArray();
        }
        QFile f(app.Path(rel));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    const QString key = "000100000200240131";
    const QString vex = "pack/000100/240131/240131000200.vex";
};

} // namespace

TEST_P(DayFiles, RecordingsMergeFirstSecondWinsGapsFilled)
{
    speed[3600] = 30; // 01:00:00
    speed[5000] = 30;
    engine[5000] = 7;
    half[7200] = 9;
    metres[61] = 1250; // 1.25 km: "13"
    ASSERT_EQ(Save(), -1) << Err_Last().toStdString();
    ASSERT_EQ(File(vex).size(), kDayFileFull);

    Clear();
    speed[5000] = 60; // the same second again: the first recording stays
    speed[5001] = 61;
    speed[10800] = 44; // 03:00:00
    half[7200] = 1;
    half[21600] = 2;
    metres[61] = 2000; // a stored distance is never replaced
    metres[181] = 40;  // 0.04 km: "00"
    metres[182] = 50;  // 0.05 km: "01"
    ASSERT_EQ(Save(), -1) << Err_Last().toStdString();

    const DayFile f = Day_File_Of(File(vex), vex);
    EXPECT_EQ(f.speed[3600], 30);
    EXPECT_EQ(f.speed[5000], 30);
    EXPECT_EQ(f.speed[5001], 61);
    EXPECT_EQ(f.speed[10800], 44);
    EXPECT_EQ(f.engine[5000], 7);
    EXPECT_EQ(f.half[7200], 9);
    EXPECT_EQ(f.half[21600], 2);
    EXPECT_EQ(Rows("D_D7"), 1);
    const QString d7 = Text("D_D7", key, "D_F2");
    ASSERT_EQ(d7.size(), 2880);
    EXPECT_EQ(d7.mid(120, 2), "13");
    EXPECT_EQ(d7.mid(360, 4), "0001");
    EXPECT_EQ(d7.count('0'), 2880 - 3);

    // The pure merge of the distance series by minute.
    std::vector<float> m(kDayMinutes + 1, 0.0f);
    m[1] = 40;
    m[2] = 150;
    m[3] = 9900;
    EXPECT_EQ(Minute_Distance_Series(m).left(8), "0002" "9900");
}

TEST_P(DayFiles, BrokenFilesAbandonTheSaveAndFilesAreWrittenWhole)
{
    speed[100] = 10;
    ASSERT_EQ(Save(), -1);
    const QByteArray before = File(vex);

    // A truncated day file is refused: nothing merged, D_D7 not reached.
    Store_Day_Bytes(*db, "\\" + QString(vex).replace('/', '\\'), before.left(100000));
    metres[5] = 1000;
    EXPECT_EQ(Save(), 0);
    EXPECT_TRUE(Err_Last().contains("DB_Save_D_D2"));
    EXPECT_EQ(File(vex).size(), 100000);
    EXPECT_EQ(Text("D_D7", key, "D_F2"), QString(2880, '0'));

    // A file of the two first arrays is whole; the half seconds join it.
    Store_Day_Bytes(*db, "\\" + QString(vex).replace('/', '\\'), before.left(kDayFileTwo));
    half[3] = 4;
    ASSERT_EQ(Save(), -1);
    EXPECT_EQ(File(vex).size(), kDayFileFull);
    EXPECT_EQ(uint8_t(File(vex)[kDayFileTwo + 3]), 4);

    // The recorder "130" keeps a copy in "\static\".
    Clear();
    speed[200] = 20;
    ASSERT_EQ(db->DB_Save_D_D2_130("000300", "000200", speed, engine, "240131"), -1);
    const QByteArray copy = File("static/000300240131000200.vex");
    EXPECT_EQ(copy.size(), kDayFileFull);
    EXPECT_EQ(copy, File("pack/000300/240131/240131000200.vex"));

    // Distance bytes of a file: hundreds and the rest of the metres.
    std::vector<uint8_t> bytes(kNtdDistance, 0);
    bytes[1] = 12;
    bytes[2] = 50; // minute 1: 1,250 m
    ASSERT_EQ(db->DB_Save_D_D2_file("000400", "000200", speed, engine, bytes, "240131"), -1);
    EXPECT_EQ(File("pack/000400/240131/240131000200.vex").size(), kDayFileTwo);
    EXPECT_EQ(Text("D_D7", "000400000200240131", "D_F2").left(4), "1300");
}

TEST_P(DayFiles, UsbDayFileValidatesTheDayAndMergesByMinute)
{
    speed[10] = 10;
    metres[1] = 1234;
    EXPECT_EQ(db->DB_Save_D_D_usb("000100", "000200", speed, engine, metres, "241331"), 0); // month 13
    EXPECT_EQ(db->DB_Save_D_D_usb("000100", "000200", speed, engine, metres, "2401x1"), 0);
    EXPECT_FALSE(QFile::exists(app.Path("new/241331000100000200.ntd")));

    ASSERT_EQ(db->DB_Save_D_D_usb("000100", "000200", speed, engine, metres, "240131"), -1) << Err_Last().toStdString();
    const QString ntd = "new/240131000100000200.ntd";
    QByteArray f = File(ntd);
    ASSERT_EQ(f.size(), kNtdFile);
    EXPECT_EQ(f.left(10), QByteArray::fromHex("00" "000200" "000100" "240131"));
    EXPECT_EQ(uint8_t(f[kNtdHeader + 10]), 10);
    EXPECT_EQ(uint8_t(f[kNtdHeader + kDayFileTwo + 1]), 12);
    EXPECT_EQ(uint8_t(f[kNtdHeader + kDayFileTwo + 2]), 34);

    // Again: stored minutes stay, empty ones ("FFFF" among them) take the new.
    f[kNtdHeader + kDayFileTwo + 3] = char(0xFF);
    f[kNtdHeader + kDayFileTwo + 4] = char(0xFF);
    app.Write_File(ntd, f);
    Clear();
    metres[1] = 500;
    metres[2] = 301;
    speed[10] = 99;
    speed[11] = 11;
    ASSERT_EQ(db->DB_Save_D_D_usb("000100", "000200", speed, engine, metres, "240131"), -1);
    f = File(ntd);
    EXPECT_EQ(uint8_t(f[kNtdHeader + 10]), 10);
    EXPECT_EQ(uint8_t(f[kNtdHeader + 11]), 11);
    EXPECT_EQ(uint8_t(f[kNtdHeader + kDayFileTwo + 1]), 12);
    EXPECT_EQ(uint8_t(f[kNtdHeader + kDayFileTwo + 3]), 3);
    EXPECT_EQ(uint8_t(f[kNtdHeader + kDayFileTwo + 4]), 1);
}

TEST_P(DayFiles, HourReadAndTheScanOfHourZero)
{
    QString hour = "00";
    EXPECT_EQ(db->DB_Search_SecData("000100", "000200", "240131", hour).path, ""); // no file
    EXPECT_EQ(hour, "00");

    speed[7 * 3600 + 1] = 0x2A;
    engine[7 * 3600 + 2] = 0x11;
    ASSERT_EQ(Save(), -1);
    Hour_Seconds read = db->DB_Search_SecData("000100", "000200", "240131", hour);
    EXPECT_EQ(read.path, Find_Day_File(*db, "000100", "000200", "240131").Name());
    EXPECT_EQ(hour, "07");
    EXPECT_EQ(read.startTime, "070000");
    EXPECT_EQ(read.endTime, "075959");
    EXPECT_EQ(read.endDay, "240131");
    ASSERT_EQ(read.speed.size(), 3600u);
    EXPECT_EQ(read.speed[1], 0x2A);
    EXPECT_EQ(read.speed[2], 0);
    ASSERT_EQ(read.engine.size(), 3600u);
    EXPECT_EQ(read.engine[2], 0x11);

    hour = "03"; // a chosen hour is read as it is, empty or not
    read = db->DB_Search_SecData("000100", "000200", "240131", hour);
    EXPECT_EQ(hour, "03");
    EXPECT_EQ(read.startTime, "030000");
    EXPECT_EQ(read.speed, std::vector<uint8_t>(3600, 0));

    // A file named without the driver is taken first.
    std::vector<uint8_t> other(kDayFileTwo, 0);
    other[3600 * 2] = 5;
    Store_Day_Bytes(*db, "\\pack\\000100\\240131\\240131.vex",
                    QByteArray(reinterpret_cast<const char*>(other.data()), kDayFileTwo));
    hour = "";
    db->DB_Search_SecData("000100", "000200", "240131", hour);
    EXPECT_EQ(hour, "02");
}

TEST_P(DayFiles, MonthlyFileLinesAndAnEmptyMonth)
{
    EXPECT_EQ(Cls_DB::Line_Data_Comp("240131"), "37203E");
    EXPECT_EQ(Cls_DB::Line_Data_Comp("123"), "2B22"); // an odd last digit alone
    EXPECT_EQ(Cls_DB::Line_Data_Comp(""), "");

    EXPECT_EQ(db->DB_To_File("2401"), "");
    EXPECT_FALSE(QFile::exists(app.Path("Pack/123456782401.SAM")));

    Put("D_D1", "000100000200240131",
        {"D_F2", "000100", "D_F3", "000200", "D_F4", "240131", "D_F5", "0950", "D_F7", "1150", "D_F8", 17,
         "D_F9", 2, "D_F10", 1, "D_F11", 3, "D_F12", 0, "D_F14", 95, "D_F15", 1, "D_F17", 1, "D_F24", ""});
    Put("D_D1", "000100000200240201", {"D_F4", "240201", "D_F8", 1});
    const QString path = db->DB_To_File("2401");
    EXPECT_EQ(path, app.Path("Pack/123456782401.SAM"));
    EXPECT_EQ(File("Pack/123456782401.SAM"),
              QByteArray("37203E" "2851" "2A51" "2B41576D" "" "" "1F1F30" "1F20" "1F20" "1F" "20" "22" "1F21" "7E"
                         "\r\n"));
}

VEX_INGEST_ENGINES(DayFiles);
