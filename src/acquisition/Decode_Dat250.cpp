// Model "250" and the day files of the USB road, the storing side: the
// log's days (Dat250_Days) into ".ntd" day files under \new, and a day file
// from \new (Decode_Ntd_Day) into the day file of second data, the minute
// distance and the summary.
#include "acquisition/UsbBytes.h"
#include "acquisition/UsbRecorder.h"
#include "acquisition/Usb_Days.h"

#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace vex {

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

    Dat250_Days days(state.from, state.to, [&](const Usb_Second_Day& day) {
        // A day whose file can't be written (a full disk) is named in the
        // reception's outcome; the log stays on the medium for another try.
        if (db.DB_Save_D_D_usb(car, driver, day.speed, day.engine, day.metres, day.day) != -1)
            state.unsaved << day.day + QStringLiteral(" (") + Err_Last() + QLatin1Char(')');
    });
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
            days.Feed(chunk);
            done += chunk.size() / kRecord250;
            if (chunk.size() % kRecord250 != 0)
                break;
        }
        days.Finish();
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

    const Ntd_Day day = Decode_Ntd_Day(bytes);
    switch (day.verdict) {
    case Ntd_Day::Verdict::Short:
        // Half a day: the copy was cut short. It stays for a later pass.
        Err_Proc(kErrHex2, QStringLiteral("Input past end of file: %1 holds %2 bytes").arg(path).arg(bytes.size()));
        return false;
    case Ntd_Day::Verdict::Not_A_Day:
        return true; // a day that isn't a day can't be stored anywhere; the file is done
    case Ntd_Day::Verdict::Decoded:
        break;
    }
    QString car = day.car, driver = day.driver, date = day.day;
    if (db.DB_Save_D_D2_file(car, driver, day.speed, day.engine, day.distance, date) != -1)
        return false;
    db.DB_Save_D_D1_file(car, driver, date);
    Usb_State().stored << car + driver + date;
    return true;
}

} // namespace vex
