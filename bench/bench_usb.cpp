// USB recorder media: decoding and storing a log beside reading it plainly.
//
//  1. A model "250" log of 31 days: the records into day files in \new
//     (Decode_Dat250), then the inbox pass that stores them.
//  2. A full model "130" file: every hour block, event record and minute
//     record in use (31 generated days, their hours and events repeated in
//     later months until the regions are full), filed and decoded.
//
// The baselines are the same file read in 1 MiB blocks in this process, and
// "cat FILE > /dev/null" run in the same run.
#include "acquisition/Inbox.h"
#include "acquisition/UsbRecorder.h"
#include "app/Start_Up.h"
#include "samples/UsbSampler.h"
#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "registers/Settings_Load.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"

#include "BenchApp.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>

using namespace vex;
using vex::bench::Start_App;

namespace {

// Seconds to read the file in 1 MiB blocks; the best of three.
double Plain_Read(const QString& path)
{
    double best = 1e9;
    for (int i = 0; i < 3; ++i) {
        QElapsedTimer t;
        t.start();
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        qint64 n = 0;
        while (!f.atEnd())
            n += f.read(1 << 20).size();
        best = std::min(best, t.nsecsElapsed() / 1e9);
    }
    return best;
}

double Cat(const QString& path)
{
    QElapsedTimer t;
    t.start();
    QProcess cat;
    cat.setStandardOutputFile(QProcess::nullDevice());
    cat.start(QStringLiteral("cat"), {path});
    cat.waitForFinished();
    return t.nsecsElapsed() / 1e9;
}

void Report(const char* what, qint64 bytes, double read, double cat, double work)
{
    const double mb = bytes / 1e6;
    std::printf("  plain read (1 MiB blocks)  %9.4f s  %8.1f MB/s  (baseline)\n", read, mb / read);
    std::printf("  cat to /dev/null           %9.4f s  %8.1f MB/s\n", cat, mb / cat);
    std::printf("  %-26s %9.4f s  %8.1f MB/s  %7.1f x read  %6.1f x cat  (goal: within 5 x)\n", what, work,
                mb / work, work / read, work / cat);
}

UsbSample Sample(const QString& model)
{
    UsbSampleRequest r;
    r.model = model;
    r.car = QStringLiteral("12AB00");
    r.driver = QStringLiteral("000123");
    r.first = QDate(2026, 1, 1);
    r.days = 31;
    QString error;
    auto s = Make_Sample_Usb(r, &error);
    if (!s) {
        std::fprintf(stderr, "sample: %s\n", qPrintable(error));
        std::exit(1);
    }
    return *s;
}

void Model250(const QString& root)
{
    const UsbSample s = Sample(QStringLiteral("250"));
    Write_Usb_Medium(s, root + QStringLiteral("/m250"));
    const QString log = root + QStringLiteral("/m250/SPDR0403.dat");
    Start_App(root + QStringLiteral("/site250"));
    Register_Usb_Decoders();
    const double read = Plain_Read(log), cat = Cat(log);

    Usb_State() = Usb_Reception{QStringLiteral("12AB00"), QStringLiteral("000123"), {}, {}, {}};
    QElapsedTimer t;
    t.start();
    Decode_Dat250(*G().DB, log);
    const double decode = t.nsecsElapsed() / 1e9;
    const int files = Inbox_Pass(*G().DB);
    const double all = t.nsecsElapsed() / 1e9;
    const qint64 rows =
        G().DB->DB_RSet_D_D(QStringLiteral("SELECT COUNT(*) AS N FROM D_D1")).Field(QStringLiteral("N")).toLongLong();
    std::printf("model 250, 31 days: %lld bytes, %d day files, %lld days stored\n", static_cast<long long>(s.log.size()),
                files, static_cast<long long>(rows));
    Report("decode to day files", s.log.size(), read, cat, decode);
    std::printf("  inbox pass (store)         %9.4f s\n", all - decode);
    Report("decode and store", s.log.size(), read, cat, all);
}

// Fills every free slot of a region with copies of its used records, the
// month moved on by one for each round (and the year after twelve), so that
// no copy meets another day.
void Fill(QByteArray& log, qint64 base, int count, int size, int monthByte,
          const std::function<qint64(int)>& at = {})
{
    auto At = [&](int k) { return at ? at(k) : base + qint64(k) * size; };
    QList<int> used;
    for (int k = 0; k < count; ++k)
        if (uint8_t(log[At(k)]) != 0xFF && uint8_t(log[At(k)]) != 0xFA && uint8_t(log[At(k) + 1]) != 0xFF)
            used << k;
    if (used.isEmpty())
        return;
    int next = 0;
    for (int round = 1; round < 48; ++round)
        for (int k : used) {
            while (next < count && uint8_t(log[At(next)]) != 0xFF)
                ++next;
            if (next >= count)
                return;
            const qint64 to = At(next);
            log.replace(to, size, log.mid(At(k), size));
            const int month = 1 + round % 12, year = 26 + round / 12;
            log[to + monthByte - 1] = char(((year / 10) << 4) | (year % 10));
            log[to + monthByte] = char(((month / 10) << 4) | (month % 10));
        }
}

void Model130(const QString& root)
{
    UsbSample s = Sample(QStringLiteral("130"));
    Fill(s.log, 0, kHourBlocks130, kBlock130, 2);
    Fill(s.log, kEventRegion130, kEventRecords130, kEventRecord130, 1);
    Fill(s.log, 0, kMinuteRecords130A + kMinuteRecords130B, kMinuteRecord130, 1, [](int k) {
        return k < kMinuteRecords130A ? kMinuteRegion130A + qint64(k) * kMinuteRecord130
                                      : kMinuteRegion130B + qint64(k - kMinuteRecords130A) * kMinuteRecord130;
    });
    Write_Usb_Medium(s, root + QStringLiteral("/m130"));
    const QString log = root + QStringLiteral("/m130/SPDR0403.dat");
    Start_App(root + QStringLiteral("/site130"));
    Register_Usb_Decoders();
    const double read = Plain_Read(log), cat = Cat(log);

    const Filing_Note who{QStringLiteral("12AB00"), QStringLiteral("000123"), QStringLiteral("000101"),
                          QStringLiteral("991231")};
    QElapsedTimer t;
    t.start();
    const QString filed = File_Dat130(log, who, QDate(2026, 2, 1));
    const double filing = t.nsecsElapsed() / 1e9;
    Inbox_Pass(*G().DB);
    const double all = t.nsecsElapsed() / 1e9;
    const qint64 rows =
        G().DB->DB_RSet_D_D(QStringLiteral("SELECT COUNT(*) AS N FROM D_D1")).Field(QStringLiteral("N")).toLongLong();
    std::printf("model 130, full file: %lld bytes, %lld days stored\n", static_cast<long long>(s.log.size()),
                static_cast<long long>(rows));
    std::printf("  filing into \\new           %9.4f s\n", filing);
    Report("file, decode and store", s.log.size(), read, cat, all);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir root;
    Model250(root.path());
    Model130(root.path());
    Main_Shutdown();
    return 0;
}
