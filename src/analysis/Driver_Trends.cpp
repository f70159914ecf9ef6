#include "analysis/Driver_Trends.h"

#include "store/Cls_DB.h"

#include <QDate>
#include <algorithm>
#include <map>

namespace vex {

namespace {

QString Month_Before(const QString& yymm)
{
    const QDate d = QDate(2000 + yymm.left(2).toInt(), yymm.mid(2, 2).toInt(), 1).addMonths(-1);
    return d.toString(QStringLiteral("yyMM"));
}

struct Sums {
    int trips = 0;
    double marks = 0, tenths = 0, events = 0, overspeed = 0;
};

} // namespace

std::vector<Driver_Month> Driver_Trends(Cls_DB& db, const QString& fromMonth, const QString& toMonth,
                                        const QString& driver)
{
    const QString first = Month_Before(fromMonth);
    std::map<QString, std::map<QString, Sums>> byMonth; // month -> driver -> sums
    // Summed by the engine, a row a month and driver instead of a row a
    // trip: the counts, marks and distances are whole numbers, whose sums
    // are the same in any order, and a Null adds nothing either way.
    Recordset rs = db.DB_RSet_D_D(
        QStringLiteral("SELECT LEFT(RIGHT(D_F1,6),4) AS D_MONTH, MID(D_F1,7,6) AS D_DRIVER, COUNT(*) AS D_TRIPS, "
                       "SUM(D_F14) AS D_MARKS, SUM(D_F8) AS D_TENTHS, SUM(D_F9) AS D_F9_S, SUM(D_F10) AS D_F10_S, "
                       "SUM(D_F12) AS D_F12_S, SUM(D_F13) AS D_F13_S, SUM(D_F11) AS D_F11_S FROM D_D1 "
                       "WHERE RIGHT(D_F1,6) >= ? AND RIGHT(D_F1,6) <= ? "
                       "GROUP BY LEFT(RIGHT(D_F1,6),4), MID(D_F1,7,6)"),
        {first + QStringLiteral("01"), toMonth + QStringLiteral("31")});
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        auto number = [&](const char* column) { return rs.Field(QLatin1String(column)).toDouble(); };
        Sums& s = byMonth[rs.Text(QStringLiteral("D_MONTH"))][rs.Text(QStringLiteral("D_DRIVER"))];
        s.trips = rs.Field(QStringLiteral("D_TRIPS")).toInt();
        s.marks = number("D_MARKS");
        s.tenths = number("D_TENTHS");
        s.events = number("D_F9_S") + number("D_F10_S") + number("D_F12_S") + number("D_F13_S");
        s.overspeed = number("D_F11_S");
    }
    std::vector<Driver_Month> out;
    for (const auto& [month, drivers] : byMonth) {
        if (month < fromMonth || month > toMonth)
            continue;
        std::vector<Driver_Month> rows;
        for (const auto& [code, s] : drivers) {
            Driver_Month m;
            m.driver = code;
            m.month = month;
            m.trips = s.trips;
            m.km = s.tenths / 10.0;
            m.averageMark = s.marks / s.trips;
            m.eventsPer100Km = m.km > 0 ? s.events * 100.0 / m.km : 0;
            m.overspeedMinutes = s.overspeed;
            const auto before = byMonth.find(Month_Before(month));
            if (before != byMonth.end()) {
                const auto was = before->second.find(code);
                if (was != before->second.end())
                    m.change = m.averageMark - was->second.marks / was->second.trips;
            }
            rows.push_back(std::move(m));
        }
        std::sort(rows.begin(), rows.end(), [](const Driver_Month& a, const Driver_Month& b) {
            return a.averageMark != b.averageMark ? a.averageMark > b.averageMark : a.driver < b.driver;
        });
        for (size_t i = 0; i < rows.size(); ++i) {
            rows[i].rank = i > 0 && rows[i].averageMark == rows[i - 1].averageMark ? rows[i - 1].rank : int(i) + 1;
            rows[i].drivers = int(rows.size());
        }
        for (Driver_Month& m : rows)
            if (driver.isEmpty() || m.driver == driver)
                out.push_back(std::move(m));
    }
    return out;
}

} // namespace vex
