#include "reports/Report_Printer.h"

#include <QFileInfo>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>

namespace vex {

Pdf_Printer::Pdf_Printer(QString path, int dpi) : path_(std::move(path)), dpi_(dpi) {}

Pdf_Printer::~Pdf_Printer() = default;

QPagedPaintDevice* Pdf_Printer::Begin_Doc(const QString& title, bool landscape)
{
    pdf_ = std::make_unique<QPdfWriter>(path_);
    pdf_->setResolution(dpi_);
    pdf_->setTitle(title);
    pdf_->setCreator(QStringLiteral("VEX"));
    pdf_->setPageLayout(QPageLayout(QPageSize(QPageSize::A4),
                                    landscape ? QPageLayout::Landscape : QPageLayout::Portrait,
                                    QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter));
    return pdf_.get();
}

bool Pdf_Printer::End_Doc()
{
    pdf_.reset(); // the file is complete once the writer goes
    if (!QFileInfo(path_).isFile() || QFileInfo(path_).size() == 0) {
        Error = QStringLiteral("cannot write ") + path_;
        return false;
    }
    return true;
}

} // namespace vex
