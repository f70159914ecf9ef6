#pragma once
// Why a trip has its mark: the stored counts of D_D1 through the mark's own
// computation, beside the mark the trip carries, and the events behind each
// count from the event tables with their times (so that each can open the
// seconds view at its moment).
#include "store/Mark_Explanation.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace vex {

class Cls_DB;
class Cls_Config;

struct Explained_Event {
    Mark_Event kind;
    int second;         // of the day
    QString detail;     // "76→63 km/h", "10:05:00-10:17:30", "95 km/h"
};

struct Trip_Explanation {
    bool found = false;
    QString car, driver, day;
    Mark_Counts counts;
    QString storedMark;             // D_D1.D_F14 as stored
    Mark_Explanation mark;
    std::vector<Explained_Event> events; // by kind, then by time
};

// Throws RunTimeError as a recordset does, and when the mark's 16-bit
// products overflow.
Trip_Explanation Explain_Trip(Cls_DB& db, const Cls_Config& standards, const QString& car, const QString& driver,
                              const QString& day);

// The explanation as lines of text in the system's language.
QStringList Explanation_Lines(const Trip_Explanation& e);
QString Mark_Event_Name(Mark_Event kind);

} // namespace vex
