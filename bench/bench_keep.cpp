// Keeping the data at the size of a year of a fleet: 50 cars driving every
// day (about 18,000 trips with their series and events) exported into a
// package, deleted and imported again, each as rows a second beside the
// sqlite3 shell copying the same tables with ATTACH and INSERT ... SELECT.
//   build/bench/bench_keep [cars] [days]
#include "BenchApp.h"

#include "app/Start_Up.h"
#include "exchange/Data_Package.h"
#include "exchange/Exchange_Tables.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <cmath>
#include <cstdio>

using namespace vex;

namespace {

QString Hex2(int v)
{
    return QStringLiteral("%1").arg(v & 0xFF, 2, 16, QLatin1Char('0')).toUpper();
}

// A trip's rows, written straight into the file: the set-up, not the
// measured work. Series of a working day: driving from 07:00 to 17:00.
qint64 Fill(const QString& dbPath, int cars, int days)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fill"));
    db.setDatabaseName(dbPath);
    db.open();
    db.transaction();
    QSqlQuery q(db);
    qint64 rows = 0;
    auto Put = [&](const QString& table, const QVariantList& values) {
        QStringList marks;
        for (int i = 0; i < values.size(); ++i)
            marks << QStringLiteral("?");
        QStringList cols;
        for (int i = 1; i <= values.size(); ++i)
            cols << QStringLiteral("D_F%1").arg(i);
        q.prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)").arg(table, cols.join(','), marks.join(',')));
        for (const QVariant& v : values)
            q.addBindValue(v);
        q.exec();
        ++rows;
    };
    const QDate first(2025, 1, 1);
    for (int c = 0; c < cars; ++c) {
        const QString car = QStringLiteral("%1").arg(0x100 + c, 4, 16, QLatin1Char('0')).toUpper() + QStringLiteral("00");
        const QString driver = QStringLiteral("00%1").arg(0x200 + c, 4, 16, QLatin1Char('0')).toUpper();
        Put(QStringLiteral("S_D1"), {car, QStringLiteral("A-%1").arg(c)});
        Put(QStringLiteral("S_D2"), {driver, driver});
        for (int d = 0; d < days; ++d) {
            const QString day = first.addDays(d).toString(QStringLiteral("yyMMdd"));
            const QString key = car + driver + day;
            QString speed, dist, engine;
            for (int m = 0; m < 1440; ++m) {
                const bool driving = m >= 420 && m < 1020;
                const int v = driving ? int(50 + 40 * std::sin((m + c + d) / 9.0)) : 0;
                speed += Hex2(v);
                engine += Hex2(driving ? v / 2 + 20 : 0);
                dist += driving ? QStringLiteral("%1").arg(v / 6, 2, 10, QLatin1Char('0')) : QStringLiteral("00");
            }
            Put(QStringLiteral("D_D1"), {key, car, driver, day, QStringLiteral("0700"), day, QStringLiteral("1659"),
                                        4200, 3, 2, 40, 1, 2, 86, 10, 5, 1});
            Put(QStringLiteral("D_D2"), {key, QStringLiteral("0801003223") + QStringLiteral("1402005010")});
            Put(QStringLiteral("D_D3"), {key, speed});
            Put(QStringLiteral("D_D4"), {key, QStringLiteral("0930000A32")});
            Put(QStringLiteral("D_D6"), {key, QStringLiteral("100010150000000500")});
            Put(QStringLiteral("D_D7"), {key, dist});
            Put(QStringLiteral("D_D8"), {key, engine});
            Put(QStringLiteral("D_D9"), {key, QStringLiteral("101052")});
            Put(QStringLiteral("D_DI"), {key, QStringLiteral("120000121000001000")});
        }
    }
    q.finish();
    db.commit();
    db.close();
    return rows;
}

double Shell(const QString& script)
{
    QElapsedTimer t;
    t.start();
    QProcess p;
    p.start(QStringLiteral("sqlite3"), {QStringLiteral(":memory:")});
    p.write(script.toUtf8());
    p.closeWriteChannel();
    p.waitForFinished(-1);
    return t.nsecsElapsed() / 1e9;
}

// The shell's copy of the package tables from one file into another.
QString Copy_Script(const QString& from, const QString& to)
{
    QString s = QStringLiteral("ATTACH '%1' AS src; ATTACH '%2' AS dst; BEGIN;\n").arg(from, to);
    for (const QString& t : Package_Tables())
        s += QStringLiteral("INSERT OR REPLACE INTO dst.%1 SELECT * FROM src.%1;\n").arg(t);
    return s + QStringLiteral("COMMIT;\n");
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int cars = argc > 1 ? std::atoi(argv[1]) : 50;
    const int days = argc > 2 ? std::atoi(argv[2]) : 365;
    QTemporaryDir root;
    const QString site = root.path() + QStringLiteral("/site");
    bench::Start_App(site);
    G().DB.reset(); // the fill writes the file alone
    const qint64 rows = Fill(site + QStringLiteral("/db/morix.mdb"), cars, days);
    QSqlDatabase::removeDatabase(QStringLiteral("fill"));
    G().DB = std::make_unique<Cls_DB>();
    std::printf("%d cars x %d days: %lld rows in %d tables\n", cars, days, static_cast<long long>(rows),
                int(Package_Tables().size()));

    // The baseline: the shell copies the same tables into an empty database.
    const QString empty = root.path() + QStringLiteral("/empty.mdb");
    QFile::copy(site + QStringLiteral("/db_temp/morix.mdb"), empty);
    const double shellOut = Shell(Copy_Script(site + QStringLiteral("/db/morix.mdb"), empty));

    const Selection all{QStringLiteral("000101"), QStringLiteral("991231")};
    QElapsedTimer t;
    t.start();
    const Exchange_Report out = Export_Package(*G().DB, all, QStringLiteral("year"));
    const double exportTime = t.nsecsElapsed() / 1e9;
    t.restart();
    const Exchange_Report gone = Delete_Selection(*G().DB, all);
    const double deleteTime = t.nsecsElapsed() / 1e9;
    t.restart();
    const Exchange_Report in = Import_Package(*G().DB, site + QStringLiteral("/Exp/year.zip"));
    const double importTime = t.nsecsElapsed() / 1e9;
    // The shell's import: from the package's database back over the live one.
    const double shellIn = Shell(Copy_Script(site + QStringLiteral("/Exp/exp.mdb"), site + QStringLiteral("/db/morix.mdb")));
    if (!out.ok || !gone.ok || !in.ok) {
        std::printf("failed: %s %s %s\n", qPrintable(out.message), qPrintable(gone.message), qPrintable(in.message));
        Main_Shutdown();
        return 1;
    }
    auto Line = [&](const char* what, double s, double base) {
        std::printf("  %-28s %8.2f s  %9.0f rows/s  %5.2f x the sqlite3 shell (%.2f s)\n", what, s, rows / s, s / base, base);
    };
    Line("export (rows, zip)", exportTime, shellOut);
    Line("import (unzip, rows)", importTime, shellIn);
    std::printf("  %-28s %8.2f s\n", "delete", deleteTime);
    std::printf("  package %.1f MB\n", QFile(site + QStringLiteral("/Exp/year.zip")).size() / 1e6);
    Main_Shutdown();
    return 0;
}
