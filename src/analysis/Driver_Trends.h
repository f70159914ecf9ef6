#pragma once
// Drivers over time: each driver's month of trips as the average mark,
// events per 100 km and overspeed minutes, the driver's rank among all the
// month's drivers and the change of the average mark since the month before.
#include <QString>
#include <optional>
#include <vector>

namespace vex {

class Cls_DB;

struct Driver_Month {
    QString driver;
    QString month;              // yyMM
    int trips = 0;
    double km = 0;
    double averageMark = 0;     // of D_D1.D_F14
    double eventsPer100Km = 0;  // quick accelerations, quick brakes, long overspeeds and idle events
    double overspeedMinutes = 0;
    int rank = 0;               // 1 the best average mark of the month; equal marks share a rank
    int drivers = 0;            // drivers ranked that month
    std::optional<double> change; // average mark less the month before's; none without trips then
};

// Months fromMonth to toMonth (yyMM, both included), by month then rank; only
// driver's rows when one is given (ranked among all drivers all the same).
// Throws RunTimeError as a recordset does.
std::vector<Driver_Month> Driver_Trends(Cls_DB& db, const QString& fromMonth, const QString& toMonth,
                                        const QString& driver = QString());

} // namespace vex
