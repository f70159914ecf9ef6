#include "forms/Page_Print.h"

#include "analysis/Graph_Surface.h"

#include <QPageLayout>
#include <QPrintDialog>
#include <QPrinter>

namespace vex::forms {

void Print_With_Dialog(QWidget* parent, bool landscape, const std::function<void(QPagedPaintDevice&)>& print)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    QPrintDialog dialog(&printer, parent);
    if (dialog.exec() == QDialog::Accepted)
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
