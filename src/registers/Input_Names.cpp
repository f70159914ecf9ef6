#include "registers/Input_Names.h"

#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

namespace vex {

QStringList DI_Names_Load(Cls_DB& db)
{
    QStringList names(6);
    Guarded(1036, [&] {
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D4"));
        if (rs.RecordCount() < 1)
            return;
        for (int i = 0; i < 6; ++i)
            names[i] = rs.Text(QStringLiteral("D_F%1").arg(i + 1));
    });
    return names;
}

bool DI_Names_Save(Cls_DB& db, const QStringList& names, Globals& g)
{
    return Guarded(1037, [&] {
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D4"));
        if (rs.RecordCount() < 1)
            rs.AddNew();
        for (int i = 0; i < 6; ++i)
            rs.Set(QStringLiteral("D_F%1").arg(i + 1), names.value(i));
        rs.Update();
        QString* targets[] = {&g.DI_Name1, &g.DI_Name2, &g.DI_Name3, &g.DI_Name4, &g.DI_Name5, &g.DI_Name6};
        for (int i = 0; i < 6; ++i)
            *targets[i] = names.value(i);
    });
}

} // namespace vex
