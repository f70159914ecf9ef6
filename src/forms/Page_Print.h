#pragma once
// Printing from a window: the printer chosen in the system's dialog, and
// the title every printed page carries.
#include <QString>
#include <functional>

class QPagedPaintDevice;
class QWidget;

namespace vex {
class Graph_Surface;
}

namespace vex::forms {

// Asks for a printer (A4, landscape or portrait) and prints on it.
void Print_With_Dialog(QWidget* parent, bool landscape, const std::function<void(QPagedPaintDevice&)>& print);

// The title of a page, FontSize 20, centred at its top; CurrentY below it.
void Page_Title(Graph_Surface& s, const QString& title);

} // namespace vex::forms
