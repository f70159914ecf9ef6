#pragma once
// The tables of the database. Every column is named D_F<n>; what a column
// means depends on its table alone. Minute series and event lists are text
// without a length limit (2,880 characters and more).
#include "store/DbTarget.h"

#include <QString>
#include <QStringList>
#include <vector>

class QSqlDatabase;

namespace vex {

enum class ColType { Text, Integer, Number };

struct Column {
    QString name;
    ColType type;
};

struct Table {
    QString name;
    std::vector<Column> columns;
    // Columns that pick one row for a rewrite. Empty: the table has no key and
    // a row is told by all its values.
    QStringList key;
    bool primaryKey = false; // the key is declared unique in the database
};

const std::vector<Table>& Schema_Tables();
const Table* Find_Table(const QString& name); // case-insensitive

// An index of the windows' and reports' selections. Its terms are written
// as the statements are (Jet: "RIGHT(D_F1,6)") and take the engine's form
// through the same translation, so that an index on a part of the key is
// the very expression a statement selects by.
struct Index {
    QString name;
    QString table;
    QStringList terms;
};
const std::vector<Index>& Schema_Indexes();

// CREATE TABLE statements of the engine, in table order.
QStringList Schema_Statements(Engine engine);
// CREATE INDEX statements of the engine, in the order of Schema_Indexes();
// none for a data source of another server, whose dialect is unknown.
QStringList Index_Statements(Engine engine);

// Creates the tables and indexes that are missing and gives the settings
// tables their delivered rows when they are empty: S_D14 (factory account
// "qemba"), S_D10 (the evaluation standards) and S_D4 (names of the digital
// inputs). Throws RunTimeError on a database failure.
void Ensure_Schema(QSqlDatabase& db, Engine engine);

// Creates the indexes that a database made by an earlier version lacks.
// Those it has are found in the engine's catalogue and left alone, so that
// a start on an indexed database writes nothing and waits for no lock.
// Throws RunTimeError on a database failure.
void Ensure_Indexes(QSqlDatabase& db, Engine engine);

// A new SQLite file holding the empty schema with the delivered rows. The
// file appears whole or not at all.
bool Create_Sqlite_Database(const QString& path, QString* reason = nullptr);

} // namespace vex
