#include "core/Err_Proc.h"

#include "core/Mod_Main.h"

#include <QDateTime>
#include <QFile>
#include <QMutex>
#include <QTextStream>

namespace vex {

QString Err_Log_Path()
{
    const QString dir = G().App_Dir;
    return dir.isEmpty() ? QString() : dir + QStringLiteral("/vex-error.log");
}

namespace {
QString& Last()
{
    static QString last;
    return last;
}
// Jobs log from their worker threads: one line at a time.
QMutex& Log_Lock()
{
    static QMutex lock;
    return lock;
}
} // namespace

QString Err_Last()
{
    QMutexLocker locked(&Log_Lock());
    return Last();
}

void Err_Proc(int16_t code, const QString& text)
{
    QMutexLocker locked(&Log_Lock());
    // A code without a label is still written: no failure goes unsaid.
    QString label = Err_Label(code);
    if (label.isEmpty())
        label = QStringLiteral("code %1").arg(code);
    Last() = label + QStringLiteral(": ") + text;
    const QString line = QStringLiteral("%1\t%2\t%3\t%4\n")
                             .arg(QDateTime::currentDateTime().toString(Qt::ISODate))
                             .arg(code)
                             .arg(label, QString(text).replace(QLatin1Char('\n'), QLatin1Char(' ')));
    QFile log(Err_Log_Path());
    if (!log.fileName().isEmpty() && log.open(QIODevice::Append | QIODevice::Text)) {
        log.write(line.toUtf8());
        return;
    }
    // No folder to write into (before start-up, or read-only): the developer's
    // stream, never a window.
    QTextStream(stderr) << "vex: " << line;
}

} // namespace vex
