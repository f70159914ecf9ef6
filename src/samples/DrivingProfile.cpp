#include "samples/DrivingProfile.h"

#include "platform/Resources.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QStringList>
#include <algorithm>
#include <cmath>

namespace vex {

uint64_t SampleRng::Next()
{
    uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

int SampleRng::Int(int lo, int hi)
{
    if (hi <= lo)
        return lo;
    const uint64_t span = uint64_t(int64_t(hi) - int64_t(lo)) + 1;
    return int(int64_t(lo) + int64_t(Next() % span));
}

namespace {

constexpr qint64 kMaxCycleBytes = 4 * 1024 * 1024;
constexpr int kMaxCycleRows = 86400;
constexpr double kMaxCycleSpeed = 250.0;

bool Fail(QString* error, const QString& why)
{
    if (error)
        *error = why;
    return false;
}

} // namespace

std::optional<DriveCycle> Load_Cycle(const QString& path, QString* error)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        Fail(error, path + ": cannot open: " + f.errorString());
        return std::nullopt;
    }
    if (f.size() > kMaxCycleBytes) {
        Fail(error, path + ": too large for a driving cycle");
        return std::nullopt;
    }
    QString text = QString::fromUtf8(f.readAll());
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    const QStringList lines = text.split(QLatin1Char('\n'));

    DriveCycle cycle;
    cycle.name = QFileInfo(path).completeBaseName();
    bool header = false;
    for (int n = 0; n < lines.size(); ++n) {
        const QString line = lines[n].trimmed();
        if (line.isEmpty())
            continue;
        const QString where = QStringLiteral("%1: line %2: ").arg(path).arg(n + 1);
        if (!header) {
            if (QString(line).remove(QLatin1Char(' ')) != QLatin1String("t_s,speed_kmh")) {
                Fail(error, where + "expected the header t_s,speed_kmh");
                return std::nullopt;
            }
            header = true;
            continue;
        }
        const QStringList cells = line.split(QLatin1Char(','));
        if (cells.size() != 2) {
            Fail(error, where + "expected two values, t_s and speed_kmh");
            return std::nullopt;
        }
        bool okT = false, okV = false;
        const int t = cells[0].trimmed().toInt(&okT);
        const double v = cells[1].trimmed().toDouble(&okV);
        if (!okT || !okV) {
            Fail(error, where + "not a number");
            return std::nullopt;
        }
        if (t != int(cycle.speedKmh.size())) {
            Fail(error, where + QStringLiteral("expected t_s %1, one row a second from 0").arg(cycle.speedKmh.size()));
            return std::nullopt;
        }
        if (!std::isfinite(v) || v < 0 || v > kMaxCycleSpeed) {
            Fail(error, where + QStringLiteral("speed out of 0..%1 km/h").arg(kMaxCycleSpeed));
            return std::nullopt;
        }
        if (int(cycle.speedKmh.size()) >= kMaxCycleRows) {
            Fail(error, where + "longer than a day");
            return std::nullopt;
        }
        cycle.speedKmh.push_back(v);
    }
    if (!header) {
        Fail(error, path + ": empty, expected the header t_s,speed_kmh");
        return std::nullopt;
    }
    if (cycle.speedKmh.size() < 2) {
        Fail(error, path + ": no samples");
        return std::nullopt;
    }
    return cycle;
}

QString Default_Cycles_Dir()
{
    const QString env = qEnvironmentVariable("VEX_CYCLES_DIR");
    return env.isEmpty() ? Resource_Path(QStringLiteral("cycles")) : env;
}

std::optional<CycleSet> CycleSet::Load(const QString& dir, QString* error)
{
    const QString base = dir.isEmpty() ? Default_Cycles_Dir() : dir;
    CycleSet set;
    const std::pair<DriveCycle*, const char*> files[] = {
        {&set.urban, "udds.csv"},
        {&set.dense, "nycc.csv"},
        {&set.highway, "hwfet.csv"},
        {&set.motorway, "artemis_motorway130.csv"},
    };
    for (const auto& [target, name] : files) {
        auto cycle = Load_Cycle(QDir(base).filePath(QLatin1String(name)), error);
        if (!cycle)
            return std::nullopt;
        *target = std::move(*cycle);
    }
    return set;
}

namespace {

// The timeline of the day while it is laid out: speed and engine by the second.
class DayBuilder {
public:
    std::vector<int> speed = std::vector<int>(DrivingDay::kSeconds, 0);
    std::vector<char> engine = std::vector<char>(DrivingDay::kSeconds, 0);
    int t = 0;

    // Engine running, car standing.
    void Idle(int seconds)
    {
        for (int i = 0; i < seconds && t < DrivingDay::kSeconds; ++i, ++t)
            engine[t] = 1;
    }
    // Engine off.
    void Park(int seconds) { t = std::min(t + seconds, DrivingDay::kSeconds); }
    // Follows the cycle within what a laden fleet vehicle does: at most
    // kRise km/h more and kFall km/h less from one second to the next, so
    // that the harsh events of the day are only those laid on top. A cycle
    // ends at a standstill; the car comes to rest behind it.
    // A speed limiter, as heavy vehicles carry, caps the motorway cycles.
    static constexpr int kRise = 6;
    static constexpr int kFall = 8;
    int limiter = 255;
    void Drive(const DriveCycle& c)
    {
        int v = 0;
        for (size_t i = 0; t < DrivingDay::kSeconds && (i < c.speedKmh.size() || v > 0); ++i, ++t) {
            const int target =
                i < c.speedKmh.size() ? std::clamp(int(std::lround(c.speedKmh[i])), 0, limiter) : 0;
            v = std::clamp(target, v - kFall, v + kRise);
            speed[t] = v;
            engine[t] = 1;
        }
    }
};

// Seconds where the car runs steadily at a speed in [lo, hi] and keeps moving
// for the next `ahead` seconds: a place where a harsh event can be laid on
// top without meeting another change of the cycle.
bool Steady(const DayBuilder& d, int t0, int lo, int hi, int ahead)
{
    if (t0 < 1 || t0 + ahead >= DrivingDay::kSeconds)
        return false;
    const int v = d.speed[t0];
    if (v < lo || v > hi)
        return false;
    for (int k = 0; k <= 3; ++k)
        if (std::abs(d.speed[t0 + k] - v) > 3)
            return false;
    for (int k = 0; k <= ahead; ++k)
        if (d.speed[t0 + k] == 0 || !d.engine[t0 + k])
            return false;
    return true;
}

// A harsh brake: the driver eases off, brakes hard for one second (a fall of
// `hard` km/h), eases off again, holds a moment and picks up at 3 km/h a
// second until the cycle is met again. Taking the smaller of cycle and
// envelope keeps every other change of speed within what the cycle does.
void Lay_Brake(DayBuilder& d, int t0, int hard)
{
    const int v = d.speed[t0];
    const int low = std::max(0, v - 10 - hard);
    for (int k = 1; k < 300 && t0 + k < DrivingDay::kSeconds; ++k) {
        int e;
        if (k == 1)
            e = v - 5;
        else if (k == 2)
            e = v - 5 - hard;
        else if (k <= 5)
            e = low;
        else
            e = low + 3 * (k - 5);
        e = std::max(e, 0);
        if (k > 5 && e >= d.speed[t0 + k])
            break;
        d.speed[t0 + k] = std::min(d.speed[t0 + k], e);
    }
}

// A spurt: the driver floors it for one second (a rise of `hard` km/h), then
// lets the car roll back at 2 km/h a second until it meets the cycle.
void Lay_Spurt(DayBuilder& d, int t0, int hard)
{
    const int v = d.speed[t0];
    const int top = v + 4 + hard + 7;
    for (int k = 1; k < 120 && t0 + k < DrivingDay::kSeconds; ++k) {
        int e;
        if (k == 1)
            e = v + 4;
        else if (k == 2)
            e = v + 4 + hard;
        else if (k == 3)
            e = v + 8 + hard;
        else if (k == 4)
            e = top;
        else
            e = top - 2 * (k - 4);
        if (k > 4 && e <= d.speed[t0 + k])
            break;
        d.speed[t0 + k] = std::max(d.speed[t0 + k], e);
    }
}

// Lays `count` events on places chosen at random among the candidates, at
// least three minutes apart from each other and from `taken`.
template <typename Candidate, typename Lay>
int Lay_Events(DayBuilder& d, SampleRng& rng, int count, std::vector<int>& taken, Candidate ok, Lay lay)
{
    std::vector<int> places;
    for (int t = 0; t < DrivingDay::kSeconds; ++t)
        if (ok(t))
            places.push_back(t);
    int laid = 0;
    for (int attempt = 0; attempt < 200 && laid < count && !places.empty(); ++attempt) {
        const int t0 = places[size_t(rng.Int(0, int(places.size()) - 1))];
        const bool near = std::any_of(taken.begin(), taken.end(), [&](int t) { return std::abs(t - t0) < 180; });
        if (near || !ok(t0)) // an earlier event may have changed the place
            continue;
        lay(t0);
        taken.push_back(t0);
        ++laid;
    }
    return laid;
}

// Engine speed from road speed: a five-speed box shifted by speed bands,
// more revolutions while pulling, idle at a standstill.
int Engine_Rpm(int speed, int previous, SampleRng& rng)
{
    if (speed == 0)
        return 700 + rng.Int(0, 60);
    static constexpr int kRpmPerKmh[] = {0, 110, 62, 42, 32, 26};
    const int gear = speed < 18 ? 1 : speed < 32 ? 2 : speed < 50 ? 3 : speed < 68 ? 4 : 5;
    int rpm = speed * kRpmPerKmh[gear];
    if (speed - previous >= 2)
        rpm += 250;
    rpm = std::max(rpm, 900);
    return rpm + rng.Int(-20, 20);
}

} // namespace

DrivingDay Build_Driving_Day(const CycleSet& cycles, const QDate& date, uint64_t seed)
{
    SampleRng rng(seed ^ (uint64_t(date.toJulianDay()) * 0xD6E8FEB86659FD93ull));
    DayBuilder d;

    using Trip = QList<const DriveCycle*>;
    const Trip urbanTrips[] = {{&cycles.urban}, {&cycles.dense, &cycles.urban}, {&cycles.dense, &cycles.dense},
                               {&cycles.urban, &cycles.dense}};
    const Trip mixedTrips[] = {{&cycles.urban, &cycles.highway}, {&cycles.highway, &cycles.urban},
                               {&cycles.dense, &cycles.highway, &cycles.urban}};
    const Trip highwayTrips[] = {{&cycles.highway, &cycles.motorway}, {&cycles.motorway},
                                 {&cycles.motorway, &cycles.highway},
                                 {&cycles.highway, &cycles.motorway, &cycles.highway}};

    // The shift ends when a trip is over after `finish`.
    const int finish = rng.Int(15 * 3600, 18 * 3600 + 30 * 60);
    constexpr int kMaxTrips = 14;
    const int longWait1 = rng.Int(0, 2);
    const int longWait2 = rng.Chance(40) ? rng.Int(5, 9) : -1;
    constexpr int kLastStart = 19 * 3600 + 30 * 60;
    constexpr int kLastEnd = 22 * 3600;
    bool lunch = false;

    d.limiter = rng.Int(85, 95);
    d.t = rng.Int(6 * 3600, 9 * 3600 - 240);
    for (int k = 0; k < kMaxTrips; ++k) {
        if (k >= 3 && (d.t > finish || d.t > kLastStart))
            break;
        const int kind = rng.Int(0, 9);
        const Trip trip = kind < 5   ? urbanTrips[rng.Int(0, 3)]
                          : kind < 8 ? mixedTrips[rng.Int(0, 2)]
                                     : highwayTrips[rng.Int(0, 3)];
        // Warm-up, or a wait with the engine running (loading, a passenger).
        const int wait = (k == longWait1 || k == longWait2) ? rng.Int(330, 540) : rng.Int(40, 150);
        int length = wait + 60;
        for (const DriveCycle* c : trip)
            length += int(c->speedKmh.size()) + 90;
        if (d.t + length > kLastEnd)
            break;

        d.Idle(wait);
        for (int leg = 0; leg < trip.size(); ++leg) {
            if (leg > 0)
                d.Idle(rng.Int(10, 90)); // lights, a junction
            d.Drive(*trip[leg]);
        }
        d.Idle(rng.Int(20, 60));
        if (!lunch && d.t >= 11 * 3600 + 30 * 60) {
            d.Park(rng.Int(45 * 60, 75 * 60));
            lunch = true;
        } else {
            d.Park(rng.Int(10 * 60, 45 * 60));
        }
    }

    DrivingDay day;
    day.date = date;
    std::vector<int> taken;
    day.injectedBrakes = Lay_Events(
        d, rng, rng.Int(1, 3), taken, [&](int t) { return Steady(d, t, 40, 110, 20); },
        [&](int t) { Lay_Brake(d, t, rng.Int(10, 14)); });
    day.injectedAccelerations = Lay_Events(
        d, rng, rng.Int(1, 3), taken, [&](int t) { return Steady(d, t, 15, 60, 60); },
        [&](int t) { Lay_Spurt(d, t, rng.Int(9, 12)); });

    day.seconds.resize(DrivingDay::kSeconds);
    int64_t speedSum = 0; // km/h-seconds; / 3600 gives km
    int previous = 0;
    for (int t = 0; t < DrivingDay::kSeconds; ++t) {
        DriveSecond& s = day.seconds[size_t(t)];
        s.engineOn = d.engine[t] != 0;
        s.speed = s.engineOn ? d.speed[t] : 0;
        s.rpm = s.engineOn ? Engine_Rpm(s.speed, previous, rng) : 0;
        speedSum += s.speed;
        s.distanceKm = double(speedSum) / 3600.0;
        previous = s.speed;
    }
    return day;
}

} // namespace vex
