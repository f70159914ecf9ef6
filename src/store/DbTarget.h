#pragma once
// What the INI's "MAIN SERVER" names: a SQLite file (the embedded default),
// a PostgreSQL server by URI, or an ODBC data source.
#include <QString>

namespace vex {

enum class Engine { Sqlite, Postgres, Odbc };

struct DbTarget {
    Engine engine = Engine::Sqlite;
    QString driver;      // Qt driver name: QSQLITE, QPSQL, QODBC
    QString database;    // file path, database name, or data source name[;keys]
    QString host;
    int port = -1;
    QString user;
    QString password;
    QString options;     // connect options of the driver
};

// "DSN=name[;KEY=value...]"     -> ODBC data source
// "postgresql://u:p@h:port/db"  -> PostgreSQL ("postgres://" as well)
// anything else                 -> SQLite file, in the system's path form
//                                  under the application folder, or absolute
DbTarget Parse_DB_Server(const QString& server, const QString& appDir);

QString Engine_Name(Engine engine);

// A SQLite database that lives in memory only (":memory:"): no file, gone
// with its connection. The fuzz targets store into one, so that a decoded
// day costs no disk write.
DbTarget Sqlite_Memory_Target();
bool Is_Sqlite_Memory(const DbTarget& target);

} // namespace vex
