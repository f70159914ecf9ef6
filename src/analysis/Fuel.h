#pragma once
// Fuel estimates. The recorders measure no fuel: a day's litres come from
// each second's speed weighed by a fixed factor table, and a month's excess
// cost from the counts of bad driving priced by the user's rates.
#include <QString>
#include <vector>

namespace vex {

class Cls_DB;

// Weight of one second at speed s (km/h).
double Fuel_Factor(int speed);

// One trip of the day, as the grid of the day estimate shows it.
struct Fuel_Day_Row {
    int rank = 0;
    QString car, driver;
    double km = 0;          // "#0.0"
    bool estimated = false; // the day has second data; without it no litres are known
    double litres = 0;      // "#0.00"
    double excess = 0;      // "#0.00": litres above the car's rating
    double kmPerLitre = 0;  // "#0.000"
};

struct Fuel_Day {
    std::vector<Fuel_Day_Row> rows;
    QString error; // the trip that stopped the list, e.g. a car rated 0
};

// Every trip of the day (YYMMDD), cars in descending order. packDir is the
// alternative pack folder of the settings.
Fuel_Day Fuel_Estimate_Day(Cls_DB& db, const QString& packDir, const QString& day);

struct Fuel_Rates {
    int speed = 0;       // the overspeed limit of the month, km/h
    double over = 0;     // % more fuel while over the limit
    double accel = 0;    // % for a quick acceleration
    double idle = 0;     // % for an idle minute
    double brake = 0;    // % for a quick brake
    double price = 0;    // fuel price a litre
};

struct Fuel_Month_Row {
    int rank = 0;        // 0 on the sum row
    QString car;         // "소 계" on the sum row
    double overKm = 0;
    double brakes = 0;
    double accels = 0;
    double idleMinutes = 0;
    double cost = 0;     // "##,##0.0"
};

// Per car of the month (YYMM): the last row sums the columns; a month with
// no trips gives no rows at all.
std::vector<Fuel_Month_Row> Fuel_Excess_Month(Cls_DB& db, const QString& yymm, const Fuel_Rates& rates,
                                              int idleMinutesPerEvent);
double Fuel_Excess_Cost(const Fuel_Month_Row& row, const Fuel_Rates& rates);

// The two grids as the fuel windows show them, figures in their formats
// ("#0.0", "#0.00", "#0.000"; "##,##0.0" for the cost). A trip without
// second data says so in its litres cell and leaves the two cells that
// follow from the litres empty.
struct Grid_Table;
Grid_Table Fuel_Day_Table(const Fuel_Day& day);
Grid_Table Fuel_Month_Table(const std::vector<Fuel_Month_Row>& rows);

} // namespace vex
