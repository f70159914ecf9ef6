#include "analysis/Status_Grids.h"

#include "analysis/Operation_Graph.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"

#include <algorithm>
#include <map>

namespace vex {

namespace {

// Counts are numbers in the database; a text that is none counts 0.
double Number(const Recordset& rs, const char* field)
{
    return Val(rs.Text(QLatin1String(field)));
}

QString Count(const Recordset& rs, const char* field)
{
    return QString::number(Number(rs, field));
}

QString Km(double km)
{
    return QString::number(km, 'f', 1);
}

// "yyyy-MM-dd HH:MM" of a day and a minute of it; the day's end is 24:00.
QString Day_Minute(const QString& day, int minute)
{
    return QStringLiteral("%1 %2:%3")
        .arg(Date_Dash(day))
        .arg(minute / 60, 2, 10, QLatin1Char('0'))
        .arg(minute % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

std::vector<std::pair<QString, QString>> Month_List(Cls_DB& db)
{
    std::vector<std::pair<QString, QString>> months;
    // The months of the days, each day taken once: the same months as of
    // every trip, from the index of the days.
    Recordset rs = db.DB_RSet_D_D(QStringLiteral(
        "SELECT DISTINCT ('20' + Left(D_F4,2) + '/' + Mid(D_F4,3,2))as D_F0, (Left(D_F4,2) + Mid(D_F4,3,2)) as D_F1 "
        "FROM (SELECT DISTINCT D_F4 FROM D_D1) AS D_DAYS"));
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
        months.emplace_back(rs.Text(QStringLiteral("D_F0")), rs.Text(QStringLiteral("D_F1")));
    std::sort(months.begin(), months.end(), [](const auto& a, const auto& b) { return a.second > b.second; });
    return months;
}

QString Newest_Trip_Day(Cls_DB& db)
{
    // The days once each, not every trip: the first row is the same.
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT DISTINCT D_F4 FROM D_D1 ORDER BY D_F4 DESC"));
    return rs.RecordCount() > 0 ? rs.Text(QStringLiteral("D_F4")) : QString();
}

int Idle_List_Seconds(const QString& list)
{
    int seconds = 0;
    for (int at = 0; at + 18 <= list.size(); at += 18) {
        const QString item = list.mid(at, 18);
        if (item.startsWith(QStringLiteral("000000")))
            break;
        seconds += item.mid(12, 2).toInt() * 3600 + item.mid(14, 2).toInt() * 60 + item.mid(16, 2).toInt();
    }
    return seconds;
}

int Idle_Seconds(Cls_DB& db, const QString& sql, const QVariantList& values)
{
    Recordset rs = db.DB_RSet_D_D(sql, values);
    int seconds = 0;
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
        seconds += Idle_List_Seconds(rs.Text(QStringLiteral("D_F2")));
    return seconds;
}

QString Clock_Text(int seconds)
{
    return QStringLiteral("%1:%2:%3")
        .arg(seconds / 3600, 2, 10, QLatin1Char('0'))
        .arg(seconds / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

QString Register_Name(Cls_DB& db, const QString& code, bool driver)
{
    Recordset rs = db.DB_RSet_D_D(driver ? QStringLiteral("SELECT * FROM S_D2 WHERE D_F1 = ?")
                                         : QStringLiteral("SELECT * FROM S_D1 WHERE D_F1 = ?"),
                                  {code});
    return rs.RecordCount() > 0 ? rs.Text(driver ? QStringLiteral("D_F2") : QStringLiteral("D_F3")) : QString();
}

Grid_Table Day_Drive_Grid(Cls_DB& db, const QString& day)
{
    Grid_Table g;
    g.heads = {LoadResString(1265), LoadResString(632),  LoadResString(633),  LoadResString(846),
               LoadResString(847),  LoadResString(1154), LoadResString(1157), LoadResString(1155),
               LoadResString(1156), QStringLiteral("Idle"), LoadResString(830), QStringLiteral("주행거리")};
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 WHERE D_F4 = ? ORDER BY D_F1"), {day});
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        auto T = [&](const char* f) { return rs.Text(QLatin1String(f)); };
        g.rows.push_back({QString::number(g.rows.size() + 1), T("D_F2"), T("D_F3"), Time4_To_Text(T("D_F5")),
                          Time4_To_Text(T("D_F7")), Count(rs, "D_F11"), Count(rs, "D_F10"), Count(rs, "D_F9"),
                          Count(rs, "D_F13"), Count(rs, "D_F12"), Count(rs, "D_F14"), Km(Number(rs, "D_F8") / 10)});
        g.keys << T("D_F2") + T("D_F3") + T("D_F4");
    }
    return g;
}

QString Car_Condition_Title(bool byDriver)
{
    return byDriver ? QStringLiteral("월간운행실태(운전자)") : QStringLiteral("월간운행실태(차량)");
}

Grid_Table Car_Condition_Grid(Cls_DB& db, const QString& yymm, bool byDriver, int limit)
{
    struct Sum {
        QString code;
        double band[3] = {}, over = 0, accel = 0, brake = 0, longOver = 0, idle = 0, marks = 0;
        int trips = 0, idleSeconds = 0;
    };
    const QString codeField = byDriver ? QStringLiteral("D_F3") : QStringLiteral("D_F2");
    std::map<QString, Sum> sums;
    // The columns summed, not the whole trip: a month of a fleet is thousands.
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT D_F2, D_F3, D_F9, D_F10, D_F11, D_F12, D_F13, D_F14, D_F15, "
                                                 "D_F16, D_F17 FROM D_D1 WHERE Left(D_F4,4) = ? ORDER BY D_F1"),
                                  {yymm});
    // The columns found once, then read row after row.
    const int code = rs.Column_Of(codeField);
    int at[9] = {};
    for (int c = 9; c <= 17; ++c)
        at[c - 9] = rs.Column_Of(QStringLiteral("D_F%1").arg(c));
    auto N = [&](int column) { return Val(rs.Field_At(at[column - 9]).toString()); };
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        Sum& s = sums[rs.Field_At(code).toString()];
        s.code = rs.Field_At(code).toString();
        s.band[0] += N(15);
        s.band[1] += N(16);
        s.band[2] += N(17);
        s.over += N(11);
        s.accel += N(9);
        s.brake += N(10);
        s.longOver += N(13);
        s.idle += N(12);
        s.marks += N(14);
        ++s.trips;
    }
    std::vector<Sum> ranked;
    for (auto& [code, s] : sums)
        ranked.push_back(s);
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const Sum& a, const Sum& b) { return a.marks / a.trips > b.marks / b.trips; });
    if (limit > 0 && int(ranked.size()) > limit)
        ranked.resize(size_t(limit));

    Grid_Table g;
    g.heads = {LoadResString(1265), byDriver ? LoadResString(633) : LoadResString(632),
               byDriver ? QStringLiteral("운전자명") : QStringLiteral("차량번호"), QStringLiteral("10Km/h이내"),
               QStringLiteral("20Km/h이내"), QStringLiteral("30Km/h이내"), LoadResString(824), LoadResString(825),
               LoadResString(827), LoadResString(826), QStringLiteral("IDLE"), QStringLiteral("IDLE시간"),
               LoadResString(806)};
    // The month's idle lists of every code and the names of the register,
    // each in one statement instead of one a code: the codes are the key's
    // car (its first six characters) or driver (the next six).
    std::map<QString, int> idle;
    Recordset lists = db.DB_RSet_D_D(QStringLiteral("SELECT D_F1, D_F2 FROM D_DI WHERE Left(RIGHT(D_F1,6),4) = ?"),
                                     {yymm});
    for (lists.MoveFirst(); !lists.EOF_(); lists.MoveNext())
        idle[lists.Text(QStringLiteral("D_F1")).mid(byDriver ? 6 : 0, 6)] +=
            Idle_List_Seconds(lists.Text(QStringLiteral("D_F2")));
    std::map<QString, QString> names;
    Recordset registered = db.DB_RSet_D_D(byDriver ? QStringLiteral("SELECT D_F1, D_F2 AS D_NAME FROM S_D2")
                                                   : QStringLiteral("SELECT D_F1, D_F3 AS D_NAME FROM S_D1"));
    for (registered.MoveFirst(); !registered.EOF_(); registered.MoveNext())
        names[registered.Text(QStringLiteral("D_F1"))] = registered.Text(QStringLiteral("D_NAME"));
    for (const Sum& s : ranked) {
        const QString name = names.count(s.code) ? names[s.code] : QString();
        const int idleSeconds = idle.count(s.code) ? idle[s.code] : 0;
        g.rows.push_back({QString::number(g.rows.size() + 1), s.code, name, QString::number(s.band[0]),
                          QString::number(s.band[1]), QString::number(s.band[2]), QString::number(s.over),
                          QString::number(s.accel), QString::number(s.brake), QString::number(s.longOver),
                          QString::number(s.idle), Clock_Text(idleSeconds), QString::number(s.marks / s.trips, 'f', 1)});
        g.keys << s.code;
    }
    return g;
}

Grid_Table Day_Status_Grid(Cls_DB& db, const QString& code, bool byDriver, const QString& yymm)
{
    Grid_Table g;
    g.heads = {LoadResString(632), LoadResString(838), LoadResString(1046), LoadResString(633), LoadResString(824),
               LoadResString(825), LoadResString(827), LoadResString(826), QStringLiteral("IDLE횟수"),
               LoadResString(830)};
    const QString sql = byDriver
        ? QStringLiteral("SELECT * FROM D_D1 WHERE D_F3 = ? AND Left(D_F4,4) = ? ORDER BY D_F4, D_F1")
        : QStringLiteral("SELECT * FROM D_D1 WHERE D_F2 = ? AND Left(D_F4,4) = ? ORDER BY D_F4, D_F1");
    Recordset rs = db.DB_RSet_D_D(sql, {code, yymm});
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        auto T = [&](const char* f) { return rs.Text(QLatin1String(f)); };
        g.rows.push_back({T("D_F2"), Time4_To_Text(T("D_F5")) + QLatin1Char('~') + Time4_To_Text(T("D_F7")),
                          Date_Dash(T("D_F4")), T("D_F3"), Count(rs, "D_F11"), Count(rs, "D_F9"),
                          Count(rs, "D_F10"), Count(rs, "D_F13"), Count(rs, "D_F12"), Count(rs, "D_F14")});
        g.keys << T("D_F1");
    }
    return g;
}

Grid_Table Day_Report_Grid(Cls_DB& db, const QString& day, int stopMinutes)
{
    Grid_Table g;
    g.heads = {QStringLiteral("차량코드"), QStringLiteral("운전시작일시"), QStringLiteral("운전종료일시"),
               QStringLiteral("운행거리")};
    // Each trip of the day with its minute speeds (a trip without them has
    // no sections) and minute distances (none without a D_D7 row), in one
    // statement instead of two a trip.
    Recordset trips = db.DB_RSet_D_D(
        QStringLiteral("SELECT D_D1.D_F1, D_D1.D_F2, D_D3.D_F2 AS D_SPEED, D_D7.D_F2 AS D_KM FROM D_D1 "
                       "INNER JOIN D_D3 ON D_D3.D_F1 = D_D1.D_F1 LEFT JOIN D_D7 ON D_D7.D_F1 = D_D1.D_F1 "
                       "WHERE (RIGHT(D_D1.D_F1,6)) = ? ORDER BY D_D1.D_F1"),
        {day});
    for (trips.MoveFirst(); !trips.EOF_(); trips.MoveNext()) {
        const QString key = trips.Text(QStringLiteral("D_F1"));
        std::array<int16_t, 1441> kmh{};
        std::array<float, 1441> km{};
        Decode_Minute_Speed(trips.Text(QStringLiteral("D_SPEED")), kmh, 0);
        Decode_Minute_Distance(trips.Text(QStringLiteral("D_KM")), km, 0);
        for (const Day_Section& s : Operation_Graph::Walk_Sections(kmh, km, stopMinutes)) {
            if (s.Kind != kDriving)
                continue;
            g.rows.push_back({trips.Text(QStringLiteral("D_F2")), Day_Minute(day, s.Start_Minute),
                              Day_Minute(day, s.End_Minute), Km(s.Distance)});
            g.keys << key;
        }
    }
    return g;
}

} // namespace vex
