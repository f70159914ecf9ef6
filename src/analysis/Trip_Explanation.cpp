#include "analysis/Trip_Explanation.h"

#include "core/Messages.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"
#include "store/Trip_Columns.h"

namespace vex {

namespace {

int Second_Of(const QString& hhmmss)
{
    return hhmmss.left(2).toInt() * 3600 + hhmmss.mid(2, 2).toInt() * 60 + hhmmss.mid(4, 2).toInt();
}

QString List_Of(Cls_DB& db, const QString& table, const QString& key)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT D_F2 FROM %1 WHERE D_F1 = ?").arg(table), {key});
    return rs.RecordCount() > 0 ? rs.Text(QStringLiteral("D_F2")) : QString();
}

bool Empty_Slot(const QString& record)
{
    return record.startsWith(QLatin1String("000000")) || record.trimmed().isEmpty();
}

// Records of width w; the quick brakes and accelerations: time, speed before
// and after in hexadecimal.
void Speed_Changes(const QString& list, Mark_Event kind, std::vector<Explained_Event>& out)
{
    for (int i = 0; i + 10 <= list.size(); i += 10) {
        const QString r = list.mid(i, 10);
        if (Empty_Slot(r))
            continue;
        bool a = false, b = false;
        const int before = r.mid(6, 2).toInt(&a, 16), after = r.mid(8, 2).toInt(&b, 16);
        out.push_back({kind, Second_Of(r.left(6)),
                       a && b ? QStringLiteral("%1→%2 km/h").arg(before).arg(after) : QString()});
    }
}

// Long overspeeds and idling: start, end and duration as HHMMSS.
void Spans(const QString& list, Mark_Event kind, std::vector<Explained_Event>& out)
{
    for (int i = 0; i + 18 <= list.size(); i += 18) {
        const QString r = list.mid(i, 18);
        if (Empty_Slot(r))
            continue;
        out.push_back({kind, Second_Of(r.left(6)),
                       Clock_Of_Second(Second_Of(r.left(6))) + QLatin1Char('-') + Clock_Of_Second(Second_Of(r.mid(6, 6)))});
    }
}

// Overspeed minutes: HHmm and the speed in hexadecimal.
void Minutes_Over(const QString& list, std::vector<Explained_Event>& out)
{
    for (int i = 0; i + 6 <= list.size(); i += 6) {
        const QString r = list.mid(i, 6);
        bool ok = false;
        const int speed = r.mid(4, 2).toInt(&ok, 16);
        if (r.trimmed().isEmpty())
            continue;
        out.push_back({Mark_Event::Overspeed, r.left(2).toInt() * 3600 + r.mid(2, 2).toInt() * 60,
                       ok ? QStringLiteral("%1 km/h").arg(speed) : QString()});
    }
}

QString Figure(double v)
{
    // As few decimals as the value needs, up to four.
    QString s = QString::number(v, 'f', 4);
    while (s.contains(QLatin1Char('.')) && (s.endsWith(QLatin1Char('0')) || s.endsWith(QLatin1Char('.'))))
        s.chop(1);
    return s;
}

} // namespace

QString Mark_Event_Name(Mark_Event kind)
{
    switch (kind) {
    case Mark_Event::Overspeed: return Lang_Text(QStringLiteral("과속 (분)"), QStringLiteral("overspeed minutes"));
    case Mark_Event::Acceleration: return Lang_Text(QStringLiteral("급가속"), QStringLiteral("quick accelerations"));
    case Mark_Event::Brake: return Lang_Text(QStringLiteral("급감속"), QStringLiteral("quick brakes"));
    case Mark_Event::Long_Overspeed: return Lang_Text(QStringLiteral("장기과속"), QStringLiteral("long overspeeds"));
    case Mark_Event::Idle: return Lang_Text(QStringLiteral("공회전"), QStringLiteral("idle events"));
    }
    return {};
}

Trip_Explanation Explain_Trip(Cls_DB& db, const Cls_Config& standards, const QString& car, const QString& driver,
                              const QString& day)
{
    Trip_Explanation e;
    e.car = car;
    e.driver = driver;
    e.day = day;
    const QString key = car + driver + day;
    Recordset trip = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 WHERE D_F1 = ?"), {key});
    if (trip.RecordCount() < 1)
        return e;
    e.found = true;
    auto number = [&](const char* column) { return trip.Field(QLatin1String(column)).toDouble(); };
    e.counts = {int16_t(number(trip_col::Overspeed_Minutes)), float(number(trip_col::Accelerations)),
                float(number(trip_col::Brakes)),           int16_t(number(trip_col::Idles)),
                int16_t(number(trip_col::Long_Overspeeds)), float(number(trip_col::Distance))};
    e.storedMark = trip.Text(trip_col::Mark);
    e.mark = Explain_Mark(standards, e.counts);
    Minutes_Over(List_Of(db, QStringLiteral("D_D9"), key), e.events);
    Speed_Changes(List_Of(db, QStringLiteral("D_D4"), key), Mark_Event::Acceleration, e.events);
    Speed_Changes(List_Of(db, QStringLiteral("D_D2"), key), Mark_Event::Brake, e.events);
    Spans(List_Of(db, QStringLiteral("D_D6"), key), Mark_Event::Long_Overspeed, e.events);
    Spans(List_Of(db, QStringLiteral("D_DI"), key), Mark_Event::Idle, e.events);
    return e;
}

QStringList Explanation_Lines(const Trip_Explanation& e)
{
    QStringList lines;
    const Mark_Explanation& m = e.mark;
    lines << Lang_Text(QStringLiteral("운행 %1 %2 %3의 점수"), QStringLiteral("the mark of trip %1 %2 %3"))
                 .arg(e.car, e.driver, e.day);
    lines << Lang_Text(QStringLiteral("  기준 점수 %1"), QStringLiteral("  standard score %1")).arg(Figure(m.base));
    for (const Mark_Term& t : m.terms)
        lines << QStringLiteral("  - %1: %2 × %3 = %4").arg(Mark_Event_Name(t.kind), Figure(t.count), Figure(t.each),
                                                          Figure(t.deduction));
    lines << Lang_Text(QStringLiteral("  감점 합계 %1"), QStringLiteral("  deductions %1")).arg(Figure(m.deductions));
    if (m.noBaseDistance) {
        lines << Lang_Text(QStringLiteral("  기준 거리가 0이므로 점수는 0"), QStringLiteral("  the standard distance is 0: the mark is 0"));
    } else if (m.km == 0) {
        lines << Lang_Text(QStringLiteral("  거리 없는 운행: 거리 계수 1"), QStringLiteral("  a trip of no distance: distance factor 1"));
    } else {
        lines << Lang_Text(QStringLiteral("  거리 계수 = 기준 거리 %1 km / 운행 거리 %2 km = %3"),
                           QStringLiteral("  distance factor = standard distance %1 km / trip %2 km = %3"))
                     .arg(Figure(m.baseKm), Figure(m.km), Figure(m.factor));
    }
    if (!m.noBaseDistance)
        lines << Lang_Text(QStringLiteral("  %1 - %2 × %3 = %4, 반올림 %5"), QStringLiteral("  %1 - %2 × %3 = %4, rounded %5"))
                     .arg(Figure(m.base), Figure(m.factor), Figure(m.deductions), Figure(m.unrounded), m.mark);
    lines << Lang_Text(QStringLiteral("  점수 %1 (저장된 점수 %2)"), QStringLiteral("  mark %1 (stored %2)"))
                 .arg(m.mark, e.storedMark);
    if (QString::number(e.storedMark.toDouble()) != m.mark)
        lines << Lang_Text(QStringLiteral("  저장된 점수는 다른 평가 기준으로 계산되었습니다: 새 기준 적용으로 다시 계산하세요"),
                           QStringLiteral("  the stored mark was counted under other standards: recount with the new standards"));
    if (!e.events.empty())
        lines << Lang_Text(QStringLiteral("  이벤트:"), QStringLiteral("  events:"));
    for (const Explained_Event& ev : e.events)
        lines << QStringLiteral("    %1  %2  %3").arg(Clock_Of_Second(ev.second), Mark_Event_Name(ev.kind), ev.detail);
    return lines;
}

} // namespace vex
