// Pack files on the desk: the system page decoded, a freshly read day filed,
// and a filed day decoded (Decode_Pack_Day) and stored.
#include "acquisition/Cls_IO.h"

#include "acquisition/AnalyzerLink.h"
#include "acquisition/Inbox_Names.h"
#include "acquisition/PackLayout.h"
#include "acquisition/Pack_Decoder.h"
#include "acquisition/VexFiles.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "platform/AppFolder.h"
#include "platform/FileSystem.h"
#include "store/Cls_DB.h"

#include <QFile>
#include <QRandomGenerator>

namespace vex {

namespace {

// The car's speed limit: D_F10 of its register row under the pack's code of
// four, 80 without one. Cars register under six characters ("00" first), so
// a registered car is found here only by an older row of four; the decoding
// has always looked the car up so, and the long overspeed counts stored rest
// on it.
int Speed_Limit(Cls_DB& db, const QString& car4)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1=?"), {car4});
    if (rs.RecordCount() < 1)
        return 80;
    const QVariant v = rs.Field(QStringLiteral("D_F10"));
    return v.isNull() ? 80 : int(Val(v.toString()));
}

QByteArray Read_Whole(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        throw RunTimeError(QStringLiteral("cannot read ") + path);
    return f.read(kReadVexChars);
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
            System_Page.checkPack1 = check1;
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
        Pack_System_Page& page = System_Page;
        page.checkPack = check;
        page.checkPack1 = check1;
        page.car = car.isEmpty() ? rec->SysCarCode : car;
        page.driver = driver == QLatin1String("0000") ? rec->SysDriveCode : driver;
        page.warehouse = rec->SysWarehouse;
        page.serialNumber = rec->SysSerialNumber;
        if (!Range_Selected) {
            page.packInsert = insert;
            page.packLastWrite = lastWrite;
            page.dbWriteDate = dbWrite;
        }
        page.totalDistance = rec->SysTotalDistance;
        page.totalEngine = rec->SysTotalEngin;
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
        if (Bad_Pack_Day(startDay, true) || !Is_Day(startDay))
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
        const Pack_Decode_Inputs inputs{
            [&](const QString& car4) { return Speed_Limit(db, car4); },
            [](int bound) { return int(QRandomGenerator::global()->bounded(bound)); },
        };
        Pack_Decoding decoded = Decode_Pack_Day(Read_Whole(path), inputs);
        using Verdict = Pack_Decoding::Verdict;
        switch (decoded.verdict) {
        case Verdict::Decoded:
            break;
        case Verdict::Empty:
            result = 1;
            Refusal = decoded.refusal;
            throw RunTimeError(QStringLiteral("Input past end of file: ") + path + QStringLiteral(" is empty"));
        case Verdict::Check_Byte:
            result = 1;
            Refusal = decoded.refusal;
            return;
        case Verdict::Erased:
            result = 1;
            Erased = true;
            return;
        case Verdict::No_Key:
            result = 1;
            Refusal = decoded.refusal;
            throw RunTimeError(Refusal + QStringLiteral(": ") + path);
        }

        Pack_Day& day = decoded.day;
        Car_Code = day.car;
        Drive_Code = day.driver;
        db.Register_Car(day.car, G().Config->B_Val3);
        db.Register_Driver(day.driver);
        day.overspeedMinutes = db.CAL_OVERSPEED_CNT(day.speed);
        Decoded = day;
        db.DB_Save_D_D1_pack(day);
        db.DB_Save_D_D2_pack(day);
        db.DB_Save_D_D3_pack(day);
        db.Set_DB_State(1);
        db.DB_Save_D_D5_pack(day);
    });
    return result;
}

} // namespace vex
