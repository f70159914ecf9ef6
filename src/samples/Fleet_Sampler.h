#pragma once
// A fleet to measure with: cars and their drivers registered under names, and
// their days as receptions make them: each car's saved USB days (".NTD", one
// a car and day, driven from the driving cycles with a seed of the car and
// the day) laid in \new a week at a time and taken by the inbox pass, with
// its event detection, rows and day files. Drivers take a car by the week in
// turn.
#include "acquisition/Reception.h"

#include <QDate>
#include <QString>
#include <functional>

namespace vex {

class Cls_DB;

struct Fleet_Request {
    int cars = 10;
    int days = 7;
    int driversPerCar = 2;
    QDate first = QDate(2025, 1, 1);
    QString cyclesDir; // empty: the delivered cycles
};

struct Fleet_Result {
    int trips = 0;      // days stored
    int kept = 0;       // files the inbox pass left in \new
    QString error;      // why the fleet could not be made; empty when it was
};

// The codes of car c (0-based) and of its k-th driver: "A" and five
// hexadecimal digits; the car's number in four digits and the driver's in two.
QString Fleet_Car(int c);
QString Fleet_Driver(int c, int k);

// Fills the open application (G(): its folder and database). progress is
// told the days done of all; received, each inbox pass's outcome (a week of
// the fleet), so that the caller can keep its ledger.
Fleet_Result Fill_Fleet(Cls_DB& db, const Fleet_Request& request,
                        const std::function<void(int done, int all)>& progress = {},
                        const std::function<void(const Reception_Outcome&)>& received = {});

} // namespace vex
