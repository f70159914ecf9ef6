#pragma once
// Driver numbers on a USB recorder's medium: the driver chosen at the desk
// is written into the recorder's identity file and its driver file, so that
// the recorder stamps its log with that driver from the next drive on.
//
//   Master00.dat   bytes 32, 33, 34: the code as three bytes; bytes 48 and
//                  49: the 16-bit value 170, low byte first ("AA" "00"),
//                  which tells the recorder a new driver is waiting
//   Driverid.dat   bytes 0, 1, 2: the code as three bytes
//
// The code is padded on the left with "0" to six characters and read in
// pairs as hexadecimal: "1234" -> 00 12 34. Files shorter than these bytes
// grow (with zeros) and missing files are made, as a write at a position
// does; nothing else of either file changes.
#include <QString>

namespace vex {

struct Driver_Medium_Result {
    bool written = false;
    QString message; // "저장 완료되었읍니다." or why nothing was written
};

// The three bytes of a driver code; false when the padded code holds a
// character that isn't a hexadecimal digit.
bool Driver_Code_Bytes(const QString& code, unsigned char out[3]);

// Writes the driver onto the medium whose root folder is mediumRoot. An
// empty root (no medium found): "메모리 팩이 없읍니다!". An empty code
// (no driver chosen) writes nothing and says nothing. A code that isn't
// hexadecimal is a run-time error of the form's handler: nothing written.
Driver_Medium_Result Write_Driver_To_Medium(const QString& mediumRoot, const QString& code);

} // namespace vex
