#include "reports/Excel_Grid.h"

#include "platform/AppFolder.h"

namespace vex {

namespace {

constexpr int kRecordRow = 5;

// Figures go in as numbers, so that the template's number formats apply;
// codes keep their leading zeros as text.
void Put_Cell(Xlsx_Book& book, int col, int row, const QString& text)
{
    bool ok = false;
    const double v = text.toDouble(&ok);
    const bool code = text.size() > 1 && text.startsWith(QLatin1Char('0')) && !text.startsWith(QLatin1String("0."));
    if (ok && !code)
        book.Set_Number(col, row, v);
    else
        book.Set_Text(col, row, text);
}

} // namespace

Excel_Result Excel_Grid_Export(const QString& appDir, const Excel_Grid& grid, const QString& out)
{
    using namespace excel_detail;
    return Trapped(0, [&] {
        if (grid.rows.empty())
            return No_Data();
        Xlsx_Book book;
        if (!Excel_Open(book, QStringLiteral("condition"), Excel_Template_Path(appDir, grid.templ)))
            return Missing_Template(true, 0, book.Error());
        if (!grid.title.isEmpty())
            book.Set_Text(QStringLiteral("A1"), grid.title);
        book.Set_Text(QStringLiteral("A2"), grid.periodLabel);
        book.Set_Text(QStringLiteral("B2"), grid.period);
        for (int c = 0; c < grid.heads.size(); ++c)
            book.Set_Text(c + 1, 4, grid.heads[c]);
        int row = kRecordRow;
        for (const QStringList& cells : grid.rows) {
            book.Copy_Row_Format(kRecordRow, row);
            for (int c = 0; c < cells.size(); ++c)
                Put_Cell(book, c + 1, row, cells[c]);
            ++row;
        }
        QString period = grid.fileTag.isEmpty() ? grid.period : grid.fileTag;
        period.remove(QLatin1Char('-'));
        const QString path = App_Path(appDir, QStringLiteral("\\report\\%1_%2.xlsx").arg(grid.report, period));
        return Save(book, out.isEmpty() ? path : out, 0);
    });
}

} // namespace vex
