#include "support/Emulator.h"

#include <QDeadlineTimer>

namespace vex::test {

Emulator::Emulator(const QString& image, const QString& faults)
{
    QStringList args{QStringLiteral("--image"), image};
    if (!faults.isEmpty())
        args << QStringLiteral("--fault") << faults;
    process_.start(QStringLiteral(VEX_ANALYZER_PATH), args);
    QDeadlineTimer deadline(20000);
    while (!process_.canReadLine() && !deadline.hasExpired() && process_.state() != QProcess::NotRunning)
        process_.waitForReadyRead(int(qMax<qint64>(1, deadline.remainingTime())));
    tty_ = QString::fromLocal8Bit(process_.readLine()).trimmed();
}

Emulator::~Emulator()
{
    Stop();
}

int Emulator::Stop()
{
    if (process_.state() != QProcess::NotRunning) {
        process_.terminate();
        if (!process_.waitForFinished(10000)) {
            process_.kill();
            process_.waitForFinished();
        }
    }
    return process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
}

} // namespace vex::test
