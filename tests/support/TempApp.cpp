#include "support/TempApp.h"

#include "platform/AppFolder.h"
#include "store/Schema.h"

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
    return b == Backend::Sqlite ? QStringLiteral("Sqlite") : QStringLiteral("Postgres");
}

DbTarget Fresh_Target(Backend b, const TempApp& app)
{
    if (b == Backend::Sqlite) {
        Init_App_Folder(app.Dir());
        return Parse_DB_Server(QStringLiteral("\\db\\morix.mdb"), app.Dir());
    }
    const DbTarget t = Parse_DB_Server(Pg_Uri(), app.Dir());
    const QString name = QStringLiteral("vex-drop-") + QUuid::createUuid().toString(QUuid::Id128);
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(t.driver, name);
        db.setDatabaseName(t.database);
        db.setHostName(t.host);
        db.setPort(t.port);
        db.setUserName(t.user);
        db.setPassword(t.password);
        if (db.open()) {
            QSqlQuery q(db);
            for (const Table& table : Schema_Tables())
                q.exec(QStringLiteral("DROP TABLE IF EXISTS ") + table.name);
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(name);
    return t;
}

} // namespace vex::test
