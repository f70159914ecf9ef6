// Remote reception's transfer: 100 packages fetched (and deleted on the
// server) from a loopback FTP server, beside the curl command line fetching
// the same files over one connection.
//   build/bench/bench_remote
#include "BenchApp.h"

#include "exchange/Remote_Reception.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <cstdio>

using namespace vex;

namespace {

struct Server {
    QProcess p;
    int port = 0;
    explicit Server(const QString& root)
    {
        p.start(QStringLiteral("/usr/bin/python3"),
                {QStringLiteral(VEX_SOURCE_DIR "/tests/support/ftp_server.py"), root, QStringLiteral("site"),
                 QStringLiteral("secret")});
        for (int i = 0; i < 200 && !p.canReadLine() && p.state() != QProcess::NotRunning; ++i)
            p.waitForReadyRead(100);
        const QList<QByteArray> w = p.readLine().trimmed().split(' ');
        port = w.size() == 2 ? w[1].toInt() : 0;
    }
    ~Server()
    {
        p.kill();
        p.waitForFinished();
    }
};

void Put_Files(const QString& folder, int n)
{
    QDir().mkpath(folder);
    for (int i = 0; i < n; ++i) {
        QByteArray bytes(64 * 1024, '\0');
        for (char& c : bytes)
            c = char(QRandomGenerator::global()->bounded(256));
        QFile f(QStringLiteral("%1/pkg%2.bin").arg(folder).arg(i, 3, 10, QLatin1Char('0')));
        f.open(QIODevice::WriteOnly);
        f.write(bytes);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir root;
    const QString ftp = root.path() + QStringLiteral("/ftp"), folder = ftp + QStringLiteral("/firm_st");
    Put_Files(folder, 100);
    Server server(ftp);
    if (server.port == 0) {
        std::printf("no FTP server (python3-pyftpdlib)\n");
        return 1;
    }
    // The command line: the same 100 files over one connection.
    QStringList args{QStringLiteral("-s"), QStringLiteral("-u"), QStringLiteral("site:secret")};
    for (const QString& name : QDir(folder).entryList(QDir::Files))
        args << QStringLiteral("ftp://127.0.0.1:%1/firm_st/%2").arg(server.port).arg(name) << QStringLiteral("-o")
             << root.path() + QStringLiteral("/curl-") + name;
    QElapsedTimer t;
    t.start();
    QProcess curl;
    curl.start(QStringLiteral("curl"), args);
    curl.waitForFinished(-1);
    const double base = t.nsecsElapsed() / 1e9;

    Ftp_Settings s;
    s.agent = QStringLiteral("12345678");
    s.host = QStringLiteral("127.0.0.1");
    s.user = QStringLiteral("site");
    s.password = QStringLiteral("secret");
    s.folder = QStringLiteral("firm_st");
    s.port = server.port;
    bench::Start_App(root.path() + QStringLiteral("/site"));
    t.restart();
    const Remote_Outcome out = Remote_Transfer(s);
    const double ours = t.nsecsElapsed() / 1e9;
    std::printf("100 files of 64 KiB: transfer %.3f s (%d fetched and deleted), curl %.3f s, %.2f x\n", ours,
                int(out.downloaded.size()), base, ours / base);
    Main_Shutdown();
    return 0;
}
