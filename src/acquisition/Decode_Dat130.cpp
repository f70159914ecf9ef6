// Model "130", the storing side: the days of a log (Decode_Dat130_Log) into
// the minute series, the event lists, the summary rebuilt from both, and the
// day files of second data.
#include "acquisition/UsbBytes.h"
#include "acquisition/UsbRecorder.h"
#include "acquisition/Usb_Days.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/EventDetector.h"
#include "store/Trip_Columns.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <vector>

namespace vex {

namespace {

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

// The three minute series of a day into D_D3, D_D7 and D_D8.
void Store_Day(Cls_DB& db, const QString& key, const QString& speed, const QString& distance, const QString& second)
{
    Merge_Series(db, QStringLiteral("D_D3"), key, speed);
    Merge_Series(db, QStringLiteral("D_D7"), key, distance);
    Merge_Series(db, QStringLiteral("D_D8"), key, second);
}

// One hour's cells at their place in a day of "00".
QString Hour_In_Day(int hour, const QString& cells)
{
    QString day(kSeriesChars, QLatin1Char('0'));
    Merge_Cells(day, hour * kHourChars, cells);
    return day;
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

} // namespace

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
        Store_Day(db, car + driver + stamp.left(6), Hour_In_Day(hour, speed),
                  Hour_In_Day(hour, Compress_Metres(metres)), Hour_In_Day(hour, second));
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
        rs.Set(trip_col::Car, car);
        rs.Set(trip_col::Driver, driver);
        rs.Set(trip_col::Start_Day, date);
        rs.Set(trip_col::Start_Time, startTime);
        rs.Set(trip_col::End_Day, date);
        rs.Set(trip_col::End_Time, endTime);
        rs.Set(trip_col::Distance, distance);
        rs.Set(trip_col::Accelerations, accelerations);
        rs.Set(trip_col::Brakes, brakes);
        rs.Set(trip_col::Overspeed_Minutes, over);
        rs.Set(trip_col::Idles, 0);
        rs.Set(trip_col::Long_Overspeeds, 0);
        rs.Set(trip_col::Mark, Val(mark));
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
    const Dat130_Log log = Decode_Dat130_Log(bytes, who.from, who.to);

    // The hours of a day were merged in the order of the log and reach the
    // stored rows as one: the same rows as hour by hour, in a write a table.
    if (!log.days.empty()) {
        Guarded(kErrUsb_File_Read, [&] { Ensure_Registers(db, car, driver); });
        for (const auto& entry : log.days) {
            const Usb_Minute_Day& day = entry.second;
            Guarded(kErrUsb_File_Read, [&] {
                Store_Day(db, car + driver + entry.first, Hex_Cells(day.speed), Decimal_Cells(day.distance),
                          Hex_Cells(day.second));
            });
        }
    }

    // The event lists, merged into the stored ones.
    for (const Usb_Event_List& events : log.events) {
        QString type = events.type, date = events.date, records = events.Records();
        db.DB_Save_UD_D2(car, driver, type, date, records);
    }

    // The summary of every day the hour blocks touched.
    for (const auto& entry : log.days) {
        int16_t result = 0;
        dd1_File_Read(db, car, driver, entry.first, result);
        state.stored << car + driver + entry.first;
    }

    // The second data, a run of one day at a time; no engine.
    std::vector<uint8_t> speed(kDayArray, 0);
    const std::vector<uint8_t> engine(kDayArray, 0);
    for (const Usb_Second_Run& run : log.seconds) {
        std::fill(speed.begin(), speed.end(), 0);
        for (const Usb_Second_Minute& m : run.minutes)
            std::copy(m.speed.begin(), m.speed.end(), speed.begin() + qint64(m.minute) * 60);
        db.DB_Save_D_D2_130(car, driver, speed, engine, run.day);
    }
    return true;
}

} // namespace vex
