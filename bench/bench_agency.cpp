// The agency files of a month: 50 cars in the minute form and 5 cars in the
// second form, beside writing the same bytes into the same folders with one
// plain write a file; each five times, in turns, in wall and processor time.
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
#include <ctime>
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

// Wall time and the processor time of the process, in seconds.
struct Clock {
    QElapsedTimer wall;
    timespec cpu{};
    void Start()
    {
        ::sync(); // each starts with nothing left to write back
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &cpu);
        wall.start();
    }
    std::pair<double, double> Stop() const
    {
        const double w = wall.nsecsElapsed() / 1e9;
        timespec now{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
        return {w, double(now.tv_sec - cpu.tv_sec) + double(now.tv_nsec - cpu.tv_nsec) / 1e9};
    }
};

// The same bytes, one plain write a file, into the same numbered folders
// made anew under another root (from: the run's "\report").
std::pair<double, double> Plain_Write(const QStringList& files, const QString& from, const QString& to)
{
    std::vector<std::pair<QString, QByteArray>> contents;
    for (const QString& f : files) {
        QFile in(f);
        in.open(QIODevice::ReadOnly);
        contents.emplace_back(to + f.mid(from.size()), in.readAll());
    }
    Clock t;
    t.Start();
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
    return t.Stop();
}

void Run(const char* what, const QString& root, int cars, const QString& model)
{
    const QString site = root + QLatin1Char('/') + model;
    bench::Start_App(site);
    G().DB.reset();
    Fill(site + QStringLiteral("/db/morix.mdb"), 0x100, cars, model);
    QSqlDatabase::removeDatabase(QStringLiteral("fill"));
    G().DB = std::make_unique<Cls_DB>();
    // Five runs of each, in turns, and the median of each, as wall time and
    // as the processor's time: the disk's write-back makes the same writes
    // take anything from a tenth to a whole second of wall time, while the
    // processor's time tells the work the program adds to the writing.
    std::vector<double> ours, plain, oursCpu, plainCpu;
    Agency_Result r;
    for (int run = 0; run < 5; ++run) {
        // Both write new files: the run's removal of the last run's folders
        // is no part of the writing measured.
        QDir(site + QStringLiteral("/report")).removeRecursively();
        QDir(root + QStringLiteral("/plain-") + model).removeRecursively();
        Clock t;
        t.Start();
        r = Write_Agency_Files(*G().DB, {QStringLiteral("회사"), QStringLiteral("123")}, QStringLiteral("260401"),
                               QStringLiteral("260430"));
        const auto [wall, cpu] = t.Stop();
        ours.push_back(wall);
        oursCpu.push_back(cpu);
        const auto [plainWall, plainCpuTime] =
            Plain_Write(r.written, site + QStringLiteral("/report"), root + QStringLiteral("/plain-") + model);
        plain.push_back(plainWall);
        plainCpu.push_back(plainCpuTime);
    }
    for (auto* v : {&ours, &plain, &oursCpu, &plainCpu})
        std::sort(v->begin(), v->end());
    qint64 bytes = 0;
    for (const QString& f : r.written)
        bytes += QFileInfo(f).size();
    std::printf("%s: %lld files, %.1f MB (medians of 5)\n", what, static_cast<long long>(r.written.size()), bytes / 1e6);
    std::printf("  wall       %.3f s  (plain writes %.3f s)  %.2f x\n", ours[2], plain[2], ours[2] / plain[2]);
    std::printf("  processor  %.3f s  (plain writes %.3f s)  %.2f x\n", oursCpu[2], plainCpu[2], oursCpu[2] / plainCpu[2]);
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
