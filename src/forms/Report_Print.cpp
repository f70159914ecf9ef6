#include "forms/Report_Print.h"

#include "analysis/Graph_Surface.h"
#include "core/Messages.h"
#include "forms/Msg_Box.h"
#include "reports/Cls_Report.h"
#include "reports/Printer_Device.h"

#include <QPageLayout>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>

namespace vex::forms {

namespace {

Printer_List_Hook& List_Hook()
{
    static Printer_List_Hook hook;
    return hook;
}

Printer_Setup_Hook& Setup_Hook()
{
    static Printer_Setup_Hook hook;
    return hook;
}

// The printer of a window: the printers it offers are those of the system
// (or of the hook).
class Window_Printer : public Printer_Device {
public:
    using Printer_Device::Printer_Device;
    QStringList Device_Names() const override { return Printer_Names(); }
};

// The dialog, or the hook in its place.
bool Set_Up(QWidget* parent, QPrinter& printer)
{
    if (Setup_Hook())
        return Setup_Hook()(printer);
    QPrintDialog dialog(&printer, parent);
    return dialog.exec() == QDialog::Accepted;
}

void Show_Boxes(Cls_Report& report)
{
    report.Msg_Box = [](const QString& text, const QString& title) {
        Msg_Box(text, QMessageBox::Warning, title);
    };
}

} // namespace

Printer_List_Hook Set_Printer_List_Hook(Printer_List_Hook hook)
{
    return std::exchange(List_Hook(), std::move(hook));
}

Printer_Setup_Hook Set_Printer_Setup_Hook(Printer_Setup_Hook hook)
{
    return std::exchange(Setup_Hook(), std::move(hook));
}

QStringList Printer_Names()
{
    return List_Hook() ? List_Hook()() : QPrinterInfo::availablePrinterNames();
}

void Print_Report(QWidget* parent, Cls_Report& report, const Report_Routine& routine)
{
    Show_Boxes(report);
    QPrinter printer(QPrinter::HighResolution);
    Window_Printer device(printer);
    // Without a printer the routine tells so before any dialog.
    if (!Printer_Names().isEmpty() && !Set_Up(parent, printer))
        return;
    if (!routine(report, device) && !device.Error.isEmpty())
        Msg_Box(device.Error, QMessageBox::Warning, LoadResString(169));
}

void Preview_Report(QWidget* parent, Cls_Report& report, const Report_Routine& routine)
{
    Show_Boxes(report);
    QPrinter printer(QPrinter::HighResolution);
    Window_Printer device(printer);
    if (Printer_Names().isEmpty()) {
        routine(report, device); // messages 168 and 169, and no pages
        return;
    }
    QPrintPreviewDialog preview(&printer, parent);
    preview.setWindowTitle(LoadResString(628));
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
                     [&](QPrinter* p) {
                         Window_Printer pages(*p);
                         routine(report, pages);
                     });
    preview.exec();
}

void Print_With_Dialog(QWidget* parent, bool landscape, const std::function<void(QPagedPaintDevice&)>& print)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    if (Printer_Names().isEmpty()) {
        Msg_Box(LoadResString(168), QMessageBox::Warning, LoadResString(169));
        return;
    }
    if (Set_Up(parent, printer))
        print(printer);
}

void Page_Title(Graph_Surface& s, const QString& title)
{
    s.Set_FontSize(20);
    s.CurrentX = (s.ScaleWidth() - s.TextWidth(title)) / 2;
    s.CurrentY = 0;
    s.Print(title);
}

} // namespace vex::forms
