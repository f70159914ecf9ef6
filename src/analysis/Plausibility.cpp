#include "analysis/Plausibility.h"

#include "core/Messages.h"
#include "core/VbText.h"

#include <algorithm>
#include <cmath>

namespace vex {

namespace {

constexpr int kDaySeconds = 86400;
constexpr int kMinutes = 1440;

// Below this many km on both sides a day is too short for a ratio to mean
// anything: the rounding of the minute cells alone moves it by percents.
constexpr double kDistanceFloorKm = 5.0;
constexpr double kDistanceTolerance = 0.10;
constexpr int kJumpKmh = 40;
// Speed without distance: a run of minutes whose speeds give at least this
// many metres each while their cells say nothing was driven. Without second
// data a minute's cell is the highest speed of the minute, which says little
// of the distance, so the run must be longer and the speed higher.
constexpr double kNoDistanceMetres = 150.0;
constexpr int kNoDistanceRun = 2;
constexpr int kNoDistanceRunMinuteData = 5;
constexpr int kNoDistanceMinuteSpeed = 30;
constexpr int kEngineOffSeconds = 60;
constexpr int kFlatSeconds = 2 * 3600;
constexpr int kFlatMinutes = 120;
constexpr int kTopSpeed = 200;

bool Has_Seconds(const Day_Evidence& d)
{
    return d.speed.size() >= size_t(kDaySeconds);
}

bool Has_Minutes(const std::vector<int>& series)
{
    return series.size() >= size_t(kMinutes);
}

// km the speeds give: exact from the seconds; from the minutes only an upper
// bound, each cell being the highest speed of its minute.
double Km_By_Speeds(const Day_Evidence& d)
{
    double sum = 0;
    if (Has_Seconds(d)) {
        for (int s = 0; s < kDaySeconds; ++s)
            sum += d.speed[size_t(s)];
        return sum / 3600.0;
    }
    for (int m = 0; m < kMinutes; ++m)
        sum += d.minuteSpeed[size_t(m)];
    return sum / 60.0;
}

double Minute_Metres_By_Speeds(const Day_Evidence& d, int m)
{
    double sum = 0;
    for (int s = m * 60; s < m * 60 + 60; ++s)
        sum += d.speed[size_t(s)];
    return sum / 3.6;
}

void Check_Distance(const Day_Evidence& d, std::vector<Finding>& out)
{
    if (!Has_Minutes(d.minuteTenths) || (!Has_Seconds(d) && !Has_Minutes(d.minuteSpeed)))
        return;
    double recorded = 0;
    for (int m = 0; m < kMinutes; ++m)
        recorded += d.minuteTenths[size_t(m)] / 10.0;
    const double bySpeeds = Km_By_Speeds(d);
    if (std::max(recorded, bySpeeds) < kDistanceFloorKm)
        return;
    const bool off = Has_Seconds(d) ? std::abs(recorded - bySpeeds) > kDistanceTolerance * bySpeeds
                                    : recorded > (1 + kDistanceTolerance) * bySpeeds;
    if (off)
        out.push_back({Finding_Kind::Distance_Mismatch, -1, recorded, bySpeeds, {}});
}

void Check_Jumps(const Day_Evidence& d, std::vector<Finding>& out)
{
    if (!Has_Seconds(d))
        return;
    int lastMinute = -1; // one finding a minute: a damaged stretch is one place to look at
    for (int s = 1; s < kDaySeconds; ++s) {
        const int before = d.speed[size_t(s - 1)], after = d.speed[size_t(s)];
        if (std::abs(after - before) > kJumpKmh && s / 60 != lastMinute) {
            out.push_back({Finding_Kind::Speed_Jump, s, double(after), double(before), {}});
            lastMinute = s / 60;
        }
    }
}

void Check_Speed_Without_Distance(const Day_Evidence& d, std::vector<Finding>& out)
{
    if (!Has_Minutes(d.minuteTenths))
        return;
    const bool seconds = Has_Seconds(d);
    if (!seconds && !Has_Minutes(d.minuteSpeed))
        return;
    const int least = seconds ? kNoDistanceRun : kNoDistanceRunMinuteData;
    int runStart = -1;
    double runKm = 0;
    auto close = [&](int end) {
        if (runStart >= 0 && end - runStart >= least)
            out.push_back({Finding_Kind::Speed_Without_Distance, runStart * 60, double(end - runStart), runKm, {}});
        runStart = -1;
        runKm = 0;
    };
    for (int m = 0; m < kMinutes; ++m) {
        const bool empty = d.minuteTenths[size_t(m)] == 0;
        const double metres = seconds ? Minute_Metres_By_Speeds(d, m) : d.minuteSpeed[size_t(m)] * 1000.0 / 60.0;
        const bool moving = seconds ? metres >= kNoDistanceMetres : d.minuteSpeed[size_t(m)] >= kNoDistanceMinuteSpeed;
        if (empty && moving) {
            if (runStart < 0)
                runStart = m;
            runKm += metres / 1000.0;
        } else {
            close(m);
        }
    }
    close(kMinutes);
}

void Check_Engine_Off(const Day_Evidence& d, std::vector<Finding>& out)
{
    // Only where the recorder has an engine input: a day whose engine series
    // never rises above 0 has none connected.
    if (!Has_Seconds(d) || d.engine.size() < size_t(kDaySeconds)
        || std::none_of(d.engine.begin(), d.engine.begin() + kDaySeconds, [](uint8_t e) { return e > 0; }))
        return;
    int runStart = -1, top = 0;
    for (int s = 0; s <= kDaySeconds; ++s) {
        const bool off = s < kDaySeconds && d.speed[size_t(s)] > 0 && d.engine[size_t(s)] == 0;
        if (off) {
            if (runStart < 0)
                runStart = s;
            top = std::max(top, int(d.speed[size_t(s)]));
        } else if (runStart >= 0) {
            if (s - runStart >= kEngineOffSeconds)
                out.push_back({Finding_Kind::Engine_Off_Moving, runStart, double(s - runStart), double(top), {}});
            runStart = -1;
            top = 0;
        }
    }
}

// Runs of one value above 0 in a series; length in entries.
template <typename Series>
void Flat_Runs(const Series& series, int count, int least, int secondsPerEntry, std::vector<Finding>& out)
{
    int runStart = 0;
    for (int i = 1; i <= count; ++i) {
        if (i < count && series[size_t(i)] == series[size_t(runStart)])
            continue;
        const int value = series[size_t(runStart)];
        if (value > 0 && i - runStart >= least)
            out.push_back({Finding_Kind::Flat_Speed, runStart * secondsPerEntry, double(value),
                           (i - runStart) * secondsPerEntry / 60.0, {}});
        runStart = i;
    }
}

void Check_Flat(const Day_Evidence& d, std::vector<Finding>& out)
{
    if (Has_Seconds(d))
        Flat_Runs(d.speed, kDaySeconds, kFlatSeconds, 1, out);
    else if (Has_Minutes(d.minuteSpeed))
        Flat_Runs(d.minuteSpeed, kMinutes, kFlatMinutes, 60, out);
}

void Check_Top_Speed(const Day_Evidence& d, std::vector<Finding>& out)
{
    int first = -1, top = 0;
    if (Has_Seconds(d)) {
        for (int s = 0; s < kDaySeconds; ++s)
            if (d.speed[size_t(s)] > kTopSpeed) {
                if (first < 0)
                    first = s;
                top = std::max(top, int(d.speed[size_t(s)]));
            }
    } else if (Has_Minutes(d.minuteSpeed)) {
        for (int m = 0; m < kMinutes; ++m)
            if (d.minuteSpeed[size_t(m)] > kTopSpeed) {
                if (first < 0)
                    first = m * 60;
                top = std::max(top, d.minuteSpeed[size_t(m)]);
            }
    }
    if (first >= 0)
        out.push_back({Finding_Kind::Over_200, first, double(top), double(kTopSpeed), {}});
}

bool Stamp_Form(const QString& day, const QString& time)
{
    return day.size() == 6 && time.size() == 4;
}

void Check_Clock(const Day_Evidence& d, const Day_Context& c, std::vector<Finding>& out)
{
    if (Stamp_Form(d.startDay, d.startTime) && Stamp_Form(d.endDay, d.endTime)
        && d.endDay + d.endTime < d.startDay + d.startTime)
        out.push_back({Finding_Kind::Clock_Backwards, -1, 0, 0, d.endDay + d.endTime});
    if (c.day.size() == 6 && c.today.size() == 6 && c.day > c.today)
        out.push_back({Finding_Kind::Future_Day, -1, 0, 0, c.today});
    if (c.day.size() == 6 && c.carFirstDay.size() == 6 && c.day < c.carFirstDay && c.carHasNewerDays)
        out.push_back({Finding_Kind::Older_Day, -1, 0, 0, c.carFirstDay});
}

int Minute_Of(const QString& hhmm)
{
    if (hhmm.size() != 4)
        return -1;
    bool okH = false, okM = false;
    const int h = hhmm.left(2).toInt(&okH), m = hhmm.mid(2).toInt(&okM);
    return okH && okM ? h * 60 + m : -1;
}

void Check_Neighbours(const Day_Evidence& d, const Day_Context& c, std::vector<Finding>& out)
{
    const int start = Minute_Of(d.startTime), end = Minute_Of(d.endTime);
    if (start >= 0 && end >= start) {
        for (const Neighbour_Trip& n : c.neighbours) {
            const int nStart = Minute_Of(n.startTime), nEnd = Minute_Of(n.endTime);
            if (nStart < 0 || nEnd < nStart || nEnd <= start || nStart >= end)
                continue;
            const bool otherDriver = n.driver != c.driver;
            if (otherDriver || !n.from.isEmpty())
                out.push_back({Finding_Kind::Overlapping_Trip, std::max(start, nStart) * 60, 0, 0,
                               otherDriver ? n.driver : n.from});
        }
    }
    for (const QString& car : c.carsWithSameSeries)
        out.push_back({Finding_Kind::Copied_Day, -1, 0, 0, car});
    if (!c.driverNamed)
        out.push_back({Finding_Kind::Unknown_Driver, -1, 0, 0, c.driver});
}

QString Fixed_Number(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

} // namespace

std::vector<Finding> Check_Day(const Day_Evidence& day, const Day_Context& context)
{
    std::vector<Finding> out;
    Check_Distance(day, out);
    Check_Jumps(day, out);
    Check_Speed_Without_Distance(day, out);
    Check_Engine_Off(day, out);
    Check_Flat(day, out);
    Check_Top_Speed(day, out);
    Check_Clock(day, context, out);
    Check_Neighbours(day, context, out);
    return out;
}

QString Finding_Kind_Name(Finding_Kind kind)
{
    switch (kind) {
    case Finding_Kind::Distance_Mismatch: return QStringLiteral("distance");
    case Finding_Kind::Speed_Jump: return QStringLiteral("jump");
    case Finding_Kind::Speed_Without_Distance: return QStringLiteral("no-distance");
    case Finding_Kind::Engine_Off_Moving: return QStringLiteral("engine-off");
    case Finding_Kind::Flat_Speed: return QStringLiteral("flat");
    case Finding_Kind::Over_200: return QStringLiteral("over-200");
    case Finding_Kind::Clock_Backwards: return QStringLiteral("clock");
    case Finding_Kind::Future_Day: return QStringLiteral("future");
    case Finding_Kind::Older_Day: return QStringLiteral("older");
    case Finding_Kind::Overlapping_Trip: return QStringLiteral("overlap");
    case Finding_Kind::Copied_Day: return QStringLiteral("copied");
    case Finding_Kind::Unknown_Driver: return QStringLiteral("driver");
    }
    return {};
}

QString Finding_Text(const Finding& f)
{
    QString text;
    switch (f.kind) {
    case Finding_Kind::Distance_Mismatch: {
        const double percent = f.reference > 0 ? 100.0 * (f.measured - f.reference) / f.reference : 100.0;
        text = LoadResString(5100).arg(Fixed_Number(f.measured, 1), Fixed_Number(f.reference, 1),
                                       Fixed_Number(percent, 0));
        break;
    }
    case Finding_Kind::Speed_Jump:
        text = LoadResString(5101).arg(Fixed_Number(f.reference, 0), Fixed_Number(f.measured, 0));
        break;
    case Finding_Kind::Speed_Without_Distance:
        text = LoadResString(5102).arg(Fixed_Number(f.measured, 0), Fixed_Number(f.reference, 1));
        break;
    case Finding_Kind::Engine_Off_Moving:
        text = LoadResString(5103).arg(Fixed_Number(f.measured, 0), Fixed_Number(f.reference, 0));
        break;
    case Finding_Kind::Flat_Speed:
        text = LoadResString(5104).arg(Fixed_Number(f.measured, 0), Fixed_Number(f.reference, 0));
        break;
    case Finding_Kind::Over_200:
        text = LoadResString(5105).arg(Fixed_Number(f.measured, 0));
        break;
    case Finding_Kind::Clock_Backwards:
        text = LoadResString(5106);
        break;
    case Finding_Kind::Future_Day:
        text = LoadResString(5107).arg(f.other);
        break;
    case Finding_Kind::Older_Day:
        text = LoadResString(5108).arg(f.other);
        break;
    case Finding_Kind::Overlapping_Trip:
        text = LoadResString(5109).arg(f.other);
        break;
    case Finding_Kind::Copied_Day:
        text = LoadResString(5110).arg(f.other);
        break;
    case Finding_Kind::Unknown_Driver:
        text = LoadResString(5111).arg(f.other);
        break;
    }
    if (f.second < 0)
        return text;
    return Clock_Of_Second(f.second) + QLatin1Char(' ') + text;
}

} // namespace vex
