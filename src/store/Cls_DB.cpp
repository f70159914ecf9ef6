#include "store/Cls_DB.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "store/Day_Store.h"
#include "store/Schema.h"
#include "store/SqlDialect.h"
#include "store/SqliteFunctions.h"

#include <QAtomicInt>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

namespace vex {

namespace {

QString New_Connection_Name()
{
    static QAtomicInt counter;
    return QStringLiteral("vex-db-%1").arg(counter.fetchAndAddRelaxed(1));
}

// The live database keeps a write-ahead log: a commit appends to the log
// and needs no flush of the disk, while a crash of the program loses no
// committed row (the log is read back at the next open), and readers go on
// while a reception writes. Only the live file: the other databases (the
// export database, work copies) are copied as files, which must hold all
// their rows. The mode stays with the file; the log is folded back into it
// when its last connection closes.
bool Is_Live_File(const QString& path)
{
    const Globals& g = G();
    if (g.DB_Server.isEmpty())
        return false;
    const DbTarget live = Parse_DB_Server(g.DB_Server, g.App_Dir);
    return live.engine == Engine::Sqlite
           && QFileInfo(live.database).canonicalFilePath() == QFileInfo(path).canonicalFilePath();
}

void Use_Write_Ahead_Log(QSqlDatabase& db)
{
    QSqlQuery q(db);
    if (Is_Live_File(db.databaseName()))
        q.exec(QStringLiteral("PRAGMA main.journal_mode=WAL"));
    if (q.exec(QStringLiteral("PRAGMA main.journal_mode")) && q.next()
        && q.value(0).toString().compare(QLatin1String("wal"), Qt::CaseInsensitive) == 0)
        q.exec(QStringLiteral("PRAGMA synchronous=NORMAL"));
}

} // namespace

Cls_DB::Cls_DB() : Cls_DB(Parse_DB_Server(G().DB_Server, G().App_Dir)) {}

Cls_DB::Cls_DB(const DbTarget& target) : target_(target), name_(New_Connection_Name())
{
    DB_Connection();
}

Cls_DB::~Cls_DB()
{
    DB_DConnection();
}

bool Cls_DB::DB_Connection()
{
    state_ = 0;
    const bool ok = Guarded(1089, [&] {
        QSqlDatabase db = QSqlDatabase::contains(name_) ? QSqlDatabase::database(name_, false)
                                                         : QSqlDatabase::addDatabase(target_.driver, name_);
        if (!db.isValid())
            throw RunTimeError(QStringLiteral("no database driver ") + target_.driver);
        db.setDatabaseName(target_.database);
        db.setHostName(target_.host);
        db.setPort(target_.port);
        db.setUserName(target_.user);
        db.setPassword(target_.password);
        db.setConnectOptions(target_.options);
        // SQLite would make an empty file of a missing database: a missing
        // database is a failure to connect, as it was with a data source.
        if (target_.engine == Engine::Sqlite) {
            if (!Is_Sqlite_Memory(target_) && !QFileInfo(target_.database).isFile())
                throw RunTimeError(QStringLiteral("database file not found: ") + target_.database);
            db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
        }
        if (!db.open())
            throw RunTimeError(db.lastError().text());
        if (target_.engine == Engine::Sqlite && !Register_Sqlite_Functions(db))
            throw RunTimeError(QStringLiteral("SQLite functions could not be registered"));
        if (target_.engine == Engine::Sqlite)
            Use_Write_Ahead_Log(db);
        // A data source is spoken to in the dialect of the server behind it.
        dialect_ = target_.engine;
        if (target_.engine == Engine::Odbc && db.driver()->dbmsType() == QSqlDriver::PostgreSQL)
            dialect_ = Engine::Postgres;
        // The server's notices ("relation already exists, skipping") are no
        // news to a user; warnings and errors still come through.
        if (dialect_ == Engine::Postgres)
            QSqlQuery(db).exec(QStringLiteral("SET client_min_messages TO WARNING"));
        state_ = 1;
        open_ = true;
    });
    // A server keeps the fleet's day files: their table is there before
    // the first reception needs it.
    if (ok)
        Guarded(kErrDayFileTable, [&] { Ensure_Day_File_Table(*this); });
    return ok;
}

void Cls_DB::DB_DConnection()
{
    statements_.clear();
    translated_.clear();
    if (QSqlDatabase::contains(name_)) {
        {
            QSqlDatabase db = QSqlDatabase::database(name_, false);
            db.close();
        }
        QSqlDatabase::removeDatabase(name_);
    }
    state_ = 0;
    open_ = false;
}

Recordset Cls_DB::DB_RSet_D_D(const QString& sql, const QVariantList& values, int /*option*/)
{
    if (!open_)
        Engine_Failure(QStringLiteral("Operation is not allowed when the object is closed."));
    return Recordset(*this, sql, values);
}

QSqlQuery& Cls_DB::Prepared(const QString& sql)
{
    auto it = statements_.find(sql);
    if (it != statements_.end())
        return *it;
    if (statements_.size() > 500) // variants of rewrites pile up; start over
        statements_.clear();
    QSqlQuery q(QSqlDatabase::database(name_, false));
    // Forward only, except on PostgreSQL's own driver, which then hands the
    // rows over one at a time and drops those not yet read when the next
    // statement runs: a batch runs its savepoints between a statement and
    // the reading of its rows.
    q.setForwardOnly(target_.driver != QLatin1String("QPSQL"));
    if (!Step([&] { return q.prepare(sql); }))
        Engine_Failure(q.lastError().text() + QStringLiteral(" [") + sql + QLatin1Char(']'));
    return *statements_.insert(sql, q);
}

QSqlQuery& Cls_DB::Run_Prepared(const QString& sql, const QVariantList& values)
{
    QSqlQuery& q = Prepared(sql);
    for (int i = 0; i < values.size(); ++i)
        q.bindValue(i, values[i]);
    if (!Exec(q)) {
        const QString error = q.lastError().text();
        q.finish();
        Engine_Failure(error + QStringLiteral(" [") + sql + QLatin1Char(']'));
    }
    return q;
}

const QString& Cls_DB::Translated(const QString& sql)
{
    auto it = translated_.find(sql);
    if (it == translated_.end()) {
        if (translated_.size() > 500) // variants of rewrites pile up; start over
            translated_.clear();
        it = translated_.insert(sql, Translate_Sql(sql, dialect_));
    }
    return *it;
}

void Cls_DB::Execute(const QString& sql, const QVariantList& values)
{
    if (!open_)
        Engine_Failure(QStringLiteral("Operation is not allowed when the object is closed."));
    QSqlQuery q(QSqlDatabase::database(name_, false));
    const QString translated = Translated(sql);
    if (!Step([&] { return q.prepare(translated); }))
        Engine_Failure(q.lastError().text());
    for (const QVariant& v : values)
        q.addBindValue(v);
    if (!Exec(q))
        Engine_Failure(q.lastError().text());
}

void Cls_DB::Execute_Unprepared(const QString& sql)
{
    if (!open_)
        Engine_Failure(QStringLiteral("Operation is not allowed when the object is closed."));
    QSqlQuery q(QSqlDatabase::database(name_, false));
    if (!q.exec(sql))
        Engine_Failure(q.lastError().text());
}

bool Cls_DB::Begin_Write()
{
    QSqlDatabase conn = QSqlDatabase::database(name_, false);
    if (target_.engine != Engine::Sqlite) {
        if (mode_ != Write_Mode::None)
            return false; // the writes belong to the open transaction
        if (conn.transaction())
            return true;
        lastFailure_ = conn.lastError().text();
        Err_Proc(kErrWriteLock, lastFailure_);
        return false;
    }
    // Each try waits the connection's busy timeout (5 s) before it answers.
    constexpr int kTry = 5;
    for (int waited = 0;; waited += kTry) {
        // Prepared once: a recount begins a write for every trip.
        QSqlQuery& begin = Prepared(QStringLiteral("BEGIN IMMEDIATE"));
        if (begin.exec()) {
            begin.finish();
            return true;
        }
        const QString error = begin.lastError().text();
        // Inside a transaction already: the writes belong to that one.
        if (error.contains(QLatin1String("within a transaction"), Qt::CaseInsensitive))
            return false;
        // SQLite's own answer: SQLITE_BUSY (5) or SQLITE_LOCKED (6), of any
        // extended kind.
        const int code = begin.lastError().nativeErrorCode().toInt() & 0xff;
        const bool busy = code == 5 || code == 6;
        if (!busy || waited + kTry > Write_Wait_Seconds) {
            lastFailure_ = busy ? LoadResString(5017) : error;
            Err_Proc(kErrWriteLock, lastFailure_);
            return false;
        }
        if (Wait_Notice)
            Wait_Notice(LoadResString(5016).arg(waited + kTry));
    }
}

bool Cls_DB::Run_Plain(const QString& sql)
{
    QSqlQuery q(QSqlDatabase::database(name_, false));
    return q.exec(sql);
}

bool Cls_DB::Step(const std::function<bool()>& step)
{
    // A server's batch: the statement alone goes back when it fails (also
    // when the server refuses to prepare it), the rows written before it
    // stay in the transaction.
    const bool guarded = mode_ == Write_Mode::Batch && target_.engine != Engine::Sqlite;
    if (guarded && !Run_Plain(QStringLiteral("SAVEPOINT vex_statement")))
        return step(); // the server will answer the statement's own failure
    const bool ok = step();
    if (guarded)
        Run_Plain(ok ? QStringLiteral("RELEASE SAVEPOINT vex_statement")
                     : QStringLiteral("ROLLBACK TO SAVEPOINT vex_statement"));
    return ok;
}

bool Cls_DB::Exec(QSqlQuery& q)
{
    return Step([&] { return q.exec(); });
}

Cls_DB::Batch::Batch(Cls_DB& db) : db_(db)
{
    if (db.open_ && db.mode_ == Write_Mode::None && db.Begin_Write()) {
        open_ = true;
        db.mode_ = Write_Mode::Batch;
    }
}

Cls_DB::Batch::~Batch()
{
    if (!open_)
        return;
    db_.mode_ = Write_Mode::None;
    if (db_.target_.engine == Engine::Sqlite) { // as it began: a statement of its own, prepared once
        QSqlQuery& commit = db_.Prepared(QStringLiteral("COMMIT"));
        const bool ok = commit.exec();
        const QString error = commit.lastError().text();
        commit.finish();
        if (!ok) {
            db_.Run_Plain(QStringLiteral("ROLLBACK"));
            Guarded(kErrCommit, [&] { db_.Engine_Failure(QStringLiteral("commit failed: ") + error); });
        }
        return;
    }
    QSqlDatabase conn = QSqlDatabase::database(db_.name_, false);
    if (!conn.commit()) {
        const QString error = conn.lastError().text();
        conn.rollback();
        Guarded(kErrCommit, [&] { db_.Engine_Failure(QStringLiteral("commit failed: ") + error); });
    }
}

Cls_DB::Transaction::Transaction(Cls_DB& db) : db_(db)
{
    if (!db.open_)
        db.Engine_Failure(QStringLiteral("Operation is not allowed when the object is closed."));
    if (!db.Begin_Write())
        db.Engine_Failure(db.lastFailure_);
    open_ = true;
    db.mode_ = Write_Mode::Transaction;
}

void Cls_DB::Transaction::Commit()
{
    QSqlDatabase conn = QSqlDatabase::database(db_.name_, false);
    open_ = false;
    db_.mode_ = Write_Mode::None;
    if (!conn.commit()) {
        const QString error = conn.lastError().text();
        conn.rollback();
        db_.Engine_Failure(QStringLiteral("commit failed: ") + error);
    }
}

Cls_DB::Transaction::~Transaction()
{
    if (open_) {
        db_.mode_ = Write_Mode::None;
        QSqlDatabase::database(db_.name_, false).rollback();
    }
}

void Cls_DB::Engine_Failure(const QString& text)
{
    ++failures_;
    lastFailure_ = text;
    throw RunTimeError(text);
}

bool Cls_DB::Register_Car(const QString& car, int16_t standardSpeed, const QString& model)
{
    Recordset rs = DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1=?"), {car});
    if (rs.RecordCount() > 0)
        return false;
    rs.AddNew();
    rs.Set(QStringLiteral("D_F1"), car);
    rs.Set(QStringLiteral("D_F5"), QStringLiteral("4.25"));
    if (!model.isEmpty())
        rs.Set(QStringLiteral("D_F6"), model);
    rs.Set(QStringLiteral("D_F8"), QStringLiteral("FF"));
    rs.Set(QStringLiteral("D_F7"), QStringLiteral("3.0"));
    rs.Set(QStringLiteral("D_F10"), QString::number(standardSpeed));
    rs.Update();
    return true;
}

bool Cls_DB::Register_Driver(const QString& driver)
{
    Recordset rs = DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D2 WHERE D_F1=?"), {driver});
    if (rs.RecordCount() > 0)
        return false;
    rs.AddNew();
    rs.Set(QStringLiteral("D_F1"), driver);
    rs.Set(QStringLiteral("D_F2"), driver);
    rs.Update();
    return true;
}

bool Cls_DB::Has_Table(const QString& table) const
{
    if (!open_)
        return false;
    const QStringList tables = QSqlDatabase::database(name_, false).tables();
    return std::any_of(tables.begin(), tables.end(),
                       [&](const QString& t) { return t.compare(table, Qt::CaseInsensitive) == 0; });
}

void Cls_DB::Ensure_Schema()
{
    if (!open_)
        Engine_Failure(QStringLiteral("Operation is not allowed when the object is closed."));
    QSqlDatabase db = QSqlDatabase::database(name_, false);
    vex::Ensure_Schema(db, dialect_);
}

void Cls_DB::Ensure_Indexes()
{
    if (!open_)
        Engine_Failure(QStringLiteral("Operation is not allowed when the object is closed."));
    QSqlDatabase db = QSqlDatabase::database(name_, false);
    vex::Ensure_Indexes(db, dialect_);
}

} // namespace vex
