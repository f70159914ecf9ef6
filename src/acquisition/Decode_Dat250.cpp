// Model "250" and the day files of the USB road: the log's minute records
// into ".ntd" day files under \new, and a day file from \new into the day
// file of second data, the minute distance and the summary.
#include "acquisition/UsbBytes.h"
#include "acquisition/UsbRecorder.h"

#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/EventDetector.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <vector>

namespace vex {

namespace {

constexpr int kSamples250 = 16;   // first sample of a record
constexpr int kSampleSize250 = 8;
constexpr int kMinute250 = 496;   // the minute's two values

uint8_t Clean(uint8_t b)
{
    return b > 254 ? 0 : b;
}

QString Hex_Text(const QByteArray& bytes, int at, int n)
{
    QString text;
    for (int i = 0; i < n; ++i)
        text += Hex2(uint8_t(bytes[at + i]));
    return text;
}

} // namespace

bool Decode_Dat250(Cls_DB& db, const QString& path)
{
    Usb_Reception& state = Usb_State();
    QString car = state.car, driver = state.driver;
    if (car.isEmpty() || driver.isEmpty()) {
        // Without a reception the medium tells who drove.
        const auto master = Read_Master(QFileInfo(path).dir().filePath(QStringLiteral("Master00.dat")));
        if (!master)
            return false;
        car = master->car;
        driver = master->driver;
    }

    std::vector<uint8_t> speed(kDayArray, 0), engine(kDayArray, 0), minute(kSeriesChars, 0);
    QString current;
    auto Save = [&] {
        // The minute's two values are the hundreds of metres and the rest.
        std::vector<float> metres(kDayMinutes + 1, 0.0f);
        for (int k = 0; k < kDayMinutes; ++k)
            metres[k + 1] = float(minute[2 * k]) * 100.0f + float(minute[2 * k + 1]);
        // A day whose file can't be written (a full disk) is named in the
        // reception's outcome; the log stays on the medium for another try.
        if (db.DB_Save_D_D_usb(car, driver, speed, engine, metres, current) != -1)
            state.unsaved << current + QStringLiteral(" (") + Err_Last() + QLatin1Char(')');
        std::fill(speed.begin(), speed.end(), 0);
        std::fill(engine.begin(), engine.end(), 0);
        std::fill(minute.begin(), minute.end(), 0);
    };

    return Guarded(kErrHex2, [&] {
        QFile f(path);
        if (!f.open(QIODevice::ReadOnly))
            throw RunTimeError(QStringLiteral("File not found: ") + path);
        const qint64 records = f.size() / kRecord250;
        qint64 done = 0;
        while (done < records) {
            const QByteArray chunk = f.read(std::min<qint64>(kUsbChunk / kRecord250, records - done) * kRecord250);
            if (chunk.size() < kRecord250)
                break;
            const Byte_View v(chunk);
            for (qint64 at = 0; v.Fits(at, kRecord250); at += kRecord250, ++done) {
                if (v[at] != 0xF0 || !v.Digits(at + 1, 5))
                    continue;
                const QString date = v.Digit_Text(at + 1, 3);
                if (!In_Range(state, date))
                    continue;
                // A minute that isn't one of the day has no place in it.
                const int hour = v.Bcd(at + 4), min = v.Bcd(at + 5);
                if (hour > 23 || min > 59)
                    continue;
                if (!current.isEmpty() && date != current)
                    Save();
                current = date;
                const qint64 base = qint64(hour) * 3600 + min * 60;
                const uint8_t* p = v.Data(at + kSamples250);
                for (int s = 0; s < 60; ++s, p += kSampleSize250) {
                    speed[base + s] = Clean(p[0]);
                    engine[base + s] = Clean(p[1]);
                }
                const int m = (hour * 60 + min) * 2;
                minute[m] = Clean(v[at + kMinute250]);
                minute[m + 1] = Clean(v[at + kMinute250 + 1]);
            }
            if (chunk.size() % kRecord250 != 0)
                break;
        }
        if (!current.isEmpty())
            Save();
    });
}

bool Decode_Ntd(Cls_DB& db, const QString& path)
{
    Cls_DB::Batch batch(db); // one commit for the file; a failure keeps what was written
    QByteArray bytes;
    if (!Guarded(kErrHex2, [&] {
            QFile f(path);
            if (!f.open(QIODevice::ReadOnly))
                throw RunTimeError(QStringLiteral("File not found: ") + path);
            bytes = f.readAll();
        }))
        return false;

    // Two forms reach \new. The day file that the "250" road writes has a
    // header of ten bytes (a zero, then driver, car and day) and its arrays
    // whole. A saved day has three bytes each of car, driver and day, and
    // arrays written so that each overlaps the one before by its last byte.
    QString car, driver, day;
    qint64 speedAt = 0, engineAt = 0, distanceAt = 0;
    if (bytes.size() == kNtdFile && bytes[0] == 0) {
        driver = Hex_Text(bytes, 1, 3);
        car = Hex_Text(bytes, 4, 3);
        day = Hex_Text(bytes, 7, 3);
        speedAt = kNtdHeader;
        engineAt = speedAt + kDayArray;
        distanceAt = engineAt + kDayArray;
    } else if (bytes.size() >= kSavedNtdFile) {
        car = Hex_Text(bytes, 0, 3);
        driver = QStringLiteral("00") + Hex_Text(bytes, 3, 3).right(4);
        day = Hex_Text(bytes, 6, 3);
        speedAt = 9;
        engineAt = speedAt + kDayArray - 1;
        distanceAt = engineAt + kDayArray - 1;
    } else {
        // Half a day: the copy was cut short. It stays for a later pass.
        Err_Proc(kErrHex2, QStringLiteral("Input past end of file: %1 holds %2 bytes").arg(path).arg(bytes.size()));
        return false;
    }
    // A day that isn't a day can't be stored anywhere; the file is done.
    if (!Is_Day(day))
        return true;

    const auto* p = reinterpret_cast<const uint8_t*>(bytes.constData());
    std::vector<uint8_t> speed(kDayArray), engine(kDayArray), distance(kNtdDistance);
    for (int s = 0; s < kDayArray; ++s) {
        speed[s] = Clean(p[speedAt + s]);
        engine[s] = Clean(p[engineAt + s]);
    }
    std::copy(p + distanceAt, p + distanceAt + kNtdDistance, distance.begin());
    for (int m = 1; m <= kDayMinutes; ++m)
        if (distance[2 * m - 1] == 0xFF && distance[2 * m] == 0xFF)
            distance[2 * m - 1] = distance[2 * m] = 0;

    if (db.DB_Save_D_D2_file(car, driver, speed, engine, distance, day) != -1)
        return false;
    db.DB_Save_D_D1_file(car, driver, day);
    Usb_State().stored << car + driver + day;
    return true;
}

} // namespace vex
