// The "130" decoder at its edges: stamps that are skipped, a second block of
// an hour, the metre carry, the speed rule of the event region and the seam
// of the minute region. Logs come from the sample generator and are patched
// where a case needs particular bytes.
#include "acquisition/UsbRecorder.h"
#include "samples/UsbSampler.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "support/AppSession.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace vex;

namespace {

const QString kCar = "12AB00", kDriver = "000123";

class Usb130 : public ::testing::Test {
protected:
    test::AppSession app;
    QByteArray log;

    void SetUp() override
    {
        UsbSampleRequest r;
        r.model = "130";
        r.car = kCar;
        r.driver = kDriver;
        r.first = QDate(2026, 1, 5);
        QString error;
        const auto sample = Make_Sample_Usb(r, &error);
        ASSERT_TRUE(sample) << error.toStdString();
        log = sample->log;
    }
    // The reception that filed the log: its medium's codes, all dates.
    Filing_Note who{kCar, kDriver, "000101", "991231"};

    void Put(qint64 at, const QByteArray& bytes) { log.replace(at, bytes.size(), bytes); }
    void Erase(qint64 at, qint64 n) { log.replace(at, n, QByteArray(n, char(0xFF))); }
    bool Decode()
    {
        const QString path = app.Path("new/" + kCar + "260105.dat");
        app.Write_File("new/" + kCar + "260105.dat", log);
        app.Write_File("new/" + kCar + "260105.dat.id", Filing_Note_Text(who));
        return Decode_Dat130(*G().DB, path);
    }
    QString Text(const QString& table, const QString& day, const char* field = "D_F2")
    {
        Recordset rs = G().DB->DB_RSet_D_D("SELECT * FROM " + table + " WHERE D_F1=?", {kCar + kDriver + day});
        return rs.RecordCount() > 0 ? rs.Text(field) : QString();
    }
    // An hour block of 60 minutes of (speed, channel, metres as digits).
    static QByteArray Block(const char* stamp, std::function<QByteArray(int)> minute)
    {
        QByteArray b = QByteArray::fromHex("F0") + QByteArray::fromHex(stamp);
        for (int m = 0; m < 60; ++m)
            b += minute(m);
        return b + QByteArray(11, '\0');
    }
    // A free block of the first region, past the sample's hours.
    static qint64 Free(int k) { return qint64(5000 + k) * kBlock130; }
};

} // namespace

TEST_F(Usb130, HourBlocksSkipBadStampsMergeByMinuteAndCarryTheMetres)
{
    auto Quiet = [](int) { return QByteArray::fromHex("00000000"); };
    // Hour 03 (no driving in the sample): speed 2A at minute 0; metres 150,
    // 150, 0, FFFF, "12A4"; speed and channel FF at minute 5.
    Put(Free(0), Block("26010503", [](int m) {
            switch (m) {
            case 0: return QByteArray::fromHex("2A050150");
            case 1: return QByteArray::fromHex("00000150");
            case 2: return QByteArray::fromHex("00000000");
            case 3: return QByteArray::fromHex("0000FFFF");
            case 4: return QByteArray::fromHex("000012A4");
            case 5: return QByteArray::fromHex("FFFF0000");
            default: return QByteArray::fromHex("00000000");
            }
        }));
    // The same hour again: minute 0 is taken, minute 1 is still "00".
    Put(Free(1), Block("26010503", [](int m) {
            return m < 2 ? QByteArray::fromHex("30070000") : QByteArray::fromHex("00000000");
        }));
    Put(Free(1) + 5 + 4, QByteArray::fromHex("31"));
    // Skipped: erased stamp, hour 24, month 13, day with a letter, an
    // hour with a letter; each would fill hour 02 or make a row of its own.
    auto Loud = [](int) { return QByteArray::fromHex("C8000100"); };
    Put(Free(2), Block("FFFFFF02", Loud));
    Put(Free(3), Block("26010524", Loud));
    Put(Free(4), Block("26130502", Loud));
    Put(Free(5), Block("26010A02", Loud));
    Put(Free(6), Block("2601050A", Loud));
    Put(Free(7), Block("00000000", Quiet).replace(0, 1, QByteArray::fromHex("FA")));
    ASSERT_TRUE(Decode());

    const QString d3 = Text("D_D3", "260105"), d7 = Text("D_D7", "260105"), d8 = Text("D_D8", "260105");
    ASSERT_EQ(d3.size(), 2880);
    EXPECT_EQ(d3.mid(2 * 180, 12), "2A3100000000");
    EXPECT_EQ(d8.mid(2 * 180, 12), "050700000000");
    // 150 m twice give 0.1 km each and 100 m carried, which the empty third
    // minute takes; "FFFF" and a letter count as no metres.
    EXPECT_EQ(d7.mid(2 * 180, 10), "0101010000");
    EXPECT_EQ(d3.mid(2 * 120, 120), QString(120, '0'));
    EXPECT_TRUE(Text("D_D3", "261305").isEmpty());
    EXPECT_TRUE(Text("D_D3", "26010A").isEmpty());
    // The summary is rebuilt from the series: the day still starts and ends
    // with the sample's driving, and hour 03 is its first driven minute now.
    EXPECT_EQ(Text("D_D1", "260105", "D_F5"), "0300");
    Recordset car = G().DB->DB_RSet_D_D("SELECT * FROM S_D1 WHERE D_F1=?", {kCar});
    ASSERT_EQ(car.RecordCount(), 1);
    EXPECT_EQ(car.Text("D_F6"), "130");
}

TEST_F(Usb130, EventRegionConvertsPulseCountsAndKeepsTheThresholds)
{
    Erase(kEventRegion130, qint64(kEventRecords130) * kEventRecord130);
    auto Event = [&](int i, const char* stamp, int a, int b) {
        QByteArray r = QByteArray::fromHex(stamp);
        r += char(a >> 8);
        r += char(a & 0xFF);
        r += char(b >> 8);
        r += char(b & 0xFF);
        Put(kEventRegion130 + i * kEventRecord130, r);
    };
    EXPECT_EQ(Usb_Speed(1416), 1000);
    EXPECT_EQ(Usb_Speed(71), 50);
    EXPECT_EQ(Usb_Speed(51), 36);
    EXPECT_EQ(Usb_Speed(50), 35);
    Event(0, "260105080000", 71, 51);   // a fall of 14 km/h: nothing
    Event(1, "260105080100", 71, 50);   // a fall of 15: a quick brake
    Event(2, "260105080200", 0, 10);    // a rise of 7.06: nothing
    Event(3, "260105080300", 0, 11);    // a rise of 7.77: a quick acceleration
    Event(4, "260105080400", 0, 1416);  // 1,000 km/h does not fit a byte
    Event(5, "26010A080500", 0, 1416);  // a stamp with a letter
    Event(6, "260106090000", 0, 11);    // another day
    Event(7, "260105080600", 0, 11);    // back to the first day
    Event(8, "261305080700", 71, 50);   // month 13: twelve digits, kept under its day
    ASSERT_TRUE(Decode());

    EXPECT_EQ(Text("D_D2", "260105"), "0801003223");
    EXPECT_EQ(Text("D_D4", "260105"), "080300000708040000FF0806000007");
    EXPECT_EQ(Text("D_D4", "260106"), "0900000007");
    EXPECT_EQ(Text("D_D2", "261305"), "0807003223");
    EXPECT_EQ(Text("D_D1", "260105", "D_F9").toInt(), 3);
    EXPECT_EQ(Text("D_D1", "260105", "D_F10").toInt(), 1);

    // Merging the same records again changes nothing.
    ASSERT_TRUE(Decode());
    EXPECT_EQ(Text("D_D4", "260105"), "080300000708040000FF0806000007");
    EXPECT_EQ(Text("D_D1", "260105", "D_F9").toInt(), 3);
}

TEST_F(Usb130, MinuteRecordsStartTheirSecondPartAtItsOwnOffset)
{
    Erase(kMinuteRegion130A, kDat130Filed - kMinuteRegion130A);
    auto Record = [&](qint64 at, const char* stamp, uint8_t first) {
        QByteArray r = QByteArray::fromHex(stamp);
        for (int s = 0; s < 60; ++s)
            r += QByteArray(1, char(s == 0 ? first : s == 1 ? 0xFF : 40)) + QByteArray(1, char(0x55));
        Put(at, r);
    };
    Record(kMinuteRegion130A, "2601050500", 11);                                     // record 1 at 05:00
    Record(kMinuteRegion130A + 523 * kMinuteRecord130, "2601051100", 99);           // no record: behind 523
    Record(kMinuteRegion130B, "2601051000", 77);                                     // record 524
    Record(kMinuteRegion130B + kMinuteRecord130, "2601051060", 88);                 // minute 60
    Record(kMinuteRegion130B + 2 * kMinuteRecord130, "2600051200", 88);             // month 00
    Record(kMinuteRegion130B + 3 * kMinuteRecord130, "2601052400", 88);             // hour 24
    ASSERT_TRUE(Decode());

    const DayFile f = Read_Day_File(Local_Path(Day_File_Name(kCar, kDriver, "260105")));
    EXPECT_EQ(f.speed[5 * 3600], 11);
    EXPECT_EQ(f.speed[5 * 3600 + 1], 0); // 255 counts as 0
    EXPECT_EQ(f.speed[5 * 3600 + 2], 40);
    EXPECT_EQ(f.speed[10 * 3600], 77);
    EXPECT_EQ(f.speed[11 * 3600], 0);
    EXPECT_EQ(f.speed[12 * 3600], 0);
    EXPECT_EQ(f.half.size(), size_t(kHalfArray));
    // The second byte of a pair is dropped: no engine in these day files.
    EXPECT_TRUE(std::all_of(f.engine.begin(), f.engine.end(), [](uint8_t b) { return b == 0; }));
    EXPECT_FALSE(QFile::exists(Local_Path(Day_File_Name(kCar, kDriver, "260005"))));
}

TEST_F(Usb130, TheReceptionsDatesLimitHoursAndMinutesButNotTheEventRing)
{
    // Brakes of the 5th around one of the 6th, in the ring of events.
    Erase(kEventRegion130, qint64(kEventRecords130) * kEventRecord130);
    auto Brake = [&](int i, const char* stamp) {
        Put(kEventRegion130 + i * kEventRecord130, QByteArray::fromHex(stamp) + QByteArray::fromHex("00470032"));
    };
    Brake(0, "260106070000");
    Brake(1, "260105080100");
    Brake(2, "260106090000");
    Brake(3, "260105080100"); // the same brake again, as a ring wraps
    who.from = "260105";
    who.to = "260105";
    ASSERT_TRUE(Decode());
    EXPECT_FALSE(Text("D_D3", "260105").isEmpty());
    EXPECT_TRUE(Text("D_D1", "260106").isEmpty());
    EXPECT_TRUE(Text("D_D3", "260106").isEmpty());
    EXPECT_FALSE(QFile::exists(Local_Path(Day_File_Name(kCar, kDriver, "260106"))));
    // Every record with a stamp counts, whatever the dates; a run of one day
    // ends where another day's record stands, so a brake is listed once.
    EXPECT_EQ(Text("D_D2", "260105"), "0801003223");
    EXPECT_EQ(Text("D_D2", "260106"), "07000032230900003223");
}

TEST_F(Usb130, AFiledLogIsDecodedUnderTheReceptionThatFiledItOrWaits)
{
    // No note beside it: nothing is decoded, under no driver.
    app.Write_File("new/" + kCar + "260105.dat", log);
    EXPECT_FALSE(Decode_Dat130(*G().DB, app.Path("new/" + kCar + "260105.dat")));
    Recordset none = G().DB->DB_RSet_D_D("SELECT * FROM D_D1");
    EXPECT_EQ(none.RecordCount(), 0);

    // Another reception under way changes nothing: the note names the driver.
    Usb_State() = Usb_Reception{"FFFF00", "000999", "260101", "260101", {}};
    who.to = "260105";
    ASSERT_TRUE(Decode());
    Usb_State() = Usb_Reception{};
    Recordset rs = G().DB->DB_RSet_D_D("SELECT * FROM D_D1");
    ASSERT_EQ(rs.RecordCount(), 1);
    EXPECT_EQ(rs.Text("D_F1"), kCar + kDriver + "260105");

    // Notes that can't be trusted are no notes.
    EXPECT_FALSE(Parse_Filing_Note("car=12AB00\ndriver=../../x\nfrom=260101\nto=260131\n"));
    EXPECT_FALSE(Parse_Filing_Note("car=12AB00\ndriver=000123\nfrom=260131\nto=260101\n"));
    EXPECT_FALSE(Parse_Filing_Note("car=12AB00\ndriver=000123\nfrom=261301\n"));
    const auto back = Parse_Filing_Note(Filing_Note_Text(who));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->driver, kDriver);
    EXPECT_EQ(back->to, "260105");
}

TEST_F(Usb130, OneHourAtATimeMergesLikeTheWholeLog)
{
    const QString zeros120(120, '0'), zeros240(240, '0');
    int16_t result = 0;
    QString speed = zeros120, second = zeros120, metres = zeros240;
    speed.replace(0, 4, "1E00");
    metres.replace(0, 12, "095000990000");
    usb_File_Read(*G().DB, kCar, kDriver, "26010514", speed, metres, second, result);
    EXPECT_EQ(result, -1);
    speed.replace(0, 4, "2828");
    usb_File_Read(*G().DB, kCar, kDriver, "26010514", speed, metres, second, result);
    EXPECT_EQ(result, -1);
    const QString d3 = Text("D_D3", "260105"), d7 = Text("D_D7", "260105");
    ASSERT_EQ(d3.size(), 2880);
    EXPECT_EQ(d3.mid(14 * 120, 6), "1E2800");
    EXPECT_EQ(d3.left(14 * 120), QString(14 * 120, '0'));
    // 950 m: "09" and 50 carried; 99 m: "00" and 149 carried; then 100 of
    // them reach the empty third minute.
    EXPECT_EQ(Compress_Metres("095000990000"), "090001");
    EXPECT_EQ(d7.mid(14 * 120, 6), "090001");

    // Bad hours are the handler's: nothing stored.
    usb_File_Read(*G().DB, kCar, kDriver, "26010524", speed, metres, second, result);
    EXPECT_EQ(result, 0);
    usb_File_Read(*G().DB, kCar, kDriver, "2601051A", speed, metres, second, result);
    EXPECT_EQ(result, 0);
    usb_File_Read(*G().DB, kCar, kDriver, "26010515", speed.left(100), metres, second, result);
    EXPECT_EQ(result, 0);
}
