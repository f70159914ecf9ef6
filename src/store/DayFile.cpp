#include "store/DayFile.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Hour_Seconds.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"
#include "platform/FileSystem.h"
#include "store/Cls_DB.h"
#include "store/Day_Store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cmath>

namespace vex {

namespace {

constexpr int16_t kErrSave_D_D2 = 1098;
constexpr int16_t kErrSave_D_D2_130 = 1099;
constexpr int16_t kErrSave_D_D2_file = 1100;
constexpr int16_t kErrSave_D_D_usb = 1101;
constexpr int16_t kErrSearch_SecData = 1107;
constexpr int16_t kErrLine_Data_Comp = 1113; // also the monthly file that is made of its lines

void Need(std::span<const uint8_t> a, size_t n, const char* what)
{
    if (a.size() < n)
        throw RunTimeError(QStringLiteral("Subscript out of range: %1 needs %2 entries").arg(QLatin1String(what)).arg(n));
}

QByteArray Read_All(const QString& localPath)
{
    QFile f(localPath);
    if (!f.open(QIODevice::ReadOnly))
        throw RunTimeError(QStringLiteral("File not found: ") + localPath);
    QByteArray bytes = f.readAll();
    if (f.error() != QFileDevice::NoError)
        throw RunTimeError(QStringLiteral("Input past end of file: ") + localPath);
    return bytes;
}

std::vector<uint8_t> Slice(const QByteArray& bytes, qint64 at, qint64 n)
{
    const auto* p = reinterpret_cast<const uint8_t*>(bytes.constData()) + at;
    return std::vector<uint8_t>(p, p + n);
}

void Append(QByteArray& out, const std::vector<uint8_t>& a)
{
    out.append(reinterpret_cast<const char*>(a.data()), qsizetype(a.size()));
}

// Merges the arrays of a recording into the day file at its system path, or
// writes them as given when there is none yet. The day is held against
// another PC's merge until the day's rows commit.
void Merge_Day_File(Cls_DB& db, const QString& systemPath, std::span<const uint8_t> speed,
                    std::span<const uint8_t> engine, std::span<const uint8_t> half)
{
    Need(speed, kDayArray, "speed");
    Need(engine, kDayArray, "engine");
    Lock_Day_File(db, systemPath);
    const Day_File_Ref stored = Find_Day_File(db, systemPath);
    DayFile file;
    if (stored.Found()) {
        file = Read_Day_File(db, stored);
        Merge_Entries(file.speed, speed, 1, kDaySeconds);
        Merge_Entries(file.engine, engine, 1, kDaySeconds);
        if (!half.empty()) {
            Need(half, kHalfArray, "half-second");
            if (file.half.empty())
                file.half.assign(kHalfArray, 0);
            Merge_Entries(file.half, half, 1, 2 * kDaySeconds);
        }
    } else {
        file.speed.assign(speed.begin(), speed.begin() + kDayArray);
        file.engine.assign(engine.begin(), engine.begin() + kDayArray);
        if (!half.empty()) {
            Need(half, kHalfArray, "half-second");
            file.half.assign(half.begin(), half.begin() + kHalfArray);
        }
    }
    Store_Day_Bytes(db, systemPath, Day_File_Bytes(file));
}

// The minute distance of a recording into D_D7: a stored "00" takes the new
// cell; a stored distance is never replaced.
void Merge_Minute_Distance(Cls_DB& db, const QString& key, const QString& series)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D7 WHERE D_F1=?"), {key});
    if (rs.RecordCount() < 1) {
        rs.AddNew();
        rs.Set(QStringLiteral("D_F1"), key);
        rs.Set(QStringLiteral("D_F2"), series);
    } else {
        QString stored = rs.Text(QStringLiteral("D_F2"));
        for (int i = 0; i + 1 < series.size(); i += 2) {
            const QStringView cell = QStringView(series).mid(i, 2);
            if (cell == QLatin1String("00"))
                continue;
            if (i + 1 >= stored.size())
                stored = stored.leftJustified(i + 2, QLatin1Char('0'));
            if (QStringView(stored).mid(i, 2) == QLatin1String("00")) {
                stored[i] = cell[0];
                stored[i + 1] = cell[1];
            }
        }
        rs.Set(QStringLiteral("D_F2"), stored);
    }
    rs.Update();
    rs.Close();
}

QString Key(const QString& car, const QString& driver, const QString& day)
{
    return car + driver + day;
}

// A byte of the ".ntd" header: a two-digit pair read as hexadecimal.
uint8_t Hex_Pair(const QString& text, int at)
{
    if (at + 1 >= text.size())
        throw RunTimeError(QStringLiteral("Type mismatch: short code \"%1\"").arg(text));
    return uint8_t(Hex_Cell(text, at));
}

int Digit(QChar c)
{
    return c.unicode() - u'0';
}

} // namespace

// ---- Paths and whole files ---------------------------------------------------

QString Day_Folder_Name(const QString& car, const QString& day)
{
    return QStringLiteral("\\pack\\") + car + QLatin1Char('\\') + day;
}

QString Day_File_Name(const QString& car, const QString& driver, const QString& day)
{
    return Day_Folder_Name(car, day) + QLatin1Char('\\') + day + driver + QStringLiteral(".vex");
}

QString Static_File_Name(const QString& car, const QString& driver, const QString& day)
{
    return QStringLiteral("\\static\\") + car + day + driver + QStringLiteral(".vex");
}

QString Ntd_File_Name(const QString& car, const QString& driver, const QString& day)
{
    return QStringLiteral("\\new\\") + day + car + driver + QStringLiteral(".ntd");
}

QString Local_Path(const QString& systemPath)
{
    const Globals& g = G();
    const QString path = g.FS ? g.FS->Path(systemPath) : App_Path(g.App_Dir, systemPath);
    if (!Inside_Folder(g.App_Dir, path))
        throw RunTimeError(QStringLiteral("Path/File access error: %1 lies outside the application folder").arg(systemPath));
    return path;
}

DayFile Read_Day_File(const QString& localPath)
{
    return Day_File_Of(Read_All(localPath), localPath);
}

void Check_Day_File_Size(qint64 size, const QString& name)
{
    if (size != kDayFileTwo && size < kDayFileFull)
        throw RunTimeError(QStringLiteral("Input past end of file: %1 holds %2 bytes").arg(name).arg(size));
}

DayFile Day_File_Of(const QByteArray& bytes, const QString& localPath)
{
    const qint64 n = bytes.size();
    Check_Day_File_Size(n, localPath);
    DayFile file;
    file.speed = Slice(bytes, 0, kDayArray);
    file.engine = Slice(bytes, kDayArray, kDayArray);
    if (n >= kDayFileFull)
        file.half = Slice(bytes, kDayFileTwo, kHalfArray);
    return file;
}

void Write_Whole_File(const QString& localPath, const QByteArray& bytes)
{
    QString why;
    if (!Write_File_Atomic(localPath, bytes, &why))
        throw RunTimeError(QStringLiteral("Path/File access error: ") + localPath + QStringLiteral(" (") + why
                           + QLatin1Char(')'));
}

QByteArray Day_File_Bytes(const DayFile& file)
{
    if (file.speed.size() != size_t(kDayArray) || file.engine.size() != size_t(kDayArray) ||
        (!file.half.empty() && file.half.size() != size_t(kHalfArray)))
        throw RunTimeError(QStringLiteral("Subscript out of range: day file arrays"));
    QByteArray bytes;
    bytes.reserve(kDayFileFull);
    Append(bytes, file.speed);
    Append(bytes, file.engine);
    if (!file.half.empty())
        Append(bytes, file.half);
    return bytes;
}

void Write_Day_File(const QString& localPath, const DayFile& file)
{
    Write_Whole_File(localPath, Day_File_Bytes(file));
}

void Merge_Entries(std::span<uint8_t> stored, std::span<const uint8_t> added, int from, int to)
{
    for (int s = from; s <= to; ++s)
        if (added[s] > 0 && stored[s] == 0)
            stored[s] = added[s];
}

QString Minute_Distance_Series(std::span<const float> metres)
{
    if (metres.size() < size_t(kDayMinutes + 1))
        throw RunTimeError(QStringLiteral("Subscript out of range: minute distance needs 1,441 entries"));
    QString out;
    out.reserve(kSeriesChars);
    for (int m = 1; m <= kDayMinutes; ++m) {
        // "#0.0" of the kilometres, rounded half away from zero, then the
        // tenths as digits: 0.04 km is 0.0 and vanishes from the minute.
        const double tenths = std::round(double(metres[m]) / 100.0);
        QString cell = QString::number(qint64(tenths));
        if (cell.size() == 1)
            cell.prepend(QLatin1Char('0'));
        out += cell;
    }
    return out;
}

Recordset Row_Or_New(Cls_DB& db, const QString& table, const QString& key)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM ") + table + QStringLiteral(" WHERE D_F1=?"), {key});
    if (rs.RecordCount() < 1)
        rs.AddNew();
    rs.Set(QStringLiteral("D_F1"), key);
    return rs;
}

// ---- Saves of second data -------------------------------------------------------

int16_t Cls_DB::DB_Save_D_D2(const QString& car, const QString& driver, std::span<const uint8_t> speed,
                             std::span<const uint8_t> engine, std::span<const float> distance, const QString& day,
                             std::span<const uint8_t> half)
{
    return Saved(kErrSave_D_D2, [&] {
        const QString series = Minute_Distance_Series(distance);
        Need(half, kHalfArray, "half-second");
        Merge_Day_File(*this, Day_File_Name(car, driver, day), speed, engine, half);
        Merge_Minute_Distance(*this, Key(car, driver, day), series);
    });
}

int16_t Cls_DB::DB_Save_D_D2_130(const QString& car, const QString& driver, std::span<const uint8_t> speed,
                                 std::span<const uint8_t> engine, const QString& day)
{
    return Saved(kErrSave_D_D2_130, [&] {
        // This recorder brings no half seconds; the file still carries the
        // array (of zeros, or as an earlier recording left it).
        const std::vector<uint8_t> half(kHalfArray, 0);
        Merge_Day_File(*this, Day_File_Name(car, driver, day), speed, engine, half);
        // The copy in "\static" stays a file of this machine.
        QDir().mkpath(Local_Path(QStringLiteral("\\static")));
        const QByteArray bytes = Read_Day_Bytes(*this, Find_Day_File(*this, Day_File_Name(car, driver, day)));
        Write_Whole_File(Local_Path(Static_File_Name(car, driver, day)), bytes);
    });
}

int16_t Cls_DB::DB_Save_D_D2_file(const QString& car, const QString& driver, std::span<const uint8_t> speed,
                                  std::span<const uint8_t> engine, std::span<const uint8_t> distanceBytes,
                                  const QString& day)
{
    return Saved(kErrSave_D_D2_file, [&] {
        Need(distanceBytes, kNtdDistance, "minute distance");
        std::vector<float> metres(kDayMinutes + 1, 0.0f);
        for (int m = 1; m <= kDayMinutes; ++m)
            metres[m] = float(distanceBytes[2 * m - 1]) * 100.0f + float(distanceBytes[2 * m]);
        const QString series = Minute_Distance_Series(metres);
        Merge_Day_File(*this, Day_File_Name(car, driver, day), speed, engine, {});
        Merge_Minute_Distance(*this, Key(car, driver, day), series);
    });
}

int16_t Cls_DB::DB_Save_D_D_usb(const QString& car, const QString& driver, std::span<const uint8_t> speed,
                                std::span<const uint8_t> engine, std::span<const float> distance, const QString& day)
{
    int16_t flag = 0;
    Guarded(kErrSave_D_D_usb, [&] {
        // A day that isn't yyMMdd of a month and a day writes nothing.
        if (day.size() != 6)
            return;
        for (QChar c : day)
            if (c.unicode() < u'0' || c.unicode() > u'9')
                return;
        const int month = Digit(day[2]) * 10 + Digit(day[3]);
        const int dom = Digit(day[4]) * 10 + Digit(day[5]);
        if (month < 1 || month > 12 || dom < 1 || dom > 31)
            return;

        Need(speed, kDayArray, "speed");
        Need(engine, kDayArray, "engine");
        if (distance.size() < size_t(kDayMinutes + 1))
            throw RunTimeError(QStringLiteral("Subscript out of range: minute distance needs 1,441 entries"));

        // Header: the two-digit pairs of driver, car and day as hexadecimal
        // bytes, behind a first byte left 0.
        QByteArray header(kNtdHeader, '\0');
        int h = 1;
        for (const QString& text : {driver, car, day})
            for (int i = 0; i + 1 < 6 && h < kNtdHeader; i += 2)
                header[h++] = char(Hex_Pair(text, i));

        std::vector<uint8_t> dist(kNtdDistance, 0);
        for (int m = 1; m <= kDayMinutes; ++m) {
            const long v = std::lrint(distance[m]);
            if (v < 0 || v / 100 > 255)
                throw RunTimeError(QStringLiteral("Overflow: %1 m in a minute").arg(v));
            dist[2 * m - 1] = uint8_t(v / 100);
            dist[2 * m] = uint8_t(v % 100);
        }

        const QString path = Local_Path(Ntd_File_Name(car, driver, day));
        std::vector<uint8_t> sp(speed.begin(), speed.begin() + kDayArray);
        std::vector<uint8_t> en(engine.begin(), engine.begin() + kDayArray);
        if (QFileInfo(path).isFile()) {
            const QByteArray old = Read_All(path);
            if (old.size() < kNtdFile)
                throw RunTimeError(QStringLiteral("Input past end of file: ") + path);
            std::vector<uint8_t> oldSp = Slice(old, kNtdHeader, kDayArray);
            std::vector<uint8_t> oldEn = Slice(old, kNtdHeader + kDayArray, kDayArray);
            std::vector<uint8_t> oldDist = Slice(old, kNtdHeader + kDayFileTwo, kNtdDistance);
            Merge_Entries(oldSp, sp, 1, kDaySeconds);
            Merge_Entries(oldEn, en, 1, kDaySeconds);
            sp.swap(oldSp);
            en.swap(oldEn);
            // Minute by minute: a stored 0 ("FFFF" counts as 0) takes the new value.
            for (int m = 1; m <= kDayMinutes; ++m) {
                const bool empty = (oldDist[2 * m - 1] == 0xFF && oldDist[2 * m] == 0xFF) ||
                                   (oldDist[2 * m - 1] == 0 && oldDist[2 * m] == 0);
                const bool added = dist[2 * m - 1] != 0 || dist[2 * m] != 0;
                if (!(empty && added)) {
                    dist[2 * m - 1] = oldDist[2 * m - 1];
                    dist[2 * m] = oldDist[2 * m];
                }
            }
        } else {
            QDir().mkpath(QFileInfo(path).path());
        }
        QByteArray bytes = header;
        bytes.reserve(kNtdFile);
        Append(bytes, sp);
        Append(bytes, en);
        Append(bytes, dist);
        Write_Whole_File(path, bytes);
        flag = -1;
    });
    return flag;
}

// ---- One hour for the hour graph ------------------------------------------------

Hour_Seconds Cls_DB::DB_Search_SecData(const QString& car, const QString& driver, const QString& day,
                                       QString& hour)
{
    Hour_Seconds found;
    Guarded(kErrSearch_SecData, [&] {
        // Older files carry no driver in their name; those come first.
        const Day_File_Ref ref = Find_Day_File(*this, car, driver, day);
        if (!ref.Found())
            return;
        // An hour is a seek and two reads of a file; a server's row comes
        // whole.
        QFile f(ref.path);
        QByteArray whole;
        if (ref.path.isEmpty())
            whole = Read_Day_Bytes(*this, ref);
        else if (!f.open(QIODevice::ReadOnly))
            throw RunTimeError(QStringLiteral("Permission denied: ") + ref.path);
        auto Read_At = [&](qint64 at) {
            if (ref.path.isEmpty())
                return whole.mid(at, 3600);
            if (!f.seek(at))
                throw RunTimeError(QStringLiteral("Bad record number"));
            return f.read(3600);
        };
        auto Read_Hour = [&](int h, QByteArray& sp, QByteArray& en) {
            sp = Read_At(qint64(h) * 3600);
            en = Read_At(kDayArray + qint64(h) * 3600);
            if (sp.size() != 3600 || en.size() != 3600)
                throw RunTimeError(QStringLiteral("Input past end of file: ") + ref.Name());
        };

        QByteArray sp, en;
        int h = 0;
        if (!hour.isEmpty() && hour != QLatin1String("00")) {
            h = int(Val(hour));
            Read_Hour(h, sp, en);
        } else {
            // The first hour that holds anything: midnight itself cannot be
            // asked for, "00" always means "find the start of the day".
            h = -1;
            for (int k = 0; k < 24 && h < 0; ++k) {
                Read_Hour(k, sp, en);
                for (int s = 0; s < 3600; ++s)
                    if (sp[s] != 0 || en[s] != 0) {
                        h = k;
                        break;
                    }
            }
            if (h < 0) {
                h = 0;
                Read_Hour(0, sp, en);
            }
            hour = QString::number(h).rightJustified(2, QLatin1Char('0'));
        }

        const QString hh = hour.isEmpty() ? QStringLiteral("00") : hour;
        found = Hour_Seconds{ref.Name(),
                             std::vector<uint8_t>(sp.begin(), sp.end()),
                             std::vector<uint8_t>(en.begin(), en.end()),
                             hh + QStringLiteral("0000"),
                             hh + QStringLiteral("5959"),
                             day};
    });
    return found;
}

// ---- The monthly file ----------------------------------------------------------------

QString Cls_DB::Line_Data_Comp(const QString& digits)
{
    QString out;
    Guarded(kErrLine_Data_Comp, [&] {
        QString text;
        text.reserve(digits.size());
        for (int i = 0; i < digits.size(); i += 2) {
            const int v = int(Val(digits.mid(i, 2))) + 31;
            QString hex = QString::number(v, 16).toUpper();
            if (hex.isEmpty())
                hex = QStringLiteral("00");
            else if (hex.size() == 1)
                hex.prepend(QLatin1Char('0'));
            text += hex;
        }
        out = text;
    });
    return out;
}

namespace {

// A number field in a fixed count of digits ("000000"), rounded half away
// from zero as the format does; Null gives the zeros.
QString Format_Digits(const QVariant& v, int width)
{
    const double x = v.isNull() ? 0.0 : Val(v.toString());
    const qint64 n = qint64(std::round(x));
    QString s = QString::number(std::abs(n)).rightJustified(width, QLatin1Char('0'));
    return n < 0 ? QStringLiteral("-") + s : s;
}

} // namespace

QString Cls_DB::DB_To_File(const QString& month)
{
    QString result;
    Guarded(kErrLine_Data_Comp, [&] {
        Recordset rs = DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 WHERE left(D_F4,4) =? Order By D_F4"), {month});
        if (rs.RecordCount() < 1)
            return;
        const Cls_Config& cfg = *G().Config;
        QString buffer;
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
            auto T = [&](const char* f) { return Line_Data_Comp(rs.Text(QLatin1String(f))); };
            auto N = [&](const char* f, int w) { return Line_Data_Comp(Format_Digits(rs.Field(QLatin1String(f)), w)); };
            buffer += T("D_F4") + T("D_F5") + T("D_F7") + Line_Data_Comp(cfg.S_CompanyCode) + T("D_F25") +
                      T("D_F24") + N("D_F8", 6) + N("D_F17", 4) + N("D_F15", 4) + N("D_F12", 2) + N("D_F10", 2) +
                      N("D_F11", 2) + N("D_F9", 4) + N("D_F14", 2) + QStringLiteral("\r\n");
        }
        rs.Close();
        const QString folder = Local_Path(cfg.U_PackDir);
        QDir().mkpath(folder);
        const QString path = folder + QLatin1Char('/') + cfg.S_CompanyCode + month + QStringLiteral(".SAM");
        Write_Whole_File(path, buffer.toLatin1());
        result = path;
    });
    return result;
}

} // namespace vex
