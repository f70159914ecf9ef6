#include "exchange/Db_Source.h"

#include "core/Err_Proc.h"

#include <QAtomicInt>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <mdbtools.h>

namespace vex {

namespace {

// A SQLite source through its own read-only connection.
class Sqlite_Source : public Db_Source {
public:
    explicit Sqlite_Source(const QString& path)
    {
        static QAtomicInt counter;
        name_ = QStringLiteral("vex-source-%1").arg(counter.fetchAndAddRelaxed(1));
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name_);
        db.setDatabaseName(path);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        ok_ = db.open();
        if (ok_) {
            tables_ = db.tables();
            // A file whose header says SQLite but whose pages are broken.
            QSqlQuery q(db);
            ok_ = q.exec(QStringLiteral("PRAGMA quick_check")) && q.next() && q.value(0).toString() == QLatin1String("ok");
        }
        if (!ok_)
            error_ = db.lastError().text().isEmpty() ? QStringLiteral("damaged database") : db.lastError().text();
    }
    ~Sqlite_Source() override
    {
        {
            QSqlDatabase db = QSqlDatabase::database(name_, false);
            db.close();
        }
        QSqlDatabase::removeDatabase(name_);
    }
    bool ok() const { return ok_; }
    const QString& error() const { return error_; }

    QStringList Tables() const override { return tables_; }
    bool Has_Table(const QString& table) const override
    {
        for (const QString& t : tables_)
            if (t.compare(table, Qt::CaseInsensitive) == 0)
                return true;
        return false;
    }

    Source_Table Read(const QString& table) const override
    {
        if (!Has_Table(table))
            throw RunTimeError(QStringLiteral("The Microsoft Jet database engine cannot find the input table '%1'").arg(table));
        QSqlQuery q(QSqlDatabase::database(name_, false));
        q.setForwardOnly(true);
        if (!q.exec(QStringLiteral("SELECT * FROM ") + table))
            throw RunTimeError(q.lastError().text());
        Source_Table t;
        const QSqlRecord rec = q.record();
        for (int i = 0; i < rec.count(); ++i)
            t.columns << rec.fieldName(i);
        while (q.next()) {
            QVariantList row;
            row.reserve(rec.count());
            for (int i = 0; i < rec.count(); ++i)
                row << q.value(i);
            t.rows.push_back(std::move(row));
        }
        return t;
    }

private:
    QString name_, error_;
    QStringList tables_;
    bool ok_ = false;
};

// A Jet file through mdbtools' library. Every value is read as text: the
// target column decides what it becomes.
class Jet_Source : public Db_Source {
public:
    explicit Jet_Source(const QString& path)
    {
        // Old Jet 3 files hold Korean in the desk's code page.
        if (!qEnvironmentVariableIsSet("MDB_JET3_CHARSET"))
            qputenv("MDB_JET3_CHARSET", "CP949");
        mdb_ = mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS);
        if (!mdb_)
            return;
        mdb_set_date_fmt(mdb_, "%Y-%m-%d %H:%M:%S");
        if (!mdb_read_catalog(mdb_, MDB_TABLE)) {
            mdb_close(mdb_);
            mdb_ = nullptr;
            return;
        }
        for (unsigned i = 0; i < mdb_->num_catalog; ++i) {
            auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(mdb_->catalog, i));
            if (entry->object_type == MDB_TABLE && !mdb_is_system_table(entry))
                tables_ << QString::fromUtf8(entry->object_name);
        }
    }
    ~Jet_Source() override
    {
        if (mdb_)
            mdb_close(mdb_);
    }
    bool ok() const { return mdb_ != nullptr; }

    QStringList Tables() const override { return tables_; }
    bool Has_Table(const QString& table) const override { return !Name_Of(table).isEmpty(); }

    Source_Table Read(const QString& table) const override
    {
        const QString name = Name_Of(table);
        if (name.isEmpty())
            throw RunTimeError(QStringLiteral("The Microsoft Jet database engine cannot find the input table '%1'").arg(table));
        QByteArray cname = name.toUtf8();
        MdbTableDef* def = mdb_read_table_by_name(mdb_, cname.data(), MDB_TABLE);
        if (!def || !mdb_read_columns(def)) {
            if (def)
                mdb_free_tabledef(def);
            throw RunTimeError(QStringLiteral("table '%1' cannot be read").arg(table));
        }
        mdb_rewind_table(def);
        Source_Table t;
        const unsigned n = def->num_cols;
        std::vector<std::vector<char>> bound(n, std::vector<char>(MDB_BIND_SIZE));
        std::vector<int> lengths(n, 0);
        for (unsigned c = 0; c < n; ++c) {
            auto* col = static_cast<MdbColumn*>(g_ptr_array_index(def->columns, c));
            t.columns << QString::fromUtf8(col->name);
            mdb_bind_column(def, int(c + 1), bound[c].data(), &lengths[c]);
        }
        while (mdb_fetch_row(def)) {
            QVariantList row;
            row.reserve(int(n));
            for (unsigned c = 0; c < n; ++c)
                row << (lengths[c] > 0 ? QVariant(QString::fromUtf8(bound[c].data(), lengths[c])) : QVariant());
            t.rows.push_back(std::move(row));
        }
        mdb_free_tabledef(def);
        return t;
    }

private:
    QString Name_Of(const QString& table) const
    {
        for (const QString& t : tables_)
            if (t.compare(table, Qt::CaseInsensitive) == 0)
                return t;
        return {};
    }
    MdbHandle* mdb_ = nullptr;
    QStringList tables_;
};

} // namespace

Db_File_Kind Db_Header_Kind(const QByteArray& head)
{
    if (head.startsWith(QByteArrayLiteral("SQLite format 3\0")))
        return Db_File_Kind::Sqlite;
    const QByteArray id = head.mid(4, 15);
    if (id == "Standard Jet DB" || id == "Standard ACE DB")
        return Db_File_Kind::Jet;
    return Db_File_Kind::Unknown;
}

Db_File_Kind Db_File_Kind_Of(const QString& path)
{
    QFile f(path);
    if (!f.exists())
        return Db_File_Kind::Missing;
    if (!f.open(QIODevice::ReadOnly))
        return Db_File_Kind::Unknown;
    return Db_Header_Kind(f.read(32));
}

QVariant Source_Table::Value(const QVariantList& row, const QString& name) const
{
    for (int i = 0; i < columns.size() && i < row.size(); ++i)
        if (columns[i].compare(name, Qt::CaseInsensitive) == 0)
            return row[i];
    return {};
}

std::unique_ptr<Db_Source> Db_Source::Open(const QString& path, QString* error)
{
    auto fail = [&](const QString& why) {
        if (error)
            *error = why;
        return std::unique_ptr<Db_Source>();
    };
    switch (Db_File_Kind_Of(path)) {
    case Db_File_Kind::Missing:
        return fail(QStringLiteral("file not found: ") + path);
    case Db_File_Kind::Unknown:
        return fail(QStringLiteral("not a database: ") + path);
    case Db_File_Kind::Sqlite: {
        auto s = std::make_unique<Sqlite_Source>(path);
        if (!s->ok())
            return fail(s->error());
        return s;
    }
    case Db_File_Kind::Jet: {
        auto s = std::make_unique<Jet_Source>(path);
        if (!s->ok())
            return fail(QStringLiteral("the Jet database cannot be read: ") + path);
        return s;
    }
    }
    return fail(QStringLiteral("not a database: ") + path);
}

} // namespace vex
