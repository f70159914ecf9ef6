// Repair of a filed pack day. A bad field is never an error: each has a fixed
// fallback. Only a page that fails its check byte is refused.
#include "acquisition/Pack_Decoder.h"

#include "acquisition/Inbox_Names.h"
#include "acquisition/PackLayout.h"
#include "core/Pad.h"
#include "core/VbText.h"

#include <algorithm>
#include <cmath>

namespace vex {

namespace {

constexpr int kCells = 1440;

// Value of a two-character hexadecimal cell; a cell with another character
// counts as 0, as the failed conversion leaves it.
int Hex_Value(const QString& cell)
{
    int v = 0;
    for (QChar c : cell) {
        const int d = Hex_Digit(c);
        if (d < 0)
            return 0;
        v = v * 16 + d;
    }
    return v;
}

QString Cell(const QString& series, int m) // m from 0
{
    return series.mid(2 * m, 2);
}

// Memory never written since it was erased reads as "FF" bytes.
bool Erased_Page(const QString& field)
{
    return !field.isEmpty() && std::all_of(field.begin(), field.end(), [](QChar c) { return c == u'F'; });
}

// A minute of distance as decimal digits "XY" with the flag bit in X: the
// tenths of a kilometre, or 0 for a cell with another character.
int Distance_Tenths(const QString& cell)
{
    if (cell.size() < 2 || !All_Digits(cell))
        return 0;
    int hi = cell[0].digitValue();
    if (hi >= 8)
        hi -= 8;
    return hi * 10 + cell[1].digitValue();
}

// "#0.0" of a non-negative value: one decimal, halves away from zero.
double Round_Tenth(double v)
{
    return std::floor(v * 10 + 0.5) / 10;
}

// The text of a number as the runtime writes it: no trailing ".0".
QString Number_Text(double v)
{
    return QString::number(v, 'g', 15);
}

// Rounds halves to the even neighbour.
int Round_Even(double v)
{
    return int(std::nearbyint(v));
}

// The ten brake records that hold digits for their time and plausible
// speeds, in order, padded with "0" to 100 characters; count gets their number.
QString Filter_Brake_Records(const QString& records, int* count)
{
    QString kept;
    *count = 0;
    for (int r = 0; r < 10; ++r) {
        const QString rec = records.mid(10 * r, 10);
        const int before = Hex_Value(rec.mid(6, 2));
        const int after = Hex_Value(rec.mid(8, 2));
        if (!All_Digits(rec.left(6)) || before == 0 || before > 140 || after > 140)
            continue;
        kept += rec;
        ++*count;
    }
    return kept.leftJustified(100, QLatin1Char('0'), true);
}

// The speed series rebuilt from the distance of each minute, for a series
// that is mostly garbage: the kilometres of a minute (at most 2.1) times 60.
QString Speed_From_Distance(const QString& distance)
{
    QString out;
    out.reserve(2 * kCells);
    for (int m = 0; m < kCells; ++m) {
        const QString cell = Cell(distance, m);
        int d1 = Hex_Value(cell.left(1));
        if (d1 >= 8)
            d1 -= 8;
        const int d2 = Hex_Value(cell.mid(1, 1));
        double v = (d1 * 10 + d2) / 10.0;
        if (v > 2.1)
            v = 2.1;
        const int speed = Round_Even(v * 60);
        out += v < 0.1 ? QStringLiteral("00") : Pad2(QString::number(speed, 16).toUpper());
    }
    return out;
}

// The distance series of the day: digits stay; a cell with another
// character is rebuilt from the speed of that minute ("#0.0" of km/h / 60,
// plus 8 for the flag, first and last character; 2.0 km and more overflow
// the digit, so 120 km/h gives "10").
QString Repair_Distance(const QString& distance, const QString& speed)
{
    QString out;
    out.reserve(2 * kCells);
    for (int m = 0; m < kCells; ++m) {
        const QString cell = Cell(distance, m);
        if (cell.size() == 2 && All_Digits(cell)) {
            out += cell;
            continue;
        }
        const QString s = Cell(speed, m);
        if (s == QLatin1String("00") || !All_Digits(s)) {
            out += QStringLiteral("00");
            continue;
        }
        const QString text = Number_Text(Round_Tenth(Hex_Value(s) / 60.0) + 8);
        out += text.left(1) + text.right(1);
    }
    return out;
}

// Notes a field that a repair changed.
void Note(QStringList& repairs, const char* field, const QString& from, const QString& to)
{
    if (from != to)
        repairs << QStringLiteral("%1 \"%2\" -> \"%3\"").arg(QLatin1String(field), from, to);
}

} // namespace

bool Bad_Pack_Day(const QString& day, bool digitsOnly)
{
    const bool numeric = digitsOnly ? All_Digits(day) : Is_Numeric(day);
    return !numeric || day == QLatin1String("000000") || Val(day.mid(2, 2)) > 12 || Val(day.mid(4, 2)) > 31;
}

bool Pack_Code(const QString& code)
{
    return code.size() == 4 && Is_Code(QStringLiteral("00") + code);
}

QString Key_Refusal(const QString& car, const QString& driver, const QString& day)
{
    return QStringLiteral("no key: car \"%1\" driver \"%2\" day \"%3\"").arg(car, driver, day);
}

Pack_Decoding Decode_Pack_Day(const QByteArray& file, const Pack_Decode_Inputs& inputs)
{
    Pack_Decoding out;
    QStringList& repairs = out.repairs;
    const ReadRecords rec = Read_Records(file);
    if (rec.day.text().isEmpty()) {
        out.verdict = Pack_Decoding::Verdict::Empty;
        out.refusal = QStringLiteral("empty file");
        return out;
    }
    const PageText& day = rec.day;
    const PageText& dist = rec.distance;
    auto f = [&](const Field& field) { return Fixed(day.field(field), field.width); };

    const QString car4 = f(DayPage::CarCode);
    const QString driver4 = f(DayPage::DriveCode);
    // A page with a car or a distance is in use whatever its check byte says.
    QString check1 = f(DayPage::CheckPack1);
    if (car4 != QLatin1String("0000") || Val(f(DayPage::Distance)) != 0) {
        Note(repairs, "CheckPack1", check1, QStringLiteral("AA"));
        check1 = QStringLiteral("AA");
    }
    if (check1 != QLatin1String("AA")) {
        out.verdict = Pack_Decoding::Verdict::Check_Byte;
        out.refusal = QStringLiteral("check byte");
        return out;
    }

    QString startDay = f(DayPage::StartDay);
    if (Bad_Pack_Day(startDay, false)) {
        const QString distStart = dist.field(DistPage::StartDay), distEnd = dist.field(DistPage::EndDay);
        const QString before = startDay;
        if (Is_Numeric(distStart))
            startDay = Fixed(distStart, 6);
        else if (Is_Numeric(distEnd))
            startDay = Fixed(distEnd, 6);
        Note(repairs, "StartDay", before, startDay);
    }
    QString endDay = f(DayPage::EndDay);
    if (Bad_Pack_Day(endDay, false)) {
        Note(repairs, "EndDay", endDay, startDay);
        endDay = startDay;
    }

    // Speed by the minute: neighbouring minutes over the car's limit make
    // the long overspeed count; many minutes over 150 km/h mean garbage.
    const int limit = inputs.speedLimitOf(car4);
    QString speed = f(DayPage::Sec_Data);
    int over150 = 0, overLimit = 0;
    for (int m = 0; m + 1 < kCells; ++m) {
        const int a = Hex_Value(Cell(speed, m)), b = Hex_Value(Cell(speed, m + 1));
        over150 += a > 150;
        overLimit += a > limit && b > limit;
    }
    QString lkEngin = Fixed(QString::number(overLimit).left(2), 2);
    if (Val(f(DayPage::LKEngin)) != Val(lkEngin))
        Note(repairs, "LKEngin", f(DayPage::LKEngin), lkEngin);
    if (over150 > 40) {
        speed = Speed_From_Distance(dist.field(DistPage::Sec_Data).leftJustified(2 * kCells, QLatin1Char(' ')));
        repairs << QStringLiteral("Sec_Data rebuilt from the distance (%1 minutes above 150 km/h)").arg(over150);
    }
    int cleaned = 0;
    for (int m = 0; m < kCells; ++m) {
        const QString cell = Cell(speed, m);
        if (cell == QLatin1String("FF") || (m > 0 && Hex_Value(cell) >= 150)) {
            speed.replace(2 * m, 2, QStringLiteral("00"));
            ++cleaned;
        }
    }
    if (cleaned > 0)
        repairs << QStringLiteral("Sec_Data %1 cells of erased memory or 150 km/h and more -> \"00\"").arg(cleaned);

    int leading = 0;
    while (leading < kCells && Cell(speed, leading) == QLatin1String("00"))
        ++leading;
    QString startTime = f(DayPage::StartTime);
    if (!All_Digits(startTime) || leading > Val(startTime.left(2)) * 60 + Val(startTime.mid(2, 2))) {
        Note(repairs, "StartTime", startTime, HHMM_Of_Minutes(leading));
        startTime = HHMM_Of_Minutes(leading);
    }

    QString endTime = f(DayPage::EndTime);
    const bool badEnd = !All_Digits(endTime) || Val(endTime) < Val(startTime);
    if (badEnd) {
        int trailing = 0;
        while (trailing < kCells && Cell(speed, kCells - 1 - trailing) == QLatin1String("00"))
            ++trailing;
        Note(repairs, "EndTime", endTime, HHMM_Of_Minutes(1439 - trailing));
        endTime = HHMM_Of_Minutes(1439 - trailing);
    }

    // A wrong end time also forces the distance to be summed again.
    QString distance = f(DayPage::Distance);
    const QString distSeries = dist.field(DistPage::Sec_Data);
    if (badEnd || !All_Digits(distance) || Val(distance) / 10 > 1000) {
        int sum = 0;
        for (int m = 0; m < kCells; ++m)
            sum += Distance_Tenths(Cell(distSeries, m));
        const QString summed = Fixed(QString::number(sum).left(6), 6);
        Note(repairs, "Distance", distance, summed);
        distance = summed;
    }

    // An implausible count of quick accelerations becomes a random one of
    // at most 100, as the system has always stored it.
    QString acceleration = f(DayPage::Acceleration);
    const QString pageAcceleration = acceleration;
    if (All_Digits(acceleration)) {
        if (Val(acceleration) > 300)
            acceleration = Pad4(QString::number(inputs.random(101)));
    } else {
        acceleration = QStringLiteral("0000");
    }
    Note(repairs, "Acceleration", pageAcceleration, acceleration);
    QString brack = f(DayPage::Brack);
    if (!Is_Numeric(brack)) {
        Note(repairs, "Brack", brack, QStringLiteral("00"));
        brack = QStringLiteral("00");
    }
    if (!Is_Numeric(lkEngin))
        lkEngin = QStringLiteral("00");

    // A page left erased (nothing driven after the last reception) is a
    // day without driving, not damage: nothing to store, nothing refused.
    if (Erased_Page(f(DayPage::StartDay)) && Erased_Page(f(DayPage::EndDay)) && Erased_Page(f(DayPage::Sec_Data))
        && Erased_Page(dist.field(DistPage::StartDay))) {
        out.verdict = Pack_Decoding::Verdict::Erased;
        return out;
    }
    // A day whose codes or date are no key after the repairs is no day of a
    // pack: nothing of it is stored.
    if (!Pack_Code(car4) || !Pack_Code(driver4) || !Is_Day(startDay)) {
        out.verdict = Pack_Decoding::Verdict::No_Key;
        out.refusal = Key_Refusal(car4, driver4, startDay);
        return out;
    }

    QString brakeRecords = f(DayPage::Brack_Data);
    if (brack != QLatin1String("00")) {
        int kept = 0;
        brakeRecords = Filter_Brake_Records(brakeRecords, &kept);
        const QString counted = Fixed(QString::number(kept).left(2), 2);
        Note(repairs, "Brack", brack, counted);
        brack = counted;
    }

    // Six-character codes as the USB recorders give them: "00" and the
    // pack's four, so that a car keeps one key whatever medium it used.
    Pack_Day& d = out.day;
    d.car = QStringLiteral("00") + car4;
    d.driver = QStringLiteral("00") + driver4;
    d.startDay = startDay;
    d.endDay = endDay;
    d.startTime = startTime;
    d.endTime = endTime;
    d.distance = int(Val(distance));
    d.engine = f(DayPage::Engin);
    d.accelerations = int(Val(acceleration));
    d.brakes = int(Val(brack));
    d.longOverspeeds = int(Val(lkEngin));
    d.brakeRecords = brakeRecords;
    d.brakeBuffer = f(DayPage::Brack_Buffer_Data);
    d.brakeTimes = f(DayPage::Brack_Time_Data);
    d.longOverspeedRecords = f(DayPage::LkEngin_Data);
    d.speedBands = f(DayPage::Speed_Dist_Data);
    d.speed = speed;
    // The distance page is indexed by the day of month alone: one of
    // another month says nothing of this day.
    if (dist.field(DistPage::StartDay) != startDay) {
        d.distanceSeries = QString(2 * kCells, QLatin1Char('0'));
        repairs << QStringLiteral("distance page of another day (%1): zeros").arg(dist.field(DistPage::StartDay));
    } else {
        d.distanceSeries = Repair_Distance(distSeries.leftJustified(2 * kCells, QLatin1Char(' ')), speed);
    }
    // The last-trip counters; the count of accelerations is the repaired one
    // of the day, as the system has always given it.
    d.last = {f(DayPage::LastDistance), acceleration, f(DayPage::LastLKEngin), f(DayPage::LastBrack),
              f(DayPage::LastEnginOver)};
    return out;
}

} // namespace vex
