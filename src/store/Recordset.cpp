#include "store/Recordset.h"

#include "core/Err_Proc.h"
#include "store/Cls_DB.h"
#include "store/Schema.h"
#include "store/SqlDialect.h"

#include <QRegularExpression>
#include <QSqlQuery>
#include <QSqlRecord>

namespace vex {

namespace {

// The one table a writable statement reads: "... FROM T" without a join.
const Table* Single_Table(const QString& sql)
{
    static const QRegularExpression from(QStringLiteral("\\bFROM\\s+([A-Za-z_][A-Za-z0-9_]*)"),
                                         QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression join(QStringLiteral("\\bJOIN\\b|\\bFROM\\s+[A-Za-z0-9_]+\\s*,"),
                                         QRegularExpression::CaseInsensitiveOption);
    const auto m = from.match(sql);
    if (!m.hasMatch() || join.match(sql).hasMatch())
        return nullptr;
    return Find_Table(m.captured(1));
}

} // namespace

Recordset::Recordset(Cls_DB& db, const QString& sql, const QVariantList& values)
    : db_(&db), table_(Single_Table(sql))
{
    QSqlQuery& q = db.Run_Prepared(db.Translated(sql), values);
    const QSqlRecord rec = q.record();
    for (int i = 0; i < rec.count(); ++i)
        names_ << rec.fieldName(i);
    while (q.next()) {
        QVariantList row;
        row.reserve(rec.count());
        for (int i = 0; i < rec.count(); ++i)
            row << q.value(i);
        rows_.push_back(row);
    }
    q.finish();
    original_ = rows_;
    dirty_.assign(names_.size(), false);
    open_ = true;
}

int Recordset::Index(const QString& name) const
{
    // Asked for every field of every row: names of another length are no
    // match, and need no comparison without case.
    for (int i = 0; i < names_.size(); ++i)
        if (names_[i].size() == name.size() && names_[i].compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

void Recordset::Need_Row() const
{
    if (!open_ || pos_ < 0 || pos_ >= int(rows_.size()))
        throw RunTimeError(QStringLiteral("Either BOF or EOF is True, or the current record has been deleted."));
}

QVariant Recordset::Field(const QString& name) const
{
    Need_Row();
    const int i = Index(name);
    if (i < 0)
        throw RunTimeError(QStringLiteral("Item cannot be found in the collection: ") + name);
    return rows_[pos_][i];
}

QVariant Recordset::Field_At(int column) const
{
    Need_Row();
    if (column < 0 || column >= names_.size())
        throw RunTimeError(QStringLiteral("Item cannot be found in the collection: %1").arg(column));
    return rows_[pos_][column];
}

void Recordset::AddNew()
{
    if (!open_ || !table_)
        throw RunTimeError(QStringLiteral("The recordset cannot be updated."));
    if (names_.isEmpty())
        for (const Column& c : table_->columns)
            names_ << c.name;
    dirty_.assign(names_.size(), false);
    QVariantList row;
    for (int i = 0; i < names_.size(); ++i)
        row << QVariant();
    rows_.push_back(row);
    original_.push_back(row);
    pos_ = int(rows_.size()) - 1;
    adding_ = true;
}

void Recordset::Set(const QString& name, const QVariant& value)
{
    Need_Row();
    const int i = Index(name);
    if (i < 0)
        throw RunTimeError(QStringLiteral("Item cannot be found in the collection: ") + name);
    rows_[pos_][i] = value;
    dirty_[i] = true;
}

void Recordset::Update()
{
    Need_Row();
    if (!table_)
        throw RunTimeError(QStringLiteral("The recordset cannot be updated."));
    if (adding_)
        Insert_Row();
    else
        Update_Row();
    original_[pos_] = rows_[pos_];
    dirty_.assign(names_.size(), false);
    adding_ = false;
}

void Recordset::Insert_Row()
{
    QStringList cols, marks;
    QVariantList values;
    for (int i = 0; i < names_.size(); ++i) {
        if (!dirty_[i])
            continue;
        cols << names_[i];
        marks << QStringLiteral("?");
        values << rows_[pos_][i];
    }
    if (cols.isEmpty())
        throw RunTimeError(QStringLiteral("AddNew without a field"));
    QString sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)").arg(table_->name, cols.join(','), marks.join(','));
    // Another PC may have added the key since this one looked for it: on a
    // server the row it finds is overwritten, as the key's row would have
    // been had it been there a moment earlier, instead of failing the save.
    if (table_->primaryKey && db_->Dialect() == Engine::Postgres) {
        QStringList sets;
        for (const QString& c : cols)
            if (!table_->key.contains(c, Qt::CaseInsensitive))
                sets << c + QStringLiteral("=EXCLUDED.") + c;
        sql += QStringLiteral(" ON CONFLICT (%1) DO ").arg(table_->key.join(','));
        sql += sets.isEmpty() ? QStringLiteral("NOTHING") : QStringLiteral("UPDATE SET ") + sets.join(',');
    }
    db_->Run_Prepared(sql, values).finish();
}

void Recordset::Update_Row()
{
    QStringList sets, where;
    QVariantList values;
    for (int i = 0; i < names_.size(); ++i) {
        if (dirty_[i]) {
            sets << names_[i] + QStringLiteral("=?");
            values << rows_[pos_][i];
        }
    }
    if (sets.isEmpty())
        return;
    // The row as it was read: by its key, or by every value it held.
    for (int i = 0; i < names_.size(); ++i) {
        if (!table_->key.isEmpty() && !table_->key.contains(names_[i], Qt::CaseInsensitive))
            continue;
        const QVariant& old = original_[pos_][i];
        if (old.isNull()) {
            where << names_[i] + QStringLiteral(" IS NULL");
        } else {
            where << names_[i] + QStringLiteral("=?");
            values << old;
        }
    }
    QSqlQuery& q = db_->Run_Prepared(QStringLiteral("UPDATE %1 SET %2 WHERE %3")
                                   .arg(table_->name, sets.join(','), where.join(QStringLiteral(" AND "))),
                        values);
    const int affected = q.numRowsAffected();
    q.finish();
    if (affected == 0)
        db_->Engine_Failure(QStringLiteral("Row cannot be located for updating. Some values may have been changed since it was last read."));
}

void Recordset::Close()
{
    rows_.clear();
    original_.clear();
    open_ = false;
}

} // namespace vex
