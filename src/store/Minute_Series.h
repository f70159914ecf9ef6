#pragma once
// What the summary of a day reads off its stored minute series: the
// overspeed minutes with their bands and list (minute speed, D_D3), and the
// driven distance (minute distance, D_D7). The save of a day and the
// recount under new standards read them alike.
#include <QString>
#include <cstdint>

namespace vex {

// HHmm of a minute of the day (0 to 1439).
QString Minute_Time(int minute);

struct Overspeed_Minutes {
    int16_t count = 0; // minutes above the limit
    int band1 = 0;     // "10Km/h이내": limit + 1 to limit + 10
    int band2 = 0;     // "20Km/h이내": limit + 11 up to, not including, limit + 20
    int band3 = 0;     // "30Km/h이내": everything else, so limit + 20 and above
    QString list;      // six characters a minute: HHmm and the cell as it stands
};

// The minutes of a series of 1,440 hexadecimal cells above limit. The bands
// are not alike: limit + 10 falls into the first, limit + 20 into the third.
// Throws RunTimeError on a cell that isn't hexadecimal or a short series.
Overspeed_Minutes Count_Overspeed_Minutes(const QString& secData, double limit);

// A pack distance cell carries a flag in its first digit (8 added): the
// digit loses it in place. Other digits stay.
void Clear_Pack_Distance_Flags(QString& distanceCells);

// The distance cells ("XY", X.Y km) of a series added up, in tenths of a
// kilometre; each cell read as the number it starts with.
double Sum_Distance_Cells(const QString& distanceCells);

} // namespace vex
