#pragma once
// What moves between databases: the tables of a package in their order,
// the selection of a period, car and driver as the forms offer it, and the
// copy rule of every move: a row is found in the target by its key D_F1;
// absent, it is added; present, every column the source has is written over
// it. An import thus overwrites and never merges.
#include "exchange/Db_Source.h"

#include <QString>
#include <QStringList>
#include <QVariantList>
#include <functional>
#include <utility>
#include <vector>

namespace vex {

class Cls_DB;

// D_D1 D_D2 D_D3 D_D4 D_D6 D_D7 D_D8 D_D9 D_DI, then the registers S_D1 S_D2.
const QStringList& Package_Tables();
// The per-day tables of the list above.
const QStringList& Day_Tables();

// A period of days (YYMMDD, both included) and a car and a driver, each a
// code or "ALL".
struct Selection {
    QString from, to;
    QString car = QStringLiteral("ALL");
    QString driver = QStringLiteral("ALL");
};

// The statement that selects a selection's rows of table, with its values.
// D_D1 is filtered by its car and driver columns, the other day tables by
// the parts of their key; every table by the last six characters of D_F1,
// the day, so that the registers are compared with the dates as the backup
// always compared them. columns: what the statement selects.
std::pair<QString, QVariantList> Selection_Where(const QString& table, const Selection& s,
                                                 const QString& columns = QStringLiteral("*"));

// Told as work goes: a stage word, steps done and all.
using Exchange_Progress = std::function<void(const QString& stage, int done, int all)>;

// What one move did, table by table.
struct Exchange_Report {
    bool ok = false;
    QString message;                                // the closing or refusing message
    std::vector<std::pair<QString, int>> tables;    // rows per table
    QStringList files;                              // day files moved
    QStringList refused;                            // rows not taken: "table key: why"
    QStringList trips;                              // D_D1 keys an import wrote
    QStringList ledger;                             // an import's ledger line, one a package
    QStringList notes;                              // and the notes on its days: "key  what was found"
    // "D_D1 31, D_D2 12, ...", the files and the rows refused.
    QString Text() const;
};

// Rows of a source table into target by the copy rule; columns the target
// lacks are left out, and each value is made what its column holds. A row
// that no reception could have written (Row_Refusal) is left out and told
// to refused. Throws RunTimeError as any recordset does. Returns the rows
// written.
int Copy_Rows(Cls_DB& target, const QString& table, const Source_Table& rows, const Exchange_Progress& progress = {},
              QStringList* refused = nullptr);

// The rows of a selection of the live database, as a source table.
Source_Table Select_Rows(Cls_DB& db, const QString& table, const Selection& s);
// How many rows of table the selection holds, counted by the engine.
int Count_Rows(Cls_DB& db, const QString& table, const Selection& s);

} // namespace vex
