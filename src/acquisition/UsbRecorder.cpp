// The medium side of the USB recorders: the model test, the identity file,
// the days a log holds, the filing of a "130" log and the inbox decoders.
#include "acquisition/UsbRecorder.h"

#include "acquisition/Inbox.h"
#include "acquisition/UsbBytes.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace vex {

QString Hex2(uint8_t value)
{
    static constexpr char kHex[] = "0123456789ABCDEF";
    const char text[2] = {kHex[value >> 4], kHex[value & 0xF]};
    return QString::fromLatin1(text, 2);
}

QString Detect_Model(const QString& spdrPath)
{
    QString model;
    Guarded(kErrHex2, [&] {
        QFile f(spdrPath);
        if (!f.open(QIODevice::ReadOnly))
            throw RunTimeError(QStringLiteral("File not found: ") + spdrPath);
        if (f.size() <= kUsbSmallLog) {
            model = QStringLiteral("130");
            return;
        }
        // The distance from one block marker to the next tells the record
        // size: 256 bytes for a "130", 512 for a "250". A marker byte inside
        // the data only starts the count again.
        int64_t counter = 1;
        bool seen = false;
        while (!f.atEnd()) {
            const QByteArray chunk = f.read(kUsbChunk);
            if (chunk.isEmpty())
                break;
            for (char c : chunk) {
                const auto b = uint8_t(c);
                if (b == 0xFA || b == 0xF0) {
                    if (seen && counter == 257) {
                        model = QStringLiteral("130");
                        return;
                    }
                    if (seen && counter == 513) {
                        model = QStringLiteral("250");
                        return;
                    }
                    seen = true;
                    counter = 1;
                }
                ++counter;
            }
        }
    });
    return model;
}

QString No_Log_Refusal(const QString& spdrPath)
{
    QFile f(spdrPath);
    if (f.size() == 0 || !f.open(QIODevice::ReadOnly))
        return LoadResString(5008);
    return {};
}

QString Usb_Model_Refusal(const QString& chosen, const QString& spdrPath)
{
    if (const QString noLog = No_Log_Refusal(spdrPath); !noLog.isEmpty())
        return noLog;
    static const QString not130 = QStringLiteral("QRX 130 데이터가 아닙니다 ! QRX 250을 선택하여 주십시요 ");
    static const QString not250 = QStringLiteral("QRX 250 데이터가 아닙니다 ! QRX 130을 선택하여 주십시요 ");
    if (chosen == QLatin1String("250") && QFileInfo(spdrPath).size() <= kUsbSmallLog)
        return not250;
    const QString model = Detect_Model(spdrPath);
    if (model == chosen)
        return QString();
    return chosen == QLatin1String("130") ? not130 : not250;
}

std::optional<Usb_Master> Read_Master(const QString& masterPath)
{
    QFile f(masterPath);
    if (!f.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = f.read(18);
    if (bytes.size() < 18)
        return std::nullopt;
    auto Hex = [&](int at, int n) {
        QString text;
        for (int i = 0; i < n; ++i)
            text += Hex2(uint8_t(bytes[at + i]));
        return text;
    };
    Usb_Master m;
    m.car = Hex(0, 3);
    m.driver = Hex(3, 3);
    m.start = Hex(6, 6);
    m.end = Hex(12, 6).left(8) + QStringLiteral("0000");
    return m;
}

Usb_Days_Held Usb_Log_Days(const QString& spdrPath, const QString& model, int thisYear)
{
    Usb_Days_Held held;
    Guarded(kErrHex2, [&] {
        QFile f(spdrPath);
        if (!f.open(QIODevice::ReadOnly))
            throw RunTimeError(QStringLiteral("File not found: ") + spdrPath);
        const bool m130 = model == QLatin1String("130");
        const int size = m130 ? kBlock130 : kRecord250;
        const int stampBytes = m130 ? 3 : 5;
        qint64 limit = f.size() / size;
        if (m130)
            limit = std::min<qint64>(limit, kHourBlocks130);
        qint64 done = 0;
        while (done < limit) {
            const QByteArray chunk = f.read(std::min<qint64>(kUsbChunk / size, limit - done) * size);
            if (chunk.size() < size)
                break;
            const Byte_View v(chunk);
            for (qint64 at = 0; at + size <= chunk.size(); at += size, ++done) {
                if (v[at] != 0xF0)
                    continue;
                if (v[at + 1] == 0xFF && v[at + 2] == 0xFF && v[at + 3] == 0xFF)
                    continue;
                if (!v.Digits(at + 1, stampBytes))
                    continue;
                const QString day = v.Digit_Text(at + 1, 3);
                const int year = day.left(2).toInt();
                if (year < 5)
                    continue;
                if (held.oldest.isEmpty() || day < held.oldest)
                    held.oldest = day;
                if (year <= thisYear && (held.newest.isEmpty() || day > held.newest))
                    held.newest = day;
            }
        }
    });
    return held;
}

Usb_Reception& Usb_State()
{
    static Usb_Reception state;
    return state;
}

bool In_Range(const Usb_Reception& r, const QString& day)
{
    return (r.from.isEmpty() || day >= r.from) && (r.to.isEmpty() || day <= r.to);
}

int Usb_Speed(int count)
{
    return int(int64_t(count) * 3600 / kSpeedPulsesPerKm);
}

QString File_Dat130(const QString& spdrPath, const Filing_Note& who, const QDate& today)
{
    QString filed;
    Guarded(kErrHex2, [&] {
        QFile in(spdrPath);
        if (!in.open(QIODevice::ReadOnly))
            throw RunTimeError(QStringLiteral("File not found: ") + spdrPath);
        const QByteArray bytes = in.read(kDat130Filed);
        const QString dir = G().App_Dir;
        const QString temp = App_Path(dir, QStringLiteral("temp.dat"));
        {
            QSaveFile out(temp);
            if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() || !out.commit())
                throw RunTimeError(QStringLiteral("Path/File access error: ") + temp);
        }
        const QString inbox = App_Path(dir, QStringLiteral("\\new"));
        QDir().mkpath(inbox);
        if (!Is_Code(who.car) || !Is_Code(who.driver) || !Is_Day(who.from) || !Is_Day(who.to))
            throw RunTimeError(QStringLiteral("Invalid procedure call: no reception identity for the log"));
        const QString target = inbox + QLatin1Char('/') + who.car + today.toString(QStringLiteral("yyMMdd")) +
                               QStringLiteral(".dat");
        Write_Whole_File(Filing_Note_Path(target), Filing_Note_Text(who));
        QFile::remove(target);
        if (!QFile::copy(temp, target))
            throw RunTimeError(QStringLiteral("Path/File access error: ") + target);
        filed = target;
    });
    return filed;
}

void Register_Usb_Decoders()
{
    Register_Inbox_Decoder(QStringLiteral("NTD"), [](Cls_DB& db, const QString& path) {
        if (Decode_Ntd(db, path))
            return Inbox_Verdict{};
        return Inbox_Verdict{true, Err_Last()};
    });
    // A "130" log is decoded once, whatever it held, with the identity of
    // the reception that filed it; without that it waits.
    Register_Inbox_Decoder(QStringLiteral("DAT"), [](Cls_DB& db, const QString& path) {
        if (!Read_Filing_Note(path))
            return Inbox_Verdict{true, QStringLiteral("no record of the reception that filed it (%1); receive the medium again")
                                           .arg(QFileInfo(Filing_Note_Path(path)).fileName())};
        if (!Decode_Dat130(db, path))
            return Inbox_Verdict{true, Err_Last()};
        return Inbox_Verdict{};
    });
}

} // namespace vex
