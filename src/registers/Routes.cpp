#include "registers/Routes.h"

#include "core/Err_Proc.h"
#include "store/Cls_DB.h"

namespace vex {

namespace {

QStringList Column(Cls_DB& db, const QString& sql, const QVariantList& binds, const QString& column)
{
    QStringList out;
    Guarded(1036, [&] {
        Recordset rs = db.DB_RSet_D_D(sql, binds);
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
            out << rs.Text(column);
    });
    return out;
}

} // namespace

QStringList Route_Names(Cls_DB& db)
{
    return Column(db, QStringLiteral("SELECT Distinct D_F12 FROM S_D1 WHERE D_F12 IS NOT NULL ORDER BY D_F12 ASC"),
                  {}, QStringLiteral("D_F12"));
}

QStringList Route_Cars(Cls_DB& db, const QString& route)
{
    return Column(db, QStringLiteral("SELECT S_D1.D_F1 FROM S_D1 WHERE S_D1.D_F12 like ? ORDER BY D_F1"), {route},
                  QStringLiteral("D_F1"));
}

QString Route_Speed(Cls_DB& db, const QString& route)
{
    return Column(db, QStringLiteral("SELECT S_D1.D_F10 FROM S_D1 WHERE S_D1.D_F12 like ?"), {route},
                  QStringLiteral("D_F10"))
        .value(0);
}

QStringList Other_Cars(Cls_DB& db, const QString& route, bool unassignedOnly)
{
    QStringList out;
    Guarded(1036, [&] {
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 ORDER BY D_F1"));
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
            const QString r = rs.Text(QStringLiteral("D_F12"));
            if (!route.isEmpty() && r == route)
                continue;
            if (unassignedOnly && !r.isEmpty())
                continue;
            out << rs.Text(QStringLiteral("D_F1"));
        }
    });
    return out;
}

int Route_Save(Cls_DB& db, const QString& route, const QString& speed, const QStringList& cars,
               const QStringList& removed)
{
    if (route.isEmpty())
        return 152;
    int result = 150;
    auto write = [&](const QString& car, const QString& name, bool withSpeed) {
        const bool ok = Guarded(1037, [&] {
            Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1 = ?"), {car});
            if (rs.RecordCount() < 1)
                throw RunTimeError(QStringLiteral("no car ") + car);
            rs.Set(QStringLiteral("D_F12"), name);
            if (withSpeed)
                rs.Set(QStringLiteral("D_F10"), speed);
            rs.Update();
        });
        if (!ok)
            result = 151;
    };
    for (const QString& car : removed)
        write(car, QString(), false);
    for (const QString& car : cars)
        write(car, route, true);
    return result;
}

void Route_Delete(Cls_DB& db, const QString& route)
{
    Guarded(1037, [&] {
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F12 = ?"), {route});
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
            rs.Set(QStringLiteral("D_F12"), QString());
            rs.Set(QStringLiteral("D_F23"), QString());
            rs.Update();
        }
    });
}

} // namespace vex
