#include "store/Minute_Series.h"

#include "core/VbText.h"
#include "store/EventDetector.h"

namespace vex {

QString Minute_Time(int minute)
{
    if (minute >= 0) { // HHMM, the hour of the clock
        const int h = minute / 60 % 24, m = minute % 60;
        const QChar hhmm[4] = {QLatin1Char(char('0' + h / 10)), QLatin1Char(char('0' + h % 10)),
                               QLatin1Char(char('0' + m / 10)), QLatin1Char(char('0' + m % 10))};
        return QString(hhmm, 4);
    }
    return QStringLiteral("%1%2")
        .arg(minute / 60 % 24, 2, 10, QLatin1Char('0'))
        .arg(minute % 60, 2, 10, QLatin1Char('0'));
}
Overspeed_Minutes Count_Overspeed_Minutes(const QString& secData, double limit)
{
    Overspeed_Minutes out;
    for (int m = 0; m < kDayMinutes; ++m) {
        const int v = Hex_Cell(secData, 2 * m);
        if (v <= limit)
            continue;
        ++out.count;
        if (v >= limit + 1 && v <= limit + 10)
            ++out.band1;
        else if (v >= limit + 11 && v < limit + 20)
            ++out.band2;
        else
            ++out.band3;
        out.list += Minute_Time(m) + secData.mid(2 * m, 2);
    }
    return out;
}

void Clear_Pack_Distance_Flags(QString& distanceCells)
{
    for (int i = 0; i < distanceCells.size(); i += 2) {
        const QChar c = distanceCells[i];
        if (c >= QLatin1Char('8') && c <= QLatin1Char('9'))
            distanceCells[i] = QChar(c.unicode() - 8);
    }
}

double Sum_Distance_Cells(const QString& distanceCells)
{
    // Cells are two decimal digits; anything else goes through Val as the
    // cell always did (a lone digit, a sign, a space, a flag left set).
    double tenths = 0;
    const QChar* c = distanceCells.constData();
    for (int i = 0; i < kSeriesChars && i < distanceCells.size(); i += 2) {
        const int cell = i + 1 < distanceCells.size() ? Two_Digits(c[i].unicode(), c[i + 1].unicode()) : -1;
        tenths += cell >= 0 ? cell : Val(distanceCells.mid(i, 2));
    }
    return tenths;
}

} // namespace vex
