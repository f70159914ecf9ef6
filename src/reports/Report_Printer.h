#pragma once
// The paper a report goes to: the system's printer, a print preview, or a
// PDF file. A report routine asks for the printers the system has (none:
// messages 168 and 169), opens one document of A4 pages in its orientation,
// draws page after page and ends the document.
#include <QString>
#include <QStringList>
#include <memory>

class QPagedPaintDevice;
class QPdfWriter;

namespace vex {

class Report_Printer {
public:
    virtual ~Report_Printer() = default;
    // The device names of the printers the document may go to.
    virtual QStringList Device_Names() const = 0;
    // A4 in portrait or landscape, the document titled; the device to draw
    // on, or null with the reason in Error.
    virtual QPagedPaintDevice* Begin_Doc(const QString& title, bool landscape) = 0;
    // After the painter has ended: false with the reason in Error when the
    // pages did not get where they were going.
    virtual bool End_Doc() { return true; }
    QString Error;
};

// A4 pages into a PDF file (vexcli, the benchmark). Margins of 10 mm, as a
// printer's printable area leaves.
class Pdf_Printer : public Report_Printer {
public:
    explicit Pdf_Printer(QString path, int dpi = 300);
    ~Pdf_Printer() override;
    QStringList Device_Names() const override { return {path_}; }
    QPagedPaintDevice* Begin_Doc(const QString& title, bool landscape) override;
    bool End_Doc() override;

private:
    QString path_;
    int dpi_;
    std::unique_ptr<QPdfWriter> pdf_;
};

} // namespace vex
