#include "exchange/Data_Package.h"

#include "core/Codes.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/Printable.h"
#include "exchange/Package.h"
#include "platform/AppFolder.h"
#include "platform/FileSystem.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/Day_Store.h"
#include "store/Schema.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTemporaryDir>
#include <cerrno>
#include <csignal>
#include <unistd.h>

namespace vex {

namespace {

QString App(const QString& systemPath)
{
    return App_Path(G().App_Dir, systemPath);
}

QDate Date_Of(const QString& yymmdd)
{
    return QDate(2000 + yymmdd.left(2).toInt(), yymmdd.mid(2, 2).toInt(), yymmdd.mid(4, 2).toInt());
}

Exchange_Report Refused(const QString& message)
{
    Exchange_Report r;
    r.message = message;
    return r;
}

// The day files of the rows of D_D1 in a selection, as package entries. A
// server's day files are written into staging (a folder removed with the
// package's other work files) to be packed from there.
std::vector<Zip_Entry> Day_File_Entries(Cls_DB& live, const QStringList& tripKeys, const QString& staging)
{
    std::vector<Zip_Entry> entries;
    for (const QString& key : tripKeys) {
        const QString car = key.left(6), driver = key.mid(6, 6), day = key.right(6);
        if (!Is_Code(car) || !Is_Code(driver) || !Is_Day(day))
            continue;
        const Day_File_Ref ref = Find_Day_File(live, Day_File_Name(car, driver, day));
        if (!ref.Found())
            continue;
        const QString name = QStringLiteral("pack/%1/%2/%2%3.vex").arg(car, day, driver);
        QString file = ref.path;
        if (file.isEmpty()) {
            file = staging + QLatin1Char('/') + name;
            QDir().mkpath(QFileInfo(file).path());
            Write_Whole_File(file, Read_Day_Bytes(live, ref));
        }
        entries.push_back({file, name});
    }
    return entries;
}

// Where a package's day file "pack/<car>/<day>/<day><driver>.vex" goes in
// "\pack" (a system path); empty for any other name, whose parts can't be
// trusted as a car code and a day.
QString Day_File_Target(const QString& name)
{
    const QStringList parts = name.split(QLatin1Char('/'));
    if (parts.size() != 4 || parts[0] != QLatin1String("pack"))
        return {};
    const QString& car = parts[1];
    const QString& day = parts[2];
    const QString& file = parts[3];
    if (!Is_Code(car) || !Is_Day(day) || file.size() != 16 || !file.startsWith(day) || !Is_Code(file.mid(6, 6))
        || file.right(4).toUpper() != QLatin1String(".VEX"))
        return {};
    return QStringLiteral("\\pack\\%1\\%2\\%3").arg(car, day, file);
}

bool Move_Over(const QString& from, const QString& to)
{
    QDir().mkpath(QFileInfo(to).absolutePath());
    QFile::remove(to);
    return QFile::rename(from, to) || (QFile::copy(from, to) && QFile::remove(from));
}

// The scratch folders of imports in "\exp": ".import-<process>-XXXXXX".
// Those of a process that is gone (killed half way) are removed; a running
// one's stay.
void Remove_Stale_Scratch(const QString& exp)
{
    for (const QString& name : QDir(exp).entryList({QStringLiteral(".import-*")}, QDir::Dirs | QDir::Hidden)) {
        const pid_t owner = pid_t(name.section(QLatin1Char('-'), 1, 1).toLongLong());
        if (owner > 0 && kill(owner, 0) != 0 && errno == ESRCH)
            QDir(QDir(exp).filePath(name)).removeRecursively();
    }
}

// The keys of a table's rows that the copy took: all with a key but those
// it refused ("D_D1 '<key as printed>': why").
QStringList Written_Keys(const Source_Table& rows, const QStringList& refused)
{
    QSet<QString> told;
    const QString prefix = QStringLiteral("D_D1 '");
    for (const QString& line : refused)
        if (line.startsWith(prefix))
            told.insert(line.mid(prefix.size(), line.indexOf(QStringLiteral("': "), prefix.size()) - prefix.size()));
    QStringList keys;
    for (const QVariantList& row : rows.rows) {
        const QString key = rows.Value(row, QStringLiteral("D_F1")).toString();
        if (!key.isEmpty() && !told.contains(Printable(key, 40)))
            keys << key;
    }
    return keys;
}

// One package: unpacked, its database read whole, then written. It works in
// a scratch folder of its own under "\exp", removed whatever happened, and
// only the entries an import uses are written there: nothing a package holds
// outlives its import or stands in the way of the next.
void Import_One(Cls_DB& live, const QString& zip, bool withSiteTable, Exchange_Report& report,
                const Exchange_Progress& progress)
{
    const QString exp = App(QStringLiteral("\\exp"));
    QDir().mkpath(exp);
    Remove_Stale_Scratch(exp);
    const QTemporaryDir scratch(exp + QStringLiteral("/.import-%1-XXXXXX").arg(getpid()));
    if (!scratch.isValid())
        throw RunTimeError(QStringLiteral("cannot make a scratch folder in ") + exp);
    const Unzip_Result unzipped = UnZip_Make(zip, scratch.path(), [](const QString& name) {
        return name == QLatin1String("exp.mdb") || !Day_File_Target(name).isEmpty();
    });
    if (!unzipped.ok)
        throw RunTimeError(unzipped.error);
    QString error;
    std::unique_ptr<Db_Source> source;
    if (unzipped.names.contains(QStringLiteral("exp.mdb")))
        source = Db_Source::Open(scratch.filePath(QStringLiteral("exp.mdb")), &error);
    else
        error = QStringLiteral("the package holds no exp.mdb: ") + QFileInfo(zip).fileName();
    if (!source)
        throw RunTimeError(error);
    QStringList tables = Package_Tables();
    if (withSiteTable && source->Has_Table(QStringLiteral("D_S1")))
        tables << QStringLiteral("D_S1");
    // Read before anything is written: a broken table changes nothing.
    std::vector<Source_Table> read;
    for (const QString& t : tables)
        read.push_back(source->Read(t));
    source.reset();
    for (const QString& name : unzipped.names) {
        const QString target = Day_File_Target(name);
        if (target.isEmpty())
            continue;
        if (!Day_Files_In_Database(live)) {
            if (Move_Over(scratch.filePath(name), App(target)))
                report.files << App(target);
        } else {
            Store_Day_File_From(live, target, scratch.filePath(name));
            report.files << Day_File_Place(live, target).Name();
        }
    }
    for (size_t i = 0; i < read.size(); ++i) {
        if (progress)
            progress(tables[int(i)], 0, int(read[i].rows.size()));
        const int refusedBefore = int(report.refused.size());
        const int n = Copy_Rows(live, tables[int(i)], read[i], progress, &report.refused);
        report.tables.emplace_back(tables[int(i)], n);
        if (tables[int(i)] == QLatin1String("D_D1"))
            report.trips << Written_Keys(read[i], report.refused.mid(refusedBefore));
    }
}

// The export database is empty and of the live one's kind: the engine copies
// each table's selection into it itself, as one statement.
void Export_In_Engine(Cls_DB& live, const Selection& s, Exchange_Report& r, const Exchange_Progress& progress)
{
    live.Execute(QStringLiteral("ATTACH DATABASE ? AS exp"), {Export_Db_Path()});
    const bool ok = Guarded(kErrExport, [&] {
        int step = 0;
        for (const QString& t : Package_Tables()) {
            auto [sql, values] = Selection_Where(t, s);
            live.Execute(QStringLiteral("INSERT INTO exp.") + t + QLatin1Char(' ') + sql, values);
            Recordset n = live.DB_RSet_D_D(QStringLiteral("SELECT COUNT(*) AS N FROM exp.") + t);
            r.tables.emplace_back(t, n.Field(QStringLiteral("N")).toInt());
            if (progress)
                progress(QStringLiteral("dbexport"), ++step, int(Package_Tables().size()));
        }
    });
    live.Execute(QStringLiteral("DETACH DATABASE exp"));
    if (!ok)
        throw RunTimeError(Err_Last());
}

// Any other engine: row by row through the copy rule.
void Export_By_Rows(Cls_DB& live, const Selection& s, Exchange_Report& r, const Exchange_Progress& progress)
{
    Cls_DB target(Parse_DB_Server(Export_Db_Path(), G().App_Dir));
    int step = 0;
    for (const QString& t : Package_Tables()) {
        r.tables.emplace_back(t, Copy_Rows(target, t, Select_Rows(live, t, s)));
        if (progress)
            progress(QStringLiteral("dbexport"), ++step, int(Package_Tables().size()));
    }
}

} // namespace

QString Export_Db_Path()
{
    return App(QStringLiteral("\\exp\\exp.mdb"));
}

bool Empty_Export_Db(QString* error)
{
    const QString path = Export_Db_Path();
    QDir().mkpath(QFileInfo(path).absolutePath());
    // Imports once unpacked packages right here: a folder one left where the
    // database or its work files go would stop every export.
    for (const char* side : {"", "-journal", "-wal", "-shm"})
        if (QFileInfo(path + QLatin1String(side)).isDir())
            QDir(path + QLatin1String(side)).removeRecursively();
    // Missing, or left by an imported package of another kind: the empty
    // template takes its place.
    if (Db_File_Kind_Of(path) != Db_File_Kind::Sqlite) {
        QFile::remove(path);
        QFile::copy(App(QStringLiteral("\\db_temp\\morix.mdb")), path);
    }
    const bool ok = Guarded(kErrExportDb, [&] {
        DbTarget target = Parse_DB_Server(path, G().App_Dir);
        Cls_DB exp(target);
        if (exp.DB_State() != 1)
            throw RunTimeError(QStringLiteral("cannot open ") + path);
        for (const QString& t : Package_Tables() + QStringList{QStringLiteral("D_S1")})
            exp.Execute(QStringLiteral("DELETE * FROM ") + t);
        // A package is read whole, never searched: the indexes of the live
        // tables would only slow its filling.
        for (const Index& x : Schema_Indexes())
            exp.Execute(QStringLiteral("DROP INDEX IF EXISTS ") + x.name);
    });
    if (!ok && error)
        *error = QStringLiteral("DB 생성 오류");
    return ok;
}

Exchange_Report Export_Package(Cls_DB& live, const Selection& s, const QString& name, const Exchange_Progress& progress)
{
    Exchange_Report r;
    QString error;
    if (!Empty_Export_Db(&error))
        return Refused(error);
    const QString exp = App(QStringLiteral("\\exp"));
    const bool ok = Guarded(kErrExport, [&] {
        QStringList tripKeys;
        {
            const auto [sql, values] = Selection_Where(QStringLiteral("D_D1"), s, QStringLiteral("D_F1"));
            Recordset trips = live.DB_RSet_D_D(sql, values);
            for (trips.MoveFirst(); !trips.EOF_(); trips.MoveNext())
                tripKeys << trips.Text(QStringLiteral("D_F1"));
        }
        if (live.Target().engine == Engine::Sqlite)
            Export_In_Engine(live, s, r, progress);
        else
            Export_By_Rows(live, s, r, progress);
        // The export database itself goes into the package: what a copy
        // of it beside would add is another write of its whole size.
        std::vector<Zip_Entry> entries{{Export_Db_Path(), QStringLiteral("exp.mdb")}};
        const QTemporaryDir staging(exp + QStringLiteral("/.export-XXXXXX"));
        if (!staging.isValid())
            throw RunTimeError(QStringLiteral("cannot make a scratch folder in ") + exp);
        for (Zip_Entry& e : Day_File_Entries(live, tripKeys, staging.path())) {
            r.files << e.file;
            entries.push_back(std::move(e));
        }
        QString zipError;
        const bool zipped = Zip_Make(exp + QLatin1Char('/') + name + QStringLiteral(".zip"), entries, &zipError);
        if (!zipped)
            throw RunTimeError(QStringLiteral("압축실패: ") + zipError);
    });
    r.ok = ok;
    if (!ok) { // no package: nothing was exported
        r.tables.clear();
        r.files.clear();
    }
    r.message = ok ? exp + QLatin1Char('/') + name + QStringLiteral(".zip") : QStringLiteral("압축실패");
    return r;
}

Exchange_Report Delete_Selection(Cls_DB& live, const Selection& s, const Exchange_Progress& progress)
{
    if (s.car.isEmpty())
        return Refused(QStringLiteral("차량코드는 반드시 선택하세요"));
    Exchange_Report r;
    // One transaction: a delete cut short (a failure, a killed process)
    // leaves every table as it was, never some tables emptied and others not.
    r.ok = Guarded(kErrDelete, [&] {
        Cls_DB::Transaction all(live);
        int step = 0;
        for (const QString& t : Day_Tables()) {
            r.tables.emplace_back(t, Count_Rows(live, t, s));
            auto [sql, values] = Selection_Where(t, s);
            sql.replace(QStringLiteral("SELECT * FROM"), QStringLiteral("DELETE * FROM"));
            live.Execute(sql, values);
            if (progress)
                progress(QStringLiteral("delete"), ++step, int(Day_Tables().size()));
        }
        all.Commit();
    });
    if (!r.ok)
        r.tables.clear();
    r.message = r.ok ? QStringLiteral("삭제 되었습니다.") : Err_Last();
    return r;
}

namespace {

// The rows, files, refusals and trips of one package added to the whole.
void Merge_Counts(Exchange_Report& whole, const Exchange_Report& one)
{
    for (const std::pair<QString, int>& table : one.tables) {
        auto it = std::find_if(whole.tables.begin(), whole.tables.end(),
                               [&](const std::pair<QString, int>& t) { return t.first == table.first; });
        if (it == whole.tables.end())
            whole.tables.push_back(table);
        else
            it->second += table.second;
    }
    whole.files << one.files;
    whole.refused << one.refused;
    whole.trips << one.trips;
}

} // namespace

Exchange_Report Import_Package(Cls_DB& live, const QString& zipOrFolder, bool withSiteTable,
                               const Exchange_Progress& progress, Ledger_Road road, const QString& origin)
{
    Exchange_Report r;
    QStringList packages;
    if (QFileInfo(zipOrFolder).isDir()) {
        for (const QString& f : QDir(zipOrFolder).entryList(QDir::Files, QDir::Name))
            if (f.toUpper().endsWith(QLatin1String(".ZIP")))
                packages << QDir(zipOrFolder).filePath(f);
        if (packages.isEmpty())
            return Refused(QStringLiteral("데이터가 없읍니다"));
    } else {
        packages << zipOrFolder;
    }
    QStringList failed;
    for (const QString& zip : packages) {
        // A progress that fails before a package (a cancel) ends the import
        // there: that package and those after it are left untouched.
        if (progress && !Guarded(kErrImport, [&] { progress(QFileInfo(zip).fileName(), 0, 0); })) {
            failed << Err_Last();
            break;
        }
        Exchange_Report one;
        const bool imported = Guarded(kErrImport, [&] { Import_One(live, zip, withSiteTable, one, progress); });
        Merge_Counts(r, one);
        if (!imported) {
            failed << QFileInfo(zip).fileName() + QStringLiteral(": ") + Err_Last();
            continue;
        }
        // What the package brought, in the ledger; a ledger that can't be
        // written is logged and takes nothing back.
        Guarded(kErrLedger, [&] {
            const Ledger_Entry entry = Record_Reception(live, road, QFileInfo(zip).fileName() + origin,
                                                       one.Text().section(QLatin1Char('\n'), 0, 0), Ledger_Days(one));
            r.ledger << Ledger_Line(entry);
            for (const Ledger_Day& d : entry.days)
                for (const Finding& f : d.findings)
                    r.notes << d.what + QStringLiteral("  ") + Finding_Text(f);
        });
    }
    r.ok = failed.isEmpty();
    r.message = r.ok ? QStringLiteral("완료") : failed.join(QLatin1Char('\n'));
    return r;
}

Exchange_Report Rekey(Cls_DB& live, const QString& car, const QString& driver, const QString& from,
                      const QString& to, const QString& newDriver, const Exchange_Progress& progress)
{
    if (!Is_Code(car) || !Is_Code(driver) || !Is_Code(newDriver) || !Is_Day(from) || !Is_Day(to) || from > to)
        return Refused(QStringLiteral("car, driver and new driver are codes, the days YYMMDD"));
    Exchange_Report r;
    // Every day is checked before anything changes: a day whose new file
    // exists stops the re-key with all days as they were.
    QList<std::pair<QString, QString>> renames; // system paths, old and new
    const QDate a = Date_Of(from), b = Date_Of(to);
    for (qint64 i = 0, days = a.daysTo(b); i <= days; ++i) {
        const QString day = a.addDays(i).toString(QStringLiteral("yyMMdd"));
        const QString oldFile = Day_File_Name(car, driver, day), newFile = Day_File_Name(car, newDriver, day);
        if (!Find_Day_File(live, oldFile).Found())
            continue;
        if (Day_Files_In_Database(live) ? Find_Day_File(live, newFile).Found() : QFileInfo::exists(App(newFile))) {
            r.message = QStringLiteral("동일한 차량번호 데이터가 존재합니다");
            return r;
        }
        renames.append({oldFile, newFile});
    }
    static const QStringList order{"D_D1", "D_D7", "D_D8", "D_D3", "D_DI", "D_D6", "D_D2", "D_D4", "D_D9"};
    // The rows and the list of renames commit together or not at all; the
    // files follow the committed rows, now or at the next start. A server's
    // day files are rows: they take their new keys in the same transaction.
    r.ok = Guarded(kErrRekey, [&] {
        live.Ensure_Schema();
        Cls_DB::Transaction all(live);
        int step = 0;
        for (const QString& t : order) {
            Recordset rs = live.DB_RSet_D_D(
                QStringLiteral("SELECT * FROM %1 WHERE (Left(D_F1,6)) = ? AND (MID(D_F1,7,6)) = ? AND (RIGHT(D_F1,6)) >= ? "
                               "AND (RIGHT(D_F1,6)) <= ?").arg(t),
                {car, driver, from, to});
            int n = 0;
            for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext(), ++n) {
                const QString key = rs.Text(QStringLiteral("D_F1"));
                rs.Set(QStringLiteral("D_F1"), car + newDriver + key.right(6));
                if (t == QLatin1String("D_D1")) {
                    rs.Set(QStringLiteral("D_F2"), car);
                    rs.Set(QStringLiteral("D_F3"), newDriver);
                }
                rs.Update();
            }
            r.tables.emplace_back(t, n);
            if (progress)
                progress(QStringLiteral("rekey"), ++step, int(order.size()));
        }
        for (const auto& [oldFile, newFile] : renames) {
            if (Day_Files_In_Database(live)) {
                Rename_Day_File(live, oldFile, newFile);
                continue;
            }
            Recordset pending = Row_Or_New(live, QStringLiteral("X_RENAME"), oldFile);
            pending.Set(QStringLiteral("D_F2"), newFile);
            pending.Update();
        }
        all.Commit();
    });
    if (!r.ok) {
        r.tables.clear();
        r.message = Err_Last();
        return r;
    }
    if (Day_Files_In_Database(live))
        for (const auto& [oldFile, newFile] : renames)
            r.files << Day_File_Place(live, newFile).Name();
    r.files << Finish_Pending_Renames(live);
    r.message = QStringLiteral("완료");
    return r;
}

QStringList Finish_Pending_Renames(Cls_DB& live)
{
    QStringList done;
    if (!live.Has_Table(QStringLiteral("X_RENAME")))
        return done;
    Guarded(kErrRenames, [&] {
        Recordset pending = live.DB_RSet_D_D(QStringLiteral("SELECT * FROM X_RENAME"));
        for (pending.MoveFirst(); !pending.EOF_(); pending.MoveNext()) {
            const QString oldFile = App(pending.Text(QStringLiteral("D_F1")));
            const QString newFile = App(pending.Text(QStringLiteral("D_F2")));
            // One rename in one folder: the file is under its old name or its
            // new one, never both or neither.
            if (QFileInfo(oldFile).isFile() && !QFileInfo::exists(newFile)
                && !Replace_File(oldFile, newFile))
                throw RunTimeError(QStringLiteral("cannot rename ") + oldFile + QStringLiteral(" to ") + newFile);
            if (QFileInfo(newFile).isFile())
                done << newFile;
            live.Execute(QStringLiteral("DELETE * FROM X_RENAME WHERE D_F1 = ?"), {pending.Text(QStringLiteral("D_F1"))});
        }
    });
    return done;
}

} // namespace vex
