#pragma once
// The seconds before the last hard brakings: the recorder keeps four
// buffers of 60 speeds (a second each) with the time of each brake, which
// the memory pack path stores in D_D2.D_F3 (480 characters, 120 a buffer)
// and D_F4 (the time text). The chart shows one buffer.
#include <QString>
#include <array>
#include <cstdint>

namespace vex {

class Cls_DB;
class Graph_Surface;

class Quick_Brake_Chart {
public:
    int16_t Out_Direction = 0;  // 0 window, else paper
    QString Quick_Brack_Date;   // four buffers of 120 hexadecimal characters
    QString Quick_Brack_Time;   // stamps of 10 digits, MMddHHmmss, one a slot
    QString Driver_Code;        // driver and day (YYMMDD) of the row the buffers came from
    QString Day;

    // The newest buffers stored for the car; false when none is stored.
    bool Load(Cls_DB& db, const QString& car);
    // A slot the recorder never filled: its stamp or its buffer is zeros.
    bool Empty_Slot(int slot) const;

    // Geometry of the last chart (read only for the views).
    float BX_Count = 60, BY_Count = 0;
    float BLeft = 0, BTop = 0, BRight = 0, BBottom = 0, BX1 = 0, BY1 = 0, BX2 = 0, BX_Gap = 0, BY_Gap = 0;
    float QB_Current_Point = 0; // X of sample 1, 0 when nothing was drawn

    // Slot 1 to 4 on the surface; an empty slot draws the frame only.
    void Quick_Brack_Graph(Graph_Surface& s, int slot);
    // Sample n of the drawn buffer, 0 outside 1 to BX_Count.
    int16_t QB_Speed_Search(int n) const;
    // X of sample n.
    float Sample_X(int n) const { return BX2 + float(n) * BX_Gap; }
    // The stamp of the drawn slot as the title shows it.
    QString Stamp;

private:
    std::array<int16_t, 61> speed_{};
};

} // namespace vex
