// A template of any bytes, as a user may leave one in the Excel folder:
// opened, filled across a further sheet and saved. A template that opens
// must give a workbook that opens again; nothing is left under the
// temporary name, whatever happened.
#include "targets/Fuzz_Targets.h"

#include "reports/Xlsx_Book.h"

#include <QFile>

namespace vex::fuzz {

void Xlsx_Template(Sandbox& box, std::span<const uint8_t> input)
{
    const QString templ = box.Write(QStringLiteral("Excel/in.xltx"), Bytes(input));
    const QString out = box.Path(QStringLiteral("report/out.xlsx"));
    Xlsx_Book book;
    if (!book.Open(templ, QStringLiteral("list")))
        return;
    book.Set_Text(QStringLiteral("A1"), QStringLiteral("운행일"));
    book.Copy_Row_Format(5, 6);
    book.Set_Number(3, 6, 12.5);
    if (!book.Add_Sheet(QStringLiteral("2026-01-06"), 4, 5))
        return;
    book.Set_Text(2, 5, QStringLiteral("23:59:59"));
    const bool saved = book.Save(out);
    if (QFile::exists(out + QStringLiteral(".part")))
        box.Fault(QStringLiteral("a half-written workbook stays under its temporary name"));
    Xlsx_Book again;
    if (saved && (!again.Open(out, QStringLiteral("2026-01-06")) || again.Text(2, 5) != QStringLiteral("23:59:59")))
        box.Fault(QStringLiteral("a saved workbook does not open again: ") + again.Error());
}

} // namespace vex::fuzz
