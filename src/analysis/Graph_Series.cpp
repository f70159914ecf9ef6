// The stored series as arrays for the graph, the section walk of a day and
// the long stops of a speed series.
#include "analysis/Graph_Codes.h"
#include "analysis/Operation_Graph.h"

#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"

#include <cmath>

namespace vex {

namespace {

constexpr int16_t kErrUnH_Time = 1112;

// Cells of two characters into out[1..cells]: hexadecimal, or with decimal
// set two decimal digits. A series of another length and a cell that is no
// number count 0, and the log says what was wrong (once a series).
template <class T, class Convert>
void Decode_Cells(const QString& text, int cells, T* out, const char* what, int16_t errCode, Convert convert)
{
    if (text.isEmpty())
        return;
    if (text.size() != 2 * cells)
        Err_Proc(errCode, QStringLiteral("%1 series holds %2 characters, not %3; the rest counts 0")
                              .arg(QLatin1String(what))
                              .arg(text.size())
                              .arg(2 * cells));
    int bad = 0, firstBad = 0;
    const int n = std::min<int>(cells, int(text.size() / 2));
    for (int k = 1; k <= n; ++k) {
        const int v = convert(text[2 * k - 2], text[2 * k - 1]);
        if (v < 0) {
            if (bad++ == 0)
                firstBad = k;
            out[k] = 0;
        } else {
            out[k] = T(v);
        }
    }
    if (bad > 0)
        Err_Proc(errCode, QStringLiteral("%1 series: %2 cell(s) are no number, the first at cell %3; counted 0")
                              .arg(QLatin1String(what))
                              .arg(bad)
                              .arg(firstBad));
}

int Hex_Pair(QChar a, QChar b)
{
    const int hi = Hex_Digit(a), lo = Hex_Digit(b);
    return hi < 0 || lo < 0 ? -1 : hi * 16 + lo;
}

int Decimal_Pair(QChar a, QChar b)
{
    const auto d = [](QChar c) { return c >= u'0' && c <= u'9' ? c.unicode() - u'0' : -1; };
    return d(a) < 0 || d(b) < 0 ? -1 : d(a) * 10 + d(b);
}

// A speed cell of 255 and more is no speed.
int16_t Speed_Of(int cell)
{
    return cell >= 255 ? 0 : int16_t(cell);
}

int16_t Rpm_Sample(int cell, float factor)
{
    return int16_t(std::lrint(double(cell) * double(factor)));
}

// First and last non-zero point of the engine series when there is one,
// extended over the speed series.
template <size_t N>
void Drawn_Range(const std::array<int16_t, N>& engine, bool withEngine, const std::array<int16_t, N>& speed,
                 int& first, int& last)
{
    first = last = 0;
    auto extend = [&](const std::array<int16_t, N>& a) {
        for (int k = 1; k < int(N); ++k)
            if (a[size_t(k)] != 0) {
                if (first == 0 || k < first)
                    first = k;
                if (k > last)
                    last = k;
            }
    };
    if (withEngine)
        extend(engine);
    extend(speed);
}

QString Hhmm(int minutes)
{
    return QStringLiteral("%1:%2").arg(minutes / 60, 2, 10, QLatin1Char('0')).arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

int16_t Stop_Threshold()
{
    return G().Idle_Minutes;
}

void Decode_Minute_Speed(const QString& series, std::array<int16_t, 1441>& speed, int16_t errCode)
{
    std::array<int, 1441> cells{};
    Decode_Cells(series, 1440, cells.data(), "minute speed (D_D3)", errCode, Hex_Pair);
    for (int k = 0; k <= 1440; ++k)
        speed[size_t(k)] = Speed_Of(cells[size_t(k)]);
}

void Decode_Minute_Distance(const QString& series, std::array<float, 1441>& cumulative, int16_t errCode)
{
    std::array<int, 1441> cells{};
    Decode_Cells(series, 1440, cells.data(), "minute distance (D_D7)", errCode, Decimal_Pair);
    float total = 0;
    cumulative[0] = 0;
    for (int k = 1; k <= 1440; ++k) {
        total += float(cells[size_t(k)]) / 10.0f;
        cumulative[size_t(k)] = total;
    }
}

void Operation_Graph::DB_1440_DB()
{
    Decode_Minute_Speed(Trip.speed, speed_, kErrSearch_Data);
    Decode_Minute_Distance(Trip.distanceSeries, distance_, kErrSearch_Data);
    std::array<int, 1441> cells{};
    Decode_Cells(Trip.rpm, 1440, cells.data(), "minute engine (D_D8)", kErrSearch_Data, Hex_Pair);
    for (int k = 0; k <= 1440; ++k) {
        engine_[size_t(k)] = int16_t(cells[size_t(k)]);
        rpm_[size_t(k)] = Rpm_Sample(cells[size_t(k)], Engine_Factor);
    }
    Drawn_Range(engine_, !Trip.rpm.isEmpty(), speed_, first_, last_);

    Sum_DriveTime = Sum_BDriveTime = 0;
    for (const Day_Section& s : Walk_Sections(speed_, distance_, Stop_Threshold()))
        (s.Kind == kDriving ? Sum_DriveTime : Sum_BDriveTime) += s.End_Minute - s.Start_Minute;
    Total_Time = Sum_DriveTime + Sum_BDriveTime;
}

void Operation_Graph::DB_3600_DB()
{
    speed360_.fill(0);
    rpm360_.fill(0);
    second360_.fill(0);
    // Element k is second k-1 of the hour; an hour not read counts 0.
    auto At = [](const std::vector<uint8_t>& seconds, int k) {
        return size_t(k) <= seconds.size() ? int(seconds[size_t(k - 1)]) : 0;
    };
    for (int k = 1; k <= 3600; ++k) {
        speed360_[size_t(k)] = Speed_Of(At(Hour.speed, k));
        rpm360_[size_t(k)] = Rpm_Sample(At(Hour.engine, k), Engine_Factor);
        second360_[size_t(k)] = int16_t(At(Hour.engine, k));
    }
    Drawn_Range(second360_, !Hour.engine.empty(), speed360_, first360_, last360_);
}

namespace {

// Element k of a series, 0 outside it and above the canvas' columns.
template <class T, size_t N>
T At(const std::array<T, N>& a, int k, float columns)
{
    return k < 0 || float(k) > columns || k >= int(N) ? T(0) : a[size_t(k)];
}

} // namespace

int16_t Operation_Graph::Speed_Search(int k) const
{
    return At(speed_, k, G().Graph_Minutes);
}

int16_t Operation_Graph::RPM_Search(int k) const
{
    return At(rpm_, k, G().Graph_Minutes);
}

float Operation_Graph::Distance_Search(int k) const
{
    return At(distance_, k, G().Graph_Minutes);
}

int16_t Operation_Graph::Speed_Search360(int k) const
{
    return At(speed360_, k, G().Graph_Seconds);
}

int16_t Operation_Graph::RPM_Search360(int k) const
{
    return At(rpm360_, k, G().Graph_Seconds);
}

int16_t Operation_Graph::Second_Search360(int k) const
{
    return At(second360_, k, G().Graph_Seconds);
}

std::vector<Day_Section> Operation_Graph::Walk_Sections(const std::array<int16_t, 1441>& speed,
                                                        const std::array<float, 1441>& distance, int stopMinutes)
{
    std::vector<Day_Section> out;
    int first = 1;
    while (first <= 1440 && speed[size_t(first)] == 0)
        ++first;
    if (first > 1440)
        return out;
    int last = 1440;
    while (speed[size_t(last)] == 0)
        --last;

    // Clock minutes [a, b): point k is minute k-1.
    auto close = [&](int a, int b, const QString& kind) {
        Day_Section s;
        s.Start = Hhmm(a);
        s.End = Hhmm(b);
        s.Start_Minute = int16_t(a);
        s.End_Minute = int16_t(b);
        s.Length = Hhmm(b - a);
        s.Kind = kind;
        s.Distance = double(distance[size_t(b)] - distance[size_t(a)]);
        out.push_back(s);
    };
    int start = first; // point where the present driving section began
    int k = first;
    while (k <= last) {
        if (speed[size_t(k)] != 0) {
            ++k;
            continue;
        }
        int z = k;
        while (speed[size_t(z)] == 0)
            ++z; // stops at a driven point: last is one
        if (z - k > stopMinutes) {
            close(start - 1, k - 1, kDriving);
            close(k - 1, z - 1, kNotDriving);
            start = z;
        }
        k = z;
    }
    close(start - 1, last, kDriving);
    return out;
}

int16_t UnH_Time(const QString& series)
{
    int16_t result = 0;
    Guarded(kErrUnH_Time, [&] {
        std::array<int, 1441> cells{};
        Decode_Cells(series, 1440, cells.data(), "minute speed", kErrUnH_Time, Hex_Pair);
        // A run counter over the stops: a stop that the day begins with
        // starts at minute 1, and one still open at minute 1439 ends at
        // 1440, so standing before the first and after the last drive counts.
        int gapStart = 0; // first minute of the present stop, 0 outside one
        auto close = [&](int end) {
            if (end - gapStart + 1 > Stop_Threshold())
                result = int16_t(result + (end - gapStart + 1));
            gapStart = 0;
        };
        for (int m = 1; m <= 1439; ++m) {
            const bool driven = Speed_Of(cells[size_t(m)]) != 0;
            if (!driven && gapStart == 0)
                gapStart = m;
            else if (driven && gapStart > 0)
                close(m - 1);
        }
        if (gapStart > 0)
            close(1440);
    });
    return result;
}

} // namespace vex
