// Day rows of the stored trips: one car's days (carday) or every car's
// (carday1, the car code in B where carday has the driver).
#include "reports/Excel_Report.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

namespace vex {

namespace {

using namespace excel_detail;

constexpr int kCarDayRow = 6;

double Number(const Recordset& rs, const char* field)
{
    return rs.Field(QLatin1String(field)).toDouble();
}

void Put_Captions(Xlsx_Book& book, bool allCars)
{
    book.Set_Text(QStringLiteral("A4"), LoadResString(837));
    book.Set_Text(QStringLiteral("B4"), allCars ? LoadResString(632) : LoadResString(633));
    book.Set_Text(QStringLiteral("C4"), LoadResString(838) + QLatin1Char(' ') + LoadResString(848));
    book.Set_Text(QStringLiteral("F4"), LoadResString(1159));
    book.Set_Text(QStringLiteral("K4"), QStringLiteral("평점"));
    book.Set_Text(QStringLiteral("C5"), LoadResString(846));
    book.Set_Text(QStringLiteral("D5"), LoadResString(847));
    book.Set_Text(QStringLiteral("E5"), LoadResString(840));
    book.Set_Text(QStringLiteral("F5"), LoadResString(1154));
    book.Set_Text(QStringLiteral("G5"), LoadResString(1155));
    book.Set_Text(QStringLiteral("H5"), LoadResString(1157));
    book.Set_Text(QStringLiteral("I5"), LoadResString(1156));
    book.Set_Text(QStringLiteral("J5"), QStringLiteral("IDLE"));
}

Excel_Result Day_Rows(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out, bool allCars)
{
    QString sql = QStringLiteral("SELECT * FROM D_D1 WHERE (RIGHT(D_F1,6)) >=? AND (RIGHT(D_F1,6)) <= ?");
    QVariantList values{sel.from, sel.to};
    if (!allCars) {
        sql += QStringLiteral(" AND  (LEFT(D_F1,6)) = ?");
        values << sel.car;
    }
    Recordset rs = db.DB_RSet_D_D(sql + QStringLiteral(" ORDER BY D_F4"), values);
    if (rs.RecordCount() < 1)
        return No_Data();
    Xlsx_Book book;
    const QString templ = allCars ? QStringLiteral("carday1.xltx") : QStringLiteral("carday.xltx");
    if (!Excel_Open(book, QStringLiteral("list"), Excel_Template_Path(appDir, templ)))
        return Missing_Template(true, kErrUnlabelled, book.Error());
    if (!allCars)
        book.Set_Text(QStringLiteral("A1"), LoadResString(719));
    if (allCars)
        Put_Period(book, sel, {}, {});
    else
        Put_Period(book, sel, LoadResString(632), sel.car + QStringLiteral(" / ") + Car_Name(db, sel.car));
    Put_Captions(book, allCars);

    int row = kCarDayRow;
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext(), ++row) {
        Tell_Rows(sel, row - kCarDayRow, rs.RecordCount());
        book.Copy_Row_Format(kCarDayRow, row);
        book.Set_Text(1, row, Date_Dash(rs.Text(QStringLiteral("D_F4"))));
        book.Set_Text(2, row, rs.Text(allCars ? QStringLiteral("D_F2") : QStringLiteral("D_F3")));
        book.Set_Text(3, row, Hh_Mm(rs.Text(QStringLiteral("D_F5"))));
        book.Set_Text(4, row, Hh_Mm(rs.Text(QStringLiteral("D_F7"))));
        book.Set_Number(5, row, Number(rs, "D_F8") / 10.0);
        book.Set_Number(6, row, Number(rs, "D_F11"));
        book.Set_Number(7, row, Number(rs, "D_F9"));
        book.Set_Number(8, row, Number(rs, "D_F10"));
        book.Set_Number(9, row, Number(rs, "D_F13"));
        book.Set_Number(10, row, Number(rs, "D_F12"));
        book.Set_Number(11, row, Number(rs, "D_F14"));
    }
    const QString name = allCars ? QStringLiteral("carday1") : QStringLiteral("carday_") + sel.car;
    return Save(book, out.isEmpty() ? Excel_Report_Path(appDir, name, sel) : out, kErrUnlabelled);
}

} // namespace

Excel_Result Excel_Car_Day(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kErrUnlabelled, [&] { return Day_Rows(db, appDir, sel, out, false); });
}

Excel_Result Excel_All_Cars_Day(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kErrUnlabelled, [&] { return Day_Rows(db, appDir, sel, out, true); });
}

} // namespace vex
