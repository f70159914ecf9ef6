#include "registers/Settings_Load.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

namespace vex {

const QString kDefault_PackDir = QStringLiteral("\\Pack");
const QString kDefault_DBBackup = QStringLiteral("\\DB\\Back");
const QString kDefault_Email = QStringLiteral("office@example.com");

namespace {

QVariant Or(const Recordset& rs, const char* column, const QVariant& fallback)
{
    const QVariant v = rs.Field(QLatin1String(column));
    return v.isNull() ? fallback : v;
}

QString Required(const Recordset& rs, const char* column)
{
    const QVariant v = rs.Field(QLatin1String(column));
    if (v.isNull())
        throw RunTimeError(QStringLiteral("Invalid use of Null: ") + QLatin1String(column));
    return v.toString();
}

} // namespace

void Read_S_D14(const Recordset& rs, Cls_Config& cfg, Globals& g)
{
    cfg.U_Name = Or(rs, "D_F1", QString()).toString();
    cfg.U_Tel = Or(rs, "D_F2", QString()).toString();
    cfg.U_Fax = Or(rs, "D_F3", QString()).toString();
    cfg.U_Business = Or(rs, "D_F4", QString()).toString();
    cfg.U_UserID = Required(rs, "D_F5");
    cfg.U_Pass = Required(rs, "D_F6");
    cfg.U_PackDir = Or(rs, "D_F7", kDefault_PackDir).toString();
    cfg.U_DBBackup = Or(rs, "D_F8", kDefault_DBBackup).toString();
    cfg.U_Port = Or(rs, "D_F9", QString()).toString();
    cfg.S_IP = Or(rs, "D_F10", QStringLiteral("000.000.000.000")).toString();
    cfg.S_Port = Or(rs, "D_F11", QStringLiteral("21")).toString();
    cfg.S_User = Or(rs, "D_F12", QStringLiteral("qemba")).toString();
    cfg.S_Password = Or(rs, "D_F13", QStringLiteral("qemba")).toString();
    cfg.C_RPM = int16_t(Or(rs, "D_F15", 0).toInt());
    cfg.C_Oil = int16_t(Or(rs, "D_F16", 1).toInt());
    cfg.C_VAL = int16_t(Or(rs, "D_F20", 0).toInt());
    cfg.Car_VAL = int16_t(Or(rs, "D_F23", 0).toInt());
    g.Max_Speed_Axis = Or(rs, "D_F17", 180).toFloat();
    g.Idle_Minutes = int16_t(Or(rs, "D_F21", 10).toInt());
    cfg.S_Email = Or(rs, "D_F22", kDefault_Email).toString();
    // The company code: "00000000" (also for a row that holds none) is a
    // site without a remote account, which the remote reception must see.
    cfg.S_CompanyCode = Or(rs, "D_F14", QString()).toString().trimmed();
    if (cfg.S_CompanyCode.isEmpty())
        cfg.S_CompanyCode = QStringLiteral("00000000");
    if (cfg.C_RPM == 1) {
        g.Max_RPM_Axis = int16_t(Or(rs, "D_F18", 3000).toInt());
        g.RPM_Tick10 = Or(rs, "D_F19", 40).toFloat();
    } else {
        g.Max_RPM_Axis = 0;
        g.RPM_Tick10 = 0;
    }
}

void Read_S_D10(const Recordset& rs, Cls_Config& cfg)
{
    auto i16 = [&](int col) { return int16_t(rs.Field(QStringLiteral("D_F%1").arg(col)).toInt()); };
    cfg.B_Val1 = rs.Text(QStringLiteral("D_F1"));
    cfg.B_Val2 = i16(2);
    cfg.B_Val3 = i16(3);
    cfg.B_Val4 = i16(4);
    cfg.B_Val5 = int32_t(rs.Field(QStringLiteral("D_F5")).toInt());
    int16_t* rest[] = {&cfg.B_Val6, &cfg.B_Val7, &cfg.B_Val8, &cfg.B_Val9,
                       &cfg.B_Val10, &cfg.B_Val11, &cfg.B_Val12, &cfg.B_Val13};
    for (int k = 0; k < 8; ++k)
        *rest[k] = i16(6 + k);
}

void Read_S_D4(const Recordset& rs, Globals& g)
{
    QString* names[] = {&g.DI_Name1, &g.DI_Name2, &g.DI_Name3, &g.DI_Name4, &g.DI_Name5, &g.DI_Name6};
    for (int i = 0; i < 6; ++i) {
        const QVariant v = rs.Field(QStringLiteral("D_F%1").arg(i + 1));
        if (!v.isNull())
            *names[i] = v.toString();
    }
}

bool Load_Settings(Cls_DB& db, Cls_Config& cfg, Globals& g)
{
    bool haveRow = false;
    const bool ok = Guarded(1002, [&] {
        Recordset s10 = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D10 ORDER BY D_F1 DESC"));
        if (s10.RecordCount() > 0)
            Read_S_D10(s10, cfg);
        Recordset s14 = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D14"));
        if (s14.RecordCount() < 1)
            return;
        haveRow = true;
        Read_S_D14(s14, cfg, g);
        Recordset s4 = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D4"));
        if (s4.RecordCount() > 0)
            Read_S_D4(s4, g);
    });
    return ok && haveRow;
}

bool DB_Edit(Cls_Config& cfg, Recordset& rs, const Globals& g)
{
    return Guarded(1088, [&] {
        const QVariant values[23] = {
            cfg.U_Name, cfg.U_Tel, cfg.U_Fax, cfg.U_Business, cfg.U_UserID, cfg.U_Pass, cfg.U_PackDir,
            cfg.U_DBBackup, cfg.U_Port, cfg.S_IP, cfg.S_Port, cfg.S_User, cfg.S_Password, cfg.S_CompanyCode,
            cfg.C_RPM, cfg.C_Oil, g.Max_Speed_Axis, g.Max_RPM_Axis, g.RPM_Tick10, cfg.C_VAL, g.Idle_Minutes,
            cfg.S_Email, cfg.Car_VAL};
        for (int i = 0; i < 23; ++i)
            rs.Set(QStringLiteral("D_F%1").arg(i + 1), values[i]);
        rs.Update();
        cfg.C_RPM = int16_t(rs.Field(QStringLiteral("D_F15")).toInt());
    });
}

} // namespace vex
