#include "registers/Config_Rules.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "registers/Settings_Load.h"
#include "store/Cls_DB.h"

#include <cmath>

namespace vex {

namespace {

QString Num(double v)
{
    return QString::number(v, 'g', 10);
}

// The conversion to a 16-bit integer: rounding half to even, a value out of
// range an overflow.
int16_t To_Int16(double v)
{
    const double r = std::nearbyint(v);
    if (r < -32768 || r > 32767)
        throw RunTimeError(QStringLiteral("Overflow"));
    return int16_t(r);
}

double Number_Or_Throw(const QString& text)
{
    double v = 0;
    if (!Config_Number(text, v))
        throw RunTimeError(QStringLiteral("Type mismatch: ") + text);
    return v;
}

} // namespace

bool Config_Number(const QString& text, double& value)
{
    if (!Is_Numeric(text))
        return false;
    value = Val(text.trimmed());
    return true;
}

Config_Fields Config_Show(const Cls_Config& cfg, const Globals& g)
{
    Config_Fields f;
    f.text[1] = cfg.U_Name;
    f.text[2] = cfg.U_Tel;
    f.text[3] = cfg.U_Fax;
    f.text[4] = cfg.U_Business;
    f.text[5] = cfg.U_UserID;
    f.text[6] = cfg.U_Pass;
    f.text[7] = cfg.U_PackDir;
    f.text[8] = cfg.U_Pass;
    f.text[9] = cfg.U_Port;
    f.text[10] = cfg.S_IP;
    f.text[11] = cfg.S_Port;
    f.text[12] = cfg.S_User;
    f.text[13] = cfg.S_Password;
    f.text[14] = cfg.S_CompanyCode;
    f.text[15] = Num(g.Max_Speed_Axis);
    f.text[16] = QString::number(g.Max_RPM_Axis);
    f.text[17] = Num(g.RPM_Tick10 / 10.0);
    f.text[18] = QString::number(g.Idle_Minutes);
    f.text[19] = cfg.S_Email;
    f.check[1] = cfg.C_Oil == 1;
    f.check[2] = cfg.C_RPM == 1;
    f.check[3] = cfg.C_VAL == 1;
    f.check[4] = cfg.Car_VAL == 1;
    return f;
}

Config_Save_Result Config_Save(const Config_Fields& f, Cls_Config& cfg, Globals& g, Cls_DB& db)
{
    Config_Save_Result result = Config_Save_Result::Bad_Number;
    Guarded(1004, [&] {
        cfg.U_Name = f.text[1];
        cfg.U_Tel = f.text[2];
        cfg.U_Fax = f.text[3];
        cfg.U_Business = f.text[4];
        cfg.U_UserID = f.text[5];
        cfg.U_Pass = f.text[6];
        cfg.U_PackDir = f.text[7];
        cfg.U_Pass = f.text[8]; // the confirmation field is a plain overwrite
        cfg.U_Port = f.text[9];
        cfg.S_IP = f.text[10];
        cfg.S_Port = f.text[11];
        cfg.S_User = f.text[12];
        cfg.S_Password = f.text[13];
        cfg.S_CompanyCode = f.text[14];
        cfg.S_Email = f.text[19];
        cfg.C_Oil = f.check[1] ? 1 : 0;
        cfg.C_RPM = f.check[2] ? 1 : 0;
        cfg.C_VAL = f.check[3] ? 1 : 0;
        cfg.Car_VAL = f.check[4] ? 1 : 0;

        g.Max_Speed_Axis = float(Number_Or_Throw(f.text[15]));
        g.Max_RPM_Axis = To_Int16(Number_Or_Throw(f.text[16]));
        const double count = Number_Or_Throw(f.text[17]);
        if (count >= 10) {
            result = Config_Save_Result::Count_Too_High;
            return;
        }
        g.RPM_Tick10 = float(To_Int16(count) * 10);
        g.Idle_Minutes = To_Int16(Number_Or_Throw(f.text[18]));

        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D14"));
        result = DB_Edit(cfg, rs, g) ? Config_Save_Result::Saved : Config_Save_Result::Failed;
    });
    return result;
}

void Config_RPM_Ticked(Cls_DB& db, QString& field16, QString& field17)
{
    Guarded(1004, [&] {
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D14"));
        if (rs.RecordCount() > 0) {
            field16 = Num(rs.Field(QStringLiteral("D_F18")).toDouble());
            field17 = Num(rs.Field(QStringLiteral("D_F19")).toDouble() / 10.0);
        }
    });
    if (Val(field16) == 0)
        field16 = QStringLiteral("3000");
    if (Val(field17) == 0)
        field17 = QStringLiteral("6"); // not the 4 of the column's default, on purpose
}

} // namespace vex
