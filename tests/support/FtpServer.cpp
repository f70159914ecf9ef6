#include "support/FtpServer.h"

#include <QDeadlineTimer>

namespace vex::test {

FtpServer::FtpServer(const QString& root, const QString& user, const QString& password, bool slow)
{
    QStringList args{QStringLiteral(VEX_TEST_SUPPORT "/ftp_server.py"), root, user, password};
    if (slow)
        args << QStringLiteral("slow");
    // Debian's interpreter, which has the packages the install script puts in.
    process_.start(QStringLiteral("/usr/bin/python3"), args);
    QDeadlineTimer deadline(20000);
    while (!process_.canReadLine() && !deadline.hasExpired() && process_.state() != QProcess::NotRunning)
        process_.waitForReadyRead(int(qMax<qint64>(1, deadline.remainingTime())));
    const QList<QByteArray> words = process_.readLine().trimmed().split(' ');
    if (words.size() == 2 && words[0] == "ready")
        port_ = words[1].toInt();
}

FtpServer::~FtpServer()
{
    Stop();
}

void FtpServer::Stop()
{
    if (process_.state() == QProcess::NotRunning)
        return;
    process_.kill();
    process_.waitForFinished(5000);
}

} // namespace vex::test
