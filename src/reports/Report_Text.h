#pragma once
// Texts that several printed reports put on paper the same way.
#include <QString>

namespace vex {

class Cls_DB;

// The driver's name of S_D2, "-" when it has none.
QString Driver_Name_Of(Cls_DB& db, const QString& driver);
// The car's management number (S_D1.D_F2), its number (D_F3) in its place
// when empty; empty when the car has no row.
QString Management_Number(Cls_DB& db, const QString& car);
// "HH:MM" of a stored "HHmm" (a shorter text padded in front).
QString Hhmm_Text(const QString& hhmm);
// "yyyy.MM.dd" of a yyMMdd day.
QString Day_Dots(const QString& yymmdd);
// A distance as "###0.0".
QString Km_Text(double km);
// Litres as "#0.0".
QString Litres_Text(double litres);
// The rated fuel of a distance: km over the car's rating (S_D1.D_F7); 0
// when the car has no rating.
double Rated_Litres(Cls_DB& db, const QString& car, double km);
// "* 별첨 (운행 정보) 참조": the last line of a daily table that overflows.
QString Attachment_Note();

} // namespace vex
