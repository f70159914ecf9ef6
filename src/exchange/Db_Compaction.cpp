#include "exchange/Db_Compaction.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"
#include "platform/FileSystem.h"
#include "store/Cls_DB.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace vex {

namespace {

enum : int { kTextStaleCopy = 5012, kTextChangedWhileCompacted = 5013 };

// A live file's journals: while one of them holds anything the file alone
// is not the database.
constexpr const char* kJournals[] = {"-journal", "-wal"};

QString Pending_Copy(const QString& appDir)
{
    return App_Path(appDir, QStringLiteral("\\db\\temp2.mdb"));
}

// The fingerprint of the live file the copy was made from.
QString Pending_Source(const QString& appDir)
{
    return Pending_Copy(appDir) + QStringLiteral(".source");
}

void Add_File(QCryptographicHash& hash, const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        hash.addData(QByteArrayView("-"));
        return;
    }
    hash.addData(QByteArray::number(f.size()) + ':');
    while (!f.atEnd())
        hash.addData(f.read(1 << 20));
}

} // namespace

QByteArray Db_Fingerprint(const QString& dbFile)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    Add_File(hash, dbFile);
    for (const char* side : kJournals) {
        const QString journal = dbFile + QLatin1String(side);
        if (QFileInfo(journal).size() > 0)
            Add_File(hash, journal);
    }
    return hash.result().toHex();
}

Optimise_Result Optimise(Cls_DB& live)
{
    Optimise_Result r;
    const DbTarget& t = live.Target();
    if (t.engine != Engine::Sqlite) {
        // A server keeps its own files: the nearest thing is to reclaim and
        // renew its statistics in place. VACUUM refuses to run inside a
        // transaction block or as a prepared statement.
        r.ok = Guarded(kErrOptimise, [&] {
            if (live.Dialect() != Engine::Postgres)
                throw RunTimeError(QStringLiteral("this data source has no compaction the program knows"));
            live.Execute_Unprepared(QStringLiteral("VACUUM ANALYZE"));
        });
        r.message = r.ok ? QStringLiteral("최적화가 완료되었읍니다.")
                         : QStringLiteral("최적화가 실패되었읍니다.   ") + Err_Last();
        return r;
    }
    const QString appDir = G().App_Dir;
    const QString temp2 = Pending_Copy(appDir);
    const QString part = temp2 + QStringLiteral(".part");
    r.before = QFileInfo(t.database).size();
    r.ok = Guarded(kErrOptimise, [&] {
        QFile::remove(part);
        // The write-ahead log folded into the file first: the file alone
        // then holds every row, and the close of the last connection, which
        // folds the log in as well, leaves the file as fingerprinted.
        live.Execute_Unprepared(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
        const QByteArray source = Db_Fingerprint(t.database);
        live.Execute(QStringLiteral("VACUUM INTO ?"), {part});
        // A write of another program between the fingerprint and the copy
        // would make the copy older than its fingerprint says.
        if (Db_Fingerprint(t.database) != source)
            throw RunTimeError(LoadResString(kTextChangedWhileCompacted));
        QSaveFile id(Pending_Source(appDir));
        if (!id.open(QIODevice::WriteOnly) || id.write(source) != source.size() || !id.commit())
            throw RunTimeError(QStringLiteral("cannot write ") + id.fileName() + QStringLiteral(": ")
                               + id.errorString());
        if (!Replace_File(part, temp2))
            throw RunTimeError(QStringLiteral("cannot write ") + temp2);
    });
    QFile::remove(part);
    r.after = r.ok ? QFileInfo(temp2).size() : -1;
    r.swapAtStart = r.ok;
    r.message = r.ok ? QStringLiteral("최적화가 완료되었읍니다. 프로그램을 종료하신 후 다시 실행하여 주시기 바랍니다!")
                     : QStringLiteral("최적화가 실패되었읍니다.   ") + Err_Last();
    return r;
}

Compaction_Takeover Take_Over_Compaction(const QString& appDir)
{
    const QString pending = Pending_Copy(appDir);
    const QString sourceFile = Pending_Source(appDir);
    const QString live = App_Path(appDir, QStringLiteral("\\db\\morix.mdb"));
    if (!QFile::exists(pending)) {
        QFile::remove(sourceFile);
        return Compaction_Takeover::Nothing;
    }
    QByteArray source;
    if (QFile f(sourceFile); f.open(QIODevice::ReadOnly))
        source = f.readAll().trimmed();
    // A copy without its fingerprint, or one of another state of the live
    // file, would put older rows in place of newer ones: it goes, the live
    // file stays.
    if (source.isEmpty() || Db_Fingerprint(live) != source) {
        QFile::remove(pending);
        QFile::remove(sourceFile);
        return Compaction_Takeover::Stale;
    }
    // The live file's write-ahead log is empty here (a log that holds
    // anything changes the fingerprint); neither it nor its index may stay
    // beside the new file.
    for (const char* side : {"-wal", "-shm"})
        QFile::remove(live + QLatin1String(side));
    const QString swap = live + QStringLiteral(".swap");
    QFile::remove(swap);
    if (!QFile::copy(pending, swap))
        return Compaction_Takeover::Failed;
    // rename() replaces the live file in one step: a start killed here
    // finds either the old file with its copy still waiting, or the new one.
    if (!Replace_File(swap, live)) {
        QFile::remove(swap);
        return Compaction_Takeover::Failed;
    }
    QFile::remove(sourceFile);
    QFile::remove(pending);
    return Compaction_Takeover::Taken;
}

QString Stale_Compaction_Message()
{
    return LoadResString(kTextStaleCopy);
}

} // namespace vex
