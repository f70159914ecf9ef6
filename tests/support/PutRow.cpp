#include "support/PutRow.h"

#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

namespace vex::test {

void Put_Row(const QString& table, const QString& key, const Row_Fields& fields)
{
    Recordset rs = G().DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM %1 WHERE D_F1=?").arg(table), {key});
    rs.AddNew();
    rs.Set(QStringLiteral("D_F1"), key);
    for (const auto& [name, value] : fields)
        rs.Set(name, value);
    rs.Update();
}

} // namespace vex::test
