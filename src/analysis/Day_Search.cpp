// The read side of one trip: the summary row and the three minute series of
// a day, the step to the day before or after, the section list, and one
// hour of the day file.
#include "analysis/Graph_Codes.h"
#include "analysis/Operation_Graph.h"

#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/Day_Store.h"
#include "store/Trip_Columns.h"

#include <QFileInfo>

namespace vex {

namespace {

constexpr int16_t kErrSearch_Data_Move_Date = 1104;

// The trip's figures of a D_D1 row; the series are read apart.
Stored_Trip Trip_Of(const Recordset& rs)
{
    Stored_Trip t;
    t.car = rs.Text(trip_col::Car);
    t.driver = rs.Text(trip_col::Driver);
    t.startDay = rs.Text(trip_col::Start_Day);
    t.startTime = rs.Text(trip_col::Start_Time);
    t.endDay = rs.Text(trip_col::End_Day);
    t.endTime = rs.Text(trip_col::End_Time);
    t.distance = QString::number(Val(rs.Text(trip_col::Distance)) / 10);
    t.accelerations = rs.Text(trip_col::Accelerations);
    t.brakes = rs.Text(trip_col::Brakes);
    t.overspeedMinutes = int16_t(Val(rs.Text(trip_col::Overspeed_Minutes)));
    t.idles = rs.Text(trip_col::Idles);
    t.longOverspeeds = rs.Text(trip_col::Long_Overspeeds);
    t.mark = Val(rs.Text(trip_col::Mark));
    return t;
}

// Figures of a trip taken over a stored trip, its series kept.
void Take_Figures(Stored_Trip& trip, const Stored_Trip& figures)
{
    Stored_Trip t = figures;
    t.speed = trip.speed;
    t.distanceSeries = trip.distanceSeries;
    t.rpm = trip.rpm;
    trip = t;
}

// D_F2 of the first row of a statement, or empty text; missing names the
// table for the log.
QString First_Text(Cls_DB& db, const QString& sql, const QVariantList& values, bool& missing)
{
    Recordset rs = db.DB_RSet_D_D(sql, values);
    missing = rs.RecordCount() < 1;
    return missing ? QString() : rs.Text(QStringLiteral("D_F2"));
}

// S_D1.D_F5 of the car: the engine factor; a car without a row keeps the
// factor in use.
void Read_Engine_Factor(Cls_DB& db, const QString& car, float& factor)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1 = ?"), {car});
    if (rs.RecordCount() > 0)
        factor = float(Val(rs.Text(QStringLiteral("D_F5"))));
}

} // namespace

bool Operation_Graph::DB_Search_Data(Graph_Surface* surface, const QString& car, const QString& driver,
                                     const QString& day)
{
    bool found = false;
    Guarded(kErrSearch_Data, [&] {
        const QString key = car + driver + day;
        {
            Recordset rs = db_.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 WHERE D_F1=?"), {key});
            found = rs.RecordCount() > 0;
            if (found)
                Take_Figures(Trip, Trip_Of(rs));
            else
                Err_Proc(kErrSearch_Data, QStringLiteral("no stored day %1 in D_D1").arg(key));
        }
        Read_Engine_Factor(db_, car, Engine_Factor);
        bool missing = false;
        Trip.speed = First_Text(db_, QStringLiteral("SELECT * FROM D_D3 WHERE D_F1=?"), {key}, missing);
        if (missing) {
            // No speed, no day: all three series go.
            Err_Proc(kErrSearch_Data, QStringLiteral("no minute speed of %1 in D_D3: the frame alone").arg(key));
            Trip.rpm.clear();
            Trip.distanceSeries.clear();
            return;
        }
        Trip.distanceSeries = First_Text(db_, QStringLiteral("SELECT * FROM D_D7 WHERE D_F1=?"), {key}, missing);
        Trip.rpm = First_Text(db_, QStringLiteral("SELECT * FROM D_D8 WHERE D_F1=?"), {key}, missing);
    });
    DB_1440_DB();
    if (surface)
        Draw_Day(*surface);
    return found;
}

bool Operation_Graph::DB_Search_Data_Move_Date(const QString& car, const QString& driver, const QString& day,
                                               Graph_Surface* surface, int keyCode)
{
    bool found = false;
    Take_Figures(Trip, Stored_Trip{});
    Guarded(kErrSearch_Data_Move_Date, [&] {
        const bool forward = keyCode == 33;
        const QString order = forward ? QStringLiteral(" AND D_F4 >= ? ORDER BY D_F4 ASC")
                                      : QStringLiteral(" AND D_F4 <= ? ORDER BY D_F4 DESC");
        {
            // Only the first row: a day with several trips is stepped over
            // as one, landing on the first row the database gives.
            Recordset rs = db_.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 WHERE D_F2=? AND D_F3=?") + order,
                                           {car, driver, day});
            found = rs.RecordCount() > 0;
            if (!found)
                return;
            Take_Figures(Trip, Trip_Of(rs));
        }
        Read_Engine_Factor(db_, car, Engine_Factor);
        const QString range = forward ? QStringLiteral(" WHERE LEFT(D_F1,12) = ? AND RIGHT(D_F1,6) >= ? ORDER BY D_F1 ASC")
                                      : QStringLiteral(" WHERE LEFT(D_F1,12) = ? AND RIGHT(D_F1,6) <= ? ORDER BY D_F1 DESC");
        const QVariantList values{car + driver, Trip.startDay};
        bool missing = false;
        Trip.speed = First_Text(db_, QStringLiteral("SELECT * FROM D_D3") + range, values, missing);
        Trip.distanceSeries = First_Text(db_, QStringLiteral("SELECT * FROM D_D7") + range, values, missing);
        Trip.rpm = First_Text(db_, QStringLiteral("SELECT * FROM D_D8") + range, values, missing);
    });
    if (!found)
        return false;
    DB_1440_DB();
    if (surface)
        Draw_Day(*surface);
    return true;
}

void Operation_Graph::DB_Search_Data2(Graph_Surface* /*surface*/, const QString& car, const QString& driver,
                                      const QString& day)
{
    Sections.clear();
    Guarded(kErrSearch_Data, [&] {
        const QString key = car + driver + day;
        bool missing = false;
        const QString speedText = First_Text(db_, QStringLiteral("SELECT * FROM D_D3 WHERE D_F1=?"), {key}, missing);
        if (missing) {
            Err_Proc(kErrSearch_Data, QStringLiteral("no minute speed of %1 in D_D3: no sections").arg(key));
            return;
        }
        const QString distanceText =
            First_Text(db_, QStringLiteral("SELECT * FROM D_D7 WHERE D_F1=?"), {key}, missing);
        std::array<int16_t, 1441> speed{};
        std::array<float, 1441> distance{};
        Decode_Minute_Speed(speedText, speed, kErrSearch_Data);
        Decode_Minute_Distance(distanceText, distance, kErrSearch_Data);
        Sections = Walk_Sections(speed, distance, Stop_Threshold());
    });
}

QString Operation_Graph::DB_Search_SecData2(Graph_Surface* surface, const QString& car, const QString& driver,
                                            const QString& day, QString& hour)
{
    const Hour_Seconds read = db_.DB_Search_SecData(car, driver, day, hour);
    const QString path = read.path;
    if (path.isEmpty()) {
        // No file, or one that could not be read (its reason is in the log
        // already): the hour is empty and the frame is drawn alone.
        if (!Find_Day_File(db_, car, driver, day).Found())
            Err_Proc(kErrSearch_SecData,
                     QStringLiteral("no day file of %1 %2 %3: the frame alone").arg(car, driver, day));
        const QString hh = hour.isEmpty() ? QStringLiteral("00") : hour;
        Hour = Hour_Seconds{QString(), {}, {}, hh + QStringLiteral("0000"), hh + QStringLiteral("5959"), day};
    } else {
        Hour = read;
    }
    Guarded(kErrSearch_SecData, [&] { Read_Engine_Factor(db_, car, Engine_Factor); });
    DB_3600_DB();
    if (surface)
        Draw_Hour(*surface);
    return path;
}

int Operation_Graph::Neighbour_Hour(const QString& car, const QString& driver, const QString& day, int hour,
                                    int step) const
{
    int found = -1;
    Guarded(kErrSearch_SecData, [&] {
        const Day_File_Ref ref = Find_Day_File(db_, car, driver, day);
        if (!ref.Found())
            return;
        const DayFile file = Read_Day_File(db_, ref);
        for (int h = hour + step; h >= 0 && h < 24 && found < 0; h += step)
            for (int s = h * 3600; s < (h + 1) * 3600; ++s)
                if (file.speed[size_t(s)] != 0 || file.engine[size_t(s)] != 0) {
                    found = h;
                    break;
                }
    });
    return found;
}

} // namespace vex
