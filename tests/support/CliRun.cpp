#include "support/CliRun.h"

#include <QProcess>
#include <QRegularExpression>

namespace vex::test {

QProcessEnvironment Korean_Offscreen()
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("VEX_LANG"), QStringLiteral("ko"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return env;
}

CliRun Vexcli(const QStringList& args, const QProcessEnvironment& env)
{
    QProcess p;
    // The reception report is read in English whatever the machine speaks.
    QProcessEnvironment e = env;
    if (!e.contains(QStringLiteral("VEX_LANG")))
        e.insert(QStringLiteral("VEX_LANG"), QStringLiteral("en"));
    p.setProcessEnvironment(e);
    p.start(QStringLiteral(VEXCLI_PATH), args);
    if (!p.waitForFinished(120000))
        p.kill();
    p.waitForFinished();
    return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
            QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
}

int Lines_Starting(const QString& out, const QString& word)
{
    return int(out.count(QRegularExpression("^" + word + " ", QRegularExpression::MultilineOption)));
}

} // namespace vex::test
