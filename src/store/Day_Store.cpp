#include "store/Day_Store.h"

#include "core/Codes.h"
#include "core/Err_Proc.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>
#include <algorithm>
#include <limits>

namespace vex {

namespace {

void Make_Parent_Folder(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
}

bool Row_Exists(Cls_DB& db, const QString& key)
{
    QSqlQuery& q = db.Run_Prepared(QStringLiteral("SELECT D_F1 FROM X_DAYFILE WHERE D_F1=?"), {key});
    const bool found = q.next();
    q.finish();
    return found;
}

QString Checked_Key(const QString& systemPath)
{
    const QString key = Day_File_Key(systemPath);
    if (key.isEmpty())
        throw RunTimeError(QStringLiteral("Bad file name: %1 names no day file").arg(systemPath));
    return key;
}

} // namespace

bool Day_Files_In_Database(const Cls_DB& db)
{
    return db.Target().engine != Engine::Sqlite;
}

QString Day_File_Key(const QString& systemPath)
{
    // \pack\<car>\<day>\<day>[<driver>].vex, with either slash.
    QString path = systemPath;
    path.replace(QLatin1Char('/'), QLatin1Char('\\'));
    const QStringList parts = path.split(QLatin1Char('\\'), Qt::SkipEmptyParts);
    if (parts.size() != 4 || parts[0].compare(QLatin1String("pack"), Qt::CaseInsensitive) != 0)
        return {};
    const QString& car = parts[1];
    const QString& day = parts[2];
    QString name = parts[3];
    if (!name.endsWith(QLatin1String(".vex"), Qt::CaseInsensitive))
        return {};
    name.chop(4);
    if (!Is_Code(car) || !Is_Day(day) || !name.startsWith(day))
        return {};
    if (name.size() == 6)
        return car + day;
    const QString driver = name.mid(6);
    return name.size() == 12 && Is_Code(driver) ? car + driver + day : QString();
}

QString Day_File_Path_Of_Key(const QString& key)
{
    if (key.size() == 12)
        return Day_Folder_Name(key.left(6), key.right(6)) + QLatin1Char('\\') + key.right(6) + QStringLiteral(".vex");
    return Day_File_Name(key.left(6), key.mid(6, 6), key.right(6));
}

Day_File_Ref Day_File_Place(const Cls_DB& db, const QString& systemPath)
{
    if (Day_Files_In_Database(db))
        return Day_File_Ref{Day_File_Key(systemPath), {}};
    return Day_File_Ref{{}, Local_Path(systemPath)};
}

Day_File_Ref Find_Day_File(Cls_DB& db, const QString& systemPath)
{
    Day_File_Ref ref;
    if (Day_Files_In_Database(db)) {
        const QString key = Day_File_Key(systemPath);
        if (!key.isEmpty() && Row_Exists(db, key))
            ref.key = key;
        return ref;
    }
    const QString path = Local_Path(systemPath);
    if (QFileInfo(path).isFile())
        ref.path = path;
    return ref;
}

Day_File_Ref Find_Day_File(Cls_DB& db, const QString& car, const QString& driver, const QString& day)
{
    const Day_File_Ref older =
        Find_Day_File(db, Day_Folder_Name(car, day) + QLatin1Char('\\') + day + QStringLiteral(".vex"));
    return older.Found() ? older : Find_Day_File(db, Day_File_Name(car, driver, day));
}

QByteArray Read_Day_Bytes(Cls_DB& db, const Day_File_Ref& ref)
{
    if (!ref.key.isEmpty()) {
        QSqlQuery& q = db.Run_Prepared(QStringLiteral("SELECT D_F2 FROM X_DAYFILE WHERE D_F1=?"), {ref.key});
        if (!q.next()) {
            q.finish();
            throw RunTimeError(QStringLiteral("File not found: ") + ref.Name());
        }
        const QByteArray bytes = q.value(0).toByteArray();
        q.finish();
        return bytes;
    }
    return Read_Day_File_Head(ref.path, std::numeric_limits<qint64>::max()).bytes;
}

Day_Head Read_Day_Head(Cls_DB& db, const Day_File_Ref& ref, qint64 length)
{
    if (!ref.key.isEmpty()) {
        Day_Head head;
        QSqlQuery& q = db.Run_Prepared(
            QStringLiteral("SELECT substr(D_F2, 1, %1), octet_length(D_F2) FROM X_DAYFILE WHERE D_F1=?").arg(length),
            {ref.key});
        if (!q.next()) {
            q.finish();
            throw RunTimeError(QStringLiteral("File not found: ") + ref.Name());
        }
        head.bytes = q.value(0).toByteArray();
        head.size = q.value(1).toLongLong();
        q.finish();
        return head;
    }
    return Read_Day_File_Head(ref.path, length);
}

Day_Head Read_Day_File_Head(const QString& path, qint64 length)
{
    QFile f(path);
    if (path.isEmpty() || !f.open(QIODevice::ReadOnly))
        throw RunTimeError(QStringLiteral("File not found: ") + path);
    Day_Head head;
    head.size = f.size();
    head.bytes = f.read(std::min(length, head.size));
    if (f.error() != QFileDevice::NoError)
        throw RunTimeError(QStringLiteral("Input past end of file: ") + path);
    return head;
}

DayFile Read_Day_File(Cls_DB& db, const Day_File_Ref& ref)
{
    return Day_File_Of(Read_Day_Bytes(db, ref), ref.Name());
}

qint64 Day_File_Size(Cls_DB& db, const QString& systemPath)
{
    if (!Day_Files_In_Database(db)) {
        const QFileInfo info(Local_Path(systemPath));
        return info.isFile() ? info.size() : -1;
    }
    const QString key = Day_File_Key(systemPath);
    if (key.isEmpty())
        return -1;
    QSqlQuery& q = db.Run_Prepared(QStringLiteral("SELECT octet_length(D_F2) FROM X_DAYFILE WHERE D_F1=?"), {key});
    const qint64 size = q.next() ? q.value(0).toLongLong() : -1;
    q.finish();
    return size;
}

void Store_Day_Bytes(Cls_DB& db, const QString& systemPath, const QByteArray& bytes)
{
    const QString key = Checked_Key(systemPath);
    if (!Day_Files_In_Database(db)) {
        const QString path = Local_Path(systemPath);
        Make_Parent_Folder(path);
        Write_Whole_File(path, bytes);
        return;
    }
    if (db.Dialect() == Engine::Postgres) {
        db.Run_Prepared(
            QStringLiteral("INSERT INTO X_DAYFILE (D_F1, D_F2) VALUES (?, ?) "
                           "ON CONFLICT (D_F1) DO UPDATE SET D_F2=EXCLUDED.D_F2"),
            {key, bytes})
            .finish();
        return;
    }
    QSqlQuery& update = db.Run_Prepared(QStringLiteral("UPDATE X_DAYFILE SET D_F2=? WHERE D_F1=?"), {bytes, key});
    const int changed = update.numRowsAffected();
    update.finish();
    if (changed < 1)
        db.Run_Prepared(QStringLiteral("INSERT INTO X_DAYFILE (D_F1, D_F2) VALUES (?, ?)"), {key, bytes}).finish();
}

void Store_Day_File_From(Cls_DB& db, const QString& systemPath, const QString& localFile)
{
    Store_Day_Bytes(db, systemPath, Read_Day_Bytes(db, Day_File_Ref{{}, localFile}));
}

void Remove_Day_File(Cls_DB& db, const QString& systemPath)
{
    const QString key = Checked_Key(systemPath);
    if (!Day_Files_In_Database(db)) {
        const QString path = Local_Path(systemPath);
        if (QFileInfo(path).isFile() && !QFile::remove(path))
            throw RunTimeError(QStringLiteral("Permission denied: ") + path);
        return;
    }
    db.Run_Prepared(QStringLiteral("DELETE FROM X_DAYFILE WHERE D_F1=?"), {key}).finish();
}

bool Rename_Day_File(Cls_DB& db, const QString& fromSystemPath, const QString& toSystemPath)
{
    const QString fromKey = Checked_Key(fromSystemPath), toKey = Checked_Key(toSystemPath);
    if (!Day_Files_In_Database(db)) {
        const QString from = Local_Path(fromSystemPath), to = Local_Path(toSystemPath);
        if (!QFileInfo(from).isFile())
            return false;
        Make_Parent_Folder(to);
        if (!QFile::rename(from, to))
            throw RunTimeError(QStringLiteral("Path/File access error: %1 to %2").arg(from, to));
        return true;
    }
    QSqlQuery& q = db.Run_Prepared(QStringLiteral("UPDATE X_DAYFILE SET D_F1=? WHERE D_F1=?"),
                       {toKey, fromKey});
    const bool renamed = q.numRowsAffected() > 0;
    q.finish();
    return renamed;
}

void Lock_Day_File(Cls_DB& db, const QString& systemPath)
{
    if (!Day_Files_In_Database(db) || db.Dialect() != Engine::Postgres || !db.In_Transaction())
        return;
    db.Run_Prepared(QStringLiteral("SELECT pg_advisory_xact_lock(hashtext(?))"), {Checked_Key(systemPath)}).finish();
}

void Ensure_Day_File_Table(Cls_DB& db)
{
    if (!Day_Files_In_Database(db))
        return;
    const QString bytes = db.Dialect() == Engine::Postgres ? QStringLiteral("BYTEA") : QStringLiteral("BLOB");
    db.Execute_Unprepared(QStringLiteral("CREATE TABLE IF NOT EXISTS X_DAYFILE (D_F1 TEXT PRIMARY KEY, D_F2 %1)").arg(bytes));
}

} // namespace vex
