// Labels of the handler codes, "object - procedure". Each procedure that traps
// run-time errors owns one code; a form's load has the first code of its
// block and its Command1 the second. Some labels stand for more than one
// procedure: 1036/1037 serve both the driver register and frm_Equipment, 1103
// every DB_Search_Data variant, and Main_Start has two codes.
// Codes without a row are gaps and have no label.
#include "core/Err_Proc.h"

namespace vex {

namespace {

struct Label {
    int code;
    const char* text;
};

constexpr Label kLabels[] = {
    {1001, "frm_Login - Load"},
    {1002, "frm_Login - cmdOK"},
    {1003, "frm_Config - Load"},
    {1004, "frm_Config - Command1"},

    // Data-entry forms that no longer exist; their codes stay reserved.
    {1005, "frmData_Baecha - Load"},
    {1006, "frmData_Baecha - Command1"},
    {1007, "frmData_Baecha - TDBGrid1_RowColChange"},
    {1008, "frmData_Baecha - Data_Save"},
    {1009, "frmData_Day - Load"},
    {1010, "frmData_Day - Command1"},
    {1011, "frmData_Day - TDBGrid1_RowColChange"},
    {1012, "frmData_Day - Data_Save"},
    {1013, "frmData_Maintenance - Load"},
    {1014, "frmData_Maintenance - Command1"},
    {1015, "frmData_Maintenance - TDBGrid1_RowColChange"},
    {1016, "frmData_NonDrive - Load"},
    {1017, "frmData_NonDrive - Command1"},
    {1018, "frmData_NonDrive - TDBGrid1_RowColChange"},

    {1019, "frmDB_Main - Load"},
    {1020, "frmDB_Main - Command1"},
    {1021, "frmDB_Main - Zip_Make"},
    {1022, "frmDB_Main - UnZip_Make"},
    {1023, "frmDB_Main - CompactADODB"},
    {1024, "frmPack_Data - Load"},
    {1025, "frmPack_DetailView - Command1"},
    {1026, "frmPack_Write - Load"},
    {1027, "frmPack_Write - Cmd_Save"},

    // Registers.
    {1030, "frmRegister_Average - Load"},
    {1031, "frmRegister_Average - Command1"},
    {1032, "frmRegister_Average - Command3"},
    {1033, "frmRegister_Average - Dec_Hex1"},
    {1034, "frmRegister_Car - Load"},
    {1035, "frmRegister_Car - Command1"},
    {1036, "frmRegister_Driver - Load"},
    {1037, "frmRegister_Driver - Command1"},
    {1038, "frmRegister_Inspection - Load"},
    {1039, "frmRegister_Inspection - Command1"},
    {1040, "frmRegister_Inspection - TDBGrid1_RowColChange"},
    {1041, "frmRegister_NonDrive - Load"},
    {1042, "frmRegister_NonDrive - Command1"},
    {1043, "frmRegister_NonDrive - TDBGrid1_RowColChange"},

    // Report forms.
    {1050, "frmReport_AvgDay - Load"},
    {1051, "frmReport_AvgDay - Command1"},
    {1052, "frmReport_DayAVG - Load"},
    {1053, "frmReport_DayAVG - Command1"},
    {1054, "frmReport_DriveDay1 - Load"},
    {1055, "frmReport_DriveDay1 - Command2"},
    {1056, "frmReport_DriveDay1 - Grid_Draw"},
    {1057, "frmReport_DriveDay1 - Data_View"},
    {1058, "frmReport_DriveDay1 - DB_View"},
    {1059, "frmReport_DriveDay1 - SET_ProgBar"},
    {1060, "frmReport_Main - Load"},
    {1061, "frmReport_Main - Command1"},
    {1062, "frmReport_Main - Report_Show"},
    {1063, "frmReport_Main - Option_Button_Change"},
    {1064, "frmReport_Main - TDBDate1_Change"},
    {1065, "frmReport_Main - CAL_RECORD_DATA"},
    {1066, "frmReport_Main - CAL_LONG_OVER"},
    {1067, "frmReport_Main - CAL_SECTION_RUN"},
    {1068, "frmReport_Main - CAL_SPEED_DIST"},
    {1069, "frmReport_Main - CAL_SPEED_FILE"},
    {1070, "frmReport_Main - CAL_QUICK_BRAKE"},
    {1071, "frmReport_Main - CAL_TIME_SPEED"},
    {1072, "frmReport_Main - CAL_OVERSP_COUNT"},
    {1073, "frmReport_Operation - Load"},
    {1074, "frmReport_Operation - Command1"},
    {1075, "frmReport_Operation - Form_Activate"},
    {1076, "frmReport_Operation - Form_KeyDown"},
    {1077, "frmReport_Operation - Cal_Speed"},
    {1078, "frmReport_Operation - DB_View"},
    {1079, "frmReport_Operation - Option1_Click"},
    {1080, "frmReport_Operation - Button_Click"},
    {1081, "frmReport_QuickBrake - Load"},
    {1082, "frmReport_QuickBrake - Command1"},
    {1083, "frmReport_QuickBrake - Picture2_MouseUp"},
    {1084, "frmReport_QuickBrake - Form_KeyDown"},
    {1085, "frmReport_QuickBrake - Cal_Speed"},

    {1086, "MDIForm_Main - Load"},
    {1087, "MDIForm_Main - mnuFile_Click"},
    {1088, "Cls_Config - DB_Edit"},

    // Cls_DB, one code a procedure: connection, ingest, searches, drawing.
    {1089, "Cls_DB - DB_RSet_D_D"},
    {1090, "Cls_DB - DB_Save_D_D1"},
    {1091, "Cls_DB - DB_Save_D_D1_pack"},
    {1092, "Cls_DB - DB_Save_D_D2_pack"},
    {1093, "Cls_DB - DB_Save_D_D3_pack"},
    {1094, "Cls_DB - DB_Save_D_D5_pack"},
    {1095, "Cls_DB - DB_Save_D_D1_st"},
    {1096, "Cls_DB - DB_Save_D_D1_file"},
    {1097, "Cls_DB - DB_Save_D_D12_file"},
    {1098, "Cls_DB - DB_Save_D_D2"},
    {1099, "Cls_DB - DB_Save_D_D2_130"},
    {1100, "Cls_DB - DB_Save_D_D2_file"},
    {1101, "Cls_DB - DB_Save_D_D_usb"},
    {1102, "Cls_DB - DB_Save_UD_D2"},
    {1103, "Cls_DB - DB_Search_Data"},
    {1104, "Cls_DB - DB_Search_Data_Move_Date"},
    {1105, "Cls_DB - DB_Search_DayAVG"},
    {1106, "Cls_DB - DB_Search_AvgDay"},
    {1107, "Cls_DB - DB_Search_SecData"},
    {1108, "Cls_DB - DB_Month_Sum"},
    {1109, "Cls_DB - DB_Save_SYSTEM"},
    {1110, "Cls_DB - DB_Save_S_D13"},
    {1111, "Cls_DB - CAL_AVG"},
    {1112, "Cls_DB - UnH_Time"},
    {1113, "Cls_DB - Line_Data_Comp"},
    {1114, "Cls_DB - Picture_Day_AVG_Base"},
    {1115, "Cls_DB - Picture_Avg_Day_Base"},
    {1116, "Cls_DB - Graph_Init"},
    {1117, "Cls_DB - Picture_Base_Draw"},
    {1118, "Cls_DB - Make_X"},
    {1119, "Cls_DB - Make_Y"},
    {1120, "Cls_DB - Make_X_D"},
    {1121, "Cls_DB - Make_Y_D"},
    {1122, "Cls_DB - Make_Y_R"},

    // Cls_IO, one code a procedure: analyzer link, pack files, hex strings.
    {1123, "Cls_IO - New_Pack_WriteIO_Byte"},
    {1124, "Cls_IO - New_Pack_Receive"},
    {1125, "Cls_IO - New_Pack_SearchIO_Byte1"},
    {1126, "Cls_IO - SIO_PackCheck"},
    {1127, "Cls_IO - New_Pack_Read"},
    {1128, "Cls_IO - Pack_SysReads"},
    {1129, "Cls_IO - Pack_Checks"},
    {1130, "Cls_IO - Pack_Reads"},
    {1131, "Cls_IO - Pack_Writes"},
    {1132, "Cls_IO - Write_File"},
    {1133, "Cls_IO - Pack_SysFile_Read"},
    {1134, "Cls_IO - Pack_File_Read"},
    {1135, "Cls_IO - Pack_File_Read1"},
    {1136, "Cls_IO - CAL_OVERSPEED_CNT"},
    {1137, "Cls_IO - CAL_OVERSPEED_COUNT"},
    {1138, "Cls_IO - Make_32Line"},
    {1139, "Cls_IO - Make_Space"},
    {1140, "Cls_IO - usb_File_Read"},
    {1141, "Cls_IO - dd1_File_Read"},
    {1142, "Cls_IO - Hex2"},
    {1143, "Cls_IO - Hex_Dec"},
    {1144, "Cls_IO - Dec_Hex"},
    {1145, "Cls_IO - Oct_Dec"},
    {1146, "Cls_IO - Dec_Oct"},
    {1147, "Cls_IO - Hex_Oct"},
    {1148, "Cls_IO - Oct_Hex"},
    {1149, "Cls_IO - Hex_Bit"},
    {1150, "Cls_IO - Bit_Dec"},
    {1151, "Cls_IO - Dec_Bit"},
    {1152, "Cls_IO - Dec_4Hex"},

    {1153, "Cls_Report - Report_Avg_Day_G"},
    {1154, "Cls_Report - Report_Day_AVG_G"},
    {1155, "Cls_Report - Report_Quick_Brake"},
    {1156, "Cls_Report - Report_Operation"},
    {1157, "Cls_Report - Report_Drive_Day"},
    {1158, "Mod_Main - Ping"},
    {1159, "Mod_Ping - SocketsInitialize"},
    {1160, "Mod_DirSelect - BrowseFolder"},
    {1161, "Mod_Main - Main_Start"},
    {1162, "Mod_Main - Pack_Select"},
    {1163, "Mod_Main - Send_Data"},
    {1164, "Mod_Main - Main_Start"},

    // The routines of this program beyond the handlers above.
    {kErrOptimise, "Db_Compaction - Optimise"},
    {kErrBackup, "Db_Keeping - Backup"},
    {kErrRebuild, "Db_Keeping - Rebuild_Day"},
    {kErrMove, "Db_Keeping - Move_From"},
    {kErrKeepingRead, "Db_Keeping - Backup_Period"},
    {kErrExport, "Data_Package - Export_Package"},
    {kErrImport, "Data_Package - Import_Package"},
    {kErrDelete, "Data_Package - Delete_Selection"},
    {kErrRekey, "Data_Package - Rekey"},
    {kErrExportDb, "Data_Package - Empty_Export_Db"},
    {kErrAgency, "Agency_File - Write_Agency_Files"},
    {kErrAgencyCheck, "Agency_File - Agency_Check"},
    {kErrAgencyIdentity, "Agency_File - Agency_Identity"},
    {kErrRemoteLoad, "Remote_Reception - Remote_Load"},
    {kErrFtp, "Ftp_Transfer - Ftp_Run_Pass"},
    {kErrZip, "Package - Zip"},
    {kErrWriteLock, "Cls_DB - Begin_Write"},
    {kErrCommit, "Cls_DB - Batch"},
    {kErrRenames, "Data_Package - Finish_Pending_Renames"},
    {kErrFuelDay, "Frm_consume - Load"},
    {kErrCarCondition, "frm_CarCondition - Load"},
    {kErrDayReport, "frm_dayreport - Load"},
    {kErrDayStatus, "frm_daystatus - Load"},
    {kErrOverFuel, "frm_overfuel - Load"},
    {kErrRegisterCodes, "Keep_Progress - Register_Codes"},
    {kErrLedger, "Reception_Ledger - Record_Reception"},
    {kErrFleet, "Fleet_Sampler - Register"},
    {kErrReportExplanation, "Report_Trust - Report_Mark_Explanation"},
    {kErrReportTrend, "Report_Trust - Report_Driver_Trend"},
    {kErrDayFilesMove, "Day_Files_Move - Move_Day_Files_To_Database"},
    {kErrDayFileTable, "Day_Store - Ensure_Day_File_Table"},
    {kErrIndexes, "Cls_DB - Ensure_Indexes"},
};

} // namespace

QString Err_Label(int code)
{
    for (const Label& label : kLabels) {
        if (label.code == code)
            return QString::fromLatin1(label.text);
    }
    return QString();
}

} // namespace vex
