// One driver's days (driverday1): the car by its number, the trip's times,
// distance, the three overspeed bands, the event counts, the idle time of
// the day's idle list and the mark.
#include "reports/Excel_Report.h"

#include "analysis/Status_Grids.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

namespace vex {

namespace {

using namespace excel_detail;

constexpr int kDriverDayRow = 6;

Excel_Result Driver_Days(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    Recordset rs = db.DB_RSet_D_D(
        QStringLiteral("SELECT * FROM D_D1 WHERE (RIGHT(D_F1,6)) >=? AND (RIGHT(D_F1,6)) <= ? AND  (MID(D_F1,7,6)) = ? "
                       "ORDER BY D_F4"),
        {sel.from, sel.to, sel.driver});
    if (rs.RecordCount() < 1)
        return No_Data();
    Xlsx_Book book;
    if (!Excel_Open(book, QStringLiteral("list"), Excel_Template_Path(appDir, QStringLiteral("driverday1.xltx"))))
        return Missing_Template(true, kErrUnlabelled, book.Error());
    book.Set_Text(QStringLiteral("A1"), LoadResString(716));
    Put_Period(book, sel, LoadResString(633), sel.driver + QStringLiteral(" / ") + Driver_Name(db, sel.driver));
    book.Set_Text(QStringLiteral("G4"), Overspeed_Band_Group());
    const QStringList bands = Overspeed_Band_Heads();
    for (int i = 0; i < 3; ++i)
        book.Set_Text(7 + i, 5, bands[i]);

    int row = kDriverDayRow;
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext(), ++row) {
        Tell_Rows(sel, row - kDriverDayRow, rs.RecordCount());
        auto N = [&](const char* f) { return rs.Field(QLatin1String(f)).toDouble(); };
        book.Copy_Row_Format(kDriverDayRow, row);
        book.Set_Text(1, row, Date_Dash(rs.Text(QStringLiteral("D_F4"))));
        book.Set_Text(2, row, Car_Name(db, rs.Text(QStringLiteral("D_F2"))));
        book.Set_Text(3, row, Hh_Mm(rs.Text(QStringLiteral("D_F5"))));
        book.Set_Text(4, row, Hh_Mm(rs.Text(QStringLiteral("D_F7"))));
        book.Set_Number(5, row, N("D_F8") / 10.0);
        const char* counts[] = {"D_F15", "D_F16", "D_F17", "D_F11", "D_F9", "D_F10", "D_F13", "D_F12"};
        for (int i = 0; i < 8; ++i)
            book.Set_Number(7 + i, row, N(counts[i]));
        book.Set_Text(15, row, Clock_Text(Idle_Seconds(db, QStringLiteral("SELECT * FROM D_DI WHERE D_F1=?"),
                                                        {rs.Text(QStringLiteral("D_F1"))})));
        book.Set_Number(16, row, N("D_F14"));
    }
    return Save(book, out.isEmpty() ? Excel_Report_Path(appDir, QStringLiteral("driverday1_") + sel.driver, sel) : out,
                kErrUnlabelled);
}

} // namespace

Excel_Result Excel_Driver_Day(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kErrUnlabelled, [&] { return Driver_Days(db, appDir, sel, out); });
}

} // namespace vex
