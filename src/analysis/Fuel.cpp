#include "analysis/Fuel.h"

#include "analysis/New_Standards.h"
#include "analysis/Status_Grids.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/EventDetector.h"

#include <QLocale>

namespace vex {

namespace {

// Litres from the weighed speed sum: a minute at factor 1 and at the car's
// rating burns speed/60 km / rating; the sum is over seconds, so it is
// divided by 60 again, and kept in the system's scale of 20 per 1000.
constexpr double kSecondScale = 1.0 / 60.0 * 20.0 / 1000.0;

// Adds to over the km driven in the minutes whose speed is above limit,
// minute by minute: speed cells hexadecimal, distance cells "XY" for X.Y km.
// Throws RunTimeError on a speed cell that isn't hexadecimal.
void Add_Over_Km(const QString& speed, const QString& km, double limit, double& over)
{
    for (int m = 0; 2 * m + 2 <= std::min(speed.size(), km.size()); ++m)
        if (Hex_Cell(speed, 2 * m) > limit)
            over += km.mid(2 * m, 2).toInt() / 10.0;
}

// The same over the bytes of the text as the embedded database hands them
// over, without their conversion to text: a month reads 36 MB of them.
// Series with other than ASCII go the way of the text.
void Add_Over_Km(const QByteArray& speed, const QByteArray& km, double limit, double& over)
{
    for (const QByteArray* bytes : {&speed, &km})
        for (const char c : *bytes)
            if (static_cast<unsigned char>(c) >= 0x80)
                return Add_Over_Km(QString::fromUtf8(speed), QString::fromUtf8(km), limit, over);
    for (qsizetype m = 0; 2 * m + 2 <= std::min(speed.size(), km.size()); ++m) {
        const int hi = Hex_Digit(QLatin1Char(speed[2 * m])), lo = Hex_Digit(QLatin1Char(speed[2 * m + 1]));
        if (hi < 0 || lo < 0)
            Hex_Cell(QString::fromLatin1(speed.mid(2 * m, 2)), 0); // throws as the text's cell would
        if (hi * 16 + lo <= limit)
            continue;
        const int digits = Two_Digits(char16_t(km[2 * m]), char16_t(km[2 * m + 1]));
        over += (digits >= 0 ? digits : QString::fromLatin1(km.mid(2 * m, 2)).toInt()) / 10.0;
    }
}

// The minute distance of a key: cells "XY" are X.Y km.
double Minute_Km(Cls_DB& db, const QString& key)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D7 WHERE (Left(D_F1,18)) = ?"), {key});
    double km = 0;
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        const QString cells = rs.Text(QStringLiteral("D_F2"));
        for (int i = 0; i + 2 <= cells.size(); i += 2)
            km += cells.mid(i, 2).toInt() / 10.0;
    }
    return km;
}

double Car_Rating(Cls_DB& db, const QString& car)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1 = ?"), {car});
    return rs.RecordCount() > 0 ? rs.Field(QStringLiteral("D_F7")).toDouble() : 0.0;
}

// Seconds of the trip (start and end HHmm) weighed by speed and factor.
double Weighed_Seconds(const DayFile& file, const QString& start, const QString& end)
{
    const int from = start.left(2).toInt() * 3600 + start.mid(2, 2).toInt() * 60;
    const int to = std::min<int>(end.left(2).toInt() * 3600 + end.mid(2, 2).toInt() * 60 + 59,
                                 int(file.speed.size()) - 1);
    double sum = 0;
    for (int s = from; s <= to; ++s)
        sum += file.speed[s] * Fuel_Factor(file.speed[s]);
    return sum;
}

// The litres cell of a trip whose day has no second data (a memory pack
// delivers minutes only).
QString No_Second_Data()
{
    return Lang_Text(QStringLiteral("초당 자료 없음"), QStringLiteral("no second data"));
}

} // namespace

double Fuel_Factor(int s)
{
    if (s < 20)
        return 0.7;
    if (s < 40)
        return 0.8;
    if (s < 60)
        return 0.85;
    if (s <= 70)
        return 0.9;
    if (s <= 85)
        return 1.0;
    if (s <= 96)
        return 0.9 + 0.01 * (96 - s);
    if (s <= 109)
        return 0.8;
    return 0.9;
}

Fuel_Day Fuel_Estimate_Day(Cls_DB& db, const QString& packDir, const QString& day)
{
    Fuel_Day out;
    Recordset rs = db.DB_RSet_D_D(
        QStringLiteral("SELECT * FROM D_D1 WHERE (RIGHT(D_F1,6)) = ? ORDER BY D_F2 DESC"), {day});
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        Fuel_Day_Row row;
        row.rank = int(out.rows.size()) + 1;
        row.car = rs.Text(QStringLiteral("D_F2"));
        row.driver = rs.Text(QStringLiteral("D_F3"));
        const QString key = rs.Text(QStringLiteral("D_F1"));
        const double rating = Car_Rating(db, row.car);
        if (rating == 0) {
            // A car rated 0 divides by zero: the list ends there.
            out.error = QStringLiteral("%1: the car's rating is 0").arg(row.car);
            Err_Proc(0, out.error);
            break;
        }
        row.km = Minute_Km(db, key);
        const Day_File_Ref dayFile = Trip_Day_File(db, packDir, row.car, row.driver, day);
        if (dayFile.Found()) {
            try {
                const DayFile file = Read_Day_File(db, dayFile);
                row.litres = Weighed_Seconds(file, rs.Text(QStringLiteral("D_F5")), rs.Text(QStringLiteral("D_F7")))
                             / rating * kSecondScale;
                row.estimated = true;
            } catch (const RunTimeError& e) {
                out.error = QString::fromUtf8(e.what());
            }
        }
        if (row.estimated) {
            row.excess = row.litres - row.km / rating;
            row.kmPerLitre = row.litres > 0 ? row.km / row.litres : 0.0;
        }
        out.rows.push_back(row);
    }
    return out;
}

double Fuel_Excess_Cost(const Fuel_Month_Row& row, const Fuel_Rates& r)
{
    // Each cause burns its rate in % of a tenth of a litre a unit; an idle
    // minute a quarter of that.
    const double units = row.overKm * r.over + row.brakes * r.brake + row.accels * r.accel
                         + row.idleMinutes / 4.0 * r.idle;
    return units / 100.0 * r.price * 0.1;
}

std::vector<Fuel_Month_Row> Fuel_Excess_Month(Cls_DB& db, const QString& yymm, const Fuel_Rates& rates,
                                              int idleMinutesPerEvent)
{
    const QString start = yymm + QStringLiteral("01");
    const QString end = yymm + QStringLiteral("31");
    std::vector<Fuel_Month_Row> rows;
    Recordset cars = db.DB_RSet_D_D(
        QStringLiteral("SELECT D_F2, SUM(D_F10)AS D_F10_1,  SUM(D_F9)AS D_F9_1, SUM(D_F12)AS D_F12_1 FROM D_D1 "
                       "where (RIGHT(D_F1,6)) >= ? AND (RIGHT(D_F1,6)) <= ? GROUP BY D_F2 ORDER BY D_F2"),
        {start, end});
    Fuel_Month_Row sum;
    sum.car = QStringLiteral("소 계");
    for (cars.MoveFirst(); !cars.EOF_(); cars.MoveNext()) {
        Fuel_Month_Row row;
        row.rank = int(rows.size()) + 1;
        row.car = cars.Text(QStringLiteral("D_F2"));
        row.brakes = cars.Field(QStringLiteral("D_F10_1")).toDouble();
        row.accels = cars.Field(QStringLiteral("D_F9_1")).toDouble();
        row.idleMinutes = cars.Field(QStringLiteral("D_F12_1")).toDouble() * idleMinutesPerEvent;
        // Each trip's minute speeds with its minute distances (none without
        // a D_D7 row): one statement a car, not one a trip.
        // The embedded database gives the series as the bytes they are.
        const bool bytes = db.Dialect() == Engine::Sqlite;
        Recordset trips = db.DB_RSet_D_D(
            (bytes ? QStringLiteral("SELECT CAST(D_D3.D_F2 AS BLOB) AS D_F2, CAST(D_D7.D_F2 AS BLOB) AS D_KM ")
                   : QStringLiteral("SELECT D_D3.D_F2, D_D7.D_F2 AS D_KM "))
                + QStringLiteral("FROM D_D3 LEFT JOIN D_D7 ON D_D7.D_F1 = D_D3.D_F1 WHERE (Left(D_D3.D_F1,6)) = ? "
                                 "AND (RIGHT(D_D3.D_F1,6)) >= ? AND (RIGHT(D_D3.D_F1,6)) <= ?"),
            {row.car, start, end});
        const int speedAt = trips.Column_Of(QStringLiteral("D_F2")), kmAt = trips.Column_Of(QStringLiteral("D_KM"));
        for (trips.MoveFirst(); !trips.EOF_(); trips.MoveNext()) {
            const QVariant speed = trips.Field_At(speedAt), km = trips.Field_At(kmAt);
            if (bytes)
                Add_Over_Km(speed.toByteArray(), km.toByteArray(), rates.speed, row.overKm);
            else
                Add_Over_Km(speed.toString(), km.toString(), rates.speed, row.overKm);
        }
        row.cost = Fuel_Excess_Cost(row, rates);
        sum.overKm += row.overKm;
        sum.brakes += row.brakes;
        sum.accels += row.accels;
        sum.idleMinutes += row.idleMinutes;
        sum.cost += row.cost;
        rows.push_back(row);
    }
    if (!rows.empty())
        rows.push_back(sum);
    return rows;
}

Grid_Table Fuel_Day_Table(const Fuel_Day& day)
{
    Grid_Table g;
    g.heads = {LoadResString(1265),         LoadResString(632),
               LoadResString(633),          QStringLiteral("주행거리(km)"),
               QStringLiteral("연료소모량(liter)"), QStringLiteral("과소모량(liter)"),
               QStringLiteral("연비(km/liter)")};
    for (const Fuel_Day_Row& r : day.rows) {
        if (!r.estimated)
            g.rows.push_back({QString::number(r.rank), r.car, r.driver, QString::number(r.km, 'f', 1),
                              No_Second_Data(), QString(), QString()});
        else
            g.rows.push_back({QString::number(r.rank), r.car, r.driver, QString::number(r.km, 'f', 1),
                              QString::number(r.litres, 'f', 2), QString::number(r.excess, 'f', 2),
                              QString::number(r.kmPerLitre, 'f', 3)});
        g.keys << r.car + r.driver;
    }
    return g;
}

Grid_Table Fuel_Month_Table(const std::vector<Fuel_Month_Row>& rows)
{
    Grid_Table g;
    g.heads = {LoadResString(1265), LoadResString(632), QStringLiteral("과속거리(km)"), QStringLiteral("급제동"),
               QStringLiteral("급가속"), QStringLiteral("IDLE 시간(분)"), QStringLiteral("초과 사용비")};
    for (const Fuel_Month_Row& r : rows) {
        g.rows.push_back({r.rank ? QString::number(r.rank) : QString(), r.car, QString::number(r.overKm, 'f', 1),
                          QString::number(r.brakes), QString::number(r.accels), QString::number(r.idleMinutes),
                          QLocale(QLocale::English).toString(r.cost, 'f', 1)});
        g.keys << r.car;
    }
    return g;
}

} // namespace vex
