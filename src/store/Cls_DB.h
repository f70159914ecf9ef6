#pragma once
// The database side of the system: the one connection that stays open from
// the login to the end, and the recordsets every part reads and writes
// through. Later the decoded-day record, the ingest and the searches hang on
// this class as well.
#include "store/DbTarget.h"
#include "store/Recordset.h"

#include <QString>
#include <QVariantList>

namespace vex {

class Cls_DB {
public:
    // Connects to what the global DB_Server names.
    Cls_DB();
    // Connects to a given target (second connections, tests).
    explicit Cls_DB(const DbTarget& target);
    ~Cls_DB();
    Cls_DB(const Cls_DB&) = delete;
    Cls_DB& operator=(const Cls_DB&) = delete;

    // Opens the connection; 1 in DB_State when open, 0 otherwise. Failures
    // go to the handler with code 1089's neighbour of the connection.
    bool DB_Connection();
    void DB_DConnection();
    int DB_State() const { return state_; }
    // The SQL dialect of the connection: the engine's own, or for a data
    // source the one of the server behind it (Odbc: passed on unchanged).
    Engine Dialect() const { return dialect_; }
    const DbTarget& Target() const { return target_; }
    QString Connection_Name() const { return name_; }

    // A keyset recordset on the connection. Throws RunTimeError on failure,
    // which the calling routine's handler takes.
    Recordset DB_RSet_D_D(const QString& sql, const QVariantList& values = {}, int option = 1);

    // A statement that returns no rows ("DELETE * FROM D_H").
    void Execute(const QString& sql, const QVariantList& values = {});

    // Creates missing tables and the delivered settings rows.
    void Ensure_Schema();

private:
    DbTarget target_;
    QString name_;
    Engine dialect_ = Engine::Sqlite;
    int state_ = 0;
};

} // namespace vex
