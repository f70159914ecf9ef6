#include "core/Cls_Config.h"

#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Recordset.h"

namespace vex {

bool Cls_Config::DB_Edit(Recordset& rs, const Globals& g)
{
    return Guarded(1088, [&] {
        const QVariant values[23] = {
            U_Name, U_Tel, U_Fax, U_Business, U_UserID, U_Pass, U_PackDir, U_DBBackup, U_Port,
            S_IP, S_Port, S_User, S_Password, S_CompanyCode, C_RPM, C_Oil, g.Max_Speed_Axis,
            g.Max_RPM_Axis, g.RPM_Tick10, C_VAL, g.Idle_Minutes, S_Email, Car_VAL};
        for (int i = 0; i < 23; ++i)
            rs.Set(QStringLiteral("D_F%1").arg(i + 1), values[i]);
        rs.Update();
        C_RPM = int16_t(rs.Field(QStringLiteral("D_F15")).toInt());
    });
}

} // namespace vex
