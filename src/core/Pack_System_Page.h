#pragma once
// The system page of a memory pack after its repairs: who the pack belongs
// to and how far the desktop has read it. Stamps are yyMMddHHmm.
#include <QString>

namespace vex {

struct Pack_System_Page {
    QString checkPack;   // "AA" on a page in use
    QString checkPack1;  // "AA" in use; "11" or "00" on a fresh pack
    QString car;         // 4
    QString driver;      // 4
    QString warehouse;   // yyMMdd the pack was issued
    QString serialNumber;
    QString machineNumber;
    QString packInsert;  // first stamp of the pack's data
    QString packLastWrite; // last stamp the recorder wrote
    QString totalDistance;
    QString totalEngine;
    QString dbWriteDate; // how far the desktop has read
};

} // namespace vex
