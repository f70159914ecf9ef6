#include "platform/IniFile.h"

#include <QFile>

namespace vex {

namespace {
constexpr int kBufferChars = 255; // one is the terminating NUL
}

QString Read_INI(const QString& section, const QString& key, const QString& file)
{
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    // INI files of this system are ASCII or UTF-8; a stray byte must not stop the read.
    const QString text = QString::fromUtf8(f.readAll());
    bool inSection = false;
    for (QString line : text.split(QLatin1Char('\n'))) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char(';')))
            continue;
        if (line.startsWith(QLatin1Char('['))) {
            const int close = line.indexOf(QLatin1Char(']'));
            const QString name = line.mid(1, close < 0 ? -1 : close - 1).trimmed();
            inSection = name.compare(section, Qt::CaseInsensitive) == 0;
            continue;
        }
        if (!inSection)
            continue;
        const int eq = line.indexOf(QLatin1Char('='));
        if (eq < 0 || line.left(eq).trimmed().compare(key, Qt::CaseInsensitive) != 0)
            continue;
        QString value = line.mid(eq + 1).trimmed();
        if (value.size() >= 2 && value.startsWith(QLatin1Char('"')) && value.endsWith(QLatin1Char('"')))
            value = value.mid(1, value.size() - 2);
        return value.left(kBufferChars - 1);
    }
    return {};
}

} // namespace vex
