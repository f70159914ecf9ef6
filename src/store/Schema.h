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

// CREATE TABLE statements of the engine, in table order.
QStringList Schema_Statements(Engine engine);

// Creates the tables that are missing and gives the settings tables their
// delivered rows when they are empty: S_D14 (factory account "qemba"),
// S_D10 (the evaluation standards) and S_D4 (names of the digital inputs).
// Throws RunTimeError on a database failure.
void Ensure_Schema(QSqlDatabase& db, Engine engine);

// A new SQLite file holding the empty schema with the delivered rows. The
// file appears whole or not at all.
bool Create_Sqlite_Database(const QString& path, QString* reason = nullptr);

} // namespace vex
