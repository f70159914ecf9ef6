#pragma once
// The site's settings in memory: company, folders, FTP account, feature flags
// and the evaluation standards. Filled at the login from the one row of S_D14
// and the newest row of S_D10; read everywhere.
#include <QString>
#include <cstdint>

namespace vex {

class Cls_Config {
public:
    QString U_Name;         // D_F1 firm name; also the firm's folder on the FTP server
    QString U_Tel;          // D_F2
    QString U_Fax;          // D_F3
    QString U_PackDir;      // D_F7 folder of pack data
    QString U_DBBackup;     // D_F8 backup folder
    QString U_Pass;         // D_F6 login password
    QString U_UserID;       // D_F5 login user id
    QString U_Business;     // D_F4 business registration number
    QString U_Port;         // D_F9 status value
    QString S_IP;           // D_F10 FTP server address
    QString S_Email;        // D_F22
    QString S_Port;         // D_F11 FTP port (shown and stored only)
    QString S_User;         // D_F12
    QString S_Password;     // D_F13
    QString S_CompanyCode;  // D_F14, 8 digits; "00000000" = no remote account
    int16_t C_RPM = 0;      // D_F15 1 = cars have an RPM input
    int16_t C_Oil = 0;      // D_F16 1 = maintenance check on the daily report
    int16_t C_VAL = 0;      // D_F20 1 = previous habit on the latest standard
    int16_t Car_VAL = 0;    // D_F23 "FTP Passive mode" box (the transfer is always passive)

    // Evaluation standards, S_D10 D_F1 to D_F13. B_Val14 and B_Val15 are
    // never assigned and read empty.
    QString B_Val1;
    int16_t B_Val2 = 0, B_Val3 = 0, B_Val4 = 0;
    int32_t B_Val5 = 0;
    int16_t B_Val6 = 0, B_Val7 = 0, B_Val8 = 0, B_Val9 = 0, B_Val10 = 0, B_Val11 = 0, B_Val12 = 0,
            B_Val13 = 0;
    QString B_Val14, B_Val15;
};

} // namespace vex
