// The agency files of a month: 50 cars in the minute form and 5 cars in the
// second form, beside writing the same bytes into the same folders with one
// plain write a file; each three times, in turns.
//   build/bench/bench_agency
#include "BenchApp.h"

#include "app/Start_Up.h"
#include "exchange/Agency_File.h"
#include "store/DayFile.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <unistd.h>

using namespace vex;

namespace {

QString Hex2(int v)
{
    return QStringLiteral("%1").arg(v & 0xFF, 2, 16, QLatin1Char('0')).toUpper();
}

// A month of working days for cars of one model, straight into the file.
void Fill(const QString& db, int firstCar, int cars, const QString& model)
{
    QSqlDatabase c = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fill"));
    c.setDatabaseName(db);
    c.open();
    c.transaction();
    QSqlQuery q(c);
    for (int k = firstCar; k < firstCar + cars; ++k) {
        const QString car = QStringLiteral("%1").arg(k, 4, 16, QLatin1Char('0')).toUpper() + QStringLiteral("00");
        const QString driver = QStringLiteral("00%1").arg(k, 4, 16, QLatin1Char('0')).toUpper();
        q.prepare(QStringLiteral("INSERT INTO S_D1 (D_F1, D_F3, D_F5, D_F6) VALUES (?, ?, '4.25', ?)"));
        q.addBindValue(car);
        q.addBindValue(QStringLiteral("V-%1").arg(k));
        q.addBindValue(model);
        q.exec();
        for (int d = 1; d <= 30; ++d) {
            const QString day = QStringLiteral("2604%1").arg(d, 2, 10, QLatin1Char('0'));
            const QString key = car + driver + day;
            QString speed, dist;
            for (int m = 0; m < 1440; ++m) {
                const bool on = m >= 420 && m < 1020;
                speed += Hex2(on ? int(50 + 40 * std::sin(m / 7.0)) : 0);
                dist += on ? QStringLiteral("08") : QStringLiteral("00");
            }
            for (const auto& [table, text] : {std::pair{QStringLiteral("D_D3"), speed}, {QStringLiteral("D_D7"), dist}}) {
                q.prepare(QStringLiteral("INSERT INTO %1 (D_F1, D_F2) VALUES (?, ?)").arg(table));
                q.addBindValue(key);
                q.addBindValue(text);
                q.exec();
            }
            q.prepare(QStringLiteral("INSERT INTO D_D1 (D_F1, D_F2, D_F3, D_F4, D_F8) VALUES (?, ?, ?, ?, 480)"));
            for (const QString& v : {key, car, driver, day})
                q.addBindValue(v);
            q.exec();
            if (model == QLatin1String("250")) {
                DayFile f{std::vector<uint8_t>(kDayArray, 0), std::vector<uint8_t>(kDayArray, 0), {}};
                for (int s = 25200; s < 61200; ++s) {
                    f.speed[size_t(s)] = uint8_t(50 + 40 * std::sin(s / 420.0));
                    f.engine[size_t(s)] = 40;
                }
                const QString path = Local_Path(Day_File_Name(car, driver, day));
                QDir().mkpath(QFileInfo(path).absolutePath());
                Write_Day_File(path, f);
            }
        }
    }
    c.commit();
    c.close();
}

// The same bytes, one plain write a file, into the same numbered folders
// made anew under another root (from: the run's "\report").
double Plain_Write(const QStringList& files, const QString& from, const QString& to)
{
    std::vector<std::pair<QString, QByteArray>> contents;
    for (const QString& f : files) {
        QFile in(f);
        in.open(QIODevice::ReadOnly);
        contents.emplace_back(to + f.mid(from.size()), in.readAll());
    }
    ::sync();
    QElapsedTimer t;
    t.start();
    QString folder;
    for (const auto& [path, bytes] : contents) {
        if (QFileInfo(path).path() != folder) {
            folder = QFileInfo(path).path();
            QDir().mkpath(folder);
        }
        QFile out(path);
        out.open(QIODevice::WriteOnly | QIODevice::Truncate);
        out.write(bytes);
    }
    return t.nsecsElapsed() / 1e9;
}

void Run(const char* what, const QString& root, int cars, const QString& model)
{
    const QString site = root + QLatin1Char('/') + model;
    bench::Start_App(site);
    G().DB.reset();
    Fill(site + QStringLiteral("/db/morix.mdb"), 0x100, cars, model);
    QSqlDatabase::removeDatabase(QStringLiteral("fill"));
    G().DB = std::make_unique<Cls_DB>();
    // Three runs of each, one after the other, and the median of each: the
    // page cache's write-back makes a single plain write of this size take
    // anything from a tenth to a whole second.
    std::vector<double> ours, plain;
    Agency_Result r;
    for (int run = 0; run < 3; ++run) {
        // Both write new files: the run's removal of the last run's folders
        // is no part of the writing measured.
        QDir(site + QStringLiteral("/report")).removeRecursively();
        QDir(root + QStringLiteral("/plain-") + model).removeRecursively();
        ::sync(); // each starts with nothing left to write back
        QElapsedTimer t;
        t.start();
        r = Write_Agency_Files(*G().DB, {QStringLiteral("회사"), QStringLiteral("123")}, QStringLiteral("260401"),
                               QStringLiteral("260430"));
        ours.push_back(t.nsecsElapsed() / 1e9);
        plain.push_back(Plain_Write(r.written, site + QStringLiteral("/report"), root + QStringLiteral("/plain-") + model));
    }
    std::sort(ours.begin(), ours.end());
    std::sort(plain.begin(), plain.end());
    qint64 bytes = 0;
    for (const QString& f : r.written)
        bytes += QFileInfo(f).size();
    std::printf("%s: %lld files, %.1f MB  %.3f s  (plain writes %.3f s)  %.2f x  (medians of 3)\n", what,
                static_cast<long long>(r.written.size()), bytes / 1e6, ours[1], plain[1], ours[1] / plain[1]);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir root;
    Run("minute form, 50 cars x 30 days", root.path(), 50, QStringLiteral("120"));
    Run("second form,  5 cars x 30 days", root.path(), 5, QStringLiteral("250"));
    Main_Shutdown();
    return 0;
}
