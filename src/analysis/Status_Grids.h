#pragma once
// The grids of the status windows, as the windows show them and as their
// "Excel" buttons and vexcli write them: the trips of a day, a month's
// totals by car or driver, one car's (or driver's) days of a month, and the
// driving sections of a day's trips.
#include <QString>
#include <QStringList>
#include <utility>
#include <vector>

namespace vex {

class Cls_DB;

struct Grid_Table {
    QStringList heads;
    std::vector<QStringList> rows;
    QStringList keys; // what each row stands for (a trip key, a code)
};

// The months that have trips, newest first: ("2026/01", "2601").
std::vector<std::pair<QString, QString>> Month_List(Cls_DB& db);

// The start day (D_F4) that comes first in the engine's descending order,
// the day the day windows open on; empty without trips.
QString Newest_Trip_Day(Cls_DB& db);

// Seconds of an idle list (18-character items: start, end, duration
// HHMMSS), and of the lists of the D_DI rows a statement selects; an empty
// item ends a list.
int Idle_List_Seconds(const QString& list);
int Idle_Seconds(Cls_DB& db, const QString& sql, const QVariantList& values);
QString Clock_Text(int seconds); // "hh:mm:ss", hours past 24 as they come

// The name a grid shows for a code: the driver's name (S_D2.D_F2) or the
// car's number (S_D1.D_F3); empty without a register row.
QString Register_Name(Cls_DB& db, const QString& code, bool driver);

// "일일운행실태": the trips of a day (YYMMDD), one row each; keys are the
// trip keys. The two view columns are the windows' own.
Grid_Table Day_Drive_Grid(Cls_DB& db, const QString& day);

// "월간운행실태": the month's (YYMM) trips summed by car or by driver, ranked
// by the average mark, best first; limit > 0 keeps that many. Keys are the
// car or driver codes.
Grid_Table Car_Condition_Grid(Cls_DB& db, const QString& yymm, bool byDriver, int limit);
QString Car_Condition_Title(bool byDriver);

// One car's (or driver's) trips of a month, by day.
Grid_Table Day_Status_Grid(Cls_DB& db, const QString& code, bool byDriver, const QString& yymm);

// "일일운행정보": the driving sections of every trip of a day, split at stops
// longer than stopMinutes, with the distance of each.
Grid_Table Day_Report_Grid(Cls_DB& db, const QString& day, int stopMinutes);

} // namespace vex
