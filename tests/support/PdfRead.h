#pragma once
// Printed reports read back: the text of a PDF (poppler's pdftotext), its
// page count and page size, and the PDF that the test script's CUPS queue
// (cups-pdf) writes for a job.
#include <QString>

namespace vex::test {

// Text of pages first to last (0: all), empty when it can't be read.
QString Pdf_Text(const QString& path, int first = 0, int last = 0);
// Pages of the document, 0 when it can't be read.
int Pdf_Pages(const QString& path);
// "A4 portrait" or "A4 landscape" by pdfinfo's page size (in points, a
// point either way), else that size as it reads.
QString Pdf_Page_Size(const QString& path);

// The cups-pdf queue the test script set up (VEX_TEST_CUPS_PRINTER), or
// empty; why in reason when there is none.
QString Cups_Printer(QString* reason = nullptr);
// The newest PDF cups-pdf wrote (VEX_TEST_CUPS_OUT) after a job was sent
// at or after the given msecs since epoch; waits up to timeoutMs.
QString Wait_For_Cups_Pdf(qint64 sentMs, int timeoutMs = 60000);

} // namespace vex::test
