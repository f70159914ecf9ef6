#include "samples/UsbSampler.h"

#include "samples/DrivingProfile.h"
#include "acquisition/UsbRecorder.h"

#include <QDir>
#include <QSaveFile>
#include <algorithm>
#include <cmath>
#include <vector>

namespace vex {

namespace {

constexpr int kMasterSize = 512;
constexpr int kDriverIdSize = 16;
constexpr int kLog250Least = 8192; // records: 4 MiB, above the size that means "130"
constexpr int kMinuteRecords130 = kMinuteRecords130A + kMinuteRecords130B;

const QList<UsbDamageInfo> kUsbDamageKinds = {
    {UsbDamage::FreeRecords, "free-records", "free (erased) blocks and records among the data"},
    {UsbDamage::BadStamps, "bad-stamps", "extra blocks stamped with letters, month 13 or FFFFFF"},
    {UsbDamage::FfSamples, "ff-samples", "samples of FF: speed, channel and metres"},
    {UsbDamage::SecondRecording, "second-recording", "the first driving hour recorded again at the end"},
    {UsbDamage::SlippingSensor, "slipping-sensor", "the distance sensor counts 70% of the way driven"},
};

uint8_t Bcd(int v)
{
    return uint8_t(((v / 10 % 10) << 4) | (v % 10));
}

uint8_t Engine_Byte(const DriveSecond& s)
{
    return s.engineOn ? vex::Engine_Byte(s.rpm) : 0;
}

uint8_t Speed_Byte(const DriveSecond& s)
{
    return uint8_t(std::clamp(s.speed, 0, 254));
}

// Speed pulses of a whole km/h, the fewest that still read back as it.
int Pulses(int kmh)
{
    return int(std::ceil(kmh * double(kSpeedPulsesPerKm) / 3600.0));
}

bool Has_Hex_Code(const QString& code)
{
    if (code.size() != 6)
        return false;
    for (QChar c : code)
        if (!((c >= QLatin1Char('0') && c <= QLatin1Char('9')) || (c >= QLatin1Char('A') && c <= QLatin1Char('F')) ||
              (c >= QLatin1Char('a') && c <= QLatin1Char('f'))))
            return false;
    return true;
}

void Put_Code(QByteArray& out, int at, const QString& code)
{
    const QByteArray bytes = QByteArray::fromHex(code.toLatin1());
    for (int i = 0; i < 3; ++i)
        out[at + i] = bytes[i];
}

// YYMMDD, then hour, minute, second as they are given, in decimal digits.
void Put_Stamp(QByteArray& out, qint64 at, const QDate& d, std::initializer_list<int> rest)
{
    out[at] = char(Bcd(d.year() % 100));
    out[at + 1] = char(Bcd(d.month()));
    out[at + 2] = char(Bcd(d.day()));
    int i = 3;
    for (int v : rest)
        out[at + i++] = char(Bcd(v));
}

// A minute of driving: the seconds of the day from its start.
struct Minute {
    int day;    // index into the days
    int minute; // of the day
};

struct Day_Data {
    QDate date;
    DrivingDay driving;
    std::vector<int> metres; // of each minute
    std::vector<bool> engineMinute;
};

int Minute_Metres(const DrivingDay& d, int m)
{
    const double before = m == 0 ? 0.0 : d.seconds[m * 60 - 1].distanceKm;
    const double after = d.seconds[m * 60 + 59].distanceKm;
    return std::clamp(int(std::lround((after - before) * 1000.0)), 0, 9999);
}

bool Has(const UsbSampleRequest& r, UsbDamage kind)
{
    return r.damage.contains(kind);
}

// ---- Model "130" ---------------------------------------------------------------

void Hour_Block(QByteArray& log, qint64 at, const Day_Data& d, int hour, int speedAdd, bool ff)
{
    log[at] = char(0xF0);
    Put_Stamp(log, at + 1, d.date, {hour});
    for (int m = 0; m < 60; ++m) {
        const int minute = hour * 60 + m;
        int speed = 0, engine = 0;
        for (int s = 0; s < 60; ++s) {
            const DriveSecond& sec = d.driving.seconds[minute * 60 + s];
            speed = std::max(speed, int(Speed_Byte(sec)));
            engine = std::max(engine, int(Engine_Byte(sec)));
        }
        int metres = d.metres[minute];
        if (speedAdd != 0) // the second recording: other values everywhere
            speed = speed > 0 ? std::min(speed + speedAdd, 254) : 33;
        const qint64 s = at + 5 + 4 * m;
        if (ff && m < 5 && d.engineMinute[minute]) {
            log[s] = log[s + 1] = log[s + 2] = log[s + 3] = char(0xFF);
            continue;
        }
        log[s] = char(speed);
        log[s + 1] = char(engine);
        log[s + 2] = char(Bcd(metres / 100));
        log[s + 3] = char(Bcd(metres % 100));
    }
    for (int i = 245; i < kBlock130; ++i)
        log[at + i] = 0;
}

QByteArray Log_130(const UsbSampleRequest& r, const std::vector<Day_Data>& days, QList<UsbSampleDay>& out)
{
    QByteArray log(kDat130Filed, char(0xFF));
    // The start block: its marker and 13 bytes the reception drops.
    log[0] = char(0xFA);
    for (int i = 1; i < 14; ++i)
        log[i] = 0;
    int block = 1;
    auto Next = [&]() -> qint64 {
        if (Has(r, UsbDamage::FreeRecords) && block % 5 == 0)
            ++block; // a block the recorder left free
        return block < kHourBlocks130 ? qint64(block++) * kBlock130 : -1;
    };
    int firstHour = -1;
    for (const Day_Data& d : days) {
        for (int h = 0; h < 24; ++h) {
            bool engine = false;
            for (int m = 0; m < 60 && !engine; ++m)
                engine = d.engineMinute[h * 60 + m];
            if (!engine)
                continue;
            if (firstHour < 0)
                firstHour = h;
            const qint64 at = Next();
            if (at >= 0)
                Hour_Block(log, at, d, h, 0, Has(r, UsbDamage::FfSamples) && h == firstHour);
        }
    }
    if (Has(r, UsbDamage::BadStamps)) {
        // Blocks full of speed whose stamps no reception may take.
        const uint8_t stamps[][4] = {{0x2A, 0x01, 0x05, 0x08}, {0x26, 0x13, 0x05, 0x08}, {0xFF, 0xFF, 0xFF, 0x08},
                                     {0x26, 0x01, 0x32, 0x08}};
        for (const auto& st : stamps) {
            const qint64 at = Next();
            if (at < 0)
                break;
            Hour_Block(log, at, days.front(), 9, 0, false);
            for (int i = 0; i < 4; ++i)
                log[at + 1 + i] = char(st[i]);
            for (int m = 0; m < 60; ++m)
                log[at + 5 + 4 * m] = char(200);
        }
    }
    if (Has(r, UsbDamage::SecondRecording) && firstHour >= 0) {
        const qint64 at = Next();
        if (at >= 0)
            Hour_Block(log, at, days.front(), firstHour, 5, false);
    }

    // Events: sudden changes of speed, as pulse counts before and after.
    int record = 0;
    auto Event = [&](const Day_Data& d, int t, int before, int after) {
        if (record >= kEventRecords130)
            return;
        if (Has(r, UsbDamage::FreeRecords) && record % 7 == 3)
            ++record;
        if (record >= kEventRecords130)
            return;
        const qint64 at = kEventRegion130 + qint64(record++) * kEventRecord130;
        Put_Stamp(log, at, d.date, {t / 3600, t / 60 % 60, t % 60});
        const int a = Pulses(before), b = Pulses(after);
        log[at + 6] = char(a >> 8);
        log[at + 7] = char(a & 0xFF);
        log[at + 8] = char(b >> 8);
        log[at + 9] = char(b & 0xFF);
    };
    for (size_t i = 0; i < days.size(); ++i) {
        const Day_Data& d = days[i];
        const auto& sec = d.driving.seconds;
        for (int t = 2; t < DrivingDay::kSeconds; ++t) {
            const int rise = sec[t].speed - sec[t - 1].speed;
            if (rise >= 7) {
                Event(d, t, sec[t - 1].speed, sec[t].speed);
                if ((Pulses(sec[t].speed) - Pulses(sec[t - 1].speed)) * 3600.0 / kSpeedPulsesPerKm >= 7.5)
                    ++out[int(i)].accelerations;
            } else if (sec[t - 1].speed - sec[t].speed >= 9) {
                // A harsh fall, with the second before it.
                Event(d, t, sec[t - 2].speed, sec[t].speed);
            }
        }
    }
    if (Has(r, UsbDamage::BadStamps) && record + 2 <= kEventRecords130) {
        const qint64 at = kEventRegion130 + qint64(record) * kEventRecord130;
        const uint8_t bad[] = {0x26, 0x0A, 0x05, 0x10, 0x00, 0x00, 0x00, 0x10, 0x01, 0x00};
        for (int i = 0; i < 10; ++i)
            log[at + i] = char(bad[i]);
    }

    // Second data of the last minutes the engine ran.
    std::vector<Minute> minutes;
    for (size_t i = 0; i < days.size(); ++i)
        for (int m = 0; m < 1440; ++m)
            if (days[i].engineMinute[m])
                minutes.push_back({int(i), m});
    int capacity = kMinuteRecords130;
    if (Has(r, UsbDamage::FreeRecords))
        capacity -= capacity / 10;
    if (Has(r, UsbDamage::BadStamps))
        capacity -= 2;
    if (int(minutes.size()) > capacity)
        minutes.erase(minutes.begin(), minutes.end() - capacity);
    int slot = 0;
    auto Slot_At = [](int k) {
        return k < kMinuteRecords130A ? kMinuteRegion130A + qint64(k) * kMinuteRecord130
                                      : kMinuteRegion130B + qint64(k - kMinuteRecords130A) * kMinuteRecord130;
    };
    for (const Minute& mm : minutes) {
        if (Has(r, UsbDamage::FreeRecords) && slot % 10 == 9)
            ++slot;
        if (slot >= kMinuteRecords130)
            break;
        const qint64 at = Slot_At(slot++);
        const Day_Data& d = days[size_t(mm.day)];
        Put_Stamp(log, at, d.date, {mm.minute / 60, mm.minute % 60});
        for (int s = 0; s < 60; ++s) {
            const DriveSecond& sec = d.driving.seconds[mm.minute * 60 + s];
            log[at + 5 + 2 * s] = char(Speed_Byte(sec));
            log[at + 6 + 2 * s] = char(Engine_Byte(sec));
        }
    }
    if (Has(r, UsbDamage::BadStamps)) {
        for (int k = 0; k < 2 && slot < kMinuteRecords130; ++k) {
            const qint64 at = Slot_At(slot++);
            Put_Stamp(log, at, days.front().date, {12, 0});
            log[at + 1] = char(k == 0 ? 0x13 : 0x00); // month 13, month 00
            for (int s = 0; s < 60; ++s)
                log[at + 5 + 2 * s] = char(200);
        }
    }
    return log;
}

// ---- Model "250" ---------------------------------------------------------------

void Record_250(QByteArray& log, qint64 at, const Day_Data& d, int minute, int speedAdd, bool ff)
{
    log[at] = char(0xF0);
    Put_Stamp(log, at + 1, d.date, {minute / 60, minute % 60});
    for (int i = 6; i < 16; ++i)
        log[at + i] = 0;
    for (int s = 0; s < 60; ++s) {
        const DriveSecond& sec = d.driving.seconds[minute * 60 + s];
        int speed = Speed_Byte(sec);
        if (speedAdd != 0)
            speed = speed > 0 ? std::min(speed + speedAdd, 254) : 33;
        const qint64 p = at + 16 + 8 * s;
        log[p] = char(ff && s < 10 ? 0xFF : speed);
        log[p + 1] = char(ff && s < 10 ? 0xFF : Engine_Byte(sec));
        // Six bytes the reception drops: the half seconds and the inputs.
        log[p + 2] = char(speed);
        log[p + 3] = char(speed);
        for (int i = 4; i < 8; ++i)
            log[p + i] = 0;
    }
    const int metres = d.metres[minute];
    log[at + 496] = char(ff ? 0xFF : metres / 100);
    log[at + 497] = char(ff ? 0xFF : metres % 100);
    for (int i = 498; i < kRecord250; ++i)
        log[at + i] = 0;
}

QByteArray Log_250(const UsbSampleRequest& r, const std::vector<Day_Data>& days)
{
    struct Planned {
        int day, minute, speedAdd;
        bool ff;
        int free; // 0 data, 1 erased, 2..5 bad stamp kinds
    };
    std::vector<Planned> plan;
    int firstMinute = -1;
    for (size_t i = 0; i < days.size(); ++i) {
        int n = 0;
        for (int m = 0; m < 1440; ++m) {
            if (!days[i].engineMinute[m])
                continue;
            if (firstMinute < 0)
                firstMinute = m;
            if (Has(r, UsbDamage::FreeRecords) && ++n % 50 == 0)
                plan.push_back({int(i), m, 0, false, 1});
            const bool ff = Has(r, UsbDamage::FfSamples) && i == 0 && m < firstMinute + 3;
            plan.push_back({int(i), m, 0, ff, 0});
        }
    }
    if (Has(r, UsbDamage::BadStamps))
        for (int k = 2; k <= 5; ++k)
            plan.push_back({0, 12 * 60, 0, false, k});
    if (Has(r, UsbDamage::SecondRecording) && firstMinute >= 0)
        for (int m = firstMinute - firstMinute % 60; m < firstMinute - firstMinute % 60 + 60; ++m)
            plan.push_back({0, m, 5, false, 0});

    const qint64 records = std::max<qint64>(qint64(plan.size()), kLog250Least);
    QByteArray log(records * kRecord250, char(0xFF));
    for (size_t k = 0; k < plan.size(); ++k) {
        const Planned& p = plan[k];
        const qint64 at = qint64(k) * kRecord250;
        if (p.free == 1) {
            log[at] = 0x00; // a free record of another kind
            continue;
        }
        Record_250(log, at, days[size_t(p.day)], p.minute, p.speedAdd, p.ff);
        if (p.free >= 2) {
            for (int s = 0; s < 60; ++s)
                log[at + 16 + 8 * s] = char(200);
            if (p.free == 2)
                log[at + 2] = char(0x1A); // month with a letter
            else if (p.free == 3)
                log[at + 2] = char(0x13); // month 13: the day never becomes a file
            else if (p.free == 4)
                log[at + 4] = char(0x25); // hour 25
            else
                log[at + 1] = log[at + 2] = log[at + 3] = char(0xFF);
        }
    }
    return log;
}

std::optional<std::vector<Day_Data>> Build_Days(const QDate& first, int n, uint64_t seed, const QString& cyclesDir,
                                                QString* error)
{
    const auto cycles = CycleSet::Load(cyclesDir, error);
    if (!cycles)
        return std::nullopt;
    std::vector<Day_Data> days;
    for (int i = 0; i < n; ++i) {
        Day_Data d;
        d.date = first.addDays(i);
        d.driving = Build_Driving_Day(*cycles, d.date, seed + uint64_t(i) * 0x9E3779B97F4A7C15ull);
        d.metres.resize(1440);
        d.engineMinute.assign(1440, false);
        for (int m = 0; m < 1440; ++m) {
            d.metres[size_t(m)] = Minute_Metres(d.driving, m);
            for (int s = 0; s < 60; ++s)
                if (d.driving.seconds[size_t(m * 60 + s)].engineOn)
                    d.engineMinute[size_t(m)] = true;
        }
        days.push_back(std::move(d));
    }
    return days;
}

UsbSampleDay Summary(const Day_Data& d)
{
    UsbSampleDay s;
    s.date = d.date;
    s.startMinute = -1;
    for (int m = 0; m < 1440; ++m) {
        int speed = 0;
        for (int k = 0; k < 60; ++k)
            speed = std::max(speed, d.driving.seconds[size_t(m * 60 + k)].speed);
        if (speed > 0) {
            if (s.startMinute < 0)
                s.startMinute = m;
            s.endMinute = m;
        }
        s.metres += d.metres[size_t(m)];
    }
    s.startMinute = std::max(s.startMinute, 0);
    return s;
}

} // namespace

const QList<UsbDamageInfo>& Usb_Damage_Kinds()
{
    return kUsbDamageKinds;
}

std::optional<UsbDamage> Usb_Damage_From_Name(const QString& name)
{
    for (const UsbDamageInfo& d : kUsbDamageKinds)
        if (name == QLatin1String(d.name))
            return d.kind;
    return std::nullopt;
}

QString Check_Usb_Request(const UsbSampleRequest& r)
{
    if (r.model != QLatin1String("130") && r.model != QLatin1String("250"))
        return QStringLiteral("the model is 130 or 250: ") + r.model;
    if (!Has_Hex_Code(r.car))
        return QStringLiteral("the car is six hexadecimal characters: ") + r.car;
    if (!Has_Hex_Code(r.driver))
        return QStringLiteral("the driver is six hexadecimal characters: ") + r.driver;
    if (!r.first.isValid() || r.first.year() < 2005 || r.first.addDays(r.days - 1).year() > 2099)
        return QStringLiteral("the first day lies from 2005 to 2099");
    if (r.days < 1 || r.days > 31)
        return QStringLiteral("1 to 31 days");
    return QString();
}

std::optional<UsbSample> Make_Sample_Usb(const UsbSampleRequest& r, QString* error)
{
    const QString why = Check_Usb_Request(r);
    if (!why.isEmpty()) {
        if (error)
            *error = why;
        return std::nullopt;
    }
    auto days = Build_Days(r.first, r.days, r.seed, r.cyclesDir, error);
    if (!days)
        return std::nullopt;
    if (Has(r, UsbDamage::SlippingSensor))
        for (Day_Data& d : *days)
            for (int& metres : d.metres)
                metres = metres * 7 / 10;

    UsbSample sample;
    for (const Day_Data& d : *days)
        sample.days << Summary(d);
    sample.log = r.model == QLatin1String("130") ? Log_130(r, *days, sample.days) : Log_250(r, *days);
    if (r.model == QLatin1String("250")) {
        for (int i = 0; i < sample.days.size(); ++i) {
            const auto& sec = (*days)[size_t(i)].driving.seconds;
            for (int t = 1; t < DrivingDay::kSeconds; ++t)
                if (sec[size_t(t)].speed - sec[size_t(t) - 1].speed >= 8)
                    ++sample.days[i].accelerations;
        }
    }

    sample.master = QByteArray(kMasterSize, '\0');
    Put_Code(sample.master, 0, r.car.toUpper());
    Put_Code(sample.master, 3, r.driver.toUpper());
    const QDate before = r.first.addDays(-1);
    Put_Stamp(sample.master, 6, before, {20, 0, 0});
    const UsbSampleDay& last = sample.days.last();
    Put_Stamp(sample.master, 12, last.date, {last.endMinute / 60, last.endMinute % 60, 0});
    sample.driverId = QByteArray(kDriverIdSize, '\0');
    Put_Code(sample.driverId, 0, r.driver.toUpper());
    return sample;
}

bool Write_Usb_Medium(const UsbSample& sample, const QString& dir, QString* error)
{
    if (!QDir().mkpath(dir)) {
        if (error)
            *error = QStringLiteral("cannot make ") + dir;
        return false;
    }
    const std::pair<const char*, const QByteArray*> files[] = {
        {"Master00.dat", &sample.master}, {"SPDR0403.dat", &sample.log}, {"Driverid.dat", &sample.driverId}};
    for (const auto& [name, bytes] : files) {
        QSaveFile f(QDir(dir).filePath(QLatin1String(name)));
        if (!f.open(QIODevice::WriteOnly) || f.write(*bytes) != bytes->size() || !f.commit()) {
            if (error)
                *error = QStringLiteral("cannot write ") + f.fileName();
            return false;
        }
    }
    return true;
}

std::optional<QByteArray> Make_Sample_Ntd(const QString& car, const QString& driver, const QDate& day, uint64_t seed,
                                          const QString& cyclesDir, QString* error)
{
    if (!Has_Hex_Code(car) || !Has_Hex_Code(driver) || !day.isValid() || day.year() < 2000 || day.year() > 2099) {
        if (error)
            *error = QStringLiteral("car and driver are six hexadecimal characters, the day one of 2000 to 2099");
        return std::nullopt;
    }
    auto days = Build_Days(day, 1, seed, cyclesDir, error);
    if (!days)
        return std::nullopt;
    const Day_Data& d = days->front();
    QByteArray out(kSavedNtdFile, '\0');
    Put_Code(out, 0, car.toUpper());
    Put_Code(out, 3, driver.toUpper());
    Put_Stamp(out, 6, day, {});
    // Each array is written one byte early, over the last entry of the one
    // before: speed at 9, engine at 9 + 86,400, distance 86,400 further.
    const qint64 speedAt = 9, engineAt = speedAt + 86400, distanceAt = engineAt + 86400;
    for (int s = 0; s < DrivingDay::kSeconds; ++s) {
        out[speedAt + s] = char(Speed_Byte(d.driving.seconds[size_t(s)]));
        out[engineAt + s] = char(Engine_Byte(d.driving.seconds[size_t(s)]));
    }
    for (int m = 1; m <= 1440; ++m) {
        out[distanceAt + 2 * m - 1] = char(d.metres[size_t(m - 1)] / 100);
        out[distanceAt + 2 * m] = char(d.metres[size_t(m - 1)] % 100);
    }
    return out;
}

} // namespace vex
