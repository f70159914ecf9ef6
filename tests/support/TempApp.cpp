#include "support/TempApp.h"

#include "app/App_Setup.h"
#include "app/Start_Up.h"
#include "platform/AppFolder.h"
#include "store/Schema.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QUuid>

namespace vex::test {

TempApp::TempApp() : cwd_(QDir::currentPath()), dir_(tmp_.path())
{
    Reset_Globals();
}

TempApp::~TempApp()
{
    Reset_Globals();
    QDir::setCurrent(cwd_);
}

void TempApp::Write_File(const QString& rel, const QByteArray& bytes) const
{
    const QString path = Path(rel);
    QDir().mkpath(QFileInfo(path).path());
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes);
}

void Reset_Globals()
{
    Main_Shutdown();
    G() = Globals();
}

QString Pg_Uri()
{
    return qEnvironmentVariable("VEX_TEST_PG_URI");
}

QString Backend_Name(Backend b)
{
    switch (b) {
    case Backend::Sqlite: return QStringLiteral("Sqlite");
    case Backend::Postgres: return QStringLiteral("Postgres");
    case Backend::Odbc: return QStringLiteral("OdbcPostgres");
    }
    return {};
}

namespace {

QSqlDatabase Admin_Connection(const DbTarget& server, const QString& database, const QString& name)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(server.driver, name);
    db.setDatabaseName(database);
    db.setHostName(server.host);
    db.setPort(server.port);
    db.setUserName(server.user);
    db.setPassword(server.password);
    db.open();
    return db;
}

// Runs statements on one database of the test server.
void Admin(const DbTarget& server, const QString& database, const QStringList& statements)
{
    const QString name = QStringLiteral("vex-admin-") + QUuid::createUuid().toString(QUuid::Id128);
    {
        QSqlDatabase db = Admin_Connection(server, database, name);
        for (const QString& sql : statements)
            QSqlQuery(db).exec(sql);
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
}

// A new, empty database on the test server, so that tests running side by
// side never share tables.
QString New_Pg_Database(const DbTarget& server)
{
    const QString dbName = QStringLiteral("vex_") + QUuid::createUuid().toString(QUuid::Id128);
    Admin(server, server.database, {QStringLiteral("CREATE DATABASE ") + dbName});
    return dbName;
}

// One data source a process, through the PostgreSQL ODBC driver, with its
// own database and a private ini folder: the driver manager keeps what it
// read of its ini files for the life of the process.
const DbTarget& Odbc_Database(const DbTarget& server)
{
    static DbTarget pg;
    if (!pg.database.isEmpty())
        return pg;
    pg = server;
    pg.database = New_Pg_Database(server);
    const QString dir = QDir::temp().filePath(QStringLiteral("vex-odbc-%1").arg(QCoreApplication::applicationPid()));
    QDir().mkpath(dir);
    QFile inst(dir + QStringLiteral("/odbcinst.ini"));
    if (inst.open(QIODevice::WriteOnly | QIODevice::Truncate))
        inst.write("[PostgreSQL Unicode]\nDriver=psqlodbcw.so\n");
    QFile ini(dir + QStringLiteral("/odbc.ini"));
    if (ini.open(QIODevice::WriteOnly | QIODevice::Truncate))
        ini.write(QStringLiteral("[vextest]\nDriver=PostgreSQL Unicode\nServername=%1\nPort=%2\n"
                                 "Database=%3\nUsername=%4\nPassword=%5\n")
                      .arg(pg.host)
                      .arg(pg.port)
                      .arg(pg.database, pg.user, pg.password)
                      .toUtf8());
    qputenv("ODBCSYSINI", dir.toUtf8());
    return pg;
}

} // namespace

DbTarget Fresh_Target(Backend b, const TempApp& app)
{
    if (b == Backend::Sqlite) {
        Init_App_Folder(app.Dir());
        return Parse_DB_Server(QStringLiteral("\\db\\morix.mdb"), app.Dir());
    }
    DbTarget pg = Parse_DB_Server(Pg_Uri(), app.Dir());
    if (b == Backend::Postgres) {
        pg.database = New_Pg_Database(pg);
        return pg;
    }
    const DbTarget& odbc = Odbc_Database(pg);
    QStringList drops;
    for (const Table& t : Schema_Tables())
        drops << QStringLiteral("DROP TABLE IF EXISTS ") + t.name;
    drops << QStringLiteral("DROP TABLE IF EXISTS X_DAYFILE");
    Admin(odbc, odbc.database, drops);
    return Parse_DB_Server(QStringLiteral("DSN=vextest"), app.Dir());
}

} // namespace vex::test
