// The opening query of every window over a large fleet (goal: under 100 ms
// each) and the month-wide spreadsheets of all cars (goal: under 2 s each),
// each beside a plain SELECT reading the same rows by their keys in the same
// run. The fleet is made by `vexcli sample fleet` once and kept in the cache
// folder; with VEX_BENCH_PG_URI set (a PostgreSQL server, as pg_start gives
// it) the same rows are measured on the server as well.
//   build/bench/bench_fleet [--cars 200] [--days 365] [--runs 3] [--cache DIR] [--only TEXT] [--without-indexes]
// --without-indexes drops the schema's indexes for the run, in a
// transaction rolled back at the end: the figures of a database without them;
// --only measures the windows whose names hold TEXT.
#include "BenchApp.h"
#include "Fleet_Folder.h"

#include "analysis/Driver_Trends.h"
#include "analysis/Fuel.h"
#include "analysis/Period_Marks.h"
#include "analysis/Quick_Brake_Chart.h"
#include "analysis/Status_Grids.h"
#include "exchange/Db_Keeping.h"
#include "reports/Excel_Report.h"
#include "samples/Fleet_Sampler.h"
#include "store/Schema.h"

#include <QCoreApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>

using namespace vex;

namespace {

struct Options {
    int cars = 200, days = 365, runs = 3;
    QString cache = QDir::home().filePath(QStringLiteral(".cache/vex-bench"));
    QString only; // the figures whose window names hold this text
    bool withoutIndexes = false;
};

// Rows a plain SELECT reads: the keys of one table, or all its rows.
struct Rows {
    QString table;
    QStringList keys;
    bool all = false;
};

struct Figure {
    const char* window;
    double goalSeconds;
    std::function<void(Cls_DB&)> run;
    std::vector<Rows> rows;
};

// The keys of the tables the windows read, by car, driver and day, to name
// the rows of each figure's plain SELECT.
class Keys {
public:
    explicit Keys(Cls_DB& db)
    {
        for (const char* table : {"D_D1", "D_D2", "D_D3", "D_D7", "D_DI"}) {
            Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT D_F1 FROM %1 ORDER BY D_F1").arg(QLatin1String(table)));
            QStringList& keys = keys_[QLatin1String(table)];
            for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
                keys << rs.Text(QStringLiteral("D_F1"));
        }
    }
    Rows Where(const char* table, const std::function<bool(const QString& key)>& take) const
    {
        Rows r{QLatin1String(table), {}, false};
        for (const QString& key : keys_.at(QLatin1String(table)))
            if (take(key))
                r.keys << key;
        return r;
    }
    const QStringList& All(const char* table) const { return keys_.at(QLatin1String(table)); }

private:
    std::map<QString, QStringList> keys_;
};

double Best(int runs, const std::function<void()>& work)
{
    double best = 1e9;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        t.start();
        work();
        best = std::min(best, t.nsecsElapsed() / 1e9);
    }
    return best;
}

// The rows read as a program would read them without the system: a plain
// SELECT on the connection, by key in lists of 500 written out (a list of
// bound values costs the driver more than the engine), every column of
// every row fetched.
qsizetype Plain_Read(Cls_DB& db, const std::vector<Rows>& rows)
{
    QSqlDatabase conn = QSqlDatabase::database(db.Connection_Name(), false);
    qsizetype n = 0;
    auto Fetch = [&](QSqlQuery& q) {
        const int columns = q.record().count();
        while (q.next()) {
            for (int i = 0; i < columns; ++i)
                q.value(i);
            ++n;
        }
    };
    for (const Rows& r : rows) {
        QSqlQuery q(conn);
        q.setForwardOnly(true);
        if (r.all) {
            q.exec(QStringLiteral("SELECT * FROM ") + r.table);
            Fetch(q);
            continue;
        }
        for (qsizetype at = 0; at < r.keys.size(); at += 500) {
            QStringList part = r.keys.mid(at, 500);
            for (QString& key : part)
                key = QLatin1Char('\'') + key.replace(QLatin1Char('\''), QStringLiteral("''")) + QLatin1Char('\'');
            q.exec(QStringLiteral("SELECT * FROM %1 WHERE D_F1 IN (%2)").arg(r.table, part.join(',')));
            Fetch(q);
        }
    }
    return n;
}

std::vector<Figure> Figures(const Keys& keys, const QString& month, const QString& newest, const QString& out)
{
    const QString from = month + QStringLiteral("01"), to = month + QStringLiteral("31");
    const QString car = Fleet_Car(0);
    auto Car = [](const QString& k) { return k.left(6); };
    auto Driver = [](const QString& k) { return k.mid(6, 6); };
    auto Day = [](const QString& k) { return k.right(6); };
    auto In_Month = [=](const QString& k) { return Day(k).startsWith(month); };
    // The first car's driver of the month, and the four characters of the
    // key the period marks select by.
    QString driver;
    for (const QString& k : keys.All("D_D1"))
        if (driver.isEmpty() && Car(k) == car && In_Month(k))
            driver = Driver(k);
    const QString middle = (car + driver).mid(4, 4);
    const QString threeMonths = QDate::fromString(QStringLiteral("20") + from, QStringLiteral("yyyyMMdd"))
                                    .addMonths(-2)
                                    .toString(QStringLiteral("yyMM"));
    const QString trendFrom = QDate::fromString(QStringLiteral("20") + threeMonths + QStringLiteral("01"),
                                                QStringLiteral("yyyyMMdd"))
                                  .addMonths(-1)
                                  .toString(QStringLiteral("yyMMdd"));

    const Rows month1 = keys.Where("D_D1", In_Month), monthIdle = keys.Where("D_DI", In_Month);
    const Rows allTrips{QStringLiteral("D_D1"), {}, true};
    const Rows cars{QStringLiteral("S_D1"), {}, true}, drivers{QStringLiteral("S_D2"), {}, true};
    auto Sheet = [=](Excel_Result (*report)(Cls_DB&, const QString&, const Excel_Selection&, const QString&),
                     const char* name) {
        return [=](Cls_DB& db) {
            const Excel_Result r = report(db, G().App_Dir, Excel_Selection{{}, {}, from, to}, out + '/' + name);
            if (r.outcome != Excel_Result::Written)
                std::printf("  %s: not written (%s)\n", name, qPrintable(r.message));
        };
    };
    const Fuel_Rates rates{80, 10, 5, 5, 5, 1500};
    return {
        {"month list (month grids, fuel month)", 0.1, [](Cls_DB& db) { Month_List(db); }, {allTrips}},
        {"month totals by car", 0.1, [=](Cls_DB& db) { Car_Condition_Grid(db, month, false, 0); },
         {month1, monthIdle, cars}},
        {"month totals by driver", 0.1, [=](Cls_DB& db) { Car_Condition_Grid(db, month, true, 0); },
         {month1, monthIdle, drivers}},
        {"a car's month", 0.1, [=](Cls_DB& db) { Day_Status_Grid(db, car, false, month); },
         {keys.Where("D_D1", [=](const QString& k) { return Car(k) == car && In_Month(k); })}},
        {"a driver's month", 0.1, [=](Cls_DB& db) { Day_Status_Grid(db, driver, true, month); },
         {keys.Where("D_D1", [=](const QString& k) { return Driver(k) == driver && In_Month(k); })}},
        {"day grid (newest day's trips)", 0.1, [](Cls_DB& db) { Day_Drive_Grid(db, Newest_Trip_Day(db)); },
         {keys.Where("D_D1", [=](const QString& k) { return Day(k) == newest; })}},
        {"day sections (newest day)", 0.1, [](Cls_DB& db) { Day_Report_Grid(db, Newest_Trip_Day(db), 10); },
         {keys.Where("D_D1", [=](const QString& k) { return Day(k) == newest; }),
          keys.Where("D_D3", [=](const QString& k) { return Day(k) == newest; }),
          keys.Where("D_D7", [=](const QString& k) { return Day(k) == newest; })}},
        {"period marks of a car (a month)", 0.1,
         [=](Cls_DB& db) { DB_Search_DayAVG(db, middle, driver, from, to); },
         {keys.Where("D_D3", [=](const QString& k) { return k.mid(4, 4) == middle && In_Month(k); }),
          keys.Where("D_D1", [=](const QString& k) { return k.mid(4, 4) == middle && In_Month(k); }),
          keys.Where("D_D1", [=](const QString& k) { return Driver(k) == driver && In_Month(k); })}},
        {"average of every day (a month)", 0.1, [=](Cls_DB& db) { DB_Search_AvgDay(db, from, to); }, {month1}},
        {"drivers over time (3 months)", 0.1, [=](Cls_DB& db) { Driver_Trends(db, threeMonths, month); },
         {keys.Where("D_D1", [=](const QString& k) { return Day(k) >= trendFrom && Day(k) <= to; })}},
        {"quick-brake search of a car", 0.1, [=](Cls_DB& db) { Quick_Brake_Chart().Load(db, car); },
         {keys.Where("D_D2", [=](const QString& k) { return Car(k) == car; })}},
        {"reference reports (lists, newest day)", 0.1,
         [](Cls_DB& db) {
             db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 ORDER BY D_F1"));
             db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D2 ORDER BY D_F1"));
             Newest_Trip_Day(db);
         },
         {cars, drivers}},
        {"fuel month", 0.1, [=](Cls_DB& db) { Fuel_Excess_Month(db, month, rates, 5); },
         {month1, keys.Where("D_D3", In_Month), keys.Where("D_D7", In_Month)}},
        {"keeping: backup period", 0.1, [](Cls_DB& db) { Backup_Period(db); }, {allTrips}},
        {"keeping: newest day", 0.1, [](Cls_DB& db) { Newest_Day(db); }, {allTrips}},
        {"spreadsheet carday1 (all cars' days)", 2, Sheet(Excel_All_Cars_Day, "carday1.xlsx"), {month1}},
        {"spreadsheet cartotal", 2, Sheet(Excel_Car_Total, "cartotal.xlsx"),
         {month1, keys.Where("D_DI", [=](const QString& k) { return Day(k) >= from; }), cars}},
        {"spreadsheet drivertotal1", 2, Sheet(Excel_Driver_Total, "drivertotal1.xlsx"), {month1, monthIdle, drivers}},
        {"spreadsheet speedrate", 2, Sheet(Excel_Speed_Rate, "speedrate.xlsx"),
         {keys.Where("D_D3", In_Month), keys.Where("D_D7", In_Month)}},
    };
}

QString Ms(double s)
{
    return s >= 10 ? QStringLiteral("%1 s").arg(s, 0, 'f', 1) : QStringLiteral("%1 ms").arg(s * 1000, 0, 'f', 1);
}

QString Goal(double s)
{
    return s >= 1 ? QStringLiteral("%1 s").arg(s) : QStringLiteral("%1 ms").arg(s * 1000);
}

// The newest whole month of the fleet: the newest day's, when it is the
// month's last, else the one before.
QString Whole_Month(const QString& newest)
{
    const QDate day = QDate::fromString(QStringLiteral("20") + newest, QStringLiteral("yyyyMMdd"));
    return (day.addDays(1).month() != day.month() ? day : day.addMonths(-1)).toString(QStringLiteral("yyMM"));
}

void Measure(const QString& engine, const bench::Fleet_Folder& fleet, const Options& o)
{
    bench::Start_App(fleet.dir);
    Cls_DB& db = *G().DB;
    if (db.DB_State() != 1) {
        std::printf("%s: the database does not open\n", qPrintable(engine));
        return;
    }
    db.Ensure_Indexes();
    std::optional<Cls_DB::Transaction> without;
    if (o.withoutIndexes) {
        without.emplace(db);
        for (const Index& x : Schema_Indexes())
            db.Execute_Unprepared(QStringLiteral("DROP INDEX ") + x.name);
    }
    const Keys keys(db);
    const QString newest = Newest_Trip_Day(db);
    const QString month = Whole_Month(newest);
    QTemporaryDir out;
    std::printf("\n%s, %d cars x %d days: %lld trips, month %s, newest day %s, %s, best of %d\n", qPrintable(engine),
                o.cars, o.days, fleet.trips, qPrintable(month), qPrintable(newest),
                o.withoutIndexes ? "without the schema's indexes" : "with the schema's indexes", o.runs);
    std::printf("%-40s %10s %13s %8s %6s %7s\n", "window", "routine", "plain SELECT", "rows", "ratio", "goal");
    for (const Figure& f : Figures(keys, month, newest, out.path())) {
        if (!QString::fromUtf8(f.window).contains(o.only))
            continue;
        const double routine = Best(o.runs, [&] { f.run(db); });
        qsizetype rows = 0;
        const double plain = Best(o.runs, [&] { rows = Plain_Read(db, f.rows); });
        std::printf("%-40s %10s %13s %8lld %6.2f %7s %s\n", f.window, qPrintable(Ms(routine)), qPrintable(Ms(plain)),
                    static_cast<long long>(rows), routine / plain, qPrintable(Goal(f.goalSeconds)),
                    routine <= f.goalSeconds ? "met" : "MISSED");
    }
    without.reset();
    Main_Shutdown();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    Options o;
    const QStringList args = app.arguments().mid(1);
    for (int i = 0; i < args.size(); ++i) {
        const QString next = i + 1 < args.size() ? args[i + 1] : QString();
        if (args[i] == QLatin1String("--cars"))
            o.cars = next.toInt(), ++i;
        else if (args[i] == QLatin1String("--days"))
            o.days = next.toInt(), ++i;
        else if (args[i] == QLatin1String("--runs"))
            o.runs = next.toInt(), ++i;
        else if (args[i] == QLatin1String("--cache"))
            o.cache = next, ++i;
        else if (args[i] == QLatin1String("--only"))
            o.only = next, ++i;
        else if (args[i] == QLatin1String("--without-indexes"))
            o.withoutIndexes = true;
        else {
            std::fprintf(stderr, "usage: bench_fleet [--cars N] [--days D] [--runs R] [--cache DIR] [--only TEXT] "
                                 "[--without-indexes]\n");
            return 2;
        }
    }
    if (o.cars < 1 || o.days < 1 || o.runs < 1) {
        std::fprintf(stderr, "bench_fleet: --cars, --days and --runs count from 1\n");
        return 2;
    }
    const bench::Fleet_Folder sqlite = bench::Sqlite_Fleet(o.cache, o.cars, o.days);
    if (!sqlite.error.isEmpty()) {
        std::fprintf(stderr, "bench_fleet: %s\n", qPrintable(sqlite.error));
        return 1;
    }
    std::printf("fleet %s: %lld trips, filled in %.0f s (%.1f ms a trip)\n", qPrintable(sqlite.dir), sqlite.trips,
                sqlite.fillSeconds, sqlite.fillSeconds * 1000 / std::max(1LL, sqlite.trips));
    Measure(QStringLiteral("SQLite"), sqlite, o);

    const QString uri = qEnvironmentVariable("VEX_BENCH_PG_URI");
    if (uri.isEmpty()) {
        std::printf("\nPostgreSQL: not measured (set VEX_BENCH_PG_URI)\n");
        return 0;
    }
    const bench::Fleet_Folder pg = bench::Postgres_Fleet(sqlite, uri, o.cars, o.days);
    if (!pg.error.isEmpty()) {
        std::fprintf(stderr, "bench_fleet: %s\n", qPrintable(pg.error));
        return 1;
    }
    Measure(QStringLiteral("PostgreSQL"), pg, o);
    return 0;
}
