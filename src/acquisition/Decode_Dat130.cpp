// Model "130": hour blocks into the minute series, the event region into the
// event lists, the summary rebuilt from both, and the minute records of
// second data into the day files.
#include "acquisition/UsbBytes.h"
#include "acquisition/UsbRecorder.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/EventDetector.h"

#include <QFile>
#include <QFileInfo>
#include <map>
#include <vector>

namespace vex {

namespace {

constexpr int kHourChars = 120;

// Cells of added into series from at on, where the series still holds "00".
void Merge_Cells(QString& series, int at, const QString& added)
{
    for (int i = 0; i + 1 < added.size(); i += 2) {
        if (series[at + i] == QLatin1Char('0') && series[at + i + 1] == QLatin1Char('0')) {
            series[at + i] = added[i];
            series[at + i + 1] = added[i + 1];
        }
    }
}

// A day's series into table: a new row takes it as it is; a stored row
// takes a cell only where its minute is still "00", so the first recording
// of a minute wins and two logs of one day merge.
void Merge_Series(Cls_DB& db, const QString& table, const QString& key, const QString& day)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM ") + table + QStringLiteral(" WHERE D_F1=?"), {key});
    if (rs.RecordCount() < 1) {
        rs.AddNew();
        rs.Set(QStringLiteral("D_F1"), key);
        rs.Set(QStringLiteral("D_F2"), day);
    } else {
        QString series = rs.Text(QStringLiteral("D_F2"));
        if (series.size() < kSeriesChars)
            series = series.leftJustified(kSeriesChars, QLatin1Char('0'));
        const QString before = series;
        Merge_Cells(series, 0, day);
        if (series == before)
            return; // nothing new: the row stays as it is
        rs.Set(QStringLiteral("D_F2"), series);
    }
    rs.Update();
    rs.Close();
}

// The car is a "130" from now on; cars and drivers register themselves at
// first sight.
void Ensure_Registers(Cls_DB& db, const QString& car, const QString& driver)
{
    if (!db.Register_Car(car, G().Config->B_Val3, QStringLiteral("130"))) {
        Recordset c = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1=?"), {car});
        if (c.RecordCount() > 0 && c.Text(QStringLiteral("D_F6")) != QLatin1String("130")) {
            c.Set(QStringLiteral("D_F6"), QStringLiteral("130"));
            c.Update();
        }
    }
    db.Register_Driver(driver);
}

// The three minute series of a day as the hours of a log arrive, merged
// minute by minute in the order of the log before they meet the stored rows.
struct Day_Series {
    QString speed = QString(kSeriesChars, QLatin1Char('0'));
    QString distance = QString(kSeriesChars, QLatin1Char('0'));
    QString second = QString(kSeriesChars, QLatin1Char('0'));

    void Add_Hour(int hour, const QString& sp, const QString& dist, const QString& ch)
    {
        const int at = hour * kHourChars;
        Merge_Cells(speed, at, sp);
        Merge_Cells(distance, at, dist);
        Merge_Cells(second, at, ch);
    }
};

void Store_Day(Cls_DB& db, const QString& key, const Day_Series& day)
{
    Merge_Series(db, QStringLiteral("D_D3"), key, day.speed);
    Merge_Series(db, QStringLiteral("D_D7"), key, day.distance);
    Merge_Series(db, QStringLiteral("D_D8"), key, day.second);
}

QString Text_Of(Cls_DB& db, const QString& table, const QString& key, bool* found = nullptr)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM ") + table + QStringLiteral(" WHERE D_F1=?"), {key});
    const bool has = rs.RecordCount() > 0;
    const QString text = has ? rs.Text(QStringLiteral("D_F2")) : QString();
    rs.Close();
    if (found)
        *found = has;
    return text;
}

// A speed of the event region as one byte of hexadecimal; 256 km/h and more
// don't fit and are "FF".
QString Speed_Hex(int kmh)
{
    return kmh >= 256 ? QStringLiteral("FF") : Hex2(uint8_t(kmh));
}

bool In_Dates(const Filing_Note& who, const QString& day)
{
    return day >= who.from && day <= who.to;
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

void usb_File_Read(Cls_DB& db, const QString& car, const QString& driver, const QString& stamp, const QString& speed,
                   const QString& metres, const QString& second, int16_t& result)
{
    result = 0;
    Guarded(kErrUsb_File_Read, [&] {
        if (stamp.size() != 8 || !All_Digits(stamp))
            throw RunTimeError(QStringLiteral("Type mismatch: stamp \"%1\"").arg(stamp));
        const int hour = stamp.mid(6, 2).toInt();
        if (hour > 23 || speed.size() != kHourChars || second.size() != kHourChars || metres.size() != 2 * kHourChars)
            throw RunTimeError(QStringLiteral("Subscript out of range: hour %1").arg(stamp));
        Ensure_Registers(db, car, driver);
        Day_Series day;
        day.Add_Hour(hour, speed, Compress_Metres(metres), second);
        Store_Day(db, car + driver + stamp.left(6), day);
        result = -1;
    });
}

void dd1_File_Read(Cls_DB& db, const QString& car, const QString& driver, const QString& date, int16_t& result)
{
    result = 0;
    Guarded(kErrDd1_File_Read, [&] {
        const Cls_Config& cfg = *G().Config;
        const QString key = car + driver + date;
        bool found = false;
        const QString speed = Text_Of(db, QStringLiteral("D_D3"), key, &found);
        if (!found) {
            result = -1;
            return;
        }

        // 1. Start and end: the first and the last minute with a speed.
        auto Driven = [&](int m) {
            const QStringView cell = QStringView(speed).mid(2 * m, 2);
            return cell.size() == 2 && cell != QLatin1String("00") && cell != QLatin1String("FF");
        };
        int first = 0;
        while (first < kDayMinutes && !Driven(first))
            ++first;
        int last = kDayMinutes - 1;
        while (last >= 0 && !Driven(last))
            --last;
        const QString startTime = first < kDayMinutes ? HHMM_Of_Minutes(first) : QStringLiteral("0000");
        const QString endTime = last >= 0 ? HHMM_Of_Minutes(last) : QStringLiteral("0000");

        // 2. The car's own limit, never above the standard's.
        int limit = cfg.B_Val4;
        Recordset s1 = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1=?"), {car});
        if (s1.RecordCount() > 0) {
            const QString own = s1.Text(QStringLiteral("D_F10"));
            if (!own.trimmed().isEmpty() && Val(own) <= cfg.B_Val4)
                limit = int(Val(own));
        }
        s1.Close();

        // 3. Minutes above the limit.
        int16_t over = 0;
        for (int m = 0; m < kDayMinutes && 2 * m + 1 < speed.size(); ++m)
            if (Hex_Cell(speed, 2 * m) > limit)
                ++over;

        // 4-5. Distance in tenths of a kilometre, and the events as stored.
        const QString cells = Text_Of(db, QStringLiteral("D_D7"), key);
        double distance = 0;
        for (int i = 0; i + 1 < cells.size() && i < kSeriesChars; i += 2)
            distance += Val(cells.mid(i, 2));
        const int brakes = int(Text_Of(db, QStringLiteral("D_D2"), key).size() / 10);
        const int accelerations = int(Text_Of(db, QStringLiteral("D_D4"), key).size() / 10);

        // 6. The summary row.
        const QString mark = db.CAL_AVG(over, float(accelerations), float(brakes), 0, 0, float(distance));
        if (!Is_Numeric(mark))
            throw RunTimeError(QStringLiteral("Type mismatch: mark \"%1\"").arg(mark));
        Recordset rs = Row_Or_New(db, QStringLiteral("D_D1"), key);
        rs.Set(QStringLiteral("D_F2"), car);
        rs.Set(QStringLiteral("D_F3"), driver);
        rs.Set(QStringLiteral("D_F4"), date);
        rs.Set(QStringLiteral("D_F5"), startTime);
        rs.Set(QStringLiteral("D_F6"), date);
        rs.Set(QStringLiteral("D_F7"), endTime);
        rs.Set(QStringLiteral("D_F8"), distance);
        rs.Set(QStringLiteral("D_F9"), accelerations);
        rs.Set(QStringLiteral("D_F10"), brakes);
        rs.Set(QStringLiteral("D_F11"), over);
        rs.Set(QStringLiteral("D_F12"), 0);
        rs.Set(QStringLiteral("D_F13"), 0);
        rs.Set(QStringLiteral("D_F14"), Val(mark));
        rs.Update();
        rs.Close();
        result = -1;
    });
}

bool Decode_Dat130(Cls_DB& db, const QString& path)
{
    const std::optional<Filing_Note> who = Read_Filing_Note(path);
    if (!who) {
        Err_Proc(kErrHex2, QStringLiteral("Invalid procedure call: %1 has no filing note").arg(path));
        return false;
    }
    return Decode_Dat130(db, path, *who);
}

bool Decode_Dat130(Cls_DB& db, const QString& path, const Filing_Note& who)
{
    if (!Is_Code(who.car) || !Is_Code(who.driver)) {
        Err_Proc(kErrHex2, QStringLiteral("Invalid procedure call: car \"%1\" driver \"%2\"").arg(who.car, who.driver));
        return false;
    }
    Cls_DB::Batch batch(db); // one commit for the file; a failure keeps what was written
    QByteArray bytes;
    const bool read = Guarded(kErrHex2, [&] {
        QFile f(path);
        if (!f.open(QIODevice::ReadOnly))
            throw RunTimeError(QStringLiteral("File not found: ") + path);
        // The three regions lie in the filed part; the rest is never looked at.
        bytes = f.read(kDat130Filed);
        if (f.error() != QFileDevice::NoError)
            throw RunTimeError(QStringLiteral("Device I/O error: ") + path);
    });
    if (!read)
        return false;

    Usb_Reception& state = Usb_State();
    QString car = who.car, driver = who.driver; // the save routines take them by reference
    const Byte_View v(bytes);
    std::map<QString, Day_Series> days;

    // First pass: the hour blocks.
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
        if (!In_Dates(who, date))
            continue;
        // An hour that isn't one of the day has no place in its series.
        if (!v.Digits(at + 4, 1) || v.Bcd(at + 4) > 23)
            continue;

        QString speed(kHourChars, Qt::Uninitialized), second(kHourChars, Qt::Uninitialized), metres;
        metres.reserve(2 * kHourChars);
        for (int m = 0; m < 60; ++m) {
            const qint64 s = at + 5 + 4 * m;
            const uint8_t sp = v[s] == 0xFF ? 0 : v[s];
            const uint8_t ch = v[s + 1] == 0xFF ? 0 : v[s + 1];
            const QString a = Hex2(sp), b = Hex2(ch);
            speed[2 * m] = a[0];
            speed[2 * m + 1] = a[1];
            second[2 * m] = b[0];
            second[2 * m + 1] = b[1];
            metres += v.Digits(s + 2, 2) ? v.Digit_Text(s + 2, 2) : QStringLiteral("0000");
        }
        days[date].Add_Hour(v.Bcd(at + 4), speed, Compress_Metres(metres), second);
    }
    // The hours of a day are merged in the order of the log and reach the
    // stored rows as one: the same rows as hour by hour, in a write a table.
    if (!days.empty()) {
        Guarded(kErrUsb_File_Read, [&] { Ensure_Registers(db, car, driver); });
        for (const auto& entry : days)
            Guarded(kErrUsb_File_Read, [&] { Store_Day(db, car + driver + entry.first, entry.second); });
    }

    // Second pass: the event region, whatever the dialog's dates: the region
    // is a ring of the recorder's last events, and each kind keeps its list
    // of one date and hands it over when a record of that kind brings
    // another date.
    struct Kind {
        QString type, date, list;
    };
    Kind kinds[2] = {{QStringLiteral("55"), {}, {}}, {QStringLiteral("AA"), {}, {}}};
    auto Flush = [&](Kind& k) {
        if (!k.list.isEmpty())
            db.DB_Save_UD_D2(car, driver, k.type, k.date, k.list);
        k.list.clear();
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
        Kind& k = kinds[brake ? 0 : 1];
        if (k.date != date)
            Flush(k);
        k.date = date;
        k.list += v.Digit_Text(at + 3, 3) + Speed_Hex(a) + Speed_Hex(b);
    }
    Flush(kinds[0]);
    Flush(kinds[1]);

    // Third pass: the summary of every day the hour blocks touched.
    for (const auto& entry : days) {
        const QString& date = entry.first;
        int16_t result = 0;
        dd1_File_Read(db, car, driver, date, result);
        state.stored << car + driver + date;
    }

    // Fourth pass: the minute records of second data, a day at a time. The
    // second byte of a pair is dropped; this recorder's day files carry no
    // engine.
    std::vector<uint8_t> speed(kDayArray, 0), engine(kDayArray, 0);
    QString current;
    auto Save = [&] {
        db.DB_Save_D_D2_130(car, driver, speed, engine, current);
        std::fill(speed.begin(), speed.end(), 0);
    };
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
        if (!In_Dates(who, date))
            continue;
        if (!current.isEmpty() && date != current)
            Save();
        current = date;
        const int base = hour * 3600 + minute * 60;
        for (int s = 0; s < 60; ++s) {
            const uint8_t sp = v[at + 5 + 2 * s];
            speed[base + s] = sp > 254 ? 0 : sp;
        }
    }
    if (!current.isEmpty())
        Save();
    return true;
}

} // namespace vex
