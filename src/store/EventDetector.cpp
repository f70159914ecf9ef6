#include "store/EventDetector.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/Day_Store.h"
#include "store/DayFile.h"

#include <algorithm>
#include <cmath>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#include <cstring>
#include <vector>

namespace vex {

namespace {

constexpr char kHex[] = "0123456789ABCDEF";

inline void Put_Hex2(QChar* out, unsigned v)
{
    out[0] = QLatin1Char(kHex[(v >> 4) & 0xF]);
    out[1] = QLatin1Char(kHex[v & 0xF]);
}

inline void Put_Dec2(QChar* out, int v)
{
    out[0] = QLatin1Char(char('0' + (v / 10) % 10));
    out[1] = QLatin1Char(char('0' + v % 10));
}

// HHMMSS of second i of the day; hours by integer division, so the last
// second of the day (86400) reads "240000".
inline void Put_Time(QChar* out, int i)
{
    const int hh = i / 3600;
    const int rest = i - hh * 3600;
    Put_Dec2(out, hh);
    Put_Dec2(out + 2, rest / 60);
    Put_Dec2(out + 4, rest % 60);
}

// A period that the two machines keep: start and end time, seconds counted.
struct Period {
    QChar start[6];
    QChar end[6];
    int seconds;
};

// One event of quick acceleration or brake: time, speed before, speed after.
void Append_Change(QString& list, int i, int before, int after)
{
    QChar rec[10];
    Put_Time(rec, i);
    Put_Hex2(rec + 6, unsigned(before));
    Put_Hex2(rec + 8, unsigned(after));
    list.append(rec, 10);
}

// Start, end and the duration as HHMMSS, two digits each part.
void Append_Period(QString& list, const Period& p)
{
    QChar rec[18];
    std::copy(p.start, p.start + 6, rec);
    std::copy(p.end, p.end + 6, rec + 6);
    const int h = p.seconds / 3600;
    const int m = (p.seconds - h * 3600) / 60;
    const int s = p.seconds - h * 3600 - m * 60;
    Put_Dec2(rec + 12, h);
    Put_Dec2(rec + 14, m);
    Put_Dec2(rec + 16, s);
    list.append(rec, 18);
}

// Whether none of the 16 seconds from sp changes a count or opens or closes
// a period: no rise of quickAccel or more, no fall to brakeAt or below,
// every second above the limit (aboveFrom and up) while an overspeed is
// open and none while none is, the same for standing with the engine
// running. prev is the speed of the second before. The thresholds come
// within -256..256, where they answer as the detector's own tests for
// speeds of 0 to 255. Sixteen seconds at once, so that the long stretches
// of steady driving pass at a fraction of a cycle a second.
bool Steady16(const uint8_t* sp, const uint8_t* en, int prev, int quickAccel, int brakeAt, int aboveFrom, bool over,
              bool idle)
{
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(sp));
    const __m128i e = _mm_loadu_si128(reinterpret_cast<const __m128i*>(en));
    // The speed of the second before each: the seconds moved up one, prev first.
    const __m128i b = _mm_or_si128(_mm_slli_si128(v, 1), _mm_cvtsi32_si128(prev & 0xFF));
    // Standing with the engine running, byte by byte.
    const __m128i idling = _mm_andnot_si128(_mm_cmpeq_epi8(e, zero), _mm_cmpeq_epi8(v, zero));
    __m128i bad = _mm_xor_si128(idling, idle ? _mm_set1_epi8(-1) : zero);
    // Changes and the limit in 16-bit lanes, eight seconds a half.
    const __m128i riseFrom = _mm_set1_epi16(int16_t(quickAccel - 1)), fallTo = _mm_set1_epi16(int16_t(brakeAt + 1)),
                  limit = _mm_set1_epi16(int16_t(aboveFrom - 1)), overMask = over ? _mm_set1_epi16(-1) : zero;
    auto Half = [&](__m128i vs, __m128i bs) {
        const __m128i change = _mm_sub_epi16(vs, bs);
        const __m128i events = _mm_or_si128(_mm_cmpgt_epi16(change, riseFrom), _mm_cmplt_epi16(change, fallTo));
        return _mm_or_si128(events, _mm_xor_si128(_mm_cmpgt_epi16(vs, limit), overMask));
    };
    bad = _mm_or_si128(bad, Half(_mm_unpacklo_epi8(v, zero), _mm_unpacklo_epi8(b, zero)));
    bad = _mm_or_si128(bad, Half(_mm_unpackhi_epi8(v, zero), _mm_unpackhi_epi8(b, zero)));
    return _mm_movemask_epi8(bad) == 0;
#else
    int bad = 0;
    int before = prev;
    for (int k = 0; k < 16; ++k) {
        const int v = sp[k];
        const int change = v - before;
        bad |= int(change >= quickAccel) | int(change <= brakeAt) | int((v >= aboveFrom) != over)
               | int((v == 0 && en[k] != 0) != idle);
        before = v;
    }
    return bad == 0;
#endif
}

} // namespace

QString Dec_Hex1(int value)
{
    QChar out[2];
    Put_Hex2(out, unsigned(value));
    return QString(out, 2);
}

int Hex_Cell(const QString& series, int i)
{
    if (i < 0 || i + 1 >= series.size())
        throw RunTimeError(QStringLiteral("Invalid procedure call or argument"));
    int v = 0;
    for (int k = 0; k < 2; ++k) {
        const int d = Hex_Digit(series[i + k]);
        if (d < 0)
            throw RunTimeError(QStringLiteral("Type mismatch: \"%1\" is no hexadecimal cell").arg(series.mid(i, 2)));
        v = v * 16 + d;
    }
    return v;
}

DayEvents Detect_Day_Events(std::span<const uint8_t> speed, std::span<const uint8_t> engine,
                            const EventLimits& limits)
{
    if (speed.size() < size_t(kDayArray) || engine.size() < size_t(kDayArray))
        throw RunTimeError(QStringLiteral("Subscript out of range: a day needs 86,401 entries"));

    DayEvents out;

    // Minute series: the largest speed and engine byte of each clock minute,
    // minute M over the elements 60M to 60M + 59 (element i is second i of
    // the day).
    if (limits.lists) {
        out.Sec_Data.resize(kSeriesChars);
        out.Sec_RPM_Data.resize(kSeriesChars);
        QChar* sp = out.Sec_Data.data();
        QChar* rp = out.Sec_RPM_Data.data();
        for (int m = 0; m < kDayMinutes; ++m) {
            uint8_t vs = 0, ve = 0;
            for (int s = m * 60; s < m * 60 + 60; ++s) {
                vs = std::max(vs, speed[s]);
                ve = std::max(ve, engine[s]);
            }
            Put_Hex2(sp + 2 * m, vs);
            Put_Hex2(rp + 2 * m, ve);
        }
    }

    // Two machines with a counter each; periods kept until the lists are
    // built. Days have few events, so the lists stay short.
    std::vector<Period> overs, idles;
    overs.reserve(16);
    idles.reserve(16);
    if (limits.lists) {
        out.Acceleration_Data.reserve(200);
        out.Brack_Data.reserve(200);
    }

    // The limits in registers: the lists appended to could alias them.
    const float limit = limits.limit;
    const int quickAccel = limits.quickAccel, quickBrake = limits.quickBrake;
    const bool lists = limits.lists;
    const long longSeconds = long(limits.longOverMinutes) * 60;
    const long idleSeconds = long(limits.idleMinutes) * 60;
    // The state of the walk in plain locals, so that it stays in registers:
    // whether a period is open, the second it began and its length so far.
    bool over = false, idle = false;
    int overStart = 0, idleStart = 0;
    long overSeconds = 0, idleRun = 0;
    int32_t accelerations = 0, brakes = 0;
    int p = 0; // speed of the second before
    auto Period_Of = [](int start, int end, long seconds) {
        Period e;
        Put_Time(e.start, start);
        Put_Time(e.end, end);
        e.seconds = int(seconds);
        return e;
    };

    // Seconds of neither speed nor engine, after a second without speed and
    // outside any period, change nothing: such runs (the night, the stops
    // with the engine off) are passed over eight at a time. Thresholds that
    // would count a standing second (no rise needed, a limit below 0) take
    // every second.
    const bool quietIsNothing = quickAccel > 0 && limit >= 0.0f;
    // The same tests in whole numbers for the steady stretches: a fall is a
    // brake at brakeAt or below, a speed is above the limit from aboveFrom
    // (the float comparison, one speed value after another: it only turns
    // from false to true).
    const int accelAt = std::clamp(quickAccel, -256, 256);
    const int brakeAt = std::clamp(-quickBrake, -256, -1);
    int aboveFrom = 256;
    while (aboveFrom > 0 && float(aboveFrom - 1) > limit)
        --aboveFrom;
    const int lastSecond = limits.firstSecond + kDaySeconds - 1;
    // A stretch never takes in the last second of the day, where an open
    // overspeed closes.
    const int lastSteadyStart = std::min(lastSecond + 1, kDaySeconds - 1) - 16;
    int nextTry = 0; // after a stretch that isn't steady, its seconds one by one
    for (int i = limits.firstSecond; i <= lastSecond; ++i) {
        if (i >= nextTry) {
            while (i <= lastSteadyStart
                   && Steady16(speed.data() + i, engine.data() + i, p, accelAt, brakeAt, aboveFrom, over, idle)) {
                if (over)
                    overSeconds += 16;
                if (idle)
                    idleRun += 16;
                p = speed[size_t(i) + 15];
                i += 16;
            }
            nextTry = i + 16;
        }
        if (quietIsNothing && p == 0 && !over && !idle) {
            while (i + 8 <= lastSecond + 1) {
                uint64_t a, b;
                std::memcpy(&a, speed.data() + i, 8);
                std::memcpy(&b, engine.data() + i, 8);
                if ((a | b) != 0)
                    break;
                i += 8;
            }
            while (i <= lastSecond && speed[i] == 0 && engine[i] == 0)
                ++i;
            if (i > lastSecond)
                break;
        }
        const int v = speed[i];
        const int change = v - p;

        if (change >= quickAccel) {
            ++accelerations;
            if (lists)
                Append_Change(out.Acceleration_Data, i, p, v);
        }
        if (std::abs(change) >= quickBrake && change < 0) {
            ++brakes;
            if (lists)
                Append_Change(out.Brack_Data, i, p, v);
        }

        // Long overspeed. A period still open at second 86,399 is closed
        // there: the day ends for it one second early.
        const bool above = float(v) > limit;
        if (!over) {
            if (above) {
                overStart = i;
                overSeconds = 1;
                over = true;
            }
        } else {
            bool closing = !above;
            if (above) {
                ++overSeconds;
                closing = (i == kDaySeconds - 1);
            }
            if (closing) {
                if (overSeconds > longSeconds)
                    overs.push_back(Period_Of(overStart, i, overSeconds));
                over = false;
                overSeconds = 0;
            }
        }

        // Idle: standing with the engine running. Nothing closes it at the
        // end of the day, so a period still open at 23:59:59 is lost.
        const bool idling = v == 0 && engine[i] > 0;
        if (!idle) {
            if (idling) {
                idleStart = i;
                idleRun = 1;
                idle = true;
            }
        } else if (idling) {
            ++idleRun;
        } else {
            if (idleRun > idleSeconds)
                idles.push_back(Period_Of(idleStart, i, idleRun));
            idle = false;
            idleRun = 0;
        }

        p = v;
    }
    out.Acceleration = accelerations;
    out.Brack = brakes;

    // Idle: one record a period, but a long idling counts once for each full
    // threshold period it lasted.
    out.Idle_Data.reserve(int(idles.size()) * 18);
    long idleCount = long(idles.size());
    for (const Period& e : idles) {
        if (limits.lists)
            Append_Period(out.Idle_Data, e);
        if (idleSeconds == 0)
            throw RunTimeError(QStringLiteral("Division by zero"));
        const long q = e.seconds / idleSeconds;
        if (q > 1)
            idleCount += q - 1;
    }
    if (idleCount > 32767 || idles.size() > 32767)
        throw RunTimeError(QStringLiteral("Overflow"));
    out.Idle = int16_t(idleCount);
    out.Idle_Runs = int16_t(idles.size());

    out.LkEngin_Data.reserve(int(overs.size()) * 18);
    if (limits.lists)
        for (const Period& e : overs)
            Append_Period(out.LkEngin_Data, e);
    if (overs.size() > 32767)
        throw RunTimeError(QStringLiteral("Overflow"));
    out.LKEngin = int16_t(overs.size());
    return out;
}

namespace {

// The day file of car, driver and day through the detector into the summary
// and its tables. The limit is B_Val3 unless the car has its own.
int16_t Save_From_Day_File(Cls_DB& db, int16_t code, QString& car, QString& driver, QString& day)
{
    int16_t flag = 0;
    const bool ok = Guarded(code, [&] {
        const Cls_Config& cfg = *G().Config;
        const DayFile file = Read_Day_File(db, Find_Day_File(db, Day_File_Name(car, driver, day)));

        EventLimits limits;
        limits.limit = float(cfg.B_Val3);
        Recordset s1 = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1=?"), {car});
        if (s1.RecordCount() > 0) {
            const QVariant own = s1.Field(QStringLiteral("D_F10"));
            if (!own.isNull() && !own.toString().isEmpty() && Val(own.toString()) > 0)
                limits.limit = float(Val(own.toString()));
        }
        s1.Close();
        limits.quickAccel = cfg.B_Val10;
        limits.quickBrake = cfg.B_Val9;
        limits.longOverMinutes = cfg.B_Val11;
        limits.idleMinutes = cfg.B_Val12;

        DayEvents ev = Detect_Day_Events(file.speed, file.engine, limits);
        flag = db.DB_Save_D_D1(car, driver, ev.Sec_Data, day, ev.Acceleration, ev.Brack, ev.Idle, ev.Idle_Data,
                               ev.Brack_Data, ev.Acceleration_Data, ev.LKEngin, ev.LkEngin_Data,
                               ev.Sec_RPM_Data);
    });
    if (!ok && db.Msg_Box)
        db.Msg_Box(QStringLiteral("분당 데이터 생성 에러"));
    return ok ? flag : int16_t(0);
}

} // namespace

int16_t Cls_DB::DB_Save_D_D1_file(QString& car, QString& driver, QString& day)
{
    return Save_From_Day_File(*this, 1096, car, driver, day);
}

int16_t Cls_DB::DB_Save_D_D12_file(QString& car, QString& driver, QString& day)
{
    return Save_From_Day_File(*this, 1097, car, driver, day);
}

} // namespace vex
