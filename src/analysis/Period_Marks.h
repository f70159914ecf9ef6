#pragma once
// Marks of a period: one car's trips by day (DB_Search_DayAVG) and the
// average of every day over all cars (DB_Search_AvgDay), with the two
// column charts that show them.
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

namespace vex {

class Cls_DB;
class Graph_Surface;

// One column of a chart: a day (yyMMdd) and its value.
struct Mark_Column {
    QString day;
    double value = 0;
};

struct Day_Marks {
    double sum = 0;     // the marks of the trips added up
    int count = 0;      // trips
    double average = 0; // sum / count
    // The driver's trips of the period for the list: day, car, driver,
    // distance (km), mark, D_F16, D_F24, D_F25.
    std::vector<QStringList> list;
    std::vector<Mark_Column> columns; // D_F16 of each listed trip
};

// The trips of D_D3 whose key holds carNumber at characters 5 to 8, between
// start and end (yyMMdd), each marked against the standards in positions of
// its own (B_Val2, B_Val3, B_Val6 to B_Val8, B_Val10, and B_Val4 for the
// overspeed runs of D_D3.D_F5); the list and chart are of driver's trips.
Day_Marks DB_Search_DayAVG(Cls_DB& db, const QString& carNumber, const QString& driver, const QString& start,
                           const QString& end);

// Overspeed cells of a series of hexadecimal cells above limit; the first
// cell counts twice and the last is never read, as the counter always did.
int16_t Overspeed_Runs(const QString& series, int limit);

struct Avg_Days {
    double average = 0; // AVG(D_F16) of the period, to two decimals
    int days = 0;
    std::vector<Mark_Column> columns; // AVG(D_F16) of each day
};

// Every trip of the period, all cars: the average of each day.
Avg_Days DB_Search_AvgDay(Cls_DB& db, const QString& start, const QString& end);

// The charts: one column a day from start to end, Y from 0 (B_Val15) to
// B_Val2.
void Picture_Day_AVG_Base(Graph_Surface& s, const QString& start, const QString& end,
                          const std::vector<Mark_Column>& columns);
void Picture_Avg_Day_Base(Graph_Surface& s, const QString& start, const QString& end,
                          const std::vector<Mark_Column>& columns);

} // namespace vex
