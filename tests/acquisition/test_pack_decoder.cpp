// The pack day decoder alone, on hand-built bytes of Read.Vex: no folder, no
// database. The day is eight minutes of the highway cycle (hwfet, minute
// means) from 07:30, with a car limit of 80 km/h.
#include "acquisition/PackLayout.h"
#include "acquisition/Pack_Decoder.h"

#include <gtest/gtest.h>

using namespace vex;

namespace {

// Minute speeds (km/h, hex) and distances (tenths of a km, 8 added to the
// first digit as the pack flags a written minute) of hwfet's first minutes.
const char* const kSpeed[] = {"32", "4C", "49", "47", "46", "52", "5C", "5D"};
const char* const kDistance[] = {"88", "93", "92", "92", "92", "94", "95", "96"};
constexpr int kFirstMinute = 7 * 60 + 30;

struct Pages {
    QString day = QString(kPageChars, QLatin1Char('0'));
    QString distance = QString(kPageChars, QLatin1Char('0'));
    QString third = QString(kPageChars, QLatin1Char('0'));

    Pages()
    {
        Put_Field(day, DayPage::CheckPack, "AA");
        Put_Field(day, DayPage::CheckPack1, "AA");
        Put_Field(day, DayPage::CarCode, "0001");
        Put_Field(day, DayPage::DriveCode, "0002");
        Put_Field(day, DayPage::StartDay, "240305");
        Put_Field(day, DayPage::StartTime, "0730");
        Put_Field(day, DayPage::EndDay, "240305");
        Put_Field(day, DayPage::EndTime, "0737");
        Put_Field(day, DayPage::Distance, "000102");
        Put_Field(distance, DistPage::StartDay, "240305");
        for (int m = 0; m < 8; ++m) {
            Speed(kFirstMinute + m, kSpeed[m]);
            Distance(kFirstMinute + m, kDistance[m]);
        }
    }
    void Speed(int minute, const QString& cell) { day.replace(DayPage::Sec_Data.column - 1 + 2 * minute, 2, cell); }
    void Distance(int minute, const QString& cell)
    {
        distance.replace(DistPage::Sec_Data.column - 1 + 2 * minute, 2, cell);
    }
    // Read.Vex: each page a line ended by CR LF.
    QByteArray Bytes() const { return (day + "\r\n" + distance + "\r\n" + third + "\r\n").toLatin1(); }
};

Pack_Decoding Decode(const Pages& p, int randomValue = 0)
{
    int asked = -1;
    const Pack_Decode_Inputs inputs{
        [](const QString& car4) { return car4 == "0001" ? 80 : 0; },
        [&](int bound) {
            asked = bound;
            return randomValue;
        },
    };
    Pack_Decoding d = Decode_Pack_Day(p.Bytes(), inputs);
    EXPECT_TRUE(asked < 0 || asked == 101) << asked; // a count from 0 to 100
    return d;
}

QString Cell(const QString& series, int minute)
{
    return series.mid(2 * minute, 2);
}

} // namespace

TEST(PackDecoder, ASoundDayComesOutAsItStands)
{
    Pages p;
    Put_Field(p.day, DayPage::LKEngin, "02");
    Put_Field(p.day, DayPage::Acceleration, "0001");
    Put_Field(p.day, DayPage::Engin, "00012345");
    const Pack_Decoding d = Decode(p);
    ASSERT_EQ(d.verdict, Pack_Decoding::Verdict::Decoded);
    EXPECT_TRUE(d.repairs.isEmpty()) << d.repairs.join("; ").toStdString();
    const Pack_Day& day = d.day;
    EXPECT_EQ(day.Key(), "000001000002240305");
    EXPECT_EQ(day.startTime, "0730");
    EXPECT_EQ(day.endTime, "0737");
    EXPECT_EQ(day.endDay, "240305");
    EXPECT_EQ(day.distance, 102);
    EXPECT_EQ(day.engine, "00012345");
    EXPECT_EQ(day.accelerations, 1);
    EXPECT_EQ(day.brakes, 0);
    // 82-92 and 92-93 km/h: two pairs of neighbouring minutes above 80.
    EXPECT_EQ(day.longOverspeeds, 2);
    EXPECT_EQ(day.overspeedMinutes, 0); // the store's to count
    EXPECT_EQ(Cell(day.speed, kFirstMinute + 6), "5C");
    EXPECT_EQ(Cell(day.speed, kFirstMinute + 8), "00");
    EXPECT_EQ(day.speed.size(), 2880);
    EXPECT_EQ(Cell(day.distanceSeries, kFirstMinute), "88"); // the flag goes with the save
    EXPECT_EQ(day.distanceSeries.size(), 2880);
}

TEST(PackDecoder, EveryBadFieldHasItsFallbackAndIsListed)
{
    Pages p;
    Put_Field(p.day, DayPage::CheckPack1, "00");   // a car on the page: in use all the same
    Put_Field(p.day, DayPage::StartDay, "241399"); // month 13: the distance page's day
    Put_Field(p.day, DayPage::EndDay, "000000");   // the start day
    Put_Field(p.day, DayPage::StartTime, "0700");  // before the first minute driven
    Put_Field(p.day, DayPage::LKEngin, "07");      // counted again from the series
    Put_Field(p.day, DayPage::Distance, "0001X2"); // summed from the distance page
    Put_Field(p.day, DayPage::Acceleration, "0450"); // implausible: a random count
    Put_Field(p.day, DayPage::Brack, "03");
    Put_Field(p.day, DayPage::Brack_Data,
              QString("0732125C20" "0733300000" "07344A5C20").leftJustified(100, '0'));
    p.Speed(900, "FF");  // erased memory
    p.Speed(1000, "A0"); // 160 km/h
    p.Distance(kFirstMinute + 1, "?3"); // speed 4C has a letter: no distance
    p.Distance(kFirstMinute + 2, "??"); // speed 49 (73 km/h): 1.2 km, flagged
    const Pack_Decoding d = Decode(p, 42);
    ASSERT_EQ(d.verdict, Pack_Decoding::Verdict::Decoded);
    const QStringList expected{
        R"(CheckPack1 "00" -> "AA")",
        R"(StartDay "241399" -> "240305")",
        R"(EndDay "000000" -> "240305")",
        R"(LKEngin "07" -> "2 ")",
        R"(Sec_Data 2 cells of erased memory or 150 km/h and more -> "00")",
        R"(StartTime "0700" -> "0730")",
        R"(Distance "0001X2" -> "77    ")",
        R"(Acceleration "0450" -> "0042")",
        R"(Brack "03" -> "1 ")",
    };
    EXPECT_EQ(d.repairs, expected);
    const Pack_Day& day = d.day;
    EXPECT_EQ(day.startDay, "240305");
    EXPECT_EQ(day.endDay, "240305");
    EXPECT_EQ(day.startTime, "0730");
    EXPECT_EQ(day.endTime, "0737");
    EXPECT_EQ(day.distance, 77); // 102 less the two unreadable minutes
    EXPECT_EQ(day.accelerations, 42);
    EXPECT_EQ(day.last.acceleration, "0042"); // the last-trip counter takes the day's
    EXPECT_EQ(day.longOverspeeds, 2);
    EXPECT_EQ(day.brakes, 1);
    EXPECT_EQ(day.brakeRecords, QString("0732125C20").leftJustified(100, '0'));
    EXPECT_EQ(Cell(day.speed, 900), "00");
    EXPECT_EQ(Cell(day.speed, 1000), "00");
    EXPECT_EQ(Cell(day.distanceSeries, kFirstMinute + 1), "00");
    EXPECT_EQ(Cell(day.distanceSeries, kFirstMinute + 2), "92");
    EXPECT_EQ(Cell(day.distanceSeries, kFirstMinute + 3), "92");
}

TEST(PackDecoder, AGarbledSpeedSeriesIsRebuiltFromTheDistance)
{
    Pages p;
    for (int m = 600; m < 641; ++m) // 41 minutes above 150 km/h
        p.Speed(m, "A0");
    p.Distance(700, "25"); // 2.5 km in a minute: 2.1 at most, 126 km/h
    Pack_Decoding d = Decode(p);
    ASSERT_EQ(d.verdict, Pack_Decoding::Verdict::Decoded);
    EXPECT_TRUE(d.repairs.contains("Sec_Data rebuilt from the distance (41 minutes above 150 km/h)"));
    EXPECT_EQ(Cell(d.day.speed, kFirstMinute), "30");     // 0.8 km: 48 km/h
    EXPECT_EQ(Cell(d.day.speed, kFirstMinute + 1), "4E"); // 1.3 km: 78 km/h
    EXPECT_EQ(Cell(d.day.speed, 600), "00");
    EXPECT_EQ(Cell(d.day.speed, 700), "7E");

    // Exactly 40 such minutes keep the series; the cells are cleaned.
    p = Pages();
    for (int m = 600; m < 640; ++m)
        p.Speed(m, "A0");
    d = Decode(p);
    EXPECT_EQ(Cell(d.day.speed, kFirstMinute), "32");
    EXPECT_EQ(Cell(d.day.speed, 600), "00");
}

TEST(PackDecoder, PagesThatAreNoDay)
{
    EXPECT_EQ(Decode_Pack_Day(QByteArray(), {}).verdict, Pack_Decoding::Verdict::Empty);

    Pages fresh; // no car, no distance, a fresh check byte
    Put_Field(fresh.day, DayPage::CarCode, "0000");
    Put_Field(fresh.day, DayPage::Distance, "000000");
    Put_Field(fresh.day, DayPage::CheckPack1, "11");
    Pack_Decoding d = Decode(fresh);
    EXPECT_EQ(d.verdict, Pack_Decoding::Verdict::Check_Byte);
    EXPECT_EQ(d.refusal, "check byte");

    Pages erased; // written codes, the rest erased: nothing driven
    erased.day = QString(kPageChars, 'F');
    erased.distance = QString(kPageChars, 'F');
    Put_Field(erased.day, DayPage::CarCode, "0001");
    Put_Field(erased.day, DayPage::DriveCode, "0002");
    d = Decode(erased);
    EXPECT_EQ(d.verdict, Pack_Decoding::Verdict::Erased);
    EXPECT_TRUE(d.refusal.isEmpty());

    Pages noKey;
    Put_Field(noKey.day, DayPage::DriveCode, "00G0");
    d = Decode(noKey);
    EXPECT_EQ(d.verdict, Pack_Decoding::Verdict::No_Key);
    EXPECT_EQ(d.refusal, R"(no key: car "0001" driver "00G0" day "240305")");
}
