#include "registers/Register_Lookup.h"

#include "store/Cls_DB.h"

namespace vex {

QString Driver_Name_Of(Cls_DB& db, const QString& driver)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D2 WHERE D_F1 =?"), {driver});
    if (rs.RecordCount() > 0 && !rs.Field(QStringLiteral("D_F2")).isNull())
        return rs.Text(QStringLiteral("D_F2"));
    return QStringLiteral("-");
}

QString Management_Number(Cls_DB& db, const QString& car)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1 = ?"), {car});
    if (rs.RecordCount() < 1)
        return {};
    const QString number = rs.Text(QStringLiteral("D_F2")).trimmed();
    return number.isEmpty() ? rs.Text(QStringLiteral("D_F3")).trimmed() : number;
}

} // namespace vex
