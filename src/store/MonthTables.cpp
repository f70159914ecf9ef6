// Month sums by car and driver (D_M1) and over everything (D_Y1), the
// recorder identity of a pack's system page (D_Y) and the per-car counters
// (S_D13).
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/Pack_System_Page.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/EventDetector.h"

#include <QStringList>

namespace vex {

namespace {

constexpr int16_t kErrMonth_Sum = 1108;
constexpr int16_t kErrSave_SYSTEM = 1109;
constexpr int16_t kErrSave_S_D13 = 1110;

} // namespace

int16_t Cls_DB::DB_Month_Sum(const QString& month)
{
    return Saved(kErrMonth_Sum, [&] {
        // The columns of D_M1 follow this statement, not D_D1: the band sum
        // of D_F17 comes second, and the average falls on D_F16 while the
        // mark D_F14 is summed. The monthly reports read them so.
        Recordset sums = DB_RSet_D_D(
            QStringLiteral("SELECT D_F2, D_F3, SUM(D_F8)AS D_F8_1, SUM(D_F9)AS D_F9_1, SUM(D_F10)AS D_F10_1, "
                           "SUM(D_F11)AS D_F11_1, SUM(D_F12)AS D_F12_1, SUM(D_F13)AS D_F13_1, SUM(D_F14)AS D_F14_1, "
                           "SUM(D_F15)AS D_F15_1, AVG(D_F16)AS D_F16_1, SUM(D_F17)AS D_F17_1 FROM D_D1 "
                           "WHERE Left(D_F4,4) =? GROUP BY D_F3,D_F2 ORDER BY D_F3, D_F2"),
            {month});
        for (sums.MoveFirst(); !sums.EOF_(); sums.MoveNext()) {
            const QString car = sums.Text(QStringLiteral("D_F2"));
            const QString driver = sums.Text(QStringLiteral("D_F3"));
            const QString key = month + car + driver;
            Recordset rs = DB_RSet_D_D(QStringLiteral("SELECT * FROM D_M1 WHERE D_F1=?"), {key});
            if (rs.RecordCount() < 1) {
                rs.AddNew();
                rs.Set(QStringLiteral("D_F1"), key);
                rs.Set(QStringLiteral("D_F2"), car);
                rs.Set(QStringLiteral("D_F3"), driver);
            }
            rs.Set(QStringLiteral("D_F4"), month);
            rs.Set(QStringLiteral("D_F5"), sums.Field(QStringLiteral("D_F8_1")));
            rs.Set(QStringLiteral("D_F6"), sums.Field(QStringLiteral("D_F17_1")));
            rs.Set(QStringLiteral("D_F7"), sums.Field(QStringLiteral("D_F9_1")));
            rs.Set(QStringLiteral("D_F8"), sums.Field(QStringLiteral("D_F10_1")));
            rs.Set(QStringLiteral("D_F9"), sums.Field(QStringLiteral("D_F11_1")));
            rs.Set(QStringLiteral("D_F10"), sums.Field(QStringLiteral("D_F12_1")));
            rs.Set(QStringLiteral("D_F11"), sums.Field(QStringLiteral("D_F13_1")));
            rs.Set(QStringLiteral("D_F12"), sums.Field(QStringLiteral("D_F14_1")));
            rs.Set(QStringLiteral("D_F13"), sums.Field(QStringLiteral("D_F15_1")));
            rs.Set(QStringLiteral("D_F14"), sums.Field(QStringLiteral("D_F16_1")));
            rs.Update();
            rs.Close();
        }
        sums.Close();

        Recordset total = DB_RSet_D_D(
            QStringLiteral("SELECT SUM(D_F5)AS D_F5_S, SUM(D_F6)AS D_F6_S, SUM(D_F7)AS D_F7_S, SUM(D_F8)AS D_F8_S, "
                           "SUM(D_F9)AS D_F9_S, SUM(D_F10)AS D_F10_S, SUM(D_F11)AS D_F11_S, SUM(D_F12)AS D_F12_S, "
                           "SUM(D_F13)AS D_F13_S, AVG(D_F14)AS D_F14_S FROM D_M1 WHERE Left(D_F4,4) =? GROUP BY D_F4"),
            {month});
        for (total.MoveFirst(); !total.EOF_(); total.MoveNext()) {
            Recordset rs = Row_Or_New(*this, QStringLiteral("D_Y1"), month);
            for (int c = 2; c <= 11; ++c)
                rs.Set(QStringLiteral("D_F%1").arg(c), total.Field(QStringLiteral("D_F%1_S").arg(c + 3)));
            rs.Update();
            rs.Close();
        }
        total.Close();
    });
}

int16_t Cls_DB::DB_Save_SYSTEM(const Pack_System_Page& page)
{
    return Saved(kErrSave_SYSTEM, [&] {
        const QString key = page.car + page.driver + page.serialNumber;
        Recordset rs = DB_RSet_D_D(QStringLiteral("SELECT * FROM D_Y WHERE D_F1=?"), {key});
        if (rs.RecordCount() < 1) {
            rs.AddNew();
            rs.Set(QStringLiteral("D_F1"), key);
            rs.Set(QStringLiteral("D_F2"), page.car);
            rs.Set(QStringLiteral("D_F3"), page.driver);
            rs.Set(QStringLiteral("D_F4"), page.warehouse);
        }
        // A page read again refreshes the serial number, the stamps and
        // the totals; the codes and the warehouse stay as first seen.
        rs.Set(QStringLiteral("D_F5"), page.serialNumber);
        rs.Set(QStringLiteral("D_F7"), page.packInsert);
        rs.Set(QStringLiteral("D_F8"), page.packLastWrite);
        rs.Set(QStringLiteral("D_F9"), page.totalDistance);
        rs.Set(QStringLiteral("D_F10"), page.totalEngine);
        rs.Update();
        rs.Close();
    });
}

int16_t Cls_DB::DB_SAVE_S_D13(const QString& car, const QString& value)
{
    return Saved(kErrSave_S_D13, [&] {
        // One value a counter column, D_F2 first, separated by commas; each
        // column given takes its stored value (Null as 0) less the value.
        const QStringList parts = value.split(QLatin1Char(','));
        Recordset rs = DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D13 WHERE D_F1=?"), {car});
        const bool adding = rs.RecordCount() < 1;
        if (adding) {
            rs.AddNew();
            rs.Set(QStringLiteral("D_F1"), car);
        }
        for (int k = 0; k < parts.size() && k < 11; ++k) {
            const QString column = QStringLiteral("D_F%1").arg(k + 2);
            if (parts[k].trimmed().isEmpty())
                continue;
            const QVariant stored = adding ? QVariant() : rs.Field(column);
            const double before = stored.isNull() ? 0.0 : stored.toDouble();
            rs.Set(column, before - Val(parts[k]));
        }
        rs.Update();
        rs.Close();
    });
}

} // namespace vex
