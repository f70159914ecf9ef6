#include "exchange/Exchange_Tables.h"

#include "core/Err_Proc.h"
#include "core/Printable.h"
#include "exchange/Row_Checks.h"
#include "store/Cls_DB.h"
#include "store/Schema.h"

namespace vex {

const QStringList& Day_Tables()
{
    static const QStringList tables{"D_D1", "D_D2", "D_D3", "D_D4", "D_D6", "D_D7", "D_D8", "D_D9", "D_DI"};
    return tables;
}

const QStringList& Package_Tables()
{
    static const QStringList tables = Day_Tables() + QStringList{"S_D1", "S_D2"};
    return tables;
}

std::pair<QString, QVariantList> Selection_Where(const QString& table, const Selection& s, const QString& columns)
{
    QString sql =
        QStringLiteral("SELECT %1 FROM %2 WHERE (RIGHT(D_F1,6)) >= ? AND (RIGHT(D_F1,6)) <= ?").arg(columns, table);
    QVariantList values{s.from, s.to};
    const bool allCars = s.car == QLatin1String("ALL"), allDrivers = s.driver == QLatin1String("ALL");
    if (!Day_Tables().contains(table))
        return {sql, values};
    if (!allCars) {
        sql += table == QLatin1String("D_D1") ? QStringLiteral(" AND D_F2 = ?") : QStringLiteral(" AND (LEFT(D_F1,6)) = ?");
        values << s.car;
    }
    if (!allDrivers) {
        sql += table == QLatin1String("D_D1") ? QStringLiteral(" AND D_F3 = ?") : QStringLiteral(" AND (MID(D_F1,7,6)) = ?");
        values << s.driver;
    }
    return {sql, values};
}

QString Exchange_Report::Text() const
{
    QStringList parts;
    for (const auto& [table, rows] : tables)
        parts << QStringLiteral("%1 %2").arg(table).arg(rows);
    if (!files.isEmpty())
        parts << QStringLiteral("day files %1").arg(files.size());
    if (!refused.isEmpty())
        parts << QStringLiteral("rows refused %1").arg(refused.size());
    return (QStringList{parts.join(QStringLiteral(", "))} + refused).join(QLatin1Char('\n'));
}

namespace {

// A source's text as what the target column holds: a number column takes
// numbers only (empty or not a number is Null), a text column the text.
QVariant As_Column(const QVariant& v, ColType type)
{
    if (v.isNull())
        return v;
    switch (type) {
    case ColType::Text:
        return v.toString();
    case ColType::Integer: {
        bool ok = false;
        const qlonglong n = v.toString().trimmed().toLongLong(&ok);
        if (ok)
            return n;
        const double d = v.toString().trimmed().toDouble(&ok);
        return ok ? QVariant(qlonglong(d)) : QVariant();
    }
    case ColType::Number: {
        bool ok = false;
        const double d = v.toString().trimmed().toDouble(&ok);
        return ok ? QVariant(d) : QVariant();
    }
    }
    return v;
}

} // namespace

int Copy_Rows(Cls_DB& target, const QString& table, const Source_Table& rows, const Exchange_Progress& progress,
              QStringList* refused)
{
    const Table* def = Find_Table(table);
    if (!def)
        throw RunTimeError(QStringLiteral("no table ") + table);
    // Source columns that the target has, with their types.
    std::vector<std::pair<int, const Column*>> map;
    int keyAt = -1;
    for (int i = 0; i < rows.columns.size(); ++i)
        for (const Column& c : def->columns)
            if (c.name.compare(rows.columns[i], Qt::CaseInsensitive) == 0) {
                map.emplace_back(i, &c);
                if (c.name == QLatin1String("D_F1"))
                    keyAt = i;
            }
    if (keyAt < 0)
        throw RunTimeError(QStringLiteral("Item cannot be found in the collection: D_F1 of ") + table);
    const QString select = QStringLiteral("SELECT * FROM ") + table + QStringLiteral(" WHERE D_F1=?");
    // The row of the key is overwritten in the columns the source has, or
    // added with those alone. Engines that know an upsert do both in one
    // statement; any other finds the row first.
    const bool upsert = def->primaryKey && (target.Dialect() == Engine::Sqlite || target.Dialect() == Engine::Postgres);
    QString upsertSql;
    if (upsert) {
        QStringList cols, marks, sets;
        for (const auto& [i, column] : map) {
            cols << column->name;
            marks << QStringLiteral("?");
            if (!def->key.contains(column->name, Qt::CaseInsensitive))
                sets << column->name + QStringLiteral("=excluded.") + column->name;
        }
        upsertSql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3) ON CONFLICT (%4) DO ")
                        .arg(table, cols.join(','), marks.join(','), def->key.join(','))
                    + (sets.isEmpty() ? QStringLiteral("NOTHING") : QStringLiteral("UPDATE SET ") + sets.join(','));
    }
    int written = 0;
    Cls_DB::Batch batch(target);
    QVariantList values;
    for (const QVariantList& row : rows.rows) {
        const QVariant key = row.value(keyAt);
        if (const QString why = Row_Refusal(*def, rows, row); !why.isEmpty()) {
            if (refused)
                *refused << QStringLiteral("%1 '%2': %3").arg(table, Printable(key.toString(), 40), why);
            continue;
        }
        if (key.isNull() || key.toString().isEmpty())
            continue; // a row without a key can't be found again
        if (upsert) {
            values.clear();
            for (const auto& [i, column] : map)
                values << As_Column(row.value(i), column->type);
            target.Run_Prepared(upsertSql, values).finish();
        } else {
            Recordset rs = target.DB_RSet_D_D(select, {key.toString()});
            if (rs.RecordCount() < 1)
                rs.AddNew();
            for (const auto& [i, column] : map)
                rs.Set(column->name, As_Column(row.value(i), column->type));
            rs.Update();
        }
        ++written;
        if (progress && written % 200 == 0)
            progress(table, written, int(rows.rows.size()));
    }
    if (progress)
        progress(table, written, int(rows.rows.size()));
    return written;
}

Source_Table Select_Rows(Cls_DB& db, const QString& table, const Selection& s)
{
    const auto [sql, values] = Selection_Where(table, s);
    Recordset rs = db.DB_RSet_D_D(sql, values);
    Source_Table t;
    t.columns = rs.Field_Names();
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        QVariantList row;
        row.reserve(t.columns.size());
        for (const QString& c : t.columns)
            row << rs.Field(c);
        t.rows.push_back(std::move(row));
    }
    return t;
}

int Count_Rows(Cls_DB& db, const QString& table, const Selection& s)
{
    auto [sql, values] = Selection_Where(table, s);
    sql.replace(QStringLiteral("SELECT * FROM"), QStringLiteral("SELECT COUNT(*) AS N FROM"));
    return db.DB_RSet_D_D(sql, values).Field(QStringLiteral("N")).toInt();
}

} // namespace vex
