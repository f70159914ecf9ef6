// Decoding of pack files: the system page, the filing of a freshly read day,
// and a filed day into the database. A bad field is never an error: each has
// a fixed fallback. Only a page that fails its check byte is refused.
#include "acquisition/Cls_IO.h"

#include "acquisition/AnalyzerLink.h"
#include "acquisition/Inbox_Names.h"
#include "acquisition/PackLayout.h"
#include "acquisition/VexFiles.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "platform/AppFolder.h"
#include "platform/FileSystem.h"
#include "store/Cls_DB.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
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

// The day test of a filed pack day: bad when not numeric (digitsOnly: any
// character not a digit), "000000", a month above 12 or a day above 31.
bool Bad_Day(const QString& day, bool digitsOnly)
{
    const bool numeric = digitsOnly ? All_Digits(day) : Is_Numeric(day);
    return !numeric || day == QLatin1String("000000") || Val(day.mid(2, 2)) > 12 || Val(day.mid(4, 2)) > 31;
}

// A minute of distance as decimal digits "XY" with the flag bit in X: the
// tenths of a kilometre, or 0 for a cell with another character.
// A pack's car or driver code: four hexadecimal capitals.
bool Pack_Code(const QString& code)
{
    return code.size() == 4 && Is_Code(QStringLiteral("00") + code);
}

// Memory never written since it was erased reads as "FF" bytes.
bool Erased_Page(const QString& field)
{
    return !field.isEmpty() && std::all_of(field.begin(), field.end(), [](QChar c) { return c == u'F'; });
}

QString Key_Refusal(const QString& car, const QString& driver, const QString& day)
{
    return QStringLiteral("no key: car \"%1\" driver \"%2\" day \"%3\"").arg(car, driver, day);
}

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

int Speed_Limit(Cls_DB& db, const QString& car4)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1=?"), {car4});
    if (rs.RecordCount() < 1)
        return 80;
    const QVariant v = rs.Field(QStringLiteral("D_F10"));
    return v.isNull() ? 80 : int(Val(v.toString()));
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

} // namespace

bool Cls_IO::Pack_SysFile_Read()
{
    bool accepted = false;
    Guarded(1133, [&] {
        Cls_DB& db = *G().DB;
        const QString path = App_Path(G().App_Dir, QStringLiteral("\\Dat\\SysRead.Vex"));
        const std::optional<SysReadRecord> rec = Read_SysRead(path);
        if (!rec)
            throw RunTimeError(QStringLiteral("cannot read ") + path);
        // What a short file (an empty reply, a cut one) doesn't hold of the
        // fixed record reads as zeros: such a page is refused by its check byte.
        auto zeros = [](const QString& v, int width) { return v.leftJustified(width, QLatin1Char('0'), true); };
        QString check = zeros(rec->SysCheckPack, 2), check1 = zeros(rec->SysCheckPack1, 2);
        QString insert = zeros(rec->SysPackInsert, 10), lastWrite = zeros(rec->SysPackLastWrite, 10),
                dbWrite = zeros(rec->SysDBWriteDate, 10);

        if (lastWrite != QLatin1String("0000000000") || insert != QLatin1String("0000000000")) {
            check = QStringLiteral("AA");
            check1 = QStringLiteral("AA");
        }
        if (check1 != QLatin1String("AA")) {
            db.SysCheckPack1 = check1;
            return;
        }
        if (Val(insert.mid(6, 2)) > 23 || Val(insert.mid(8, 2)) > 59)
            insert = Fixed(insert.left(6) + QStringLiteral("0000"), 10);

        const QDate today = Today_Date();
        const int todayYY = today.year() % 100;
        if (!All_Digits(lastWrite.left(6)) || lastWrite.left(2) == QLatin1String("00")
            || Val(lastWrite.left(2)) > todayYY || Val(lastWrite.mid(2, 2)) >= 13 || Val(lastWrite.mid(4, 2)) >= 32)
            lastWrite = today.toString(QStringLiteral("yyMMdd")) + QStringLiteral("2359");
        const int lastYY = int(Val(lastWrite.left(2)));

        const int dbYY = int(Val(dbWrite.left(2)));
        if (!All_Digits(dbWrite.left(6)) || dbYY > lastYY || Val(dbWrite.left(4)) > Val(lastWrite.left(4))
            || dbWrite == QLatin1String("0000000000") || dbWrite.trimmed().isEmpty()
            || dbWrite.left(2) == QLatin1String("00") || dbYY > todayYY || Val(dbWrite.mid(2, 2)) >= 13
            || Val(dbWrite.mid(4, 2)) >= 32)
            dbWrite = today.addDays(-4).toString(QStringLiteral("yyMMdd")) + QStringLiteral("1159");

        QString car, driver;
        if (Link) {
            car = Link->New_Pack_SearchIO_Byte1(QStringLiteral("07E0"), QStringLiteral("14"), QStringLiteral("01"))
                  + Link->New_Pack_SearchIO_Byte1(QStringLiteral("07E1"), QStringLiteral("14"), QStringLiteral("01"));
            if (car == QLatin1String("0000"))
                car = Link->New_Pack_SearchIO_Byte1(QStringLiteral("0002"), QStringLiteral("0"), QStringLiteral("0"))
                      + Link->New_Pack_SearchIO_Byte1(QStringLiteral("0003"), QStringLiteral("0"), QStringLiteral("0"));
            driver = Link->New_Pack_SearchIO_Byte1(QStringLiteral("07E2"), QStringLiteral("14"), QStringLiteral("01"))
                     + Link->New_Pack_SearchIO_Byte1(QStringLiteral("07E3"), QStringLiteral("14"), QStringLiteral("01"));
        }
        db.Set_DB_State(1);
        db.SysCheckPack = check;
        db.SysCheckPack1 = check1;
        db.SysCarCode = car.isEmpty() ? rec->SysCarCode : car;
        db.SysDriveCode = driver == QLatin1String("0000") ? rec->SysDriveCode : driver;
        db.SysWarehouse = rec->SysWarehouse;
        db.SysSerialNumber = rec->SysSerialNumber;
        if (!Range_Selected) {
            db.SysPackInsert = insert;
            db.SysPackLastWrite = lastWrite;
            db.SysDBWriteDate = dbWrite;
        }
        db.SysTotalDistance = rec->SysTotalDistance;
        db.SysTotalEngin = rec->SysTotalEngin;
        accepted = true;
    });
    return accepted;
}

int16_t Cls_IO::Pack_File_Read(const QString& path)
{
    Refusal.clear();
    bool inInbox = false; // the archive copy is a copy: the day is received once it is in \new
    const bool filed = Guarded(1134, [&] {
        const std::optional<ReadRecords> rec = Read_Read(path);
        if (!rec)
            throw RunTimeError(QStringLiteral("cannot read ") + path);
        const QString car = rec->day.field(DayPage::CarCode);
        const QString driver = rec->day.field(DayPage::DriveCode);
        QString check1 = rec->day.field(DayPage::CheckPack1);
        if (car != QLatin1String("0000"))
            check1 = QStringLiteral("AA");
        if (check1 != QLatin1String("AA"))
            return;
        QString startDay = rec->day.field(DayPage::StartDay);
        // The day names the file only (the decoder repairs it from the
        // pages), and must be a day to do so.
        if (Bad_Day(startDay, true) || !Is_Day(startDay))
            startDay = Read_Day;
        // The codes name the file and its archive folder.
        if (!Pack_Code(car) || !Pack_Code(driver) || !Is_Day(startDay)) {
            Refusal = Key_Refusal(car, driver, startDay);
            throw RunTimeError(Refusal);
        }

        const QString name = car + driver + startDay + QStringLiteral(".Vex");
        FileSystem& fs = *G().FS;
        if (!fs.CopyFile(path, QStringLiteral("\\new\\") + name))
            throw RunTimeError(QStringLiteral("cannot file ") + name + QStringLiteral(" in \\new"));
        inInbox = true;
        const QString archive = QStringLiteral("\\mpack\\") + car;
        if (!fs.FolderExists(archive))
            fs.CreateFolder(archive);
        if (!fs.CopyFile(path, archive + QStringLiteral("\\") + name))
            throw RunTimeError(QStringLiteral("cannot file ") + name + QStringLiteral(" in \\mpack"));
    });
    if (!filed && !inInbox && Refusal.isEmpty())
        Refusal = Err_Last();
    return 0;
}

int16_t Cls_IO::Pack_File_Read1(Cls_DB& db, const QString& path)
{
    int16_t result = 0;
    Refusal.clear();
    Erased = false;
    Cls_DB::Batch batch(db); // one commit a day; a failure keeps what was written
    Guarded(1135, [&] {
        Cls_Config& cfg = *G().Config;
        const std::optional<ReadRecords> rec = Read_Read(path);
        if (!rec)
            throw RunTimeError(QStringLiteral("cannot read ") + path);
        if (rec->day.text().isEmpty()) {
            result = 1;
            Refusal = QStringLiteral("empty file");
            throw RunTimeError(QStringLiteral("Input past end of file: ") + path + QStringLiteral(" is empty"));
        }
        const PageText& day = rec->day;
        const PageText& dist = rec->distance;
        auto f = [&](const Field& field) { return Fixed(day.field(field), field.width); };

        const QString car4 = f(DayPage::CarCode);
        const QString driver4 = f(DayPage::DriveCode);
        QString check1 = f(DayPage::CheckPack1);
        if (car4 != QLatin1String("0000") || Val(f(DayPage::Distance)) != 0)
            check1 = QStringLiteral("AA");
        if (check1 != QLatin1String("AA")) {
            result = 1;
            Refusal = QStringLiteral("check byte");
            return;
        }

        QString startDay = f(DayPage::StartDay);
        if (Bad_Day(startDay, false)) {
            const QString distStart = dist.field(DistPage::StartDay), distEnd = dist.field(DistPage::EndDay);
            if (Is_Numeric(distStart))
                startDay = Fixed(distStart, 6);
            else if (Is_Numeric(distEnd))
                startDay = Fixed(distEnd, 6);
        }
        QString endDay = f(DayPage::EndDay);
        if (Bad_Day(endDay, false))
            endDay = startDay;

        // Speed by the minute: neighbouring minutes over the car's limit make
        // the long overspeed count; many minutes over 150 km/h mean garbage.
        const int limit = Speed_Limit(db, car4);
        QString speed = f(DayPage::Sec_Data);
        int over150 = 0, overLimit = 0;
        for (int m = 0; m + 1 < kCells; ++m) {
            const int a = Hex_Value(Cell(speed, m)), b = Hex_Value(Cell(speed, m + 1));
            over150 += a > 150;
            overLimit += a > limit && b > limit;
        }
        QString lkEngin = Fixed(QString::number(overLimit).left(2), 2);
        if (over150 > 40)
            speed = Speed_From_Distance(dist.field(DistPage::Sec_Data).leftJustified(2 * kCells, QLatin1Char(' ')));
        for (int m = 0; m < kCells; ++m) {
            const QString cell = Cell(speed, m);
            if (cell == QLatin1String("FF") || (m > 0 && Hex_Value(cell) >= 150))
                speed.replace(2 * m, 2, QStringLiteral("00"));
        }

        int leading = 0;
        while (leading < kCells && Cell(speed, leading) == QLatin1String("00"))
            ++leading;
        QString startTime = f(DayPage::StartTime);
        if (!All_Digits(startTime) || leading > Val(startTime.left(2)) * 60 + Val(startTime.mid(2, 2)))
            startTime = HHMM_Of_Minutes(leading);

        QString endTime = f(DayPage::EndTime);
        bool flag = !All_Digits(endTime) || Val(endTime) < Val(startTime);
        if (flag) {
            int trailing = 0;
            while (trailing < kCells && Cell(speed, kCells - 1 - trailing) == QLatin1String("00"))
                ++trailing;
            endTime = HHMM_Of_Minutes(1439 - trailing);
        }

        // A wrong end time also forces the distance to be summed again.
        QString distance = f(DayPage::Distance);
        const QString distSeries = dist.field(DistPage::Sec_Data);
        if (flag || !All_Digits(distance) || Val(distance) / 10 > 1000) {
            int sum = 0;
            for (int m = 0; m < kCells; ++m)
                sum += Distance_Tenths(Cell(distSeries, m));
            distance = Fixed(QString::number(sum).left(6), 6);
        }

        QString acceleration = f(DayPage::Acceleration);
        if (All_Digits(acceleration)) {
            if (Val(acceleration) > 300)
                acceleration = Pad4(QString::number(QRandomGenerator::global()->bounded(101)));
        } else {
            acceleration = QStringLiteral("0000");
        }
        if (!Is_Numeric(acceleration))
            acceleration = QStringLiteral("0000");
        QString brack = f(DayPage::Brack);
        if (!Is_Numeric(brack))
            brack = QStringLiteral("00");
        if (!Is_Numeric(lkEngin))
            lkEngin = QStringLiteral("00");

        // A page left erased (nothing driven after the last reception) is a
        // day without driving, not damage: nothing to store, nothing refused.
        if (Erased_Page(f(DayPage::StartDay)) && Erased_Page(f(DayPage::EndDay)) && Erased_Page(f(DayPage::Sec_Data))
            && Erased_Page(dist.field(DistPage::StartDay))) {
            result = 1;
            Erased = true;
            return;
        }
        // A day whose codes or date are no key after the repairs is no day
        // of a pack: nothing of it is stored.
        if (!Pack_Code(car4) || !Pack_Code(driver4) || !Is_Day(startDay)) {
            result = 1;
            Refusal = Key_Refusal(car4, driver4, startDay);
            throw RunTimeError(Refusal + QStringLiteral(": ") + path);
        }

        // Six-character codes as the USB recorders give them: "00" and the
        // pack's four, so that a car keeps one key whatever medium it used.
        Car_Code = QStringLiteral("00") + car4;
        Drive_Code = QStringLiteral("00") + driver4;
        db.Register_Car(Car_Code, cfg.B_Val3);
        db.Register_Driver(Drive_Code);

        db.CarCode = Car_Code;
        db.DriveCode = Drive_Code;
        db.StartDay = startDay;
        db.StartTime = startTime;
        db.EndDay = endDay;
        db.EndTime = endTime;
        db.Distance = distance;
        db.Engin = f(DayPage::Engin);
        db.Acceleration = acceleration;

        QString brakeRecords = f(DayPage::Brack_Data);
        if (brack != QLatin1String("00")) {
            int kept = 0;
            brakeRecords = Filter_Brake_Records(brakeRecords, &kept);
            brack = Fixed(QString::number(kept).left(2), 2);
        }
        db.Brack = brack;
        db.LKEngin = lkEngin;
        db.Brack_Data = brakeRecords;
        db.Brack_Buffer_Data = f(DayPage::Brack_Buffer_Data);
        db.LkEngin_Data = f(DayPage::LkEngin_Data);
        db.Brack_Time_Data = f(DayPage::Brack_Time_Data);
        db.Speed_Dist_Data = f(DayPage::Speed_Dist_Data);
        db.Sec_Data = speed;
        db.OverSpeed_Count = db.CAL_OVERSPEED_CNT();
        db.LastDistance = f(DayPage::LastDistance);
        db.LastAcceleration = acceleration;
        db.LastLKEngin = f(DayPage::LastLKEngin);
        db.LastBrack = f(DayPage::LastBrack);
        db.LastEnginOver = f(DayPage::LastEnginOver);
        db.DB_Save_D_D1_pack();
        db.DB_Save_D_D2_pack();
        db.DB_Save_D_D3_pack();

        // The distance page is indexed by the day of month alone: one of
        // another month says nothing of this day.
        QString distanceSeries = dist.field(DistPage::StartDay) != startDay
                                     ? QString(2 * kCells, QLatin1Char('0'))
                                     : Repair_Distance(distSeries.leftJustified(2 * kCells, QLatin1Char(' ')), speed);
        db.Set_DB_State(1);
        db.Sec_Distance_Data = distanceSeries;
        db.DB_Save_D_D5_pack();
    });
    return result;
}

} // namespace vex
