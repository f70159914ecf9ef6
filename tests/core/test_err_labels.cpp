#include "core/Err_Proc.h"

#include <gtest/gtest.h>

#include <QString>
#include <QStringList>

namespace {

using vex::Err_Label;

TEST(ErrLabels, NamedCodes)
{
    EXPECT_EQ(Err_Label(1001), QStringLiteral("frm_Login - Load"));
    EXPECT_EQ(Err_Label(1002), QStringLiteral("frm_Login - cmdOK"));
    EXPECT_EQ(Err_Label(1034), QStringLiteral("frmRegister_Car - Load"));
    EXPECT_EQ(Err_Label(1035), QStringLiteral("frmRegister_Car - Command1"));
    EXPECT_EQ(Err_Label(1036), QStringLiteral("frmRegister_Driver - Load"));
    EXPECT_EQ(Err_Label(1087), QStringLiteral("MDIForm_Main - mnuFile_Click"));
    EXPECT_EQ(Err_Label(1088), QStringLiteral("Cls_Config - DB_Edit"));
    EXPECT_EQ(Err_Label(1089), QStringLiteral("Cls_DB - DB_RSet_D_D"));
    EXPECT_EQ(Err_Label(1103), QStringLiteral("Cls_DB - DB_Search_Data"));
    EXPECT_EQ(Err_Label(1122), QStringLiteral("Cls_DB - Make_Y_R"));
    EXPECT_EQ(Err_Label(1123), QStringLiteral("Cls_IO - New_Pack_WriteIO_Byte"));
    EXPECT_EQ(Err_Label(1152), QStringLiteral("Cls_IO - Dec_4Hex"));
    EXPECT_EQ(Err_Label(1153), QStringLiteral("Cls_Report - Report_Avg_Day_G"));
    EXPECT_EQ(Err_Label(1157), QStringLiteral("Cls_Report - Report_Drive_Day"));
    EXPECT_EQ(Err_Label(1160), QStringLiteral("Mod_DirSelect - BrowseFolder"));
    EXPECT_EQ(Err_Label(1161), QStringLiteral("Mod_Main - Main_Start"));
    EXPECT_EQ(Err_Label(1164), QStringLiteral("Mod_Main - Main_Start"));
}

TEST(ErrLabels, GapsAndOutsideHaveNoLabel)
{
    for (int code : {0, -1, 1000, 1028, 1029, 1044, 1049, 1165, 32767})
        EXPECT_TRUE(Err_Label(code).isEmpty()) << code;
}

TEST(ErrLabels, EveryLabelIsObjectDashProcedure)
{
    // The classes own a continuous run of codes, one procedure each.
    int filled = 0;
    for (int code = 1001; code <= 1164; ++code) {
        const QString label = Err_Label(code);
        if (label.isEmpty())
            continue;
        ++filled;
        const QStringList parts = label.split(QStringLiteral(" - "));
        ASSERT_EQ(parts.size(), 2) << code;
        EXPECT_FALSE(parts[0].isEmpty()) << code;
        EXPECT_FALSE(parts[1].isEmpty()) << code;
        if (code >= 1089 && code <= 1122) {
            EXPECT_EQ(parts[0], QStringLiteral("Cls_DB")) << code;
        }
        if (code >= 1123 && code <= 1152) {
            EXPECT_EQ(parts[0], QStringLiteral("Cls_IO")) << code;
        }
    }
    // 1001..1164 less the gaps 1028, 1029 and 1044..1049.
    EXPECT_EQ(filled, 164 - 8);
}

} // namespace
