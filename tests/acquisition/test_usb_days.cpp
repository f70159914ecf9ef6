// The USB decoders alone, on hand-built bytes laid out as the recorders
// write them: no folder, no database. Speeds are the first seconds of the
// New York City cycle (nycc) once it moves: 5, 9, 11, 12, 12, 10, 10, 12 km/h.
#include "acquisition/UsbRecorder.h"
#include "acquisition/Usb_Days.h"
#include "store/DayFile.h"

#include <gtest/gtest.h>

using namespace vex;

namespace {

const uint8_t kNycc[] = {5, 9, 11, 12, 12, 10, 10, 12};

void Put(QByteArray& b, qint64 at, std::initializer_list<uint8_t> bytes)
{
    for (const uint8_t v : bytes)
        b[at++] = char(v);
}

// A "250" record of 512 bytes: F0, the stamp YY MM DD HH MM in decimal
// digits, at 16 sixty samples of 8 bytes (speed, engine, six dropped), at
// 496 the minute's hundreds of metres and the rest.
QByteArray Record250(std::initializer_list<uint8_t> stamp, uint8_t engine, uint8_t hundreds, uint8_t rest)
{
    QByteArray r(kRecord250, '\0');
    r[0] = char(0xF0);
    Put(r, 1, stamp);
    for (int s = 0; s < 8; ++s) {
        r[16 + 8 * s] = char(kNycc[s]);
        r[16 + 8 * s + 1] = char(engine);
    }
    r[16 + 8 * 8] = char(0xFF); // an erased sample reads 0
    r[496] = char(hundreds);
    r[497] = char(rest);
    return r;
}

} // namespace

TEST(UsbDays, TheTwoFormsOfADayFile)
{
    // The "250" road's file: a zero, driver, car and day, then the arrays whole.
    QByteArray road(kNtdFile, '\0');
    Put(road, 1, {0x00, 0x01, 0x23, 0x12, 0xAB, 0x00, 0x26, 0x10, 0x01});
    const qint64 eight = 8 * 3600; // 08:00:00
    for (int s = 0; s < 8; ++s)
        road[kNtdHeader + eight + s] = char(kNycc[s]);
    road[kNtdHeader + eight + 8] = char(0xFF);
    road[kNtdHeader + kDayArray + eight] = char(0x0C);
    const qint64 distance = kNtdHeader + 2LL * kDayArray;
    Put(road, distance + 961, {0x03, 0x0C});  // 08:01: 300 + 12 metres
    Put(road, distance + 963, {0xFF, 0xFF});  // never written
    Put(road, distance + 965, {0xFF, 0x05});  // written half: as it stands
    Ntd_Day d = Decode_Ntd_Day(road);
    ASSERT_EQ(d.verdict, Ntd_Day::Verdict::Decoded);
    EXPECT_EQ(d.car, "12AB00");
    EXPECT_EQ(d.driver, "000123");
    EXPECT_EQ(d.day, "261001");
    ASSERT_EQ(d.speed.size(), size_t(kDayArray));
    EXPECT_EQ(d.speed[eight + 2], 11);
    EXPECT_EQ(d.speed[eight + 8], 0);
    EXPECT_EQ(d.engine[eight], 12);
    ASSERT_EQ(d.distance.size(), size_t(kNtdDistance));
    EXPECT_EQ(d.distance[961], 3);
    EXPECT_EQ(d.distance[962], 12);
    EXPECT_EQ(d.distance[963], 0);
    EXPECT_EQ(d.distance[964], 0);
    EXPECT_EQ(d.distance[965], 0xFF);

    // A saved day: car, driver and day of three bytes, each array one byte
    // early over the last entry of the one before; the driver keeps "00".
    QByteArray saved(kSavedNtdFile, '\0');
    Put(saved, 0, {0x12, 0xAB, 0x00, 0x77, 0x01, 0x23, 0x26, 0x10, 0x02});
    saved[9 + eight] = char(kNycc[0]);
    saved[9 + kDayArray - 1 + eight] = char(0x0D);
    d = Decode_Ntd_Day(saved);
    ASSERT_EQ(d.verdict, Ntd_Day::Verdict::Decoded);
    EXPECT_EQ(d.driver, "000123");
    EXPECT_EQ(d.day, "261002");
    EXPECT_EQ(d.speed[eight], 5);
    EXPECT_EQ(d.engine[eight], 13);

    EXPECT_EQ(Decode_Ntd_Day(saved.left(kSavedNtdFile - 1)).verdict, Ntd_Day::Verdict::Short);
    Put(saved, 6, {0x26, 0x13, 0x01}); // month 13
    EXPECT_EQ(Decode_Ntd_Day(saved).verdict, Ntd_Day::Verdict::Not_A_Day);
}

TEST(UsbDays, A250LogIsHandedOverADayAtATime)
{
    QByteArray other = Record250({0x26, 0x10, 0x01, 0x09, 0x00}, 0x20, 0, 0);
    other[0] = char(0xF1); // no minute record: passed over
    const QByteArray log = Record250({0x26, 0x10, 0x01, 0x08, 0x00}, 0x20, 3, 12) +
                           Record250({0x26, 0x10, 0x01, 0x24, 0x00}, 0x20, 0, 0) + // hour 24: no minute of a day
                           Record250({0x26, 0x09, 0x30, 0x08, 0x00}, 0x20, 0, 0) + // before the dates
                           other + Record250({0x26, 0x10, 0x02, 0x07, 0x59}, 0x21, 1, 0);
    std::vector<Usb_Second_Day> days;
    Dat250_Days reader("261001", "", [&](const Usb_Second_Day& d) { days.push_back(d); });
    reader.Feed(log.left(2 * kRecord250));
    reader.Feed(log.mid(2 * kRecord250));
    reader.Finish();
    ASSERT_EQ(days.size(), 2u);
    EXPECT_EQ(days[0].day, "261001");
    EXPECT_EQ(days[0].speed[8 * 3600 + 3], 12);
    EXPECT_EQ(days[0].speed[8 * 3600 + 8], 0);
    EXPECT_EQ(days[0].engine[8 * 3600], 0x20);
    EXPECT_EQ(days[0].speed[9 * 3600], 0);
    ASSERT_EQ(days[0].metres.size(), 1441u);
    EXPECT_EQ(days[0].metres[481], 312.0f); // minute 08:00 is entry 481
    EXPECT_EQ(days[1].day, "261002");
    EXPECT_EQ(days[1].speed[7 * 3600 + 59 * 60], 5);
    EXPECT_EQ(days[1].speed[8 * 3600 + 3], 0); // the day before is cleared
    EXPECT_EQ(days[1].metres[480], 100.0f);
}

TEST(UsbDays, A130LogGivesMinuteSeriesEventsAndSeconds)
{
    QByteArray log(kDat130Filed, char(0xFF));
    // Hour block 1 (block 0 is the start block): 261001 hour 08. Minute m:
    // speed, second channel, metres as four digits.
    const qint64 hour = kBlock130;
    Put(log, hour, {0xF0, 0x26, 0x10, 0x01, 0x08});
    const uint8_t metres[][2] = {{0x08, 0x50}, {0x09, 0x20}, {0x11, 0x00}, {0x00, 0x00}, {0x09, 0x30}, {0x00, 0x00}};
    for (int m = 0; m < 60; ++m) {
        const qint64 at = hour + 5 + 4 * m;
        Put(log, at, {m < 6 ? uint8_t(30 + m) : uint8_t(0), 0x04, m < 6 ? metres[m][0] : uint8_t(0),
                      m < 6 ? metres[m][1] : uint8_t(0)});
    }
    // The same hour again later in the log: a minute already recorded stays.
    Put(log, 2 * kBlock130, {0xF0, 0x26, 0x10, 0x01, 0x08, 0x63, 0x00, 0x00, 0x00});
    // A day outside the dates.
    Put(log, 3 * kBlock130, {0xF0, 0x26, 0x09, 0x30, 0x08, 0x10});

    // Events: a drop from 85 to 57 pulses (60 to 40 km/h) at 08:00:10, a
    // rise from 57 to 71 (40 to 50 km/h) at 08:00:20, and one too small.
    Put(log, kEventRegion130, {0x26, 0x10, 0x01, 0x08, 0x00, 0x10, 0x00, 85, 0x00, 57});
    Put(log, kEventRegion130 + 10, {0x26, 0x10, 0x01, 0x08, 0x00, 0x20, 0x00, 57, 0x00, 71});
    Put(log, kEventRegion130 + 20, {0x26, 0x10, 0x01, 0x08, 0x00, 0x30, 0x00, 57, 0x00, 60});

    // A minute record of second data: 261001 08:00, sixty pairs.
    Put(log, kMinuteRegion130A, {0x26, 0x10, 0x01, 0x08, 0x00});
    for (int s = 0; s < 60; ++s)
        Put(log, kMinuteRegion130A + 5 + 2 * s, {s < 8 ? kNycc[s] : uint8_t(0xFF), 0x99});

    const Dat130_Log d = Decode_Dat130_Log(log, "261001", "261001");
    ASSERT_EQ(d.days.size(), 1u);
    const Usb_Minute_Day& day = d.days.at("261001");
    EXPECT_EQ(day.speed[480], 30);
    EXPECT_EQ(day.speed[485], 35);
    EXPECT_EQ(day.speed[486], 0);
    EXPECT_EQ(day.second[480], 4);
    // Metres to tenths of a km, what a minute has below a hundred carried on:
    // 850, 920, 1100, 0, 930 and 0 metres give 8, 9, 11, 0, 9 and 1.
    const uint8_t tenths[] = {8, 9, 11, 0, 9, 1};
    for (int m = 0; m < 6; ++m)
        EXPECT_EQ(day.distance[size_t(480 + m)], tenths[m]) << m;
    EXPECT_EQ(Hex_Cells(day.speed).mid(2 * 480, 4), "1E1F");
    EXPECT_EQ(Decimal_Cells(day.distance).mid(2 * 480, 6), "080911");

    ASSERT_EQ(d.events.size(), 2u);
    EXPECT_EQ(d.events[0].type, "55");
    EXPECT_EQ(d.events[0].date, "261001");
    ASSERT_EQ(d.events[0].events.size(), 1u);
    EXPECT_EQ(d.events[0].events[0].time, "080010");
    EXPECT_EQ(d.events[0].events[0].before, 60);
    EXPECT_EQ(d.events[0].events[0].after, 40);
    EXPECT_EQ(d.events[0].Records(), "080010" "3C" "28");
    EXPECT_EQ(d.events[1].type, "AA");
    EXPECT_EQ(d.events[1].Records(), "080020" "28" "32");
    const Usb_Event_List fast{"AA", "261001", {{"080030", 250, 300}}};
    EXPECT_EQ(fast.Records(), "080030" "FA" "FF"); // 256 km/h and more don't fit a byte

    ASSERT_EQ(d.seconds.size(), 1u);
    EXPECT_EQ(d.seconds[0].day, "261001");
    ASSERT_EQ(d.seconds[0].minutes.size(), 1u);
    EXPECT_EQ(d.seconds[0].minutes[0].minute, 480);
    EXPECT_EQ(d.seconds[0].minutes[0].speed[3], 12);
    EXPECT_EQ(d.seconds[0].minutes[0].speed[8], 0); // erased
}
