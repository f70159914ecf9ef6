#pragma once
// Texts that several printed reports put on paper the same way.
#include <QString>

namespace vex {

class Cls_DB;

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
