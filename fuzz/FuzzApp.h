#pragma once
// One started application for all inputs of a fuzz run: a temporary folder,
// its database open, the settings loaded.
#include <QString>

namespace vex::fuzz {

// Starts the application once; returns the folder.
const QString& App();

// Writes bytes to a file, whole.
void Write(const QString& path, const uint8_t* data, size_t size);

} // namespace vex::fuzz
