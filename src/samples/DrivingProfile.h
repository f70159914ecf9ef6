#pragma once
// A day of driving, second by second, for the sample media generators.
//
// The day is chained from public standard driving cycles (1 Hz speed traces
// measured on real roads): urban, highway and mixed trips with stops between
// them, a warm-up and a wait with the engine idling, and a few harsh brakes
// and spurts laid on top. Everything follows from a seed, so that the same
// seed gives the same day.
//
// Where the cycles come from: the folder given by the caller, else the
// environment variable VEX_CYCLES_DIR, else the delivered copies
// (Resource_Path("cycles"), from src/resources/cycles). A folder must hold
// the four files named below.
#include <QDate>
#include <QString>
#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace vex {

// A small deterministic generator (splitmix64). The standard library's
// distributions differ between implementations; this one gives the same
// numbers everywhere.
class SampleRng {
public:
    explicit SampleRng(uint64_t seed) : state_(seed) {}
    uint64_t Next();
    // Whole number from lo to hi, both included.
    int Int(int lo, int hi);
    // True with the given chance in percent.
    bool Chance(int percent) { return Int(0, 99) < percent; }

private:
    uint64_t state_;
};

struct DriveCycle {
    QString name;
    std::vector<double> speedKmh; // one sample a second, t = 0 first
};

// Reads a "t_s,speed_kmh" file: the header, then one row a second with t
// counting 0, 1, 2 ... and a speed from 0 to 250 km/h. Blank lines and a
// final line end are allowed. On a bad file gives nothing and tells why in
// error (file, line and what is wrong).
std::optional<DriveCycle> Load_Cycle(const QString& path, QString* error = nullptr);

// The folder the generator reads when none is given: $VEX_CYCLES_DIR when
// set and not empty, else the delivered "cycles".
QString Default_Cycles_Dir();

// The cycles a working day is built of.
struct CycleSet {
    DriveCycle urban;    // udds.csv: city streets with lights, 12 km
    DriveCycle dense;    // nycc.csv: stop-and-go in a dense centre, 2 km
    DriveCycle highway;  // hwfet.csv: rural highway, 16.5 km
    DriveCycle motorway; // artemis_motorway130.csv: motorway up to 130 km/h, 29 km

    // An empty dir means Default_Cycles_Dir().
    static std::optional<CycleSet> Load(const QString& dir, QString* error = nullptr);
};

// The recorder's engine byte of an engine speed. The office plots a byte
// times the car's engine factor (4.25 as cars register themselves) times 40
// rpm, so a byte is 170 rpm: idling at 700 rpm is 4, 2,000 rpm is 12.
inline constexpr int kRpmPerEngineByte = 170;
inline uint8_t Engine_Byte(int rpm)
{
    return uint8_t(std::clamp((rpm + kRpmPerEngineByte / 2) / kRpmPerEngineByte, 0, 254));
}

struct DriveSecond {
    int speed = 0;         // km/h, whole, as the recorder samples it (0..255)
    int rpm = 0;           // engine revolutions a minute; 0 with the engine off
    double distanceKm = 0; // driven since midnight, at the end of this second
    bool engineOn = false;
};

struct DrivingDay {
    static constexpr int kSeconds = 86400;
    QDate date;
    std::vector<DriveSecond> seconds; // kSeconds of them; index = seconds past midnight
    int injectedBrakes = 0;           // harsh brakes laid on top of the cycles
    int injectedAccelerations = 0;    // spurts laid on top of the cycles
};

// A working day of one car: engine on between 06:00 and 09:00, then trips
// of one to three cycles each until a shift end between 15:00 and 18:30,
// with short stops (engine running) inside a trip and parking (engine off)
// between trips, a lunch break, one or two waits of five and a half to nine
// minutes with the engine idling. The cycles are followed with at most
// 6 km/h more and 8 km/h less a second and capped by a speed limiter set
// between 85 and 95 km/h; on top come one to three harsh
// brakes (a fall of 10 to 14 km/h within a second) and one to three spurts
// (a rise of 9 to 12 km/h), the day's only changes that fast. No trip starts
// after 19:30 once three are done, and every trip is over before 22:00.
DrivingDay Build_Driving_Day(const CycleSet& cycles, const QDate& date, uint64_t seed);

} // namespace vex
