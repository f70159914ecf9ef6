#pragma once
// Renders the login, the main window and every window of the program to PNG
// files, for looking at the layout in each language without a display.
#include <QString>

namespace vex::forms {

// Writes <dir>/<prefix>_<name>.png for each window; the number written.
// With sampleRows, empty registers first get a few rows, so that the grids
// show what they look like in use.
int Write_Screenshots(const QString& appDir, const QString& dir, const QString& prefix, bool sampleRows);

} // namespace vex::forms
