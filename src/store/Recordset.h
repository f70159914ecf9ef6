#pragma once
// A keyset recordset over one statement: the rows of a SELECT held in memory,
// a current row, and the write pattern of the system: select by key, AddNew
// when RecordCount is below 1, else overwrite the first row; assign fields;
// Update. Writes go to the single table named after FROM, found again by its
// key columns (or by all values, for tables without a key). Every failure
// throws RunTimeError, to be caught by the routine's handler.
#include "store/DbTarget.h"

#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>
#include <vector>

namespace vex {

class Cls_DB;
struct Table;

class Recordset {
public:
    Recordset() = default;
    // Runs sql (Jet dialect, '?' for each bound value) on the connection.
    Recordset(Cls_DB& db, const QString& sql, const QVariantList& values);

    bool Is_Open() const { return open_; }
    int RecordCount() const { return int(rows_.size()); }
    bool EOF_() const { return pos_ >= int(rows_.size()); }
    bool BOF_() const { return pos_ < 0 || rows_.empty(); }
    void MoveFirst() { pos_ = 0; }
    void MoveNext() { ++pos_; }
    // The row at a position counted from 0, as a bookmark finds it again.
    void Set_Position(int position) { pos_ = position; }
    int Position() const { return pos_; }

    const QStringList& Field_Names() const { return names_; }
    bool Has_Field(const QString& name) const { return Index(name) >= 0; }
    // Value of the current row; a null QVariant for Null. Throws when there
    // is no current row or no such field.
    QVariant Field(const QString& name) const;
    // Text of a field; Null reads as empty text.
    QString Text(const QString& name) const { return Field(name).toString(); }
    // For a loop over many rows: the place of a field among Field_Names()
    // (-1 without one), found once, and the current row's value there.
    int Column_Of(const QString& name) const { return Index(name); }
    QVariant Field_At(int column) const;

    // Starts a new row; fields not assigned stay Null.
    void AddNew();
    void Set(const QString& name, const QVariant& value);
    // Writes the new or changed row.
    void Update();
    void Close();

private:
    int Index(const QString& name) const;
    void Need_Row() const;
    void Insert_Row();
    void Update_Row();

    Cls_DB* db_ = nullptr;
    const Table* table_ = nullptr;
    QStringList names_;
    std::vector<QVariantList> rows_;
    std::vector<QVariantList> original_;
    std::vector<bool> dirty_;
    int pos_ = 0;
    bool adding_ = false;
    bool open_ = false;
};

} // namespace vex
