#include "acquisition/Last_Reception.h"

#include "core/Err_Proc.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"

namespace vex {

QString Last_Reception_Day(Cls_DB& db, const QString& car6)
{
    QString day = QStringLiteral("000000");
    Guarded(1103, [&] {
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 WHERE (LEFT(D_F1,6)) = ? ORDER BY D_F4 DESC"),
                                      {car6});
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
            const QString d = rs.Text(QStringLiteral("D_F4"));
            if (d.size() != 6 || !All_Digits(d))
                continue;
            const int yy = d.left(2).toInt(), mm = d.mid(2, 2).toInt(), dd = d.mid(4, 2).toInt();
            if (yy != 0 && mm >= 1 && mm <= 12 && dd >= 1 && dd <= 31) {
                day = d;
                return;
            }
        }
    });
    return day;
}

} // namespace vex
