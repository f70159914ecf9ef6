#include "exchange/Db_Source.h"

#include "core/Err_Proc.h"

#include "platform/Bounded_Child.h"

#include <QAtomicInt>
#include <QDataStream>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <mdbtools.h>
#include <unistd.h>

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

// A Jet file through mdbtools' library. The library loops without end on
// some damaged pages, warning all the while and growing, so every look into
// the file runs in a child process with limits (Run_Bounded): a damaged file
// is refused within a bounded time and memory. The time grows with the file,
// a second a megabyte beyond half a minute. Every value is read as text: the
// target column decides what it becomes.
class Jet_Source : public Db_Source {
public:
    explicit Jet_Source(const QString& path) : path_(path)
    {
        limits_.seconds = 30 + int(QFileInfo(path).size() >> 20);
        limits_.extraBytes = (qint64(512) << 20) + 4 * QFileInfo(path).size();
        QByteArray answer;
        if (!Ask([&](MdbHandle*, QDataStream& out) { out << tables_; }, &answer))
            return;
        QDataStream in(answer);
        in >> tables_;
        ok_ = true;
    }
    bool ok() const { return ok_; }
    const QString& error() const { return error_; }

    QStringList Tables() const override { return tables_; }
    bool Has_Table(const QString& table) const override { return !Name_Of(table).isEmpty(); }

    Source_Table Read(const QString& table) const override
    {
        const QString name = Name_Of(table);
        if (name.isEmpty())
            throw RunTimeError(QStringLiteral("The Microsoft Jet database engine cannot find the input table '%1'").arg(table));
        QByteArray answer;
        if (!Ask([&](MdbHandle* mdb, QDataStream& out) { Read_In_Child(mdb, name, out); }, &answer))
            throw RunTimeError(QStringLiteral("table '%1' cannot be read: %2").arg(table, error_));
        Source_Table t;
        QDataStream in(answer);
        quint64 rows = 0;
        in >> t.columns >> rows;
        for (quint64 i = 0; i < rows && in.status() == QDataStream::Ok; ++i) {
            QVariantList row;
            in >> row;
            t.rows.push_back(std::move(row));
        }
        if (in.status() != QDataStream::Ok)
            throw RunTimeError(QStringLiteral("table '%1' cannot be read").arg(table));
        return t;
    }

private:
    using Look = std::function<void(MdbHandle*, QDataStream&)>;

    // Opens the file in a child, reads its catalog (tables_ there) and runs
    // look; true with the bytes look wrote, else error_ says why.
    bool Ask(const Look& look, QByteArray* answer) const
    {
        const std::optional<QByteArray> got = Run_Bounded(
            [&]() -> QByteArray {
                // Old Jet 3 files hold Korean in the desk's code page.
                if (!qEnvironmentVariableIsSet("MDB_JET3_CHARSET"))
                    qputenv("MDB_JET3_CHARSET", "CP949");
                MdbHandle* mdb = mdb_open(QFile::encodeName(path_).constData(), MDB_NOFLAGS);
                if (!mdb || !mdb_read_catalog(mdb, MDB_TABLE))
                    _exit(1);
                mdb_set_date_fmt(mdb, "%Y-%m-%d %H:%M:%S");
                for (unsigned i = 0; i < mdb->num_catalog; ++i) {
                    auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(mdb->catalog, i));
                    if (entry->object_type == MDB_TABLE && !mdb_is_system_table(entry))
                        tables_ << QString::fromUtf8(entry->object_name);
                }
                QByteArray bytes;
                QDataStream out(&bytes, QIODevice::WriteOnly);
                look(mdb, out);
                return bytes; // the child ends here: nothing to close
            },
            limits_, &error_);
        if (!got) {
            error_ = QStringLiteral("the Jet database cannot be read (%1): %2").arg(error_, path_);
            return false;
        }
        *answer = *got;
        return true;
    }

    static void Read_In_Child(MdbHandle* mdb, const QString& name, QDataStream& out)
    {
        QByteArray cname = name.toUtf8();
        MdbTableDef* def = mdb_read_table_by_name(mdb, cname.data(), MDB_TABLE);
        if (!def || !mdb_read_columns(def))
            _exit(1);
        mdb_rewind_table(def);
        const unsigned n = def->num_cols;
        std::vector<std::vector<char>> bound(n, std::vector<char>(MDB_BIND_SIZE));
        std::vector<int> lengths(n, 0);
        QStringList columns;
        for (unsigned c = 0; c < n; ++c) {
            auto* col = static_cast<MdbColumn*>(g_ptr_array_index(def->columns, c));
            columns << QString::fromUtf8(col->name);
            mdb_bind_column(def, int(c + 1), bound[c].data(), &lengths[c]);
        }
        std::vector<QVariantList> rows;
        while (mdb_fetch_row(def)) {
            QVariantList row;
            row.reserve(int(n));
            for (unsigned c = 0; c < n; ++c)
                row << (lengths[c] > 0 ? QVariant(QString::fromUtf8(bound[c].data(), lengths[c])) : QVariant());
            rows.push_back(std::move(row));
        }
        out << columns << quint64(rows.size());
        for (const QVariantList& row : rows)
            out << row;
    }

    QString Name_Of(const QString& table) const
    {
        for (const QString& t : tables_)
            if (t.compare(table, Qt::CaseInsensitive) == 0)
                return t;
        return {};
    }
    QString path_;
    Child_Limits limits_;
    mutable QStringList tables_;  // filled in the child too, where Ask's looks see them
    mutable QString error_;
    bool ok_ = false;
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
            return fail(s->error());
        return s;
    }
    }
    return fail(QStringLiteral("not a database: ") + path);
}

} // namespace vex
