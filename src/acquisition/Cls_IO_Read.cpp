// Reception of a memory pack through the analyzer: the system page, the
// check of the pack, the new days page by page into \new and \mpack, and the
// closing write of how far the desktop has read.
#include "acquisition/Cls_IO.h"

#include "acquisition/AnalyzerLink.h"
#include "acquisition/PackLayout.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "platform/AppFolder.h"
#include "platform/FileSystem.h"
#include "store/Cls_DB.h"

#include <QDir>
#include <QFile>
#include <QThread>

namespace vex {

namespace {

QString Dat_Path(const QString& name)
{
    return App_Path(G().App_Dir, QStringLiteral("\\Dat\\") + name);
}

// The date of "YYMMDD" digits; a two-digit year is always 20yy.
QDate Date_Of(const QString& yymmdd)
{
    return QDate(2000 + yymmdd.left(2).toInt(), yymmdd.mid(2, 2).toInt(), yymmdd.mid(4, 2).toInt());
}

QString Two(int v)
{
    return Pad2(QString::number(v));
}

} // namespace

bool Cls_IO::Write_File(const QString& text, const QString& path)
{
    bool written = false;
    Guarded(1132, [&] {
        QFile f(path);
        if (!f.open(QIODevice::Append))
            throw RunTimeError(QStringLiteral("cannot write ") + path);
        f.write(text.toLatin1() + "\r\n");
        written = true;
    });
    return written;
}

bool Cls_IO::Pack_SysReads()
{
    if (G().Link_Type == 0 || !Link)
        return false;
    bool ok = false;
    Guarded(1128, [&] {
        const QString reply = Link->Read(kSystemPageAddress);
        const QString path = Dat_Path(QStringLiteral("SysRead.Vex"));
        QFile::remove(path);
        Write_File(reply, path);
        ok = Pack_SysFile_Read();
    });
    return ok;
}

int16_t Cls_IO::Pack_Checks()
{
    if (G().Link_Type == 0)
        return 0;
    int16_t code = 7;
    Guarded(1129, [&] {
        if (!Pack_SysReads())
            return;
        if (System_Page.checkPack != QLatin1String("AA"))
            code = 6;
        else if (System_Page.checkPack1 == QLatin1String("AA"))
            code = 1;
        else if (System_Page.checkPack1 == QLatin1String("11") || System_Page.checkPack1 == QLatin1String("00"))
            code = 0;
        else
            code = 5;
    });
    return code;
}

QString Cls_IO::New_Pack_Read(const QString& bank, const QString& page, const QString& offset)
{
    QString result = QStringLiteral("1");
    Guarded(1127, [&] {
        const QString path = Dat_Path(QStringLiteral("Read.Vex"));
        const QString count = QStringLiteral("07FF");

        QString dayPage = Link->Read(bank, page, offset, count);
        if (dayPage.size() == kPageChars) {
            Put_Field(dayPage, DayPage::CarCode, System_Page.car);
            Put_Field(dayPage, DayPage::DriveCode, System_Page.driver);
            Write_File(dayPage, path);
        }
        QString distancePage = Link->Read(QStringLiteral("0D"), page, QStringLiteral("0000"), count);
        if (distancePage.size() == kPageChars) {
            Put_Field(distancePage, DistPage::CarCode, System_Page.car);
            Put_Field(distancePage, DistPage::DriveCode, System_Page.driver);
            Write_File(distancePage, path);
        }
        // Only the third page decides: a missing first or second line goes
        // unreported and leaves the file out of step with its records.
        const QString thirdPage = Link->Read(QStringLiteral("0F"), page, QStringLiteral("0000"), count);
        if (thirdPage.size() == kPageChars && Write_File(thirdPage + System_Page.totalDistance, path))
            result = QStringLiteral("0");
    });
    return result;
}

int16_t Cls_IO::Pack_Reads()
{
    int16_t code = 0;
    Skipped.clear();
    Guarded(1130, [&] {
        QDir::setCurrent(G().App_Dir);
        const int16_t check = Pack_Checks();
        if (check != 1) {
            code = check == 0 ? 11 : int16_t(check + 11);
            return;
        }
        const QString stop = System_Page.packLastWrite;
        const bool dbWriteNumeric = Is_Numeric(System_Page.dbWriteDate);
        const QString start = dbWriteNumeric ? System_Page.dbWriteDate : System_Page.warehouse + QStringLiteral("0000");
        if (Val(stop) - Val(start) < 1)
            return; // nothing new on the pack

        const QDate a = Date_Of(stop.left(6));
        const QDate b = Date_Of(dbWriteNumeric ? System_Page.dbWriteDate.left(6) : System_Page.warehouse);
        if (!a.isValid() || !b.isValid())
            throw RunTimeError(QStringLiteral("no date in the pack's stamps ") + stop + QLatin1Char('/') + start);
        const qint64 n = std::abs(a.daysTo(b));
        // From the earlier stamp on: the day of the last reception is read
        // again, to complete a day that was still being driven then.
        QDate d = std::min(a, b);
        const QString readVex = Dat_Path(QStringLiteral("Read.Vex"));
        QFile::remove(readVex);
        for (qint64 i = 0; i <= n; ++i, d = d.addDays(1)) {
            if (New_Pack_Read(Dec_Hex(int16_t(d.month())), Dec_Hex(int16_t(d.day())), QStringLiteral("0000"))
                == QLatin1String("0")) {
                Read_Day = Two(d.year() % 100) + Two(d.month()) + Two(d.day());
                Pack_File_Read(readVex);
                if (!Refusal.isEmpty())
                    Skipped.push_back({d, Refusal});
                QFile::remove(readVex);
            } else {
                code = 4; // what was written of the day stays, and the next day appends to it
                Skipped.push_back({d, QStringLiteral("no reply")});
            }
            if (Progress)
                Progress(int(i + 1), int(n + 1), d);
        }
        const QDate last = d.addDays(-1);
        const QString stamp = Two(last.year() % 100) + Two(last.month()) + Two(last.day()) + stop.mid(6, 4);
        int16_t mode = 2;
        if (!Pack_Writes(mode, stamp))
            code = 5;
    });
    return code;
}

bool Cls_IO::Pack_Writes(int16_t& mode, const QString& value)
{
    static const QStringList addresses[3] = {
        {QStringLiteral("00000002"), QStringLiteral("00000003")},
        {QStringLiteral("00000004"), QStringLiteral("00000005")},
        {QStringLiteral("00000047"), QStringLiteral("00000048"), QStringLiteral("00000049"),
         QStringLiteral("0000004A"), QStringLiteral("0000004B")},
    };
    if (mode < 0 || mode > 2 || !Link)
        return false;
    bool ok = false;
    Guarded(1131, [&] {
        // The link is tested before a write; with the flag at 0 the test is
        // skipped and the bytes go out on whatever port is open.
        if (G().Link_Type == 1 && !Link->Find_Analyzer()) {
            if (Message)
                Message(207);
            return;
        }
        const QStringList& at = addresses[mode];
        for (int i = 0; i < at.size() && 2 * i < value.size(); ++i) {
            if (i > 0)
                QThread::msleep(100);
            Link->New_Pack_WriteIO_Byte(at[i], value.mid(2 * i, 2));
        }
        ok = true;
    });
    return ok;
}

} // namespace vex
