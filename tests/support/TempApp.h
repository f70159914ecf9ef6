#pragma once
// A fresh application folder for one test, removed afterwards, with the
// process-wide state reset before and after.
#include "core/Mod_Main.h"
#include "store/DbTarget.h"

#include <QString>
#include <QTemporaryDir>

namespace vex::test {

class TempApp {
public:
    TempApp();
    ~TempApp();
    const QString& Dir() const { return dir_; }
    QString Path(const QString& rel) const { return dir_ + QLatin1Char('/') + rel; }
    void Write_File(const QString& rel, const QByteArray& bytes) const;

private:
    QString cwd_; // start-up moves into the folder; a test goes back
    QTemporaryDir tmp_;
    QString dir_;
};

// Resets every global to its state before Main_Start.
void Reset_Globals();

// The PostgreSQL server the test script started (VEX_TEST_PG_URI), or empty.
QString Pg_Uri();

// Targets the store tests run on: the SQLite file of app, and, when a
// PostgreSQL server is there, that server directly and through an ODBC data
// source. Names for the test's parameter.
enum class Backend { Sqlite, Postgres, Odbc };
QString Backend_Name(Backend b);

// A target of the backend with no tables yet, so that a test starts from a
// database as delivered once Ensure_Schema has run: a new database on the
// server, or the process's data source emptied.
DbTarget Fresh_Target(Backend b, const TempApp& app);

} // namespace vex::test
