#include "support/XlsxRead.h"

#include <QProcess>

namespace vex::test {

int Xlsx_Sheet::Last_Row() const
{
    int last = 0;
    for (auto it = formats.begin(); it != formats.end(); ++it) {
        QString digits = it.key();
        while (!digits.isEmpty() && digits.front().isLetter())
            digits.remove(0, 1);
        last = std::max(last, digits.toInt());
    }
    return last;
}

Xlsx_Sheet Read_Xlsx(const QString& path, const QString& sheet)
{
    Xlsx_Sheet s;
    QProcess p;
    p.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral(VEX_TEST_SUPPORT "/xlsx_dump.py"), path, sheet});
    if (!p.waitForFinished(60000) || p.exitCode() != 0) {
        s.error = QString::fromUtf8(p.readAllStandardError());
        return s;
    }
    for (const QString& line : QString::fromUtf8(p.readAllStandardOutput()).split(QLatin1Char('\n'))) {
        const QStringList f = line.split(QLatin1Char('\t'));
        if (f[0] == QLatin1String("SHEET") && f.size() == 2)
            s.sheets = f[1].split(QLatin1Char(','));
        else if (f[0] == QLatin1String("CHARTS") && f.size() == 2)
            s.charts = f[1].toInt();
        else if (f[0] == QLatin1String("CELL") && f.size() == 4) {
            if (!f[2].isEmpty())
                s.values[f[1]] = f[2];
            s.formats[f[1]] = f[3];
        }
    }
    s.ok = true;
    return s;
}

} // namespace vex::test
