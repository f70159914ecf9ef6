#pragma once
// The start and the end of a run of either program: the shared objects of
// G() are made here, above every layer they come from, and dropped here.
#include <QString>

namespace vex {

// Start-up: marks, divisors, folder, INI, shared objects. appDir is the
// application folder.
void Main_Start(const QString& appDir);
// Closes the serial port if open, then drops the shared objects in the order
// IO, DB, Config (closing the connection on the way).
void Main_Shutdown();

} // namespace vex
