#include "store/DbTarget.h"

#include "platform/FileSystem.h"

#include <QUrl>
#include <QUrlQuery>

namespace vex {

DbTarget Parse_DB_Server(const QString& server, const QString& appDir)
{
    DbTarget t;
    const QString s = server.trimmed();
    if (s.startsWith(QLatin1String("DSN="), Qt::CaseInsensitive)) {
        t.engine = Engine::Odbc;
        t.driver = QStringLiteral("QODBC");
        // Qt's ODBC driver puts "DSN=" in front of a name by itself, and passes
        // on a string naming a DRIVER or SERVER as it is.
        const bool driverString = s.contains(QLatin1String("DRIVER="), Qt::CaseInsensitive)
                                  || s.contains(QLatin1String("SERVER="), Qt::CaseInsensitive);
        t.database = driverString ? s : s.mid(4);
        return t;
    }
    if (s.startsWith(QLatin1String("postgresql://"), Qt::CaseInsensitive)
        || s.startsWith(QLatin1String("postgres://"), Qt::CaseInsensitive)) {
        const QUrl url(s);
        t.engine = Engine::Postgres;
        t.driver = QStringLiteral("QPSQL");
        t.host = url.host();
        t.port = url.port(-1);
        t.user = url.userName(QUrl::FullyDecoded);
        t.password = url.password(QUrl::FullyDecoded);
        t.database = url.path(QUrl::FullyDecoded).mid(1);
        // libpq's socket form: postgresql:///db?host=/run/postgresql
        const QUrlQuery q(url);
        if (t.host.isEmpty() && q.hasQueryItem(QStringLiteral("host")))
            t.host = q.queryItemValue(QStringLiteral("host"), QUrl::FullyDecoded);
        if (q.hasQueryItem(QStringLiteral("options")))
            t.options = q.queryItemValue(QStringLiteral("options"), QUrl::FullyDecoded);
        return t;
    }
    t.engine = Engine::Sqlite;
    t.driver = QStringLiteral("QSQLITE");
    t.database = FileSystem(appDir).Path(s);
    return t;
}

DbTarget Sqlite_Memory_Target()
{
    DbTarget t;
    t.engine = Engine::Sqlite;
    t.driver = QStringLiteral("QSQLITE");
    t.database = QStringLiteral(":memory:");
    return t;
}

bool Is_Sqlite_Memory(const DbTarget& target)
{
    return target.engine == Engine::Sqlite && target.database == QLatin1String(":memory:");
}

QString Engine_Name(Engine engine)
{
    switch (engine) {
    case Engine::Sqlite: return QStringLiteral("SQLite");
    case Engine::Postgres: return QStringLiteral("PostgreSQL");
    case Engine::Odbc: return QStringLiteral("ODBC");
    }
    return {};
}

} // namespace vex
