// The bytes of the USB recorders' files into days. Every field is read
// through Byte_View's bounds checks, so a short or damaged file loses its
// damaged records and never more.
#include "acquisition/Usb_Days.h"

#include "acquisition/UsbBytes.h"
#include "core/VbText.h"
#include "store/DayFile.h"

#include <algorithm>

namespace vex {

namespace {

// Model "250" records.
constexpr int kSamples250 = 16; // first sample of a record
constexpr int kSampleSize250 = 8;
constexpr int kMinute250 = 496; // the minute's two values

// An erased byte (FF) carries no value.
uint8_t Clean(uint8_t b)
{
    return b > 254 ? 0 : b;
}

QString Hex_Text(const Byte_View& v, qint64 at, int n)
{
    QString text;
    for (int i = 0; i < n; ++i)
        text += Hex2(v[at + i]);
    return text;
}

// A speed of the event region as one byte of hexadecimal; 256 km/h and more
// don't fit and are "FF".
QString Speed_Hex(int kmh)
{
    return kmh >= 256 ? QStringLiteral("FF") : Hex2(uint8_t(kmh));
}

bool In_Dates(const QString& from, const QString& to, const QString& day)
{
    return day >= from && day <= to;
}

// Values of an hour added where the day's minute still holds 0: the first
// recording of a minute wins.
void Merge_Hour(std::array<uint8_t, 1440>& day, int hour, const std::array<uint8_t, 60>& values)
{
    for (int m = 0; m < 60; ++m)
        if (day[size_t(hour * 60 + m)] == 0)
            day[size_t(hour * 60 + m)] = values[size_t(m)];
}

// The hour blocks within the dates, merged by day in the order of the log.
void Read_Hours(const Byte_View& v, const QString& from, const QString& to, Dat130_Log& log)
{
    for (int k = 0; k < kHourBlocks130; ++k) {
        const qint64 at = qint64(k) * kBlock130;
        if (!v.Fits(at, kBlock130))
            break;
        if (v[at] != 0xF0) // the start block ("FA") and free blocks hold no hour
            continue;
        if (v[at + 1] == 0xFF && v[at + 2] == 0xFF && v[at + 3] == 0xFF)
            continue;
        if (!v.Digits(at + 1, 3) || v.Bcd(at + 2) > 12 || v.Bcd(at + 3) > 31)
            continue;
        const QString date = v.Digit_Text(at + 1, 3);
        if (!In_Dates(from, to, date))
            continue;
        // An hour that isn't one of the day has no place in its series.
        if (!v.Digits(at + 4, 1) || v.Bcd(at + 4) > 23)
            continue;

        // A minute is four bytes: speed, the second channel, and the metres
        // as four decimal digits.
        std::array<uint8_t, 60> speed{}, second{}, distance{};
        QString metres;
        metres.reserve(2 * kHourChars);
        for (int m = 0; m < 60; ++m) {
            const qint64 s = at + 5 + 4 * m;
            speed[size_t(m)] = Clean(v[s]);
            second[size_t(m)] = Clean(v[s + 1]);
            metres += v.Digits(s + 2, 2) ? v.Digit_Text(s + 2, 2) : QStringLiteral("0000");
        }
        const QString tenths = Compress_Metres(metres);
        for (int m = 0; m < 60; ++m)
            distance[size_t(m)] = uint8_t(tenths[2 * m].digitValue() * 10 + tenths[2 * m + 1].digitValue());
        Usb_Minute_Day& day = log.days[date];
        const int hour = v.Bcd(at + 4);
        Merge_Hour(day.speed, hour, speed);
        Merge_Hour(day.distance, hour, distance);
        Merge_Hour(day.second, hour, second);
    }
}

// The event region, whatever the dates: the region is a ring of the
// recorder's last events, and each kind keeps its list of one date and hands
// it over when a record of that kind brings another date.
void Read_Events(const Byte_View& v, Dat130_Log& log)
{
    Usb_Event_List kinds[2] = {{QStringLiteral("55"), {}, {}}, {QStringLiteral("AA"), {}, {}}};
    auto Hand_Over = [&](Usb_Event_List& k) {
        if (!k.events.empty())
            log.events.push_back(k);
        k.events.clear();
    };
    for (int i = 0; i < kEventRecords130; ++i) {
        const qint64 at = kEventRegion130 + qint64(i) * kEventRecord130;
        if (!v.Fits(at, kEventRecord130))
            break;
        if (!v.Digits(at, 6))
            continue;
        // Twelve digits are all the record needs: a month of 13 is kept
        // under its day as the recorder wrote it.
        const QString date = v.Digit_Text(at, 3);
        const int ca = (v[at + 6] << 8) | v[at + 7];
        const int cb = (v[at + 8] << 8) | v[at + 9];
        const int a = Usb_Speed(ca), b = Usb_Speed(cb);
        const bool brake = b < a;
        const bool counted = brake ? a - b >= 15 : double(cb - ca) * 3600.0 / kSpeedPulsesPerKm >= 7.5;
        if (!counted)
            continue;
        Usb_Event_List& k = kinds[brake ? 0 : 1];
        if (k.date != date)
            Hand_Over(k);
        k.date = date;
        k.events.push_back({v.Digit_Text(at + 3, 3), a, b});
    }
    Hand_Over(kinds[0]);
    Hand_Over(kinds[1]);
}

// The minute records of second data within the dates, in runs of one day.
// The second byte of a pair is dropped: this recorder keeps no engine.
void Read_Seconds(const Byte_View& v, const QString& from, const QString& to, Dat130_Log& log)
{
    for (int r = 0; r < kMinuteRecords130A + kMinuteRecords130B; ++r) {
        const qint64 at = r < kMinuteRecords130A ? kMinuteRegion130A + qint64(r) * kMinuteRecord130
                                                 : kMinuteRegion130B + qint64(r - kMinuteRecords130A) * kMinuteRecord130;
        if (!v.Fits(at, kMinuteRecord130))
            continue;
        if (v[at] == 0xFF || !v.Digits(at, 5))
            continue;
        const int month = v.Bcd(at + 1), day = v.Bcd(at + 2), hour = v.Bcd(at + 3), minute = v.Bcd(at + 4);
        if (month > 12 || day > 31 || hour > 23 || minute > 59 || month == 0 || day == 0)
            continue;
        const QString date = v.Digit_Text(at, 3);
        if (!In_Dates(from, to, date))
            continue;
        if (log.seconds.empty() || log.seconds.back().day != date)
            log.seconds.push_back({date, {}});
        Usb_Second_Minute m;
        m.minute = hour * 60 + minute;
        for (int s = 0; s < 60; ++s)
            m.speed[size_t(s)] = Clean(v[at + 5 + 2 * s]);
        log.seconds.back().minutes.push_back(m);
    }
}

} // namespace

QString Compress_Metres(const QString& metres)
{
    QString out;
    out.reserve(kHourChars);
    int carry = 0;
    for (int i = 0; i + 4 <= metres.size(); i += 4) {
        const QString v = metres.mid(i, 4);
        int r = v == QLatin1String("0000") ? 0 : int(Val(v));
        if (carry >= 100) {
            r += 100;
            carry -= 100;
        }
        if (r == 0) {
            out += QStringLiteral("00");
            continue;
        }
        // Tenths of a kilometre; the metres below a hundred wait for a
        // later minute.
        out += QChar(u'0' + (r / 1000) % 10);
        out += QChar(u'0' + (r / 100) % 10);
        carry += r % 100;
    }
    return out;
}

Ntd_Day Decode_Ntd_Day(const QByteArray& file)
{
    Ntd_Day d;
    const Byte_View v(file);
    // Two forms reach \new. The day file that the "250" road writes has a
    // header of ten bytes (a zero, then driver, car and day) and its arrays
    // whole. A saved day has three bytes each of car, driver and day, and
    // arrays written so that each overlaps the one before by its last byte.
    qint64 speedAt = 0, engineAt = 0, distanceAt = 0;
    if (v.Size() == kNtdFile && v[0] == 0) {
        d.driver = Hex_Text(v, 1, 3);
        d.car = Hex_Text(v, 4, 3);
        d.day = Hex_Text(v, 7, 3);
        speedAt = kNtdHeader;
        engineAt = speedAt + kDayArray;
        distanceAt = engineAt + kDayArray;
    } else if (v.Size() >= kSavedNtdFile) {
        d.car = Hex_Text(v, 0, 3);
        d.driver = QStringLiteral("00") + Hex_Text(v, 3, 3).right(4);
        d.day = Hex_Text(v, 6, 3);
        speedAt = 9;
        engineAt = speedAt + kDayArray - 1;
        distanceAt = engineAt + kDayArray - 1;
    } else {
        d.verdict = Ntd_Day::Verdict::Short;
        return d;
    }
    if (!Is_Day(d.day)) {
        d.verdict = Ntd_Day::Verdict::Not_A_Day;
        return d;
    }
    d.speed.resize(kDayArray);
    d.engine.resize(kDayArray);
    d.distance.resize(kNtdDistance);
    for (int s = 0; s < kDayArray; ++s) {
        d.speed[size_t(s)] = Clean(v[speedAt + s]);
        d.engine[size_t(s)] = Clean(v[engineAt + s]);
    }
    for (int i = 0; i < kNtdDistance; ++i)
        d.distance[size_t(i)] = v[distanceAt + i];
    for (int m = 1; m <= kDayMinutes; ++m)
        if (d.distance[size_t(2 * m - 1)] == 0xFF && d.distance[size_t(2 * m)] == 0xFF)
            d.distance[size_t(2 * m - 1)] = d.distance[size_t(2 * m)] = 0;
    return d;
}

Dat250_Days::Dat250_Days(QString from, QString to, Day_Sink sink)
    : from_(std::move(from)), to_(std::move(to)), sink_(std::move(sink)), minute_(kSeriesChars, 0)
{
    day_.speed.assign(kDayArray, 0);
    day_.engine.assign(kDayArray, 0);
}

void Dat250_Days::Feed(const QByteArray& records)
{
    const Byte_View v(records);
    for (qint64 at = 0; v.Fits(at, kRecord250); at += kRecord250) {
        // A record: kind "F0", the stamp YYMMDDHHMM, 60 samples of 8 bytes
        // (speed, the second channel, six dropped), the minute's two values.
        if (v[at] != 0xF0 || !v.Digits(at + 1, 5))
            continue;
        const QString date = v.Digit_Text(at + 1, 3);
        if (!((from_.isEmpty() || date >= from_) && (to_.isEmpty() || date <= to_)))
            continue;
        // A minute that isn't one of the day has no place in it.
        const int hour = v.Bcd(at + 4), min = v.Bcd(at + 5);
        if (hour > 23 || min > 59)
            continue;
        if (!day_.day.isEmpty() && date != day_.day)
            Hand_Over();
        day_.day = date;
        const qint64 base = qint64(hour) * 3600 + min * 60;
        for (int s = 0; s < 60; ++s) {
            const qint64 sample = at + kSamples250 + qint64(s) * kSampleSize250;
            day_.speed[size_t(base + s)] = Clean(v[sample]);
            day_.engine[size_t(base + s)] = Clean(v[sample + 1]);
        }
        const int m = (hour * 60 + min) * 2;
        minute_[size_t(m)] = Clean(v[at + kMinute250]);
        minute_[size_t(m + 1)] = Clean(v[at + kMinute250 + 1]);
    }
}

void Dat250_Days::Finish()
{
    if (!day_.day.isEmpty())
        Hand_Over();
}

void Dat250_Days::Hand_Over()
{
    // The minute's two values are the hundreds of metres and the rest.
    day_.metres.assign(kDayMinutes + 1, 0.0f);
    for (int k = 0; k < kDayMinutes; ++k)
        day_.metres[size_t(k + 1)] = float(minute_[size_t(2 * k)]) * 100.0f + float(minute_[size_t(2 * k + 1)]);
    sink_(day_);
    std::fill(day_.speed.begin(), day_.speed.end(), 0);
    std::fill(day_.engine.begin(), day_.engine.end(), 0);
    std::fill(minute_.begin(), minute_.end(), 0);
    day_.day.clear();
}

Dat130_Log Decode_Dat130_Log(const QByteArray& filed, const QString& from, const QString& to)
{
    Dat130_Log log;
    const Byte_View v(filed);
    Read_Hours(v, from, to, log);
    Read_Events(v, log);
    Read_Seconds(v, from, to, log);
    return log;
}

QString Usb_Event_List::Records() const
{
    QString text;
    for (const Usb_Event& e : events)
        text += e.time + Speed_Hex(e.before) + Speed_Hex(e.after);
    return text;
}

QString Hex_Cells(const std::array<uint8_t, 1440>& values)
{
    QString text;
    text.reserve(2 * 1440);
    for (const uint8_t value : values)
        text += Hex2(value);
    return text;
}

QString Decimal_Cells(const std::array<uint8_t, 1440>& values)
{
    QString text;
    text.reserve(2 * 1440);
    for (const uint8_t value : values) {
        text += QChar(u'0' + value / 10 % 10);
        text += QChar(u'0' + value % 10);
    }
    return text;
}

} // namespace vex
