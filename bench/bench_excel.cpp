// A carday workbook of 10,000 day rows filled from its template, beside
// Python's xlsxwriter (Debian python3-xlsxwriter) writing the same cells
// into a new workbook in the same run. Our time includes reading the rows
// from the database; the peer gets its cells ready in memory.
//   build/bench/bench_excel [rows]
#include "BenchApp.h"

#include "app/Start_Up.h"
#include "reports/Excel_Report.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <cstdio>

using namespace vex;

namespace {

const char* const kPeer = R"(
import sys, time, xlsxwriter
rows = int(sys.argv[2])
cells = [["2026-01-%02d" % (1 + r % 28), "%06d" % (r // 10), "08:10", "17:42", (1000 + r) / 10.0,
          r % 5, r % 3, r % 2, 0, r % 4, 100 - r % 30] for r in range(rows)]
t = time.perf_counter()
wb = xlsxwriter.Workbook(sys.argv[1])
ws = wb.add_worksheet("list")
for r, row in enumerate(cells):
    for c, v in enumerate(row):
        ws.write(5 + r, c, v)
wb.close()
print("%.6f" % (time.perf_counter() - t))
)";

void Fill(const QString& dbPath, int rows)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fill"));
    db.setDatabaseName(dbPath);
    db.open();
    db.transaction();
    QSqlQuery q(db);
    q.prepare(QStringLiteral("INSERT INTO D_D1 (D_F1,D_F2,D_F3,D_F4,D_F5,D_F6,D_F7,D_F8,D_F9,D_F10,D_F11,D_F12,D_F13,"
                             "D_F14) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?)"));
    for (int r = 0; r < rows; ++r) {
        const QString driver = QStringLiteral("%1").arg(r / 10, 6, 10, QLatin1Char('0'));
        const QString day = QStringLiteral("2601%1").arg(1 + r % 28, 2, 10, QLatin1Char('0'));
        for (const QVariant& v : QVariantList{QStringLiteral("000101") + driver + day, "000101", driver, day, "0810", day,
                                              "1742", 1000 + r, r % 3, r % 2, r % 5, r % 4, 0, 100 - r % 30})
            q.addBindValue(v);
        q.exec();
    }
    db.commit();
    db.close();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int rows = argc > 1 ? std::atoi(argv[1]) : 10000;
    QTemporaryDir dir;
    bench::Start_App(dir.path());
    G().DB.reset();
    Fill(dir.filePath(QStringLiteral("db/morix.mdb")), rows);
    G().DB = std::make_unique<Cls_DB>();

    QElapsedTimer t;
    t.start();
    const Excel_Result r = Excel_Car_Day(*G().DB, dir.path(), Excel_Selection{"000101", {}, "260101", "260131"});
    const double ours = t.nsecsElapsed() / 1e9;
    if (r.outcome != Excel_Result::Written) {
        std::printf("carday failed: %s\n", qPrintable(r.message));
        Main_Shutdown();
        return 1;
    }

    QProcess peer;
    peer.start(QStringLiteral("/usr/bin/python3"),
               {QStringLiteral("-c"), QString::fromUtf8(kPeer), dir.filePath(QStringLiteral("peer.xlsx")),
                QString::number(rows)});
    peer.waitForFinished(600000);
    bool ok = false;
    const double theirs = QString::fromUtf8(peer.readAllStandardOutput()).trimmed().toDouble(&ok);
    std::printf("carday, %d rows: %.3f s (template, libzip + pugixml, with the query)\n", rows, ours);
    if (!ok) {
        std::printf("xlsxwriter: not run (%s)\n", peer.readAllStandardError().constData());
        Main_Shutdown();
        return 0;
    }
    std::printf("xlsxwriter, same cells: %.3f s\nratio ours/xlsxwriter: %.2f\n", theirs, ours / theirs);
    Main_Shutdown();
    return 0;
}
