// The plausibility checks of a stored day: days driven from the driving
// cycles give no finding; each fault planted in one gives exactly its own.
#include "analysis/Plausibility.h"
#include "samples/DrivingProfile.h"

#include <QtGlobal>
#include <gtest/gtest.h>

#include <cmath>
#include <set>

using namespace vex;

namespace {

// A day as a USB recorder delivers it and the reception stores it: second
// speed and engine bytes, minute cells of the highest speed and of the
// distance rounded to 100 m.
struct Sample_Day {
    std::vector<uint8_t> speed, engine;
    Day_Evidence evidence;

    explicit Sample_Day(const DrivingDay& d)
    {
        speed.resize(86401);
        engine.resize(86401);
        evidence.minuteSpeed.assign(1440, 0);
        evidence.minuteTenths.assign(1440, 0);
        double before = 0;
        int first = -1, last = -1;
        for (int s = 0; s < 86400; ++s) {
            const DriveSecond& sec = d.seconds[size_t(s)];
            speed[size_t(s)] = uint8_t(sec.speed);
            engine[size_t(s)] = sec.engineOn ? Engine_Byte(sec.rpm) : 0;
            int& top = evidence.minuteSpeed[size_t(s / 60)];
            top = std::max(top, sec.speed);
            if (sec.speed > 0) {
                last = s;
                if (first < 0)
                    first = s;
            }
            if (s % 60 == 59) {
                evidence.minuteTenths[size_t(s / 60)] = qRound((sec.distanceKm - before) * 10);
                before = sec.distanceKm;
            }
        }
        const QString day = d.date.toString(QStringLiteral("yyMMdd"));
        evidence.startDay = evidence.endDay = day;
        evidence.startTime = QStringLiteral("%1%2").arg(first / 3600, 2, 10, QChar('0')).arg(first / 60 % 60, 2, 10, QChar('0'));
        evidence.endTime = QStringLiteral("%1%2").arg(last / 3600, 2, 10, QChar('0')).arg(last / 60 % 60, 2, 10, QChar('0'));
        Attach();
    }
    void Attach()
    {
        evidence.speed = speed;
        evidence.engine = engine;
    }
    // The same day as a memory pack holds it: minute cells only.
    Day_Evidence Minutes_Only() const
    {
        Day_Evidence d = evidence;
        d.speed = {};
        d.engine = {};
        return d;
    }
    // A second of driving at a steady speed after start (a cruising stretch).
    int Cruising_Second(int least) const
    {
        for (int s = 8 * 3600; s < 86000; ++s) {
            bool steady = true;
            for (int k = 0; k < 120 && steady; ++k)
                steady = speed[size_t(s + k)] >= least;
            if (steady)
                return (s + 60) / 60 * 60 + 10; // early in a minute, well inside the stretch
        }
        return -1;
    }
};

const CycleSet& Cycles()
{
    static const CycleSet set = *CycleSet::Load(QString());
    return set;
}

Day_Context Context_Of(const Sample_Day& d)
{
    Day_Context c;
    c.day = d.evidence.startDay;
    c.today = QStringLiteral("991231");
    c.driver = QStringLiteral("000123");
    return c;
}

std::multiset<Finding_Kind> Kinds(const std::vector<Finding>& findings)
{
    std::multiset<Finding_Kind> kinds;
    for (const Finding& f : findings)
        kinds.insert(f.kind);
    return kinds;
}

QString Finding_Texts(const std::vector<Finding>& findings)
{
    QString all;
    for (const Finding& f : findings)
        all += Finding_Text(f) + QLatin1Char('\n');
    return all;
}

} // namespace

TEST(Plausibility, DaysDrivenFromTheCyclesGiveNoFinding)
{
    for (int k = 0; k < 12; ++k) {
        const Sample_Day day(Build_Driving_Day(Cycles(), QDate(2026, 3, 2).addDays(k), 7000 + k));
        const Day_Context context = Context_Of(day);
        const auto seconds = Check_Day(day.evidence, context);
        EXPECT_TRUE(seconds.empty()) << "day " << k << ":\n" << Finding_Texts(seconds).toStdString();
        const auto minutes = Check_Day(day.Minutes_Only(), context);
        EXPECT_TRUE(minutes.empty()) << "day " << k << " (minutes):\n" << Finding_Texts(minutes).toStdString();
    }
}

TEST(Plausibility, EachFaultPlantedInADayGivesExactlyItsFinding)
{
    const DrivingDay driven = Build_Driving_Day(Cycles(), QDate(2026, 3, 4), 4242);
    const Sample_Day clean(driven);
    const int cruise = clean.Cruising_Second(30);
    ASSERT_GT(cruise, 0);

    { // a speed factor 25% high: the speeds give more than the distance sensor counted
        Sample_Day d = clean;
        for (auto& v : d.speed)
            v = uint8_t(std::lround(v * 1.25));
        d.Attach();
        const auto f = Check_Day(d.evidence, Context_Of(d));
        ASSERT_EQ(Kinds(f), std::multiset{Finding_Kind::Distance_Mismatch}) << Finding_Texts(f).toStdString();
        EXPECT_NEAR(f[0].reference / f[0].measured, 1.25, 0.02);
    }
    { // a spike of 45 km/h for one second: up and down within one minute, one finding
        Sample_Day d = clean;
        d.speed[size_t(cruise)] = uint8_t(d.speed[size_t(cruise - 1)] + 45);
        d.Attach();
        const auto f = Check_Day(d.evidence, Context_Of(d));
        ASSERT_EQ(Kinds(f), std::multiset{Finding_Kind::Speed_Jump}) << Finding_Texts(f).toStdString();
        EXPECT_EQ(f[0].second, cruise);
    }
    { // three minutes of driving with the distance cells empty (a slipping sensor)
        Sample_Day d = clean;
        const int m = cruise / 60;
        for (int k = 0; k < 3; ++k)
            d.evidence.minuteTenths[size_t(m + k)] = 0;
        const auto f = Check_Day(d.evidence, Context_Of(d));
        ASSERT_EQ(Kinds(f), std::multiset{Finding_Kind::Speed_Without_Distance}) << Finding_Texts(f).toStdString();
        EXPECT_EQ(f[0].second, m * 60);
        EXPECT_EQ(f[0].measured, 3);
    }
    { // ninety seconds of movement with the engine series at 0
        Sample_Day d = clean;
        for (int s = cruise; s < cruise + 90; ++s)
            d.engine[size_t(s)] = 0;
        d.Attach();
        const auto f = Check_Day(d.evidence, Context_Of(d));
        ASSERT_EQ(Kinds(f), std::multiset{Finding_Kind::Engine_Off_Moving}) << Finding_Texts(f).toStdString();
        EXPECT_EQ(f[0].second, cruise);
        EXPECT_EQ(f[0].measured, 90);
    }
    { // 80 km/h held for two and a half hours in the night, its distance and engine counted as well
        Sample_Day d = clean;
        const int from = 1800, to = from + 9000;
        for (int k = 1; k <= 20; ++k) { // up to speed and down again as a car gets there
            d.speed[size_t(from - k)] = uint8_t(80 - 4 * k);
            d.speed[size_t(to - 1 + k)] = uint8_t(80 - 4 * k);
        }
        for (int s = from; s < to; ++s)
            d.speed[size_t(s)] = 80;
        for (int s = from - 20; s < to + 20; ++s)
            d.engine[size_t(s)] = 10;
        for (int m = (from - 20) / 60; m <= (to + 20) / 60; ++m) {
            double metres = 0;
            int top = 0;
            for (int s = m * 60; s < m * 60 + 60; ++s) {
                metres += d.speed[size_t(s)] / 3.6;
                top = std::max(top, int(d.speed[size_t(s)]));
            }
            d.evidence.minuteTenths[size_t(m)] = qRound(metres / 100);
            d.evidence.minuteSpeed[size_t(m)] = top;
        }
        d.Attach();
        const auto f = Check_Day(d.evidence, Context_Of(d));
        ASSERT_EQ(Kinds(f), std::multiset{Finding_Kind::Flat_Speed}) << Finding_Texts(f).toStdString();
        EXPECT_EQ(f[0].second, from);
        EXPECT_EQ(f[0].measured, 80);
        EXPECT_EQ(f[0].reference, 150);
    }
    { // a minute at 210 km/h on a pack day
        Day_Evidence d = clean.Minutes_Only();
        d.minuteSpeed[size_t(cruise / 60)] = 210;
        const auto f = Check_Day(d, Context_Of(clean));
        ASSERT_EQ(Kinds(f), std::multiset{Finding_Kind::Over_200}) << Finding_Texts(f).toStdString();
        EXPECT_EQ(f[0].second, cruise / 60 * 60);
    }
    { // the distance of a pack day more than its highest speeds allow
        Day_Evidence d = clean.Minutes_Only();
        for (int& cell : d.minuteTenths)
            cell *= 3;
        EXPECT_EQ(Kinds(Check_Day(d, Context_Of(clean))), std::multiset{Finding_Kind::Distance_Mismatch});
    }
    { // the recorder's clock: an end before the start, a day after today, a day before the car's first
        Day_Evidence d = clean.Minutes_Only();
        d.endTime = QStringLiteral("0500");
        EXPECT_EQ(Kinds(Check_Day(d, Context_Of(clean))), std::multiset{Finding_Kind::Clock_Backwards});
        Day_Context c = Context_Of(clean);
        c.today = QStringLiteral("260303");
        EXPECT_EQ(Kinds(Check_Day(clean.evidence, c)), std::multiset{Finding_Kind::Future_Day});
        c = Context_Of(clean);
        c.carFirstDay = QStringLiteral("260310");
        c.carHasNewerDays = true;
        EXPECT_EQ(Kinds(Check_Day(clean.evidence, c)), std::multiset{Finding_Kind::Older_Day});
    }
    { // the car driven by another driver at the same time; a copied day; a driver known by code only
        Day_Context c = Context_Of(clean);
        c.neighbours.push_back({QStringLiteral("000777"), QStringLiteral("1200"), QStringLiteral("1300"), {}});
        c.neighbours.push_back({QStringLiteral("000888"), QStringLiteral("0100"), QStringLiteral("0200"), {}});
        c.neighbours.push_back({c.driver, QStringLiteral("1000"), QStringLiteral("1100"), {}});
        auto f = Check_Day(clean.evidence, c);
        ASSERT_EQ(Kinds(f), std::multiset{Finding_Kind::Overlapping_Trip}) << Finding_Texts(f).toStdString();
        EXPECT_EQ(f[0].other, QStringLiteral("000777"));
        c = Context_Of(clean);
        c.neighbours.push_back({c.driver, QStringLiteral("1000"), QStringLiteral("1100"), QStringLiteral("pack 3")});
        c.carsWithSameSeries << QStringLiteral("12AC00");
        c.driverNamed = false;
        f = Check_Day(clean.evidence, c);
        EXPECT_EQ(Kinds(f), (std::multiset{Finding_Kind::Overlapping_Trip, Finding_Kind::Copied_Day,
                                           Finding_Kind::Unknown_Driver}));
    }
}

TEST(Plausibility, FindingsReadInTheLanguageOfTheSystem)
{
    const Finding jump{Finding_Kind::Speed_Jump, 13 * 3600 + 5 * 60 + 9, 95, 40, {}};
    const Finding distance{Finding_Kind::Distance_Mismatch, -1, 52.3, 61.0, {}};
    qputenv("VEX_LANG", "en");
    EXPECT_EQ(Finding_Text(jump), QStringLiteral("13:05:09 speed from 40 to 95 km/h within one second"));
    EXPECT_EQ(Finding_Text(distance),
              QStringLiteral("minute distances 52.3 km against 61.0 km by the speeds: -14% apart (check the speed "
                             "factor or the distance sensor)"));
    qputenv("VEX_LANG", "ko");
    EXPECT_EQ(Finding_Text(jump), QStringLiteral("13:05:09 1초 만에 40 km/h에서 95 km/h로 변함"));
    qunsetenv("VEX_LANG");
}
