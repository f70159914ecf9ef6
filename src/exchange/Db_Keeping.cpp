#include "exchange/Db_Keeping.h"

#include "core/Codes.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "exchange/Data_Package.h"
#include "exchange/Db_Compaction.h"
#include "exchange/Package.h"
#include "platform/AppFolder.h"
#include "platform/FileSystem.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/Day_Store.h"

#include <QDate>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <optional>

namespace vex {

namespace {

enum : int { kTextBackupExists = 5014, kTextMoveFromLive = 5015 };

QString App_File(const QString& systemPath)
{
    return App_Path(G().App_Dir, systemPath);
}

// The move's source is this installation: its database file, another file
// of its "\db" (whose "..\pack" is this installation's own), or that folder.
bool Is_Live_Database(Cls_DB& live, const QString& source)
{
    const QFileInfo chosen(source);
    QStringList ours{QFileInfo(App_File(QStringLiteral("\\db"))).canonicalFilePath()};
    const DbTarget& t = live.Target();
    if (t.engine == Engine::Sqlite)
        ours << QFileInfo(t.database).absoluteDir().canonicalPath();
    const QString folder = chosen.isDir() ? chosen.canonicalFilePath() : chosen.absoluteDir().canonicalPath();
    return !folder.isEmpty() && ours.contains(folder);
}

} // namespace

std::pair<QString, QString> Backup_Period(Cls_DB& live)
{
    QString oldest, newest;
    Guarded(kErrKeepingRead, [&] {
        // Each day once, in the order the trips had: the first and the last
        // day that is one stay the same.
        Recordset rs = live.DB_RSet_D_D(QStringLiteral("SELECT DISTINCT D_F4 FROM D_D1 ORDER BY D_F4 DESC"));
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
            const QString day = rs.Text(QStringLiteral("D_F4"));
            if (day == QLatin1String("000000") || !Is_Day(day))
                continue;
            if (newest.isEmpty())
                newest = day;
            oldest = day;
        }
    });
    if (oldest.isEmpty())
        return {};
    const QString month = newest.mid(2, 2);
    QString last = QStringLiteral("31");
    if (month == QLatin1String("04") || month == QLatin1String("06") || month == QLatin1String("09")
        || month == QLatin1String("11"))
        last = QStringLiteral("30");
    else if (month == QLatin1String("02"))
        last = QString::number(QDate(2000 + newest.left(2).toInt(), 2, 1).daysInMonth());
    return {oldest.left(4) + QStringLiteral("01"), newest.left(4) + last};
}

Exchange_Report Backup(Cls_DB& live, const QString& from, const QString& to, const Exchange_Progress& progress)
{
    Exchange_Report r;
    if (!Is_Day(from) || !Is_Day(to) || from > to) {
        r.message = QStringLiteral("백업할 기간을 선택하세요");
        return r;
    }
    auto Stage = [&](const QString& text, int step) {
        if (progress)
            progress(text, step, 16);
    };
    Selection all{from, to};
    const QString name = from + to;
    const QString zip = App_File(QStringLiteral("\\exp\\")) + name + QStringLiteral(".zip");
    // A package of this period holds the rows an earlier backup took out of
    // the database: a second run would put an emptier one in its place.
    if (QFileInfo::exists(zip)) {
        r.message = LoadResString(kTextBackupExists).arg(QDir::toNativeSeparators(zip));
        return r;
    }
    Stage(QStringLiteral("DB를 백업합니다"), 1);
    Exchange_Report exported = Export_Package(live, all, name, [&](const QString&, int done, int) {
        Stage(QStringLiteral("DB를 백업합니다"), 1 + done);
    });
    r.tables = exported.tables;
    r.files = exported.files;
    // Nothing leaves the live database before its package is whole on disk.
    if (!exported.ok || !Zip_Holds(zip, QStringLiteral("exp.mdb")) || !Sync_File(zip)) {
        r.message = exported.ok ? QStringLiteral("압축실패") : exported.message;
        return r;
    }
    // The package is whole: a stop from here on keeps it, and the delete
    // that follows is all or nothing.
    const Exchange_Report deleted = Delete_Selection(live, all, [&](const QString&, int done, int steps) {
        Stage(QStringLiteral("DB를 삭제합니다"), 13 + 2 * done / std::max(steps, 1));
    });
    if (!deleted.ok) {
        r.message = zip + QLatin1Char('\n') + deleted.message;
        return r;
    }
    // Past the delete the backup has happened: a stop only skips the optimise.
    const bool compacted = Guarded(kErrBackup, [&] {
        Stage(QStringLiteral("DB를 최적화를 수행합니다."), 15);
        if (live.Target().engine != Engine::Sqlite) {
            if (!Optimise(live).ok)
                throw RunTimeError(Err_Last());
        } else {
            live.Execute(QStringLiteral("VACUUM"));
        }
    });
    Guarded(kErrBackup, [&] { Stage(QString(), 16); });
    r.ok = true;
    r.message = zip + QLatin1Char('\n')
                + (compacted ? QStringLiteral("최적화가 완료되었읍니다. ")
                             : QStringLiteral("최적화가 실패되었읍니다.   ") + Err_Last());
    return r;
}

Exchange_Report Rebuild_Day(Cls_DB& live, const QString& vexFile, const QString& car)
{
    Exchange_Report r;
    if (car.trimmed().isEmpty()) {
        r.message = QStringLiteral("차량번호를 입력하세요");
        return r;
    }
    if (vexFile.isEmpty() || !QFileInfo(vexFile).isFile()) {
        r.message = QStringLiteral("파일을 선택하세요");
        return r;
    }
    const QString name = QFileInfo(vexFile).completeBaseName();
    QString c = car.trimmed().toUpper(), driver = name.mid(6, 6), day = name.left(6);
    if (!Is_Code(c) || !Is_Code(driver) || !Is_Day(day) || name.size() != 12) {
        r.message = QStringLiteral("파일입력 실패");
        return r;
    }
    // The detector reads the day from its place under "\pack" (a server's
    // row). The chosen file is read whole and checked before it takes that
    // place, and the day file it replaces comes back when the rebuild fails.
    const QString target = Day_File_Name(c, driver, day);
    const bool elsewhere = Day_Files_In_Database(live)
                           || QFileInfo(vexFile).absoluteFilePath() != QFileInfo(App_File(target)).absoluteFilePath();
    std::optional<QByteArray> replaced;
    if (elsewhere && !Guarded(kErrRebuild, [&] {
            const QByteArray bytes = Read_Day_Bytes(live, Day_File_Ref{{}, vexFile});
            Day_File_Of(bytes, vexFile);
            if (const Day_File_Ref old = Find_Day_File(live, target); old.Found())
                replaced = Read_Day_Bytes(live, old);
            Store_Day_Bytes(live, target, bytes);
        })) {
        r.message = QStringLiteral("파일입력 실패");
        return r;
    }
    r.ok = live.DB_Save_D_D12_file(c, driver, day) == -1;
    if (!r.ok && elsewhere) {
        Guarded(kErrRebuild, [&] {
            if (replaced)
                Store_Day_Bytes(live, target, *replaced);
            else
                Remove_Day_File(live, target);
        });
    }
    if (r.ok)
        r.tables.emplace_back(QStringLiteral("D_D1"), 1);
    r.message = r.ok ? QStringLiteral("완  료") : QStringLiteral("파일입력 실패");
    return r;
}

QString Newest_Day(Cls_DB& live)
{
    QString newest;
    Guarded(kErrKeepingRead, [&] {
        Recordset rs = live.DB_RSet_D_D(QStringLiteral("SELECT DISTINCT D_F4 FROM D_D1"));
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
            newest = std::max(newest, rs.Text(QStringLiteral("D_F4")));
    });
    return newest;
}

const std::vector<Move_Source>& Move_Sources()
{
    static const std::vector<Move_Source> sources{
        {1, "c:\\program files\\morix\\vex\\db\\morix.mdb", Package_Tables(), true},
        {2, "c:\\program files\\morix\\vex\\db\\morix.mdb",
         {"D_D1", "D_D2", "D_D3", "D_D6", "D_D7", "D_D8", "S_D1", "S_D2"}, false},
        {3, "c:\\program files\\morix inc\\vex250\\db\\morix.mdb",
         {"D_D1", "D_D2", "D_D3", "D_D4", "D_D6", "D_D7", "D_D8", "S_D1", "S_D2"}, false},
    };
    return sources;
}

Exchange_Report Move_From(Cls_DB& live, const QString& path, int option, const QString& fromDay,
                          const Exchange_Progress& progress)
{
    Exchange_Report r;
    const auto& sources = Move_Sources();
    auto it = std::find_if(sources.begin(), sources.end(), [&](const Move_Source& s) { return s.option == option; });
    if (it == sources.end() || !Is_Day(fromDay)) {
        r.message = QStringLiteral("option 1, 2 or 3 and a day YYMMDD");
        return r;
    }
    if (Is_Live_Database(live, path)) {
        r.message = LoadResString(kTextMoveFromLive);
        return r;
    }
    QString error;
    const std::unique_ptr<Db_Source> source = Db_Source::Open(path, &error);
    if (!source) {
        r.message = error;
        return r;
    }
    r.ok = Guarded(kErrMove, [&] {
        for (const QString& table : it->tables) {
            Source_Table rows = source->Read(table); // a missing table stops the move here
            if (Day_Tables().contains(table)) {
                std::erase_if(rows.rows, [&](const QVariantList& row) {
                    return rows.Value(row, QStringLiteral("D_F1")).toString().right(6) < fromDay;
                });
            }
            r.tables.emplace_back(table, Copy_Rows(live, table, rows, progress, &r.refused));
        }
        if (!it->dayFiles)
            return;
        // The day files of the old installation's "\pack", beside its "\db".
        const QDir pack(QFileInfo(path).absoluteDir().absoluteFilePath(QStringLiteral("../pack")));
        for (QDirIterator files(pack.absolutePath(), {QStringLiteral("*.vex"), QStringLiteral("*.VEX")}, QDir::Files,
                                QDirIterator::Subdirectories);
             files.hasNext();) {
            const QString file = files.next();
            const QString rel = pack.relativeFilePath(file);
            const QStringList parts = rel.split(QLatin1Char('/'));
            if (parts.size() != 3 || !Is_Code(parts[0]) || !Is_Day(parts[1]) || parts[1] < fromDay)
                continue;
            const QString target = QStringLiteral("\\pack\\%1\\%2\\%3").arg(parts[0], parts[1], parts[2]);
            if (!Day_Files_In_Database(live)) {
                QDir().mkpath(QFileInfo(App_File(target)).absolutePath());
                if (FileSystem(G().App_Dir).CopyFile(file, App_File(target)))
                    r.files << App_File(target);
            } else if (!Day_File_Key(target).isEmpty()) {
                Store_Day_File_From(live, target, file);
                r.files << Day_File_Place(live, target).Name();
            }
        }
    });
    r.message = r.ok ? QStringLiteral("완료") : Err_Last();
    return r;
}

} // namespace vex
