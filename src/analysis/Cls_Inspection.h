#pragma once
// Maintenance: the base intervals of the inspection items, and for the daily
// report how much of each item's service interval a car has used, from the
// equipment records of S_M1 against the car's running figure (S_D1.D_F24).
#include <QString>
#include <array>
#include <memory>
#include <vector>

namespace vex {

class Cls_DB;

// Base intervals, one a kind of item. No screen of the present design reads
// them; they are kept with the class.
class Cls_BaseInspection {
public:
    double Base_Gear = 0;
    double Base_Tire = 0;
    double Base_Outside = 0;
    double Base_Time = 0;
    double Base_Lining = 0;
    double Base_Plug = 0;
    double Base_Wire = 0;
    double Base_Battery = 0;
    double Base_Clutch = 0;
    double Base_Brake = 0;
    double Base_Eng = 0;
};

class Cls_Inspection {
public:
    // The base intervals, made at their first use and kept with this object.
    vex::Cls_BaseInspection& Cls_BaseInspection();

private:
    std::unique_ptr<vex::Cls_BaseInspection> base_;
};

// The shared instance, made at its first use.
Cls_Inspection& Inspection();

// The items of the daily report by message, in the order of its check grid:
// 889 "속도 센서", 879 "엔진오일" ... 1210 "핸드오일", 892 "타이어".
const std::array<int, 12>& Inspection_Items();

struct Inspection_Share {
    QString item;  // the record's D_F2, or the item's caption without one
    QString share; // "37%", "0%" for no record
    bool found = false;
};

// The share of each item for the car: D_F5 x 100 relative to the running
// figure of S_D1.D_F24 (empty counts 0). A running figure of 0 gives no
// share ("0%", logged). Throws RunTimeError when the tables can't be read.
std::vector<Inspection_Share> Inspection_Shares(Cls_DB& db, const QString& car);
// The same for other items by message id (the parts rows of the printed
// daily report).
std::vector<Inspection_Share> Inspection_Shares(Cls_DB& db, const QString& car, const std::vector<int>& items);

} // namespace vex
