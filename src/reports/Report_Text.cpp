#include "reports/Report_Text.h"

#include "core/Messages.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"

namespace vex {

QString Hhmm_Text(const QString& hhmm)
{
    if (hhmm.trimmed().isEmpty())
        return {};
    const QString t = hhmm.trimmed().rightJustified(4, QLatin1Char('0'));
    return t.left(2) + QLatin1Char(':') + t.mid(2, 2);
}

QString Day_Dots(const QString& yymmdd)
{
    if (yymmdd.size() != 6)
        return yymmdd;
    return QStringLiteral("20") + yymmdd.left(2) + QLatin1Char('.') + yymmdd.mid(2, 2) + QLatin1Char('.') +
           yymmdd.mid(4, 2);
}

QString Km_Text(double km)
{
    return QString::number(km, 'f', 1);
}

QString Litres_Text(double litres)
{
    return QString::number(litres, 'f', 1);
}

double Rated_Litres(Cls_DB& db, const QString& car, double km)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1 = ?"), {car});
    const double rating = rs.RecordCount() > 0 ? Val(rs.Text(QStringLiteral("D_F7"))) : 0;
    return rating > 0 ? km / rating : 0;
}

QString Attachment_Note()
{
    return QStringLiteral("* ") + LoadResString(1131) + QStringLiteral(" (") + LoadResString(1132) +
           QStringLiteral(") ") + LoadResString(1133);
}

} // namespace vex
