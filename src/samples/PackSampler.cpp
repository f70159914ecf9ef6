#include "samples/PackSampler.h"

#include "samples/DrivingProfile.h"
#include "acquisition/PackLayout.h"

#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <set>

namespace vex {

namespace {

constexpr int kMinutes = 1440;

const QList<PackDamageInfo> kPackDamageKinds = {
    {PackDamage::ErasedPage, "erased-page", "one day page left erased (FF), its distance page intact"},
    {PackDamage::BadDate, "bad-date", "StartDay in month 13, EndDay FFFFFF"},
    {PackDamage::BadCheck, "bad-check", "second check byte of one day page 55"},
    {PackDamage::GarbageSpeed, "garbage-speed", "12 speed minutes FF or 150+, 8 distance cells not decimal"},
    {PackDamage::NoisySpeed, "noisy-speed", "45 speed minutes above 150"},
    {PackDamage::BadDistanceStart, "bad-distance-start", "distance page dated a month earlier"},
    {PackDamage::BadTime, "bad-time", "StartTime 0A5F, EndTime 0000"},
    {PackDamage::BadDistance, "bad-distance", "Distance 999999"},
    {PackDamage::BadCounts, "bad-counts", "Acceleration 0450, Brack AB, counter at column 79 FFFF"},
    {PackDamage::BadBrakeRecords, "bad-brake-records", "three bad quick-brake records counted in Brack"},
    {PackDamage::BadStamps, "bad-stamps", "system page: SysPackInsert at 25:61, SysPackLastWrite in month 13"},
};

QString Digits(int64_t value, int width)
{
    int64_t mod = 1;
    for (int i = 0; i < width; ++i)
        mod *= 10;
    return QString::number(((value % mod) + mod) % mod).rightJustified(width, QLatin1Char('0'));
}

QString Hex2(int value)
{
    return QString::number(std::clamp(value, 0, 255), 16).toUpper().rightJustified(2, QLatin1Char('0'));
}

QString Yymmdd(const QDate& d)
{
    return Digits(d.year() % 100, 2) + Digits(d.month(), 2) + Digits(d.day(), 2);
}

QString Hhmm(int minute)
{
    return Digits(minute / 60, 2) + Digits(minute % 60, 2);
}

QString Hhmmss(int second)
{
    return Digits(second / 3600, 2) + Digits(second / 60 % 60, 2) + Digits(second % 60, 2);
}

uint64_t Fnv1a(const QString& text)
{
    uint64_t h = 0xCBF29CE484222325ull;
    for (char c : text.toLatin1()) {
        h ^= uint8_t(c);
        h *= 0x100000001B3ull;
    }
    return h;
}

// One day as the recorder sums it up.
struct DaySummary {
    QDate date;
    std::array<int, kMinutes> speed{};    // highest speed of the minute
    std::array<int, kMinutes> rpm{};      // highest engine speed of the minute
    std::array<int, kMinutes> distance{}; // tenths of a km driven in the minute
    std::array<bool, kMinutes> engine{};  // the engine ran in the minute
    int startMinute = 0, endMinute = 0, lastEngineMinute = 0;
    int distanceTenths = 0;
    int64_t revolutions = 0;
    int accelerations = 0;
    QStringList brakes;                   // HHMMSS + before + after
    std::vector<int> brakeSeconds;
    QStringList longOverspeeds;           // HHMMSS start + end + duration
    std::array<int64_t, 12> bandSpeedSum{}; // km/h-seconds in each band of 10 km/h
    std::vector<int> secondSpeed;         // for the brake buffers
};

DaySummary Summarise(const DrivingDay& day, const RecorderStandards& std_)
{
    DaySummary s;
    s.date = day.date;
    s.secondSpeed.resize(size_t(DrivingDay::kSeconds));
    int64_t speedSum = 0, rpmSum = 0;
    int previous = 0;
    int overStart = -1, overCount = 0;
    for (int t = 0; t < DrivingDay::kSeconds; ++t) {
        const DriveSecond& sec = day.seconds[size_t(t)];
        const int m = t / 60;
        const int v = sec.speed;
        s.secondSpeed[size_t(t)] = v;
        s.speed[m] = std::max(s.speed[m], v);
        s.rpm[m] = std::max(s.rpm[m], sec.rpm);
        s.engine[m] = s.engine[m] || sec.engineOn;
        // The tenths reached at the end of each minute; a minute's cell is
        // the step, so that the cells add up to the day's distance exactly.
        const int64_t tenthsBefore = speedSum / 360;
        speedSum += v;
        s.distance[m] += int(speedSum / 360 - tenthsBefore);
        rpmSum += sec.rpm;
        s.bandSpeedSum[size_t(std::min(v / 10, 11))] += v;

        if (v - previous >= std_.quickAcceleration)
            ++s.accelerations;
        if (previous - v >= std_.quickBrake) {
            s.brakes << Hhmmss(t) + Hex2(previous) + Hex2(v);
            s.brakeSeconds.push_back(t);
        }
        const bool over = v > std_.speedLimit;
        if (over) {
            if (overStart < 0)
                overStart = t;
            ++overCount;
        }
        if (overStart >= 0 && (!over || t == DrivingDay::kSeconds - 1)) {
            if (overCount > std_.longOverspeedMin * 60)
                s.longOverspeeds << Hhmmss(overStart) + Hhmmss(t) + Hhmmss(overCount);
            overStart = -1;
            overCount = 0;
        }
        previous = v;
    }
    s.distanceTenths = int(speedSum / 360);
    s.revolutions = rpmSum / 60;
    int first = -1, last = -1, lastEngine = 0;
    for (int m = 0; m < kMinutes; ++m) {
        if (s.speed[m] > 0) {
            if (first < 0)
                first = m;
            last = m;
        }
        if (s.engine[m])
            lastEngine = m;
    }
    s.startMinute = std::max(first, 0);
    s.endMinute = std::max(last, 0);
    s.lastEngineMinute = lastEngine;
    return s;
}

// Running totals of the pack before a day; the "Last" fields of the day page.
struct Totals {
    int64_t distanceTenths = 0;
    int64_t revolutions = 0;
    int brakes = 0;
    int longOverspeeds = 0;
};

QString Erased(int chars)
{
    return QString(chars, QLatin1Char('F'));
}

QString Zeros(int chars)
{
    return QString(chars, QLatin1Char('0'));
}

QString Day_Page(const DaySummary& s, const QString& car, const QString& driver, const Totals& before)
{
    QString page = Erased(kPageChars);
    // Numeric reserved fields of the header hold zeros; the blocks between
    // the data areas are never written.
    for (const Field& f : DayPage::kFields)
        if (QLatin1String(f.name) == QLatin1String("reserved") && f.column < DayPage::Brack_Data.column)
            Put_Field(page, f, Zeros(f.width));
    using namespace DayPage;
    Put_Field(page, CheckPack, "AA");
    Put_Field(page, CheckPack1, "AA");
    Put_Field(page, CarCode, car);
    Put_Field(page, DriveCode, driver);
    Put_Field(page, StartDay, Yymmdd(s.date));
    Put_Field(page, StartTime, Hhmm(s.startMinute));
    Put_Field(page, EndDay, Yymmdd(s.date));
    Put_Field(page, EndTime, Hhmm(s.endMinute));
    Put_Field(page, Distance, Digits(s.distanceTenths, 6));
    Put_Field(page, LastDistance, Digits(before.distanceTenths, 6));
    Put_Field(page, Engin, Digits(s.revolutions, 8));
    Put_Field(page, Acceleration, Digits(std::min(s.accelerations, 9999), 4));
    Put_Field(page, Brack, Digits(std::min<qsizetype>(s.brakes.size(), 99), 2));
    Put_Field(page, LKEngin, Digits(std::min<qsizetype>(s.longOverspeeds.size(), 99), 2));
    Put_Field(page, LastLKEngin, Digits(before.longOverspeeds, 2));
    Put_Field(page, LastBrack, Digits(before.brakes, 2));
    Put_Field(page, Reserved79, Zeros(4));
    Put_Field(page, LastEnginOver, Zeros(2));

    const QStringList brakes = s.brakes.mid(0, 10);
    Put_Field(page, Brack_Data, brakes.join(QString()).leftJustified(Brack_Data.width, QLatin1Char('0')));

    // The recorder keeps the last four brakes: 60 seconds of speed around
    // each (the brake is the 50th) and its time as MMDDHHMMSS.
    QString buffers;
    QString times;
    for (int k = 0; k < 4 && k < int(s.brakeSeconds.size()); ++k) {
        const int t0 = s.brakeSeconds[size_t(k)];
        times += Digits(s.date.month(), 2) + Digits(s.date.day(), 2) + Hhmmss(t0);
        for (int t = t0 - 49; t <= t0 + 10; ++t)
            buffers += Hex2(t >= 0 && t < DrivingDay::kSeconds ? s.secondSpeed[size_t(t)] : 0);
    }
    Put_Field(page, Brack_Buffer_Data, buffers.leftJustified(Brack_Buffer_Data.width, QLatin1Char('0')));
    Put_Field(page, Brack_Time_Data, times.leftJustified(Brack_Time_Data.width, QLatin1Char('0')));
    Put_Field(page, LkEngin_Data,
              s.longOverspeeds.mid(0, 6).join(QString()).leftJustified(LkEngin_Data.width, QLatin1Char('0')));

    QString bands;
    for (int64_t sum : s.bandSpeedSum)
        bands += Digits(sum / 360, 6);
    Put_Field(page, Speed_Dist_Data, bands);

    QString series;
    for (int m = 0; m < kMinutes; ++m)
        series += Hex2(s.speed[m]);
    Put_Field(page, Sec_Data, series);
    return page;
}

// Header of the distance and third page: the day page's dates and times.
QString Minute_Page(const DaySummary& s, const QString& car, const QString& driver, const QString& series)
{
    QString page = Erased(kPageChars);
    using namespace DistPage;
    Put_Field(page, CheckPack, "AA");
    Put_Field(page, CheckPack1, "AA");
    Put_Field(page, CarCode, car);
    Put_Field(page, DriveCode, driver);
    for (const Field& f : kFields)
        if (QLatin1String(f.name) == QLatin1String("reserved"))
            Put_Field(page, f, Zeros(f.width));
    Put_Field(page, StartDay, Yymmdd(s.date));
    Put_Field(page, StartTime, Hhmm(s.startMinute));
    Put_Field(page, EndDay, Yymmdd(s.date));
    Put_Field(page, EndTime, Hhmm(s.endMinute));
    Put_Field(page, Sec_Data, series);
    return page;
}

QString Distance_Page(const DaySummary& s, const QString& car, const QString& driver)
{
    QString series;
    for (int m = 0; m < kMinutes; ++m) {
        const int cell = std::min(s.distance[m], 99);
        int tens = cell / 10;
        if (s.engine[m] && tens <= 1)
            tens += 8; // engine ran in this minute
        series += QString::number(tens, 16).toUpper() + QString::number(cell % 10);
    }
    return Minute_Page(s, car, driver, series);
}

QString Third_Page(const DaySummary& s, const QString& car, const QString& driver)
{
    QString series;
    for (int m = 0; m < kMinutes; ++m)
        series += Hex2(Engine_Byte(s.rpm[m]));
    return Minute_Page(s, car, driver, series);
}

struct DayTexts {
    QString day, distance, third;
};

void Put_Cell(QString& page, const Field& series, int minute, const QString& cell)
{
    page.replace(series.column - 1 + 2 * minute, 2, cell);
}

// Distinct minutes from the pool, as many as asked or as the pool holds.
std::vector<int> Pick_Minutes(std::vector<int> pool, int count, SampleRng& rng)
{
    std::vector<int> picked;
    while (int(picked.size()) < count && !pool.empty()) {
        const size_t i = size_t(rng.Int(0, int(pool.size()) - 1));
        picked.push_back(pool[i]);
        pool.erase(pool.begin() + qsizetype(i));
    }
    std::sort(picked.begin(), picked.end());
    return picked;
}

void Lay_Day_Damage(PackDamage kind, DayTexts& p, const DaySummary& s, SampleRng& rng)
{
    const QString yy = Digits(s.date.year() % 100, 2);
    std::vector<int> driving;
    for (int m = 1; m < kMinutes; ++m)
        if (s.speed[m] > 0)
            driving.push_back(m);

    switch (kind) {
    case PackDamage::ErasedPage:
        p.day = Erased(kPageChars);
        break;
    case PackDamage::BadDate:
        Put_Field(p.day, DayPage::StartDay, yy + "13" + Digits(s.date.day(), 2));
        Put_Field(p.day, DayPage::EndDay, "FFFFFF");
        break;
    case PackDamage::BadCheck:
        Put_Field(p.day, DayPage::CheckPack1, "55");
        break;
    case PackDamage::GarbageSpeed: {
        const std::vector<int> minutes = Pick_Minutes(driving, 20, rng);
        for (size_t i = 0; i < minutes.size(); ++i) {
            if (i % 5 < 3) { // twelve of twenty: speed
                const int v = i % 2 ? 0xFF : rng.Int(150, 254);
                Put_Cell(p.day, DayPage::Sec_Data, minutes[i], Hex2(v));
            } else { // eight: distance
                const int hi = rng.Int(0, 15), lo = hi > 9 ? rng.Int(0, 15) : rng.Int(10, 15);
                Put_Cell(p.distance, DistPage::Sec_Data, minutes[i],
                         QString::number(hi, 16).toUpper() + QString::number(lo, 16).toUpper());
            }
        }
        break;
    }
    case PackDamage::NoisySpeed: {
        std::vector<int> pool;
        for (int m = std::max(s.startMinute, 1); m <= s.endMinute; ++m)
            pool.push_back(m);
        for (int m : Pick_Minutes(pool, 45, rng))
            Put_Cell(p.day, DayPage::Sec_Data, m, Hex2(rng.Int(151, 255)));
        break;
    }
    case PackDamage::BadDistanceStart: {
        const QDate earlier = s.date.addMonths(-1);
        Put_Field(p.distance, DistPage::StartDay, Yymmdd(earlier));
        Put_Field(p.distance, DistPage::EndDay, Yymmdd(earlier));
        break;
    }
    case PackDamage::BadTime:
        Put_Field(p.day, DayPage::StartTime, "0A5F");
        Put_Field(p.day, DayPage::EndTime, "0000");
        break;
    case PackDamage::BadDistance:
        Put_Field(p.day, DayPage::Distance, "999999");
        break;
    case PackDamage::BadCounts:
        Put_Field(p.day, DayPage::Acceleration, "0450");
        Put_Field(p.day, DayPage::Brack, "AB");
        Put_Field(p.day, DayPage::Reserved79, "FFFF");
        break;
    case PackDamage::BadBrakeRecords: {
        const int good = std::min<int>(int(s.brakes.size()), 7);
        const QString at = Hhmmss(s.endMinute * 60);
        const QString bad = QStringLiteral("1A2B30") + "5032"   // a time with letters
                            + at + "0000"                       // no speed before the brake
                            + at + Hex2(141) + Hex2(120);       // faster than any recorder measures
        QString records = s.brakes.mid(0, good).join(QString()) + bad;
        Put_Field(p.day, DayPage::Brack_Data, records.leftJustified(DayPage::Brack_Data.width, QLatin1Char('0')));
        Put_Field(p.day, DayPage::Brack, Digits(qsizetype(s.brakes.size()) + 3, 2));
        break;
    }
    case PackDamage::BadStamps:
        break; // system page
    }
}

QString System_Page(const QString& car, const QString& driver, const QList<DaySummary>& days, const Totals& totals,
                    const PackSampleRequest& r, SampleRng& rng)
{
    using namespace SysPage;
    QString page = Zeros(kSysPageChars);
    Put_Field(page, SysCheckPack, "AA");
    Put_Field(page, SysCheckPack1, "AA"); // a normal pack
    Put_Field(page, SysCarCode, car);
    Put_Field(page, SysDriveCode, driver);
    const QDate first = days.first().date;
    Put_Field(page, SysWarehouse, Yymmdd(first.addDays(-rng.Int(2, 6))));
    Put_Field(page, SysSerialNumber, Digits(rng.Int(10000000, 99999999), 8));
    Put_Field(page, SysPackInsert, Yymmdd(first.addDays(-1)) + Hhmm(rng.Int(17 * 60, 19 * 60 + 59)));
    const DaySummary& last = days.last();
    Put_Field(page, SysPackLastWrite, Yymmdd(last.date) + Hhmm(last.lastEngineMinute));
    Put_Field(page, SysTotalDistance, Digits(totals.distanceTenths, 6));
    Put_Field(page, SysTotalEngin, Digits(totals.revolutions, 8));
    if (r.lastRead)
        Put_Field(page, SysDBWriteDate, r.lastRead->toString(QStringLiteral("yyMMddHHmm")));
    else
        Put_Field(page, SysDBWriteDate, Erased(10));
    Put_Field(page, Field{"not read", 153, 2}, "FF");

    if (r.damage.contains(PackDamage::BadStamps)) {
        Put_Field(page, SysPackInsert, Yymmdd(first.addDays(-1)) + "2561");
        Put_Field(page, SysPackLastWrite,
                  Digits(last.date.year() % 100, 2) + "13" + Digits(last.date.day(), 2) + Hhmm(last.lastEngineMinute));
    }
    return page;
}

void Write_Code(PackImage& image, const PackAddress& high, const PackAddress& low, const QString& code)
{
    image.Write_Hex(high.bank, high.page, high.offset, code.left(2));
    image.Write_Hex(low.bank, low.page, low.offset, code.mid(2, 2));
}

} // namespace

const QList<PackDamageInfo>& Pack_Damage_Kinds()
{
    return kPackDamageKinds;
}

std::optional<PackDamage> Pack_Damage_From_Name(const QString& name)
{
    for (const PackDamageInfo& d : kPackDamageKinds)
        if (name == QLatin1String(d.name))
            return d.kind;
    return std::nullopt;
}

QString Pack_Damage_Name(PackDamage kind)
{
    for (const PackDamageInfo& d : kPackDamageKinds)
        if (d.kind == kind)
            return QLatin1String(d.name);
    return QString();
}

QString Check_Pack_Request(const PackSampleRequest& r)
{
    static const QRegularExpression code(QStringLiteral("^[0-9A-Fa-f]{4}$"));
    if (!code.match(r.car).hasMatch())
        return QStringLiteral("car code must be 4 hexadecimal characters (two pack bytes): \"%1\"").arg(r.car);
    if (!code.match(r.driver).hasMatch())
        return QStringLiteral("driver code must be 4 hexadecimal characters (two pack bytes): \"%1\"").arg(r.driver);
    if (!r.first.isValid() || r.first.year() < 2000 || r.first.year() > 2099)
        return QStringLiteral("first day must be a valid date of 2000 to 2099");
    if (r.days < 1 || r.days > 31)
        return QStringLiteral("number of days must be 1 to 31: %1").arg(r.days);
    const QDate last = r.first.addDays(r.days - 1);
    if (last.year() > 2099)
        return QStringLiteral("the days run beyond 2099");
    if (r.lastRead && (!r.lastRead->isValid() || r.lastRead->date().year() < 2000 || r.lastRead->date().year() > 2099))
        return QStringLiteral("last reading must be a valid time of 2000 to 2099");
    return QString();
}

std::optional<PackSample> Make_Sample_Pack(const PackSampleRequest& r, QString* error)
{
    const QString bad = Check_Pack_Request(r);
    if (!bad.isEmpty()) {
        if (error)
            *error = bad;
        return std::nullopt;
    }
    const auto cycles = CycleSet::Load(r.cyclesDir, error);
    if (!cycles)
        return std::nullopt;

    const QString car = r.car.toUpper();
    const QString driver = r.driver.toUpper();
    const uint64_t seed = r.seed ^ Fnv1a(car + driver);
    SampleRng rng(seed);

    // Which day each kind of day damage goes to.
    QList<PackDamage> kinds;
    for (PackDamage k : r.damage)
        if (k != PackDamage::BadStamps && !kinds.contains(k))
            kinds << k;

    PackSample sample;
    QList<DaySummary> summaries;
    Totals totals;
    std::set<int> daysOfMonth;
    for (int i = 0; i < r.days; ++i) {
        const QDate date = r.first.addDays(i);
        const DrivingDay driving = Build_Driving_Day(*cycles, date, seed);
        const DaySummary s = Summarise(driving, r.standards);
        DayTexts pages{Day_Page(s, car, driver, totals), Distance_Page(s, car, driver), Third_Page(s, car, driver)};

        PackSampleDay day;
        day.date = date;
        day.startMinute = s.startMinute;
        day.endMinute = s.endMinute;
        day.distanceTenths = s.distanceTenths;
        day.brakes = int(s.brakes.size());
        day.accelerations = s.accelerations;
        day.longOverspeeds = int(s.longOverspeeds.size());

        // An erased page takes everything else with it: lay it last.
        QList<PackDamage> here;
        for (int k = 0; k < kinds.size(); ++k)
            if ((1 + k) % r.days == i)
                here << kinds[k];
        std::stable_sort(here.begin(), here.end(), [](PackDamage a, PackDamage b) {
            return a != PackDamage::ErasedPage && b == PackDamage::ErasedPage;
        });
        SampleRng damageRng(seed ^ (uint64_t(i + 1) * 0xA24BAED4963EE407ull));
        for (PackDamage k : here) {
            Lay_Day_Damage(k, pages, s, damageRng);
            day.damage << Pack_Damage_Name(k);
        }

        const auto at = Date_Addresses(date);
        sample.image.Write_Hex(at->day.bank, at->day.page, 0, pages.day);
        sample.image.Write_Hex(at->distance.bank, at->distance.page, 0, pages.distance);
        sample.image.Write_Hex(at->third.bank, at->third.page, 0, pages.third);
        if (!daysOfMonth.insert(date.day()).second) {
            for (PackSampleDay& earlier : sample.days)
                if (earlier.date.day() == date.day())
                    earlier.pagesOverwritten = true;
        }

        totals.distanceTenths += s.distanceTenths;
        totals.revolutions += s.revolutions;
        totals.brakes += int(s.brakes.size());
        totals.longOverspeeds += int(s.longOverspeeds.size());
        summaries << s;
        sample.days << day;
    }

    const QString sys = System_Page(car, driver, summaries, totals, r, rng);
    sample.image.Write_Hex(kSystemPageAddress.bank, kSystemPageAddress.page, kSystemPageAddress.offset, sys);
    Write_Code(sample.image, kCarCodeHigh, kCarCodeLow, car);
    Write_Code(sample.image, kDriveCodeHigh, kDriveCodeLow, driver);
    return sample;
}

} // namespace vex
