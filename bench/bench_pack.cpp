// Memory pack reception against the analyzer emulator, and the decoding and
// storing of saved pack files.
//
//  1. A full reception of a 31-day pack (find, check, read, mark the pack,
//     decode the inbox), beside the time the same bytes need on a 115,200
//     baud line (10 bits a byte, both directions).
//  2. Decoding and storing 1,000 saved pack files, per file, beside reading
//     the same files plainly.
#include "acquisition/AnalyzerLink.h"
#include "acquisition/Cls_IO.h"
#include "acquisition/Inbox.h"
#include "app/Start_Up.h"
#include "samples/PackSampler.h"
#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "registers/Settings_Load.h"
#include "platform/AppFolder.h"
#include "platform/SerialPort.h"
#include "store/Cls_DB.h"

#include "BenchApp.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>

using namespace vex;
using vex::bench::Start_App;

namespace {

// The port with a count of the bytes that crossed it.
class CountingPort final : public AnalyzerPort {
public:
    bool open(int n) override { return port.open(n); }
    void close() override { port.close(); }
    bool isOpen() const override { return port.isOpen(); }
    int portNumber() const override { return port.portNumber(); }
    bool write(const QByteArray& data) override
    {
        bytes += data.size();
        return port.write(data);
    }
    QByteArray readAll() override
    {
        const QByteArray data = port.readAll();
        bytes += data.size();
        return data;
    }
    bool waitForReadyRead(int msecs) override { return port.waitForReadyRead(msecs); }

    SerialPort port;
    qint64 bytes = 0;
};

QString Start_Emulator(QProcess& emulator, const QString& image)
{
    emulator.start(QStringLiteral(VEX_ANALYZER_PATH), {QStringLiteral("--image"), image});
    QDeadlineTimer deadline(20000);
    while (!emulator.canReadLine() && !deadline.hasExpired())
        emulator.waitForReadyRead(100);
    return QString::fromLocal8Bit(emulator.readLine()).trimmed();
}

double Reception(const QString& root)
{
    PackSampleRequest request;
    request.car = QStringLiteral("0001");
    request.driver = QStringLiteral("0002");
    request.first = QDate::currentDate().addDays(-31);
    request.days = 31;
    request.lastRead = QDateTime(request.first.addDays(-1), QTime(18, 0));
    QString error;
    const auto sample = Make_Sample_Pack(request, &error);
    const QString image = root + QStringLiteral("/pack.img");
    if (!sample || !sample->image.Save(image)) {
        std::fprintf(stderr, "sample pack: %s\n", qPrintable(error));
        return 0;
    }
    QProcess emulator;
    qputenv("VEX_SERIAL_PORTS", Start_Emulator(emulator, image).toUtf8());
    Start_App(root + QStringLiteral("/reception"));

    QElapsedTimer t;
    t.start();
    CountingPort port;
    AnalyzerLink link(port);
    Apply_Link_Result(link.Find_Analyzer());
    G().IO->Link = &link;
    link.SIO_PackCheck();
    G().IO->Pack_Reads();
    const double linkSeconds = t.nsecsElapsed() / 1e9;
    const int decoded = Inbox_Pass(*G().DB);
    const double seconds = t.nsecsElapsed() / 1e9;
    G().IO->Link = nullptr;
    emulator.terminate();
    emulator.waitForFinished();

    const double wire = port.bytes * 10.0 / 115200.0;
    std::printf("reception of a 31-day pack (%d days decoded, %lld bytes on the line)\n", decoded,
                static_cast<long long>(port.bytes));
    std::printf("  wire time at 115,200 baud  %8.2f s   (baseline)\n", wire);
    std::printf("  link work (find..mark)     %8.2f s   %5.2f x wire\n", linkSeconds, linkSeconds / wire);
    std::printf("  whole reception            %8.2f s   %5.2f x wire   (goal: within 1.15)\n", seconds,
                seconds / wire);
    return seconds;
}

void Decoding(const QString& root)
{
    // 1,000 distinct days: the 31 archived files of the reception under 33 car codes.
    const QDir archive(root + QStringLiteral("/reception/mpack/0001"));
    const QStringList days = archive.entryList(QDir::Files, QDir::Name);
    const QString work = root + QStringLiteral("/files");
    QDir().mkpath(work);
    QStringList files;
    for (int car = 0; files.size() < 1000 && !days.isEmpty(); ++car) {
        for (const QString& name : days) {
            if (files.size() == 1000)
                break;
            QFile in(archive.filePath(name));
            in.open(QIODevice::ReadOnly);
            QByteArray bytes = in.readAll();
            const QByteArray code = QByteArray::number(1000 + car).right(4);
            bytes.replace(4, 4, code);      // day line, car code
            bytes.replace(4096 + 4, 4, code); // distance line
            const QString path = work + QStringLiteral("/%1_%2").arg(car).arg(name);
            QFile out(path);
            out.open(QIODevice::WriteOnly);
            out.write(bytes);
            files << path;
        }
    }
    Start_App(root + QStringLiteral("/decoding"));

    QElapsedTimer t;
    t.start();
    qint64 sum = 0;
    for (const QString& path : files) {
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        sum += f.readAll().size();
    }
    const double read = t.nsecsElapsed() / 1e9;
    t.restart();
    for (const QString& path : files)
        G().IO->Pack_File_Read1(*G().DB, path);
    const double decode = t.nsecsElapsed() / 1e9;
    const qint64 rows = G().DB->DB_RSet_D_D(QStringLiteral("SELECT COUNT(*) AS N FROM D_D1")).Field(QStringLiteral("N")).toLongLong();
    std::printf("decoding and storing %lld saved pack files (%lld bytes, %lld days stored)\n",
                static_cast<long long>(files.size()), static_cast<long long>(sum), static_cast<long long>(rows));
    std::printf("  plain read of the files    %8.3f s   (baseline)\n", read);
    std::printf("  decode and store           %8.3f s   %5.1f ms a file   %6.0f x read\n", decode,
                1000 * decode / files.size(), decode / read);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir root;
    Reception(root.path());
    Decoding(root.path());
    Main_Shutdown();
    return 0;
}
