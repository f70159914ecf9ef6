#pragma once
// The fleet a benchmark measures with, made once and kept: an application
// folder filled by `vexcli sample fleet` (rows, day files and ledger as the
// receptions make them), and, for a PostgreSQL server, a database of the
// same rows beside a folder whose INI names it. Both are keyed by cars and
// days under the cache folder, so that a run after the first starts at once.
#include "store/DbTarget.h"
#include "store/Schema.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUuid>
#include <cstdio>
#include <functional>

namespace vex::bench {

struct Fleet_Folder {
    QString dir;          // the application folder
    long long trips = 0;  // days stored
    double fillSeconds = 0; // what the fill took when it was made
    QString error;        // why there is none
};

// The folder of cars x days under cache: filled by vexcli when it isn't
// there whole (a fill cut short is made again), else as it stands.
inline Fleet_Folder Sqlite_Fleet(const QString& cache, int cars, int days)
{
    Fleet_Folder f;
    f.dir = QDir(cache).filePath(QStringLiteral("fleet-%1x%2").arg(cars).arg(days));
    QFile done(f.dir + QStringLiteral("/fleet.done"));
    if (done.open(QIODevice::ReadOnly)) {
        const QStringList words = QString::fromUtf8(done.readAll()).split(QLatin1Char(' '));
        f.trips = words.value(0).toLongLong();
        f.fillSeconds = words.value(1).toDouble();
        return f;
    }
    QDir(f.dir).removeRecursively();
    QDir().mkpath(f.dir);
    std::fprintf(stderr, "filling %s (vexcli sample fleet --cars %d --days %d)\n", qPrintable(f.dir), cars, days);
    QProcess vexcli;
    vexcli.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer t;
    t.start();
    vexcli.start(QStringLiteral(VEXCLI_PATH), {QStringLiteral("--app-dir"), f.dir, QStringLiteral("sample"),
                                               QStringLiteral("fleet"), QStringLiteral("--cars"), QString::number(cars),
                                               QStringLiteral("--days"), QString::number(days)});
    vexcli.waitForFinished(-1);
    f.fillSeconds = t.nsecsElapsed() / 1e9;
    const QString said = QString::fromUtf8(vexcli.readAllStandardOutput());
    if (vexcli.exitStatus() != QProcess::NormalExit || vexcli.exitCode() != 0) {
        f.error = QStringLiteral("vexcli sample fleet failed: ") + said;
        return f;
    }
    f.trips = said.section(QLatin1Char(','), 2, 2).trimmed().section(QLatin1Char(' '), 0, 0).toLongLong();
    if (done.open(QIODevice::WriteOnly))
        done.write(QStringLiteral("%1 %2").arg(f.trips).arg(f.fillSeconds).toUtf8());
    return f;
}

namespace detail {

inline QSqlDatabase Open(const DbTarget& t, const QString& database, const QString& name)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(t.driver, name);
    db.setDatabaseName(database);
    db.setHostName(t.host);
    db.setPort(t.port);
    db.setUserName(t.user);
    db.setPassword(t.password);
    db.open();
    return db;
}

inline long long Count(QSqlDatabase& db, const QString& table)
{
    QSqlQuery q(db);
    return q.exec(QStringLiteral("SELECT COUNT(*) FROM ") + table) && q.next() ? q.value(0).toLongLong() : -1;
}

// Every row of the table from one database into the other, a hundred rows
// a statement, in one transaction.
inline bool Copy_Table(QSqlDatabase& from, QSqlDatabase& to, const Table& table, QString* why)
{
    QSqlQuery read(from);
    read.setForwardOnly(true);
    if (!read.exec(QStringLiteral("SELECT * FROM ") + table.name)) {
        *why = read.lastError().text();
        return false;
    }
    const QSqlRecord rec = read.record();
    QStringList cols;
    for (int i = 0; i < rec.count(); ++i)
        cols << rec.fieldName(i);
    const QString row = QLatin1Char('(') + QStringList(rec.count(), QStringLiteral("?")).join(',') + QLatin1Char(')');
    auto Insert = [&](const std::vector<QVariantList>& rows) {
        QSqlQuery q(to);
        q.prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES %3")
                      .arg(table.name, cols.join(','), QStringList(qsizetype(rows.size()), row).join(',')));
        for (const QVariantList& r : rows)
            for (const QVariant& v : r)
                q.addBindValue(v);
        if (!q.exec())
            *why = table.name + QStringLiteral(": ") + q.lastError().text();
        return q.lastError().type() == QSqlError::NoError;
    };
    to.transaction();
    std::vector<QVariantList> rows;
    while (read.next()) {
        QVariantList r;
        for (int i = 0; i < rec.count(); ++i)
            r << read.value(i);
        rows.push_back(std::move(r));
        if (rows.size() == 100) {
            if (!Insert(rows))
                return false;
            rows.clear();
        }
    }
    if (!rows.empty() && !Insert(rows))
        return false;
    return to.commit();
}

} // namespace detail

// The rows of the SQLite fleet in the database "vex_fleet_<cars>x<days>" of
// the server at uri (made again unless it holds as many rows in every
// table), and a folder beside the fleet's whose INI names it and whose day
// files are the fleet's.
inline Fleet_Folder Postgres_Fleet(const Fleet_Folder& sqlite, const QString& uri, int cars, int days)
{
    Fleet_Folder f = sqlite;
    f.dir = sqlite.dir + QStringLiteral("-pg");
    const DbTarget server = Parse_DB_Server(uri, f.dir);
    const QString name = QStringLiteral("vex_fleet_%1x%2").arg(cars).arg(days);
    const QString tag = QUuid::createUuid().toString(QUuid::Id128);
    bool whole = false;
    {
        QSqlDatabase source = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("src") + tag);
        source.setDatabaseName(sqlite.dir + QStringLiteral("/db/morix.mdb"));
        source.open();
        QSqlDatabase admin = detail::Open(server, server.database, QStringLiteral("admin") + tag);
        QSqlQuery(admin).exec(QStringLiteral("SET client_min_messages TO WARNING"));
        QSqlQuery exists(admin);
        exists.exec(QStringLiteral("SELECT 1 FROM pg_database WHERE datname = '%1'").arg(name));
        if (exists.next()) {
            {
                QSqlDatabase target = detail::Open(server, name, QStringLiteral("dst") + tag);
                whole = true;
                for (const Table& t : Schema_Tables())
                    whole = whole && detail::Count(target, t.name) == detail::Count(source, t.name);
                target.close();
            }
            QSqlDatabase::removeDatabase(QStringLiteral("dst") + tag);
        }
        if (!whole) {
            std::fprintf(stderr, "copying the fleet into %s\n", qPrintable(name));
            QSqlQuery(admin).exec(QStringLiteral("DROP DATABASE IF EXISTS ") + name);
            QSqlQuery(admin).exec(QStringLiteral("CREATE DATABASE ") + name);
            {
                QSqlDatabase target = detail::Open(server, name, QStringLiteral("dst") + tag);
                QString why;
                bool ok = target.isOpen();
                for (const QString& sql : Schema_Statements(Engine::Postgres))
                    ok = ok && QSqlQuery(target).exec(sql);
                for (const Table& t : Schema_Tables())
                    ok = ok && detail::Copy_Table(source, target, t, &why);
                // The indexes once the rows are in, and the statistics a
                // server keeps of its tables.
                for (const QString& sql : Index_Statements(Engine::Postgres))
                    ok = ok && QSqlQuery(target).exec(sql);
                ok = ok && QSqlQuery(target).exec(QStringLiteral("VACUUM ANALYZE"));
                if (!ok)
                    f.error = QStringLiteral("copy into %1 failed: %2 %3").arg(name, why, target.lastError().text());
                target.close();
            }
            QSqlDatabase::removeDatabase(QStringLiteral("dst") + tag);
        }
        admin.close();
        source.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("admin") + tag);
    QSqlDatabase::removeDatabase(QStringLiteral("src") + tag);
    if (!f.error.isEmpty())
        return f;

    QDir().mkpath(f.dir);
    QFile::link(sqlite.dir + QStringLiteral("/pack"), f.dir + QStringLiteral("/pack"));
    QString target = uri;
    target.replace(QRegularExpression(QStringLiteral("/[^/?]*(?=(\\?.*)?$)")), QLatin1Char('/') + name);
    QFile ini(f.dir + QStringLiteral("/MORIX.INI"));
    if (ini.open(QIODevice::WriteOnly | QIODevice::Truncate))
        ini.write(QStringLiteral("[MAIN]\r\nMAIN SERVER=%1\r\n").arg(target).toUtf8());
    return f;
}

} // namespace vex::bench
