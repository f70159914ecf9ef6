// The events of a day of second data, found without a database.
#include "core/Err_Proc.h"
#include "samples/DrivingProfile.h"
#include "store/EventDetector.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <random>
#include <tuple>
#include <vector>

using namespace vex;

namespace {

struct Day_Seconds {
    std::vector<uint8_t> speed = std::vector<uint8_t>(kDayArray, 0);
    std::vector<uint8_t> engine = std::vector<uint8_t>(kDayArray, 0);
    void Speed(int from, int to, int v)
    {
        for (int s = from; s <= to; ++s)
            speed[s] = uint8_t(v);
    }
    void Engine(int from, int to, int v)
    {
        for (int s = from; s <= to; ++s)
            engine[s] = uint8_t(v);
    }
    DayEvents Run(const EventLimits& l = {}) const { return Detect_Day_Events(speed, engine, l); }
};

} // namespace

TEST(EventDetector, ChangesOfExactlyTheThresholdCountAndMinutesTakeTheirMaxima)
{
    Day_Seconds d; // accelerate by 8, by 7, brake by 9, by 6: only the threshold steps count
    d.Speed(100, 199, 8);
    d.Speed(200, 299, 15);
    d.Speed(300, 399, 6);
    d.Engine(61, 61, 0x30);
    d.Engine(62, 62, 0x20);
    const DayEvents e = d.Run();
    EXPECT_EQ(e.Acceleration, 1);
    EXPECT_EQ(e.Acceleration_Data, "0001400008"); // 00:01:40, from 0 to 8
    EXPECT_EQ(e.Brack, 1);
    EXPECT_EQ(e.Brack_Data, "0005000F06"); // 00:05:00, from 15 to 6

    ASSERT_EQ(e.Sec_Data.size(), 2880);
    // Minute 1 is seconds 1-60; a minute shows the largest second in it.
    EXPECT_EQ(e.Sec_Data.mid(0, 16), "0008080F0F060600");
    EXPECT_EQ(e.Sec_RPM_Data.mid(0, 6), "003000");
    EXPECT_EQ(e.LKEngin, 0);
    EXPECT_EQ(e.Idle, 0);
    EXPECT_TRUE(e.LkEngin_Data.isEmpty());

    // A drop from 255 is a quick brake like any other: the decoder cleans speeds.
    Day_Seconds f;
    f.Speed(500, 500, 255);
    const DayEvents g = f.Run();
    EXPECT_EQ(g.Brack_Data, "000821FF00");
    EXPECT_EQ(g.Acceleration_Data, "00082000FF");
}

TEST(EventDetector, LongOverspeedIsStrictlyAboveLimitAndLengthAndClosesAt86399)
{
    Day_Seconds d; // limit 80, 3 minutes must be exceeded
    d.Speed(1000, 1179, 81);   // 180 s: not long enough
    d.Speed(2000, 2180, 81);   // 181 s
    d.Speed(3000, 9000, 80);   // at the limit: not over
    d.Speed(86000, 86400, 90); // through the end of the day
    const DayEvents e = d.Run();
    EXPECT_EQ(e.LKEngin, 2);
    // Start, end (the first second below), duration; the last one ends at
    // 23:59:59 with the seconds up to there.
    EXPECT_EQ(e.LkEngin_Data, "003320" "003621" "000301"
                              "235320" "235959" "000640");

    EventLimits two;
    two.longOverMinutes = 0; // every second above the limit is long enough
    Day_Seconds f;
    f.Speed(10, 10, 81);
    EXPECT_EQ(f.Run(two).LkEngin_Data, "000010000011000001");
}

TEST(EventDetector, IdleCountsOncePerFullThresholdAndIsLostAtTheEndOfTheDay)
{
    Day_Seconds d; // idle threshold 5 minutes: 300 s must be exceeded
    d.Engine(1, 86400, 40);
    d.Speed(1, 999, 30);
    d.Speed(1901, 1999, 30);   // idle 1000..1900: 901 s = 3 x 300 + 1
    d.Speed(2300, 5000, 30);   // idle 2000..2299: exactly 300 s, not stored
    // idle from 5001 to the end of the day: lost
    const DayEvents e = d.Run();
    EXPECT_EQ(e.Idle_Data, "001640" "003141" "001501");
    EXPECT_EQ(e.Idle, 3);

    // Standing without the engine is no idle.
    Day_Seconds off;
    off.Engine(100, 2000, 0);
    off.Engine(2001, 86400, 40);
    off.Speed(2001, 86400, 20);
    EXPECT_EQ(off.Run().Idle, 0);
}

TEST(EventDetector, BadInputIsARunTimeError)
{
    std::vector<uint8_t> shortDay(kDayArray - 1, 0), day(kDayArray, 0);
    EXPECT_THROW(Detect_Day_Events(shortDay, day, {}), RunTimeError);
    Day_Seconds d;
    d.Engine(100, 1000, 10);
    EventLimits zero;
    zero.idleMinutes = 0; // the count rule divides by the threshold
    EXPECT_THROW(d.Run(zero), RunTimeError);
}

TEST(EventDetector, TheCountsAloneAreTheCountsOfTheLists)
{
    // The recount asks for the counts without the lists: the same walk.
    Day_Seconds d;
    d.Engine(1, 86400, 40);
    for (int s = 1; s <= 86400; ++s)
        d.speed[size_t(s)] = uint8_t((s / 7) % 3 == 0 ? 0 : (s * 37) % 97); // brakes, rises, stops, overspeed
    for (const int first : {0, 1}) {
        EventLimits full, counts;
        full.firstSecond = counts.firstSecond = first;
        full.limit = counts.limit = 60;
        counts.lists = false;
        const DayEvents a = d.Run(full), b = d.Run(counts);
        EXPECT_GT(a.Acceleration, 0);
        EXPECT_GT(a.Brack, 0);
        EXPECT_EQ(b.Acceleration, a.Acceleration);
        EXPECT_EQ(b.Brack, a.Brack);
        EXPECT_EQ(b.Idle, a.Idle);
        EXPECT_EQ(b.Idle_Runs, a.Idle_Runs);
        EXPECT_EQ(b.LKEngin, a.LKEngin);
        EXPECT_TRUE(b.Sec_Data.isEmpty() && b.Brack_Data.isEmpty() && b.Idle_Data.isEmpty());
    }
}

namespace {

// The detector's rules second by second, written as plainly as they read,
// without the passes over quiet and steady stretches: what the fast walk
// must give on any day.
DayEvents Reference(const Day_Seconds& d, const EventLimits& l)
{
    DayEvents out;
    auto Time = [](int i) { return QString::asprintf("%02d%02d%02d", i / 3600, i % 3600 / 60, i % 60); };
    auto Duration = [](long s) { return QString::asprintf("%02ld%02ld%02ld", s / 3600, s % 3600 / 60, s % 60); };
    bool over = false, idle = false;
    int overStart = 0, idleStart = 0;
    long overSeconds = 0, idleSeconds = 0;
    int p = 0;
    long idleCount = 0;
    for (int i = l.firstSecond; i < l.firstSecond + kDaySeconds; ++i) {
        const int v = d.speed[size_t(i)];
        if (v - p >= l.quickAccel) {
            ++out.Acceleration;
            out.Acceleration_Data += Time(i) + QString::asprintf("%02X%02X", p, v);
        }
        if (std::abs(v - p) >= l.quickBrake && v - p < 0) {
            ++out.Brack;
            out.Brack_Data += Time(i) + QString::asprintf("%02X%02X", p, v);
        }
        const bool above = float(v) > l.limit;
        if (!over && above) {
            over = true, overStart = i, overSeconds = 1;
        } else if (over && (!above || i == kDaySeconds - 1)) {
            if (above)
                ++overSeconds;
            if (overSeconds > l.longOverMinutes * 60L) {
                ++out.LKEngin;
                out.LkEngin_Data += Time(overStart) + Time(i) + Duration(overSeconds);
            }
            over = false;
        } else if (over) {
            ++overSeconds;
        }
        const bool idling = v == 0 && d.engine[size_t(i)] > 0;
        if (!idle && idling) {
            idle = true, idleStart = i, idleSeconds = 1;
        } else if (idle && idling) {
            ++idleSeconds;
        } else if (idle) {
            if (idleSeconds > l.idleMinutes * 60L) {
                ++out.Idle_Runs;
                idleCount += std::max(1L, idleSeconds / (l.idleMinutes * 60L));
                out.Idle_Data += Time(idleStart) + Time(i) + Duration(idleSeconds);
            }
            idle = false;
        }
        p = v;
    }
    out.Idle = int16_t(idleCount);
    return out;
}

} // namespace

TEST(EventDetector, TheFastWalkGivesWhatTheRulesGiveOnDrivenDays)
{
    const auto cycles = CycleSet::Load(QString());
    ASSERT_TRUE(cycles);
    std::mt19937 noise(26);
    for (int n = 0; n < 6; ++n) {
        const DrivingDay driven = Build_Driving_Day(*cycles, QDate(2026, 3, 2).addDays(n), 900 + n);
        Day_Seconds d;
        for (int s = 0; s < DrivingDay::kSeconds; ++s) {
            const DriveSecond& x = driven.seconds[size_t(s)];
            // Days 3 to 5 jolted: single seconds of odd speeds, the engine
            // running with the car standing, a speed left at the last second.
            const bool jolt = n >= 3 && noise() % 500 == 0;
            d.speed[size_t(s)] = uint8_t(jolt ? noise() % 256 : std::clamp(x.speed, 0, 254));
            d.engine[size_t(s)] = uint8_t(x.engineOn || (jolt && noise() % 2) ? 40 : 0);
        }
        d.speed[86399] = d.speed[86400] = uint8_t(n * 20);

        for (const auto& [limit, accel, brake, first] :
             std::vector<std::tuple<float, int, int, int>>{{80, 8, 9, 1}, {60.5f, 8, 9, 0}, {0, 1, 1, 1},
                                                           {-3, 0, 0, 0}, {254, 300, 300, 1}, {100, 3, -5, 0}}) {
            EventLimits l;
            l.limit = limit;
            l.quickAccel = int16_t(accel);
            l.quickBrake = int16_t(brake);
            l.firstSecond = first;
            l.longOverMinutes = int16_t(n % 3);
            l.idleMinutes = int16_t(1 + n % 2);
            const DayEvents want = Reference(d, l), got = d.Run(l);
            const std::string at = "day " + std::to_string(n) + ", limit " + std::to_string(limit);
            EXPECT_EQ(got.Acceleration, want.Acceleration) << at;
            EXPECT_EQ(got.Brack, want.Brack) << at;
            EXPECT_EQ(got.LKEngin, want.LKEngin) << at;
            EXPECT_EQ(got.Idle_Runs, want.Idle_Runs) << at;
            EXPECT_EQ(got.Idle, want.Idle) << at;
            EXPECT_EQ(got.Acceleration_Data, want.Acceleration_Data) << at;
            EXPECT_EQ(got.Brack_Data, want.Brack_Data) << at;
            EXPECT_EQ(got.LkEngin_Data, want.LkEngin_Data) << at;
            EXPECT_EQ(got.Idle_Data, want.Idle_Data) << at;
        }
    }
    // An overspeed running into the end of the day closes at its last
    // second, wherever the steady stretches before it begin.
    for (int start = 86000; start < 86032; ++start) {
        Day_Seconds d;
        d.Engine(85000, 86400, 40);
        d.Speed(start, 86400, 120);
        for (const int first : {0, 1}) {
            EventLimits l;
            l.firstSecond = first;
            const DayEvents want = Reference(d, l), got = d.Run(l);
            EXPECT_EQ(got.LkEngin_Data, want.LkEngin_Data) << start;
            EXPECT_EQ(got.Idle_Data, want.Idle_Data) << start;
        }
    }
}
