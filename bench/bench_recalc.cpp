// "새 기준 적용" over 1,000 trips with their day files, beside a plain read
// of the same day files in the same run (goal: the recount of a trip
// within 5 times the read of its day file, the counting on every processor,
// each trip committed as soon as it is counted); and the daily report of a trip
// rendered to PDF (goal: under 200 ms a page).
//
// The trips are 40 cars x 25 days of generated driving (the sample
// generator's days from the standard cycles), stored through the ingest of
// a USB day: day file, minute distance, detector, summary row.
#include "app/Start_Up.h"
#include "samples/DrivingProfile.h"
#include "analysis/New_Standards.h"
#include "analysis/Operation_Graph.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "reports/Cls_Report.h"
#include "reports/Report_Printer.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/EventDetector.h"
#include "store/Job_Runner.h"

#include "BenchApp.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace vex;

namespace {

constexpr int kCars = 40, kDays = 25;

struct Day_Arrays {
    std::vector<uint8_t> speed, engine;
    std::vector<float> metres; // 1 to 1440
};

// A generated working day as the recorder's arrays: element s is second s.
Day_Arrays Arrays_Of(const DrivingDay& day)
{
    Day_Arrays a{std::vector<uint8_t>(kDayArray, 0), std::vector<uint8_t>(kDayArray, 0),
                 std::vector<float>(kDayMinutes + 1, 0)};
    double before = 0;
    for (int s = 0; s < DrivingDay::kSeconds; ++s) {
        const DriveSecond& d = day.seconds[size_t(s)];
        a.speed[size_t(s)] = uint8_t(std::clamp(d.speed, 0, 254));
        a.engine[size_t(s)] = d.engineOn ? uint8_t(std::clamp(d.rpm / 40, 1, 254)) : 0;
        if (s % 60 == 59) {
            a.metres[size_t(s / 60 + 1)] = float((d.distanceKm - before) * 1000);
            before = d.distanceKm;
        }
    }
    return a;
}

QString Car(int c)
{
    return QStringLiteral("C%1").arg(c, 3, 10, QLatin1Char('0')) + QStringLiteral("00");
}

QString Day(int d)
{
    return QStringLiteral("2601%1").arg(d + 1, 2, 10, QLatin1Char('0'));
}

const QString kDriver = QStringLiteral("000001");

double Ms(const QElapsedTimer& t)
{
    return t.nsecsElapsed() / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QTemporaryDir root;
    bench::Start_App(root.path());
    Cls_DB& db = *G().DB;
    Cls_Config& cfg = *G().Config;

    const auto cycles = CycleSet::Load(QString());
    if (!cycles) {
        std::fprintf(stderr, "bench_recalc: the driving cycles can't be read\n");
        return 1;
    }
    std::vector<Day_Arrays> days;
    for (int d = 0; d < kDays; ++d)
        days.push_back(Arrays_Of(Build_Driving_Day(*cycles, QDate(2026, 1, d + 1), uint64_t(1000 + d))));
    const std::vector<uint8_t> half(kHalfArray, 0); // kept, not read by the recount
    {
        Cls_DB::Batch batch(db);
        for (int c = 0; c < kCars; ++c)
            for (int d = 0; d < kDays; ++d) {
                QString car = Car(c), driver = kDriver, day = Day(d);
                const Day_Arrays& a = days[size_t((c + d) % kDays)];
                if (db.DB_Save_D_D2(car, driver, a.speed, a.engine, a.metres, day, half) != -1 ||
                    db.DB_Save_D_D1_file(car, driver, day) != -1) {
                    std::fprintf(stderr, "bench_recalc: %s %s not stored: %s\n", qPrintable(car), qPrintable(day),
                                 qPrintable(Err_Last()));
                    return 1;
                }
            }
    }
    const int trips = db.DB_RSet_D_D(QStringLiteral("SELECT D_F1 FROM D_D1")).RecordCount();

    // The baseline: each day file read whole, as the recount reads it.
    std::vector<QString> paths;
    for (int c = 0; c < kCars; ++c)
        for (int d = 0; d < kDays; ++d)
            paths.push_back(Trip_Day_File(db, cfg.U_PackDir, Car(c), kDriver, Day(d)).path);
    qint64 bytes = 0;
    auto read_all = [&] {
        for (const QString& p : paths) {
            QFile f(p);
            f.open(QIODevice::ReadOnly);
            bytes += f.readAll().size();
        }
    };
    read_all(); // into the page cache, as for the recount after it
    QElapsedTimer t;
    // Each figure below is the median of five runs: a run takes a tenth of a
    // second, which another process on the machine can stretch by half.
    auto Median = [&t](const std::function<void()>& run) {
        std::vector<double> ms;
        for (int i = 0; i < 5; ++i) {
            t.start();
            run();
            ms.push_back(Ms(t));
        }
        std::sort(ms.begin(), ms.end());
        return ms[2];
    };
    const double readMs = Median([&] {
        bytes = 0;
        read_all();
    });

    // The detector alone over one day, the part of the recount that no read
    // or write can save.
    const DayFile one = Read_Day_File(paths.front());
    int events = 0;
    t.start();
    for (int i = 0; i < 100; ++i)
        events += Detect_Day_Events(one.speed, one.engine, EventLimits{}).Brack;
    const double detectMs = Ms(t) / 100;

    // The recount's stages apart: every trip's rows read on the connection's
    // thread, then its day file read and counted on one processor.
    std::vector<Trip_Reading> readings;
    t.start();
    {
        Recordset rows = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1"));
        const Car_Limits limits = Read_Car_Limits(db, cfg);
        for (int first = 0; first < rows.RecordCount(); first += 16)
            for (Trip_Reading& r : Read_Trips(db, cfg, limits, rows, first, 16))
                readings.push_back(std::move(r));
    }
    const double readTripsMs = Ms(t);
    t.start();
    for (Trip_Reading& r : readings)
        Count_Trip(cfg, r);
    const double countTripsMs = Ms(t);
    readings.clear();

    // The recount under a stricter brake and back, every row written as it
    // is done: each run changes every row.
    Recount_Summary sum;
    const double recountMs = Median([&] {
        cfg.B_Val9 = cfg.B_Val9 == 15 ? 9 : 15;
        sum = Apply_New_Standards(db, cfg, {});
    });
    // The same in the worker with its own connection.
    const double workerMs = Median([&] {
        cfg.B_Val9 = cfg.B_Val9 == 15 ? 9 : 15;
        Job_Runner runner(db.Target());
        runner.Start([&cfg](Job& job) -> std::any { return Recount_Job(job, cfg); });
        runner.Wait();
    });
    // What writing each trip at once costs: the same recount with all rows
    // in one transaction (not how it runs, for the comparison only).
    const double batchMs = Median([&] {
        cfg.B_Val9 = cfg.B_Val9 == 15 ? 9 : 15;
        Cls_DB::Batch batch(db);
        Apply_New_Standards(db, cfg, {});
    });

    // The daily report of a trip to PDF; the median of several.
    Cls_Report report;
    report.Car_Code = Car(0);
    report.Driver_Code = kDriver;
    report.Start_Date = Day(0);
    Operation_Graph og(db);
    og.DB_Search_Data2(nullptr, report.Car_Code, report.Driver_Code, report.Start_Date);
    const int pages = int(og.Sections.size()) > Cls_Report::kDayTableRows ? 2 : 1;
    std::vector<double> renders;
    for (int i = 0; i < 9; ++i) {
        Pdf_Printer printer(root.path() + QStringLiteral("/day%1.pdf").arg(i));
        t.start();
        report.Report_Drive_Day(printer, db);
        renders.push_back(Ms(t));
    }
    std::sort(renders.begin(), renders.end());

    const double perRead = readMs / double(paths.size()), perRecount = recountMs / double(trips);
    std::printf("recount of %d trips with their day files (%lld bytes read a pass)\n", trips,
                static_cast<long long>(bytes));
    std::printf("  %-44s %8.3f ms a trip  (baseline)\n", "plain read of the day file", perRead);
    std::printf("  %-44s %8.3f ms a trip  %6.2f x read  (%d brakes)\n", "the detector's pass over one day",
                detectMs, detectMs / perRead, events / 100);
    std::printf("  %-44s %8.3f ms a trip  %6.2f x read\n", "reading a trip's rows",
                readTripsMs / double(trips), readTripsMs / double(trips) / perRead);
    std::printf("  %-44s %8.3f ms a trip  %6.2f x read\n", "its day file read and counted, one processor",
                countTripsMs / double(trips), countTripsMs / double(trips) / perRead);
    std::printf("  %-44s %8.3f ms a trip  %6.2f x read (goal 5)\n", "recount, written trip by trip", perRecount,
                perRecount / perRead);
    std::printf("  %-44s %8.3f ms a trip  %6.2f x read\n", "the same in the worker, own connection",
                workerMs / double(trips), workerMs / double(trips) / perRead);
    std::printf("  %-44s %8.3f ms a trip  %6.2f x read\n", "(all rows in one commit, for comparison)",
                batchMs / double(trips), batchMs / double(trips) / perRead);
    std::printf("  rows changed %d of %d, without day file %d, failed %d\n", sum.changed, sum.total,
                sum.withoutDayFile, sum.failed);
    const double render = renders[renders.size() / 2];
    std::printf("daily report of a trip to PDF, %d page(s), %zu sections\n", pages, og.Sections.size());
    std::printf("  %-44s %8.1f ms, %.1f ms a page (goal 200 ms a page)\n", "median of 9", render, render / pages);
    Main_Shutdown();
    return 0;
}
