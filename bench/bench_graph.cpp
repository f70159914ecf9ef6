// The operation graphs: fetching and decoding a stored day (and an hour of
// seconds), and drawing frame and plot into a 1920x1080 image, beside a
// baseline measured in the same run: filling the same image with one
// colour. Goal: fetch plus draw of a day or an hour within 16 ms, so that
// a zoom feels instant; a cursor move only lays the cursor over the picture
// already drawn, measured last.
//
// The day is a generated model "250" medium received by vexcli (next to
// this program in the build tree, or $VEXCLI).
#include "analysis/Graph_Surface.h"
#include "analysis/Operation_Graph.h"
#include "app/Start_Up.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

#include "BenchApp.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace vex;

namespace {

const QString kCar = QStringLiteral("12AB00"), kDriver = QStringLiteral("000123"), kDay = QStringLiteral("260105");

bool Vexcli(const QStringList& args)
{
    QString path = qEnvironmentVariable("VEXCLI");
    if (path.isEmpty())
        path = QCoreApplication::applicationDirPath() + QStringLiteral("/../src/vexcli");
    QProcess p;
    p.start(path, args);
    if (!p.waitForFinished(120000) || p.exitCode() != 0) {
        std::fprintf(stderr, "%s %s failed: %s\n", qPrintable(path), qPrintable(args.join(' ')),
                     p.readAllStandardError().constData());
        return false;
    }
    return true;
}

// Milliseconds of one run of work: the median of many.
double Median_Ms(const std::function<void()>& work, int runs = 41)
{
    std::vector<double> t;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        t.push_back(timer.nsecsElapsed() / 1e6);
    }
    std::sort(t.begin(), t.end());
    return t[t.size() / 2];
}

void Line(const char* what, double ms, double base)
{
    std::printf("  %-34s %8.3f ms  %7.1f x fill\n", what, ms, ms / base);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QTemporaryDir root;
    const QString medium = root.path() + QStringLiteral("/medium"), site = root.path() + QStringLiteral("/site");
    if (!Vexcli({"sample", "usb", "--model", "250", "--out", medium, "--car", kCar, "--driver", kDriver, "--from",
                 kDay, "--days", "1"}) ||
        !Vexcli({"--app-dir", site, "receive", "usb", "--model", "250", "--medium", medium}))
        return 1;
    bench::Start_App(site);

    QImage image(1920, 1080, QImage::Format_RGB32);
    const double fill = Median_Ms([&] { image.fill(Qt::white); });

    Operation_Graph og(*G().DB);
    const double dayFetch = Median_Ms([&] { og.DB_Search_Data(nullptr, kCar, kDriver, kDay); });
    // Frame and plot on the image, as a window's picture is drawn.
    auto draw = [&](void (Operation_Graph::*routine)(Graph_Surface&)) {
        image.fill(Qt::white);
        QPainter p(&image);
        Graph_Surface s(p, image.rect(), true);
        (og.*routine)(s);
    };
    auto drawDay = [&] { draw(&Operation_Graph::Draw_Day); };
    const double dayDraw = Median_Ms(drawDay);
    QString hour = QStringLiteral("08");
    const double hourFetch = Median_Ms([&] { og.DB_Search_SecData2(nullptr, kCar, kDriver, kDay, hour); });
    const double hourDraw = Median_Ms([&] { draw(&Operation_Graph::Draw_Hour); });

    // A cursor move: the picture already drawn, copied to the window's
    // image, and the cursor line over it.
    drawDay();
    QImage window(image.size(), image.format());
    const double cursor = Median_Ms([&] {
        QPainter p(&window);
        p.drawImage(0, 0, image);
        p.setPen(Qt::black);
        p.drawLine(960, 50, 960, 1000);
    });

    std::printf("operation graphs, one received day (%s %s %s), 1920x1080 image\n", qPrintable(kCar),
                qPrintable(kDriver), qPrintable(kDay));
    std::printf("  %-34s %8.3f ms  (baseline)\n", "fill the image with one colour", fill);
    Line("day: fetch and decode", dayFetch, fill);
    Line("day: draw frame and plot", dayDraw, fill);
    Line("day: fetch and draw (goal 16 ms)", dayFetch + dayDraw, fill);
    Line("hour: fetch and decode", hourFetch, fill);
    Line("hour: draw frame and plot", hourDraw, fill);
    Line("hour: fetch and draw (goal 16 ms)", hourFetch + hourDraw, fill);
    Line("cursor move over the drawn day", cursor, fill);
    Main_Shutdown();
    return 0;
}
