#include "analysis/Driver_Trends.h"

#include "store/Cls_DB.h"
#include "store/Trip_Columns.h"

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
    Recordset rs = db.DB_RSet_D_D(
        QStringLiteral("SELECT D_F1, D_F8, D_F9, D_F10, D_F11, D_F12, D_F13, D_F14 FROM D_D1 "
                       "WHERE RIGHT(D_F1,6) >= ? AND RIGHT(D_F1,6) <= ?"),
        {first + QStringLiteral("01"), toMonth + QStringLiteral("31")});
    // The columns found once: months of a fleet are tens of thousands of trips.
    const int key = rs.Column_Of(trip_col::Key), mark = rs.Column_Of(trip_col::Mark),
              distance = rs.Column_Of(trip_col::Distance), accelerations = rs.Column_Of(trip_col::Accelerations),
              brakes = rs.Column_Of(trip_col::Brakes), idles = rs.Column_Of(trip_col::Idles),
              longOverspeeds = rs.Column_Of(trip_col::Long_Overspeeds),
              overspeed = rs.Column_Of(trip_col::Overspeed_Minutes);
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        const QString trip = rs.Field_At(key).toString();
        auto number = [&](int column) { return rs.Field_At(column).toDouble(); };
        Sums& s = byMonth[trip.right(6).left(4)][trip.mid(6, 6)];
        ++s.trips;
        s.marks += number(mark);
        s.tenths += number(distance);
        s.events += number(accelerations) + number(brakes) + number(idles) + number(longOverspeeds);
        s.overspeed += number(overspeed);
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
