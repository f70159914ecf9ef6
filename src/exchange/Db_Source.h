#pragma once
// The database of another installation or of a package, read table by
// table. Older installations kept their data in Jet files (".mdb"), newer
// ones and this program's packages in SQLite files under the same name: the
// file's header decides, never its name.
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <vector>

namespace vex {

enum class Db_File_Kind { Missing, Sqlite, Jet, Unknown };

// By the first bytes: "SQLite format 3", or "Standard Jet DB" / "Standard
// ACE DB" at byte 4.
Db_File_Kind Db_File_Kind_Of(const QString& path);
Db_File_Kind Db_Header_Kind(const QByteArray& head);

struct Source_Table {
    QStringList columns;             // as the source names them
    std::vector<QVariantList> rows;  // texts, numbers and dates as text "yyyy-MM-dd hh:mm:ss"
    // The row's value of column name (case-blind); a null QVariant when the
    // source has no such column.
    QVariant Value(const QVariantList& row, const QString& name) const;
};

class Db_Source {
public:
    virtual ~Db_Source() = default;
    virtual QStringList Tables() const = 0; // the user tables, as the source names them
    virtual bool Has_Table(const QString& table) const = 0;
    // Throws RunTimeError when the table is missing or can't be read.
    virtual Source_Table Read(const QString& table) const = 0;

    // Opens path by its header; nothing, with error set, when it is no
    // database of either kind or can't be opened.
    static std::unique_ptr<Db_Source> Open(const QString& path, QString* error = nullptr);
};

} // namespace vex
