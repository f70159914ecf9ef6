#pragma once
// What the operation views need beyond the graph: the day, car and driver
// a view is asked for (the report selection), the cursor's snap, step and
// wrap over the plot, the minute or second under it, the step between
// days, and the event list of a trip.
#include "analysis/Trip_Fields.h"
#include "reports/Cls_Report.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace vex {
class Cls_DB;
class Operation_Graph;
}

namespace vex::forms {

// The selection a report form hands to the views and reports: the shared
// Cls_Report with its car, driver, day and times, the driver's name and the
// car's number.
using Report_Selection = vex::Cls_Report;
Report_Selection& Selection();

// The cursor over a plot from left to right in steps of step units.
struct Cursor_Track {
    float left = 0, right = 0, step = 0;
    // X put on a whole step from the left edge.
    float Snap(float x) const;
    // One step left or right of the snapped x; past an end it wraps to the
    // other (to right - step going left, to left going right).
    float Left(float x) const;
    float Right(float x) const;
    // Steps from the left edge to x (0 when the plot has collapsed).
    int Steps(float x) const;
};
// The cursor track of the present day (hour) geometry and zoom.
Cursor_Track Day_Track(const Operation_Graph& og);
Cursor_Track Hour_Track(const Operation_Graph& og);
// The point (minute of the day, second of the hour) under x.
int Minute_At(const Operation_Graph& og, float x);
int Second_At(const Operation_Graph& og, float x);

// A day of six (yyMMdd) or eight (yyyyMMdd) digits, a day later or earlier,
// written back as yyMMdd.
QString Step_Day(const QString& day, int days);

// The event list of a trip: one title row a kind, one row an event; rows of
// events carry their second of the day (-1 for titles).
struct Event_Row {
    QString text;
    int second = -1;
    QString kind; // the title of its kind
};
std::vector<Event_Row> Event_List(Cls_DB& db, const QString& car, const QString& driver, const QString& day);
// The driver's name of S_D2, "-" when it has none.
QString Driver_Name(Cls_DB& db, const QString& driver);

} // namespace vex::forms
