#pragma once
// The sixteen detail fields of the minute view for the trip a graph holds,
// as the view shows them and its printed report repeats them.
#include <QString>
#include <QStringList>

namespace vex {

class Operation_Graph;

// Captions of the sixteen fields (message ids; "IDLE" stands as it is).
QStringList Minute_Field_Captions();

// The fields with the cursor on clock minute m (from 0): car, driver, the time and speed
// under the cursor, start, end, distance, the counts, the mark, the distance
// driven by the cursor (a larger figure shown stays where the minute added
// nothing) and, with an RPM input, the RPM.
QStringList Minute_Fields(const Operation_Graph& og, int m, const QString& oldDistance);

// The fields as a view opens on its trip, the cursor at the left edge: the
// trip's start in the time field, speed and distance "0".
QStringList Opening_Fields(const Operation_Graph& og);

// Captions of the five fields of the seconds view, and the fields with the
// cursor on second s of the graph's hour (RPM only with an RPM
// input).
QStringList Second_Field_Captions();
QStringList Second_Fields(const Operation_Graph& og, const QString& car, const QString& driver,
                          int s);

// "HH : MM" of a minute of the day.
QString Minute_Text(int minute);
// "HH : MM" of a stored "HHmm".
QString Time_Text(const QString& hhmm);

} // namespace vex
