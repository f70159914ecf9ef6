#include "exchange/Agency_File.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"
#include "store/Day_Store.h"
#include "store/DayFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringEncoder>
#include <cmath>
#include <cstring>
#include <map>

namespace vex {

namespace {

struct Car_Facts {
    bool registered = false;
    QString model = QStringLiteral("120");
    QString vehicle;
    float factor = 4.0f;
};

Car_Facts Facts_Of(Cls_DB& db, const QString& car)
{
    Car_Facts f;
    f.vehicle = car;
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1=?"), {car});
    if (rs.RecordCount() < 1)
        return f;
    f.registered = true;
    if (!rs.Field(QStringLiteral("D_F6")).isNull())
        f.model = rs.Text(QStringLiteral("D_F6"));
    const QString id = rs.Text(QStringLiteral("D_F3"));
    if (!id.isEmpty() && !car.isEmpty())
        f.vehicle = id;
    bool ok = false;
    const float factor = rs.Text(QStringLiteral("D_F5")).trimmed().toFloat(&ok);
    if (ok)
        f.factor = factor;
    return f;
}

QString Text_Of(Cls_DB& db, const QString& table, const QString& key, bool* found = nullptr)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT D_F2 FROM ") + table + QStringLiteral(" WHERE D_F1=?"), {key});
    if (found)
        *found = rs.RecordCount() > 0;
    return rs.RecordCount() > 0 ? rs.Text(QStringLiteral("D_F2")) : QString();
}

// Kilometres so far, minute by minute, from the minute distance cells
// ("XY" is X.Y km). The minute form drops 8 km from a cell of 8 km or more.
std::vector<int> Running_Km(const QString& cells, bool dropEight)
{
    std::vector<int> km(1440, 0);
    float total = 0;
    for (int k = 0; k < 1440 && 2 * k + 1 < cells.size(); ++k) {
        // Two decimal digits, as nearly every cell is; anything else as
        // toInt reads it.
        const int digits = Two_Digits(cells[2 * k].unicode(), cells[2 * k + 1].unicode());
        const int cell = digits >= 0 ? digits : cells.mid(2 * k, 2).toInt();
        float v = float(cell) / 10.0f;
        if (dropEight && v >= 8)
            v -= 8;
        total += v;
        km[size_t(k)] = int(std::floor(total));
    }
    return km;
}

// A minute speed cell: hexadecimal, "FF" (and anything that isn't a cell) 0.
int Speed_Cell(const QString& series, int at)
{
    auto digit = [](QChar c) {
        return c >= u'0' && c <= u'9' ? c.unicode() - u'0' : c >= u'A' && c <= u'F' ? c.unicode() - u'A' + 10 : -1;
    };
    const int hi = digit(series[at]), lo = digit(series[at + 1]);
    const int v = hi < 0 || lo < 0 ? 0 : hi * 16 + lo;
    return v == 255 ? 0 : v;
}

// value in width digits, "0" prepended; a wider value whole.
// value in decimal digits at p, padded with "0" to width (a longer number
// keeps its digits); the end of what was written.
char* Put_Number(char* p, long value, int width)
{
    char digits[24];
    int n = 0;
    do {
        digits[n++] = char('0' + value % 10);
        value /= 10;
    } while (value > 0 && n < 23);
    for (int i = n; i < width; ++i)
        *p++ = '0';
    while (n > 0)
        *p++ = digits[--n];
    return p;
}

char* Put_Bytes(char* p, const QByteArray& bytes)
{
    std::memcpy(p, bytes.constData(), size_t(bytes.size()));
    return p + bytes.size();
}

// A data line and its CR LF: second -1 is the minute form's "0000". The
// line is laid down in place at the end of out, a day holding thousands.
void Append_Data_Line(QByteArray& out, int km, const QByteArray& day, int h, int m, int second, int speed,
                      const QByteArray& engine)
{
    static const QByteArray tail = QByteArray("0") + QByteArray(35, '0') + "\r\n";
    const qsizetype at = out.size();
    out.resize(at + 5 * 24 + 11 + day.size() + engine.size() + tail.size());
    char* p = out.data() + at;
    p = Put_Number(p, km, 4);
    p = Put_Bytes(p, QByteArrayLiteral("0000000"));
    p = Put_Bytes(p, day);
    p = Put_Number(p, h, 2);
    p = Put_Number(p, m, 2);
    if (second < 0) {
        p = Put_Bytes(p, QByteArrayLiteral("0000"));
    } else {
        p = Put_Number(p, second, 2);
        p = Put_Bytes(p, QByteArrayLiteral("00"));
    }
    p = Put_Number(p, speed, 3);
    p = Put_Bytes(p, engine);
    p = Put_Bytes(p, tail);
    out.resize(p - out.constData());
}

// The header in the desk's code page (the vehicle id may be Korean), CR LF.
QByteArray Header_Bytes(const QString& header)
{
    QStringEncoder encode("CP949");
    return (encode.isValid() ? QByteArray(encode.encode(header)) : header.toUtf8()) + "\r\n";
}

// The trips of the days from and to, car, driver and day.
Recordset Trips_Between(Cls_DB& db, const QString& from, const QString& to)
{
    return db.DB_RSet_D_D(
        QStringLiteral("SELECT D_F2, D_F3, D_F4 FROM D_D1 where (RIGHT(D_F1,6)) >= ? AND (RIGHT(D_F1,6)) <= ?"),
        {from, to});
}

// One file, whole.
void Write_Bytes(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(bytes) != bytes.size())
        throw RunTimeError(QStringLiteral("Path/File access error: ") + path);
}

// A vehicle id names a file: separators can't be part of one.
QString File_Safe(QString id)
{
    for (QChar& c : id)
        if (c == u'/' || c == u'\\' || c == QChar(0))
            c = u'_';
    return id;
}

QString Prepare_Folder(int n)
{
    const QString dir = App_Path(G().App_Dir, QStringLiteral("\\report\\%1").arg(n));
    QDir(dir).removeRecursively();
    if (!QDir().mkpath(dir))
        throw RunTimeError(QStringLiteral("Path/File access error: ") + dir);
    return dir;
}

// The file of one day, header and data lines with their CR LF: the minute
// form from the stored series, or for a model "250" the second form from
// its day file; empty when the day has neither.
QByteArray Day_Bytes(Cls_DB& db, const Car_Facts& f, const QString& business, const QString& car,
                     const QString& driver, const QString& day)
{
    QByteArray bytes;
    const QString key = car + driver + day;
    const QByteArray dayBytes = day.toLatin1();
    if (f.model != QLatin1String("250")) {
        bool found = false;
        const QString series = Text_Of(db, QStringLiteral("D_D3"), key, &found);
        if (found) {
            std::vector<int> speed(1440, 0);
            for (int k = 0; k < 1440 && 2 * k + 1 < series.size(); ++k)
                speed[size_t(k)] = Speed_Cell(series, 2 * k);
            const std::vector<int> km = Running_Km(Text_Of(db, QStringLiteral("D_D7"), key), true);
            bytes = Header_Bytes(Agency_Header(QStringLiteral("qrx120"), f.vehicle, business, driver));
            int first = 0, last = 1439;
            while (first < 1440 && speed[size_t(first)] <= 0)
                ++first;
            while (last >= 0 && speed[size_t(last)] <= 0)
                --last;
            static const QByteArray noEngine("0000");
            bytes.reserve(bytes.size() + std::max(0, last - first + 1) * 70);
            for (int k = first; k <= last; ++k)
                Append_Data_Line(bytes, km[size_t(k)], dayBytes, k / 60, k % 60, -1, speed[size_t(k)], noEngine);
        }
    } else if (const Day_File_Ref ref = Find_Day_File(db, Day_File_Name(car, driver, day)); ref.Found()) {
        const DayFile file = Read_Day_File(db, ref);
        const std::vector<int> km = Running_Km(Text_Of(db, QStringLiteral("D_D7"), key), false);
        auto Good = [](uint8_t v) { return v >= 1 && v <= 254; };
        auto First = [&](const std::vector<uint8_t>& a) {
            int s = 0;
            while (s < 86400 && !Good(a[size_t(s)]))
                ++s;
            return s;
        };
        auto Last = [&](const std::vector<uint8_t>& a) {
            int s = 86399;
            while (s >= 0 && !Good(a[size_t(s)]))
                --s;
            return s;
        };
        const int begin = std::min(First(file.speed), First(file.engine));
        const int end = std::max(Last(file.speed), Last(file.engine));
        bytes = Header_Bytes(Agency_Header(QStringLiteral("qrx250"), f.vehicle, business, driver));
        bytes.reserve(bytes.size() + std::max(0, end - begin + 1) * 70);
        // The engine text of each of the 256 byte values, once.
        std::vector<QByteArray> engineText(256);
        for (int v = 0; v < 256; ++v)
            engineText[size_t(v)] = Agency_Engine_Text(v, f.factor).toLatin1();
        for (int s = begin; s <= end; ++s) {
            const int h = s / 3600, m = (s - h * 3600) / 60, sec = s - h * 3600 - m * 60;
            Append_Data_Line(bytes, km[size_t(h * 60 + m)], dayBytes, h, m, sec, file.speed[size_t(s)],
                             engineText[file.engine[size_t(s)]]);
        }
    }
    return bytes;
}

} // namespace

QString Zero_Pad(const QString& text, int width)
{
    return text.size() >= width ? text : QString(width - text.size(), QLatin1Char('0')) + text;
}

QString Agency_Header(const QString& modelTag, const QString& vehicleId, const QString& business10,
                      const QString& driverCode)
{
    const QString vehicle = vehicleId.size() >= 12 ? vehicleId : vehicleId + QString(12 - vehicleId.size(), QLatin1Char('#'));
    return modelTag + QString(14, QLatin1Char('#')) + QString(17, QLatin1Char('#')) + QStringLiteral("11") + vehicle
           + business10 + QStringLiteral("0000000000") + QStringLiteral("0") + Zero_Pad(driverCode, 7);
}

QString Agency_Data_Line(int distanceKm, const QString& day, int h, int m, int second, int speed, const QString& engine)
{
    QByteArray line;
    Append_Data_Line(line, distanceKm, day.toLatin1(), h, m, second, speed, engine.toLatin1());
    line.chop(2);
    return QString::fromLatin1(line);
}

QString Agency_File_Name(const QString& day, const QString& vehicleId, const QString& driverCode)
{
    return QStringLiteral("20") + day + QLatin1Char('_') + File_Safe(vehicleId) + QStringLiteral("_00_")
           + Zero_Pad(driverCode, 7) + QStringLiteral(".TXT");
}

QString Agency_Engine_Text(int engineByte, float factor)
{
    const float product = float(engineByte) * 40.0f * factor;
    // Whole products, nearly all of them, without the general formatting.
    if (product == std::floor(product) && product >= 0 && product < 1e7f) {
        char digits[32];
        const char* end = Put_Number(digits, long(product), 4);
        return QString::fromLatin1(digits, end - digits);
    }
    return Zero_Pad(QString::number(product, 'g', 7), 4);
}

Agency_Identity Load_Agency_Identity(Cls_DB& db)
{
    Agency_Identity id;
    Guarded(kErrAgencyIdentity, [&] {
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D14"));
        if (rs.RecordCount() < 1)
            return;
        id.company = rs.Text(QStringLiteral("D_F22"));
        if (id.company.contains(QLatin1String(".com")))
            id.company.clear();
        id.business = rs.Text(QStringLiteral("D_F4"));
    });
    return id;
}

bool Save_Agency_Identity(Cls_DB& db, const Agency_Identity& id, QString* message)
{
    if (id.company.trimmed().isEmpty() || id.business.trimmed().isEmpty()) {
        if (message)
            *message = QStringLiteral("회사명과 사업자번호를 입력하세요");
        return false;
    }
    const bool ok = Guarded(kErrAgencyIdentity, [&] {
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D14"));
        if (rs.RecordCount() < 1)
            rs.AddNew();
        rs.Set(QStringLiteral("D_F22"), id.company);
        rs.Set(QStringLiteral("D_F4"), id.business);
        rs.Update();
    });
    if (message)
        *message = ok ? QStringLiteral("저장되었습니다") : Err_Last();
    return ok;
}

std::vector<Agency_Note> Agency_Check(Cls_DB& db, const Agency_Identity& id, const QString& from, const QString& to)
{
    std::vector<Agency_Note> notes;
    // What stops the run before it writes anything, as the run says it.
    if (id.company.isEmpty() || id.business.isEmpty())
        notes.push_back({{}, QStringLiteral("회사명과 사업자번호를 입력하신 후 저장 버튼을 누르세요 !"), true});
    if (from > to)
        notes.push_back({{}, LoadResString(1169), true});
    const QString business = Zero_Pad(id.business, 10);
    const bool ok = Guarded(kErrAgencyCheck, [&] {
        Recordset rs = Trips_Between(db, from, to);
        if (from <= to && rs.RecordCount() < 1)
            notes.push_back({{}, QStringLiteral("데이터가 없습니다"), true});
        std::map<QString, Car_Facts> facts;
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
            const QString car = rs.Text(QStringLiteral("D_F2")), driver = rs.Text(QStringLiteral("D_F3")),
                          day = rs.Text(QStringLiteral("D_F4"));
            const QString key = car + driver + day;
            auto known = facts.find(car);
            if (known == facts.end())
                known = facts.emplace(car, Facts_Of(db, car)).first;
            const Car_Facts& f = known->second;
            if (!f.registered)
                notes.push_back({key, QStringLiteral("car %1 has no register row: written as model \"120\"").arg(car)});
            if (f.vehicle.size() > 12)
                notes.push_back({key, QStringLiteral("vehicle id \"%1\" is longer than 12 characters: the columns after it shift").arg(f.vehicle)});
            // The day as the run writes it, measured against the layout.
            const QByteArray bytes = Day_Bytes(db, f, business, car, driver, day);
            if (bytes.isEmpty()) {
                notes.push_back({key, f.model == QLatin1String("250")
                                          ? QStringLiteral("model \"250\" without its day file: skipped")
                                          : QStringLiteral("no minute series: skipped")});
                continue;
            }
            QList<QByteArray> lines = bytes.split('\n'); // each line ends with CR LF
            lines.removeLast();
            for (QByteArray& line : lines)
                line.chop(1);
            const qsizetype header = lines.first().size();
            if (header != kAgencyHeaderBytes)
                notes.push_back({key, QStringLiteral("header of %1 bytes instead of %2 (vehicle id \"%3\", business "
                                                     "number \"%4\", driver \"%5\"; a Korean character takes two bytes)")
                                          .arg(header).arg(kAgencyHeaderBytes).arg(f.vehicle, business, driver)});
            int wrong = 0;
            QByteArray first;
            for (qsizetype i = 1; i < lines.size(); ++i) {
                if (lines[i].size() == kAgencyLineBytes)
                    continue;
                if (wrong++ == 0)
                    first = lines[i];
            }
            if (wrong > 0)
                notes.push_back({key, QStringLiteral("%1 of %2 data lines are not %3 characters wide; the first, at "
                                                     "%4:%5, is %6 (an engine value or a distance of five digits)")
                                          .arg(wrong).arg(lines.size() - 1).arg(kAgencyLineBytes)
                                          .arg(QString::fromLatin1(first.mid(17, 2)), QString::fromLatin1(first.mid(19, 2)))
                                          .arg(first.size())});
        }
    });
    if (!ok)
        notes.push_back({{}, QStringLiteral("데이터생성실패  ") + Err_Last(), true});
    return notes;
}

Agency_Result Write_Agency_Files(Cls_DB& db, const Agency_Identity& id, const QString& from, const QString& to,
                                 const Agency_Progress& progress)
{
    Agency_Result r;
    if (id.company.isEmpty() || id.business.isEmpty()) {
        r.message = QStringLiteral("회사명과 사업자번호를 입력하신 후 저장 버튼을 누르세요 !");
        return r;
    }
    const QString business = Zero_Pad(id.business, 10);
    if (from > to) {
        r.message = LoadResString(1169);
        return r;
    }
    const bool ok = Guarded(kErrAgency, [&] {
        Recordset rs = Trips_Between(db, from, to);
        if (rs.RecordCount() < 1) {
            r.message = QStringLiteral("데이터가 없습니다");
            return;
        }
        int folder = 1, count = 0, done = 0;
        std::map<QString, Car_Facts> facts; // a car's register row, read once a run
        QString dir = Prepare_Folder(folder);
        r.folders = 1;
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
            const QString car = rs.Text(QStringLiteral("D_F2")), driver = rs.Text(QStringLiteral("D_F3")),
                          day = rs.Text(QStringLiteral("D_F4"));
            auto known = facts.find(car);
            if (known == facts.end())
                known = facts.emplace(car, Facts_Of(db, car)).first;
            const Car_Facts& f = known->second;
            const QString path = dir + QLatin1Char('/') + Agency_File_Name(day, f.vehicle, driver);
            if (!Inside_Folder(dir, path))
                throw RunTimeError(QStringLiteral("Path/File access error: ") + path);
            const QByteArray bytes = Day_Bytes(db, f, business, car, driver, day);
            if (!bytes.isEmpty()) {
                Write_Bytes(path, bytes);
                r.written << path;
                // Past 200 files every further file opens a new folder: the
                // counter is never set back, as it always was.
                if (++count > 200) {
                    dir = Prepare_Folder(++folder);
                    ++r.folders;
                }
            }
            if (progress)
                progress(++done, rs.RecordCount());
        }
        r.message = QStringLiteral("완료");
    });
    if (!ok) {
        r.message = QStringLiteral("데이터생성실패  ") + Err_Last();
        return r;
    }
    r.ok = r.message == QStringLiteral("완료");
    return r;
}

} // namespace vex
