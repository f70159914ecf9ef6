#include "analysis/Trip_Fields.h"

#include "analysis/Graph_Geometry.h"
#include "analysis/Operation_Graph.h"
#include "core/Messages.h"
#include "core/VbText.h"

namespace vex {

namespace {

QString Two(int v)
{
    return QString::number(v).rightJustified(2, QLatin1Char('0'));
}

} // namespace

QStringList Minute_Field_Captions()
{
    static const int ids[16] = {632, 633, 1119, 818, 821, 822, 823, 824, 825, 826, 827, 0, 829, 830, 820, 819};
    QStringList captions;
    for (const int id : ids)
        captions << (id ? LoadResString(id) : QStringLiteral("IDLE"));
    return captions;
}

QStringList Opening_Fields(const Operation_Graph& og)
{
    QStringList f = Minute_Fields(og, 0, QString());
    f[2] = Time_Text(og.Trip.startTime);
    f[3] = QStringLiteral("0");
    f[14] = QStringLiteral("0");
    return f;
}

QStringList Second_Field_Captions()
{
    return {LoadResString(632), LoadResString(633), LoadResString(1119), LoadResString(818), LoadResString(819)};
}

QStringList Second_Fields(const Operation_Graph& og, const QString& car, const QString& driver,
                          int s)
{
    const bool rpm = Rpm_Input();
    const int hour = int(og.Hour.startTime.left(2).toInt());
    const int k = s + 1; // the element of second s (Operation_Graph.h)
    return {car, driver,
            Two(hour + s / 3600) + QStringLiteral(" : ") + Two(s / 60 % 60) + QStringLiteral(" : ") + Two(s % 60),
            QString::number(og.Speed_Search360(k)), rpm ? QString::number(og.RPM_Search360(k) * 40) : QString()};
}

QString Minute_Text(int minute)
{
    return Two(minute / 60) + QStringLiteral(" : ") + Two(minute % 60);
}

QString Time_Text(const QString& hhmm)
{
    const QString t = hhmm.rightJustified(4, QLatin1Char('0'));
    return t.left(2) + QStringLiteral(" : ") + t.mid(2, 2);
}

QStringList Minute_Fields(const Operation_Graph& og, int m, const QString& oldDistance)
{
    const int k = m + 1; // the element of clock minute m (Operation_Graph.h)
    const Stored_Trip& t = og.Trip;
    QStringList f;
    f << t.car << t.driver << Minute_Text(m) << QString::number(og.Speed_Search(k)) << Time_Text(t.startTime)
      << Time_Text(t.endTime) << t.distance << QString::number(t.overspeedMinutes) << t.accelerations << t.longOverspeeds
      << t.brakes << t.idles << QStringLiteral("0") << QString::number(t.mark);

    const QString start = t.startTime.rightJustified(4, QLatin1Char('0'));
    const QString end = t.endTime.rightJustified(4, QLatin1Char('0'));
    const int s = int(Val(start.left(2))) * 60 + int(Val(start.right(2)));
    const int e = int(Val(end.left(2))) * 60 + int(Val(end.right(2)));
    QString distance;
    if (m > e) {
        distance = t.distance;
    } else if (m < s) {
        distance = QStringLiteral("0");
    } else {
        const float here = og.Distance_Search(k);
        distance = QString::number(double(here), 'f', 1);
        // Where the minute added nothing, a larger figure shown stays.
        const QString& cells = t.distanceSeries;
        const bool same = m >= 1 && 2 * k <= cells.size() && cells.mid(2 * m, 2) == cells.mid(2 * m - 2, 2);
        if (same && !t.distance.isEmpty() && Val(oldDistance) > double(here))
            distance = oldDistance;
    }
    f << distance;
    f << (Rpm_Input() ? QString::number(og.RPM_Search(k) * 40) : QString());
    return f;
}

} // namespace vex
