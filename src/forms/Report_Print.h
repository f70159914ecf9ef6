#pragma once
// Printing from a window: a report routine sent to the printer chosen in
// the system's print dialog, or shown in a print preview of the same
// routine; with no printer at all the routine says so itself (messages 168
// and 169). Tests and the screenshot run decide in place of the dialog.
#include <QString>
#include <QStringList>
#include <functional>

class QPagedPaintDevice;
class QPrinter;
class QWidget;

namespace vex {
class Cls_Report;
class Graph_Surface;
class Report_Printer;
}

namespace vex::forms {

// A report routine of Cls_Report on a printer; true when its pages got out.
using Report_Routine = std::function<bool(Cls_Report&, Report_Printer&)>;

// Prints: the dialog chooses the printer (nothing when cancelled).
void Print_Report(QWidget* parent, Cls_Report& report, const Report_Routine& routine);
// Shows the routine's pages in a print preview, from where they may be
// printed as well.
void Preview_Report(QWidget* parent, Cls_Report& report, const Report_Routine& routine);

// Pages a window draws itself (an event list), on the printer chosen.
void Print_With_Dialog(QWidget* parent, bool landscape, const std::function<void(QPagedPaintDevice&)>& print);
// The title of such a page, FontSize 20, centred at its top; CurrentY below it.
void Page_Title(Graph_Surface& s, const QString& title);

// The printers of the system; a hook answers instead (tests: none at all).
using Printer_List_Hook = std::function<QStringList()>;
Printer_List_Hook Set_Printer_List_Hook(Printer_List_Hook hook);
QStringList Printer_Names();

// Sets the printer up in place of the print dialog: false cancels. A test
// sends the pages to a PDF file or to a printer by name.
using Printer_Setup_Hook = std::function<bool(QPrinter&)>;
Printer_Setup_Hook Set_Printer_Setup_Hook(Printer_Setup_Hook hook);

} // namespace vex::forms
