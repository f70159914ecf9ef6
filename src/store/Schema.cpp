#include "store/Schema.h"

#include "core/Err_Proc.h"
#include "store/SqlDialect.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSet>
#include <QUuid>

namespace vex {

namespace {

// Columns D_F<from> to D_F<to> of one type, appended to cols.
void Add(std::vector<Column>& cols, int from, int to, ColType type)
{
    for (int i = from; i <= to; ++i)
        cols.push_back({QStringLiteral("D_F%1").arg(i), type});
}

struct Span {
    int from, to;
    ColType type;
};

Table Make(const char* name, std::initializer_list<Span> spans, QStringList key, bool primary)
{
    Table t{QString::fromLatin1(name), {}, std::move(key), primary};
    for (const Span& s : spans)
        Add(t.columns, s.from, s.to, s.type);
    return t;
}

constexpr ColType T = ColType::Text;
constexpr ColType I = ColType::Integer;
constexpr ColType N = ColType::Number;
const QStringList kKey = {QStringLiteral("D_F1")};

std::vector<Table> Build()
{
    return {
        // Registers.
        Make("S_D1", {{1, 24, T}}, kKey, true),            // cars
        Make("S_D2", {{1, 12, T}}, kKey, true),            // drivers
        Make("S_D4", {{1, 6, T}}, {}, false),              // names of the six digital inputs
        Make("S_D10", {{1, 1, T}, {2, 13, N}}, kKey, false), // evaluation standards
        Make("S_D13", {{1, 1, T}, {2, 12, N}}, kKey, true), // per-car counters
        Make("S_D14", {{1, 14, T}, {15, 16, I}, {17, 17, N}, {18, 18, I}, {19, 19, N},
                       {20, 21, I}, {22, 22, T}, {23, 23, I}}, {}, false), // settings
        Make("S_D16", {{1, 5, T}}, {}, false),
        Make("S_M1", {{1, 10, T}}, {QStringLiteral("D_F1"), QStringLiteral("D_F2")}, false),
        // Driving days, one row a key of car + driver + day.
        Make("D_D1", {{1, 7, T}, {8, 23, N}, {24, 27, T}}, kKey, true), // trip summary
        Make("D_D2", {{1, 4, T}}, kKey, true),             // quick brakes
        Make("D_D3", {{1, 5, T}}, kKey, true),             // minute speed
        Make("D_D4", {{1, 6, T}}, kKey, true),             // quick accelerations
        Make("D_D6", {{1, 9, T}}, kKey, true),             // long overspeed
        Make("D_D7", {{1, 2, T}}, kKey, true),             // minute distance
        Make("D_D8", {{1, 2, T}}, kKey, true),             // minute engine speed
        Make("D_D9", {{1, 2, T}}, kKey, true),             // overspeed minutes
        Make("D_DI", {{1, 2, T}}, kKey, true),             // idling
        // Months, recorders and scratch.
        Make("D_M1", {{1, 4, T}, {5, 14, N}}, kKey, true),
        Make("D_Y", {{1, 10, T}}, kKey, true),
        Make("D_Y1", {{1, 1, T}, {2, 11, N}}, kKey, true),
        Make("D_S1", {{1, 3, T}}, kKey, true),
        Make("D_H", {{1, 2, T}, {3, 11, N}}, {}, false),
        // Day files still to be renamed after a re-key whose rows have
        // committed (old and new path under the application folder): the
        // rows and this list commit together, the renames follow, and a run
        // cut short is finished at the next start.
        Make("X_RENAME", {{1, 2, T}}, kKey, true),
        // The ledger of receptions, its days and their findings: the
        // office's own record, never part of a package.
        Make("X_LEDGER", {{1, 7, T}}, kKey, true),
        Make("X_LEDGER_DAY", {{1, 8, T}}, kKey, true),
        Make("X_FINDING", {{1, 3, T}, {4, 4, I}, {5, 6, N}, {7, 8, T}}, kKey, true),
    };
}

// Trips are read by day, month, car and driver, and by the parts of their
// key: car LEFT(D_F1,6), driver MID(D_F1,7,6), day RIGHT(D_F1,6), and the
// middle four characters MID(D_F1,5,4) of the period marks. A leading
// part selected for equality comes first, the day after it for ranges.
std::vector<Index> Build_Indexes()
{
    const QString car = QStringLiteral("LEFT(D_F1,6)"), driver = QStringLiteral("MID(D_F1,7,6)"),
                  day = QStringLiteral("RIGHT(D_F1,6)");
    return {
        // Trip summaries: the day grids, the newest day and the periods
        // (D_F4), the month grids, the operation view's stepping and the
        // status of a car or driver, the reference reports and the ledger's
        // look at a car's days.
        {"D_D1_DAY", "D_D1", {"D_F4"}},
        {"D_D1_MONTH", "D_D1", {"LEFT(D_F4,4)"}},
        {"D_D1_CAR", "D_D1", {"D_F2", "D_F3", "D_F4"}},
        {"D_D1_DRIVER", "D_D1", {"D_F3", "D_F4"}},
        {"D_D1_KEY_DAY", "D_D1", {day}},
        {"D_D1_KEY_CAR", "D_D1", {car, day}},
        {"D_D1_KEY_DRIVER", "D_D1", {driver, day}},
        {"D_D1_KEY_MIDDLE", "D_D1", {"MID(D_F1,5,4)", day}},
        // Minute speeds: the speed rate, the fuel month, the period marks
        // and the ledger's search for the same series on a day.
        {"D_D3_KEY_DAY", "D_D3", {day}},
        {"D_D3_KEY_CAR", "D_D3", {car, day}},
        {"D_D3_KEY_DRIVER", "D_D3", {driver, day}},
        {"D_D3_KEY_MIDDLE", "D_D3", {"MID(D_F1,5,4)", day}},
        // Idling: the totals from a day on, and the month grids.
        {"D_DI_KEY_CAR", "D_DI", {car, day}},
        {"D_DI_KEY_DRIVER", "D_DI", {driver, day}},
        {"D_DI_MONTH", "D_DI", {"LEFT(RIGHT(D_F1,6),4)"}},
        // Quick brakes: a car's newest buffers.
        {"D_D2_KEY_CAR", "D_D2", {car, day}},
        // The ledger's days of a trip key.
        {"X_LEDGER_DAY_KEY", "X_LEDGER_DAY", {"D_F3"}},
    };
}

QString Sql_Type(ColType type, Engine engine)
{
    if (type == ColType::Text)
        return QStringLiteral("TEXT");
    if (type == ColType::Integer)
        return QStringLiteral("INTEGER");
    return engine == Engine::Sqlite ? QStringLiteral("NUMERIC") : QStringLiteral("DOUBLE PRECISION");
}

void Run(QSqlDatabase& db, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(db);
    // PostgreSQL prepares no DDL: a statement without values runs as it is.
    bool ok = values.isEmpty() ? q.exec(sql) : q.prepare(sql);
    if (ok && !values.isEmpty()) {
        for (const QVariant& v : values)
            q.addBindValue(v);
        ok = q.exec();
    }
    if (!ok)
        throw RunTimeError(q.lastError().text() + QStringLiteral(" [") + sql + QLatin1Char(']'));
}

bool Is_Empty(QSqlDatabase& db, const QString& table)
{
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT COUNT(*) FROM ") + table) || !q.next())
        throw RunTimeError(q.lastError().text());
    return q.value(0).toLongLong() == 0;
}

void Seed(QSqlDatabase& db, const QString& table, const QVariantList& values)
{
    if (!Is_Empty(db, table))
        return;
    QStringList cols, marks;
    for (int i = 1; i <= values.size(); ++i) {
        cols << QStringLiteral("D_F%1").arg(i);
        marks << QStringLiteral("?");
    }
    Run(db, QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)").arg(table, cols.join(','), marks.join(',')), values);
}

} // namespace

const std::vector<Table>& Schema_Tables()
{
    static const std::vector<Table> tables = Build();
    return tables;
}

const Table* Find_Table(const QString& name)
{
    for (const Table& t : Schema_Tables())
        if (t.name.compare(name, Qt::CaseInsensitive) == 0)
            return &t;
    return nullptr;
}

const std::vector<Index>& Schema_Indexes()
{
    static const std::vector<Index> indexes = Build_Indexes();
    return indexes;
}

QStringList Schema_Statements(Engine engine)
{
    QStringList out;
    for (const Table& t : Schema_Tables()) {
        QStringList defs;
        for (const Column& c : t.columns)
            defs << c.name + QLatin1Char(' ') + Sql_Type(c.type, engine);
        if (t.primaryKey)
            defs << QStringLiteral("PRIMARY KEY (%1)").arg(t.key.join(','));
        out << QStringLiteral("CREATE TABLE IF NOT EXISTS %1 (%2)").arg(t.name, defs.join(QStringLiteral(", ")));
    }
    return out;
}

QStringList Index_Statements(Engine engine)
{
    QStringList out;
    if (engine == Engine::Odbc)
        return out;
    for (const Index& x : Schema_Indexes()) {
        QStringList terms;
        for (const QString& term : x.terms)
            terms << Translate_Sql(term, engine);
        out << QStringLiteral("CREATE INDEX IF NOT EXISTS %1 ON %2 (%3)").arg(x.name, x.table, terms.join(','));
    }
    return out;
}

void Ensure_Schema(QSqlDatabase& db, Engine engine)
{
    const QString kNone = QStringLiteral(""); // empty text, not Null
    for (const QString& sql : Schema_Statements(engine) + Index_Statements(engine))
        Run(db, sql);

    // The settings row: factory account, FTP defaults, no remote company,
    // maintenance check printed, no RPM input, speed axis 180 km/h, RPM axis
    // 3000 with 4 marks, 10 minutes regarded as not driving.
    Seed(db, QStringLiteral("S_D14"),
         {kNone, kNone, kNone, kNone, QStringLiteral("qemba"), QStringLiteral("qemba"),
          QStringLiteral("\\Pack"), QStringLiteral("\\DB\\Back"), kNone, QStringLiteral("000.000.000.000"),
          QStringLiteral("21"), QStringLiteral("qemba"), QStringLiteral("qemba"), QStringLiteral("00000000"),
          0, 1, 180.0, 3000, 40.0, 0, 10, QStringLiteral("office@example.com"), 0});
    // Evaluation standards: 100 points over 100 km, limit 80 km/h; deductions
    // overspeed minute 1, quick brake 2, quick acceleration 2, long overspeed
    // 3, idle 1; quick brake a drop of 9 km/h within a second, quick
    // acceleration a rise of 8 km/h; long overspeed 3 minutes, idle 5
    // minutes; marks graphs from 0.
    Seed(db, QStringLiteral("S_D10"), {QStringLiteral("100"), 100, 80, 1, 2, 2, 3, 1, 9, 8, 3, 5, 0});
    // The six digital inputs of the recorder.
    Seed(db, QStringLiteral("S_D4"),
         {QStringLiteral("브레이크"), QStringLiteral("사이드브레이크"), QStringLiteral("방향지시등(L)"),
          QStringLiteral("방향지시등(R)"), QStringLiteral("와이퍼"), QStringLiteral("안전벨트")});
}

void Ensure_Indexes(QSqlDatabase& db, Engine engine)
{
    const QStringList statements = Index_Statements(engine);
    if (statements.isEmpty())
        return;
    QSqlQuery q(db);
    const QString catalogue = engine == Engine::Sqlite
        ? QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'index'")
        : QStringLiteral("SELECT indexname FROM pg_indexes WHERE schemaname = current_schema()");
    if (!q.exec(catalogue))
        throw RunTimeError(q.lastError().text() + QStringLiteral(" [") + catalogue + QLatin1Char(']'));
    QSet<QString> present;
    while (q.next())
        present.insert(q.value(0).toString().toUpper());
    q.finish();
    const std::vector<Index>& indexes = Schema_Indexes();
    for (size_t i = 0; i < indexes.size(); ++i)
        if (!present.contains(indexes[i].name.toUpper()))
            Run(db, statements[qsizetype(i)]);
}

bool Create_Sqlite_Database(const QString& path, QString* reason)
{
    const QString part = path + QStringLiteral(".part");
    QFile::remove(part);
    const QString name = QStringLiteral("vex-create-") + QUuid::createUuid().toString(QUuid::Id128);
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(part);
        if (!db.open()) {
            if (reason)
                *reason = db.lastError().text();
        } else {
            try {
                Ensure_Schema(db, Engine::Sqlite);
                ok = true;
            } catch (const std::exception& e) {
                if (reason)
                    *reason = QString::fromUtf8(e.what());
            }
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(name);
    if (ok && !QFile::rename(part, path)) {
        ok = false;
        if (reason)
            *reason = QStringLiteral("cannot write ") + path;
    }
    if (!ok)
        QFile::remove(part);
    return ok;
}

} // namespace vex
