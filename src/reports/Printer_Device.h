#pragma once
// A report on a QPrinter: a printer of the system by name, or the printer a
// print dialog or a preview hands over. For the programs that link Qt Print
// Support (the desktop and vexcli); the library below them draws on any
// paged device and never includes this.
#include "reports/Report_Printer.h"

#include <QPageLayout>
#include <QPageSize>
#include <QPrinter>
#include <QPrinterInfo>

namespace vex {

class Printer_Device : public Report_Printer {
public:
    // The document goes to printer as it is set up (its name, or preview).
    explicit Printer_Device(QPrinter& printer) : printer_(printer) {}

    QStringList Device_Names() const override { return QPrinterInfo::availablePrinterNames(); }

    QPagedPaintDevice* Begin_Doc(const QString& title, bool landscape) override
    {
        printer_.setDocName(title);
        printer_.setPageSize(QPageSize(QPageSize::A4));
        printer_.setPageOrientation(landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
        return &printer_;
    }

    bool End_Doc() override
    {
        if (printer_.printerState() == QPrinter::Error || printer_.printerState() == QPrinter::Aborted) {
            Error = QStringLiteral("the printer %1 refused the document").arg(printer_.printerName());
            return false;
        }
        return true;
    }

private:
    QPrinter& printer_;
};

} // namespace vex
