// One number for every control of the program, unique in all its windows, so that a program outside
// can find and work each of them. Controls of the main window bear their bare name, those of
// another window that window's name before theirs. The build makes the table that turns names into
// numbers from the lines between the two marks. Numbers never change once released; new ones are
// added.
#pragma once

// Controls: begin
// The main window: shell and menus
#define TAB_Backup 1000
#define Sta_Mainmenu 1001
#define Menu_File 1002
#define Menu_File_Exit 1003
#define Menu_Options 1004
#define Menu_Options_Delete 1005
#define Menu_Secure 1006
#define Menu_Secure_Add 1007
#define Menu_Secure_Delete 1008
// The main window: Backup tab
#define Fra_Backup 1050
#define Img_Set 1051
#define Lbl_RestoreSet 1052
#define Cmb_BackupSet 1053
#define Img_What 1054
#define Dri_DriveList 1055
#define Dir_DirList 1056
#define Img_FilesToBackup 1057
#define Lbl_BackupSet_0 1058
#define Lbl_FilestoBackup 1059
#define Cmd_Options_0 1060
#define Img_BackupFileName 1061
#define Lbl_BackupSet_1 1062
#define Lbl_BackupFileName 1063
#define Cmd_Options_1 1064
#define Img_Where 1065
#define Fld_BackupWhere 1066
#define Cmd_Navigate 1067
#define Lbl_BackupSet_2 1068
#define Fld_BackupOptions 1069
#define Cmd_Options_2 1070
#define Lin_Mainmenu 1071
#define Cmd_Change 1072
#define Cmd_AddNew 1073
#define Cmd_Backup 1074
#define Cmd_Exit_0 1075
// Restore tab
#define Fra_RestoreFull 1100
#define Lbl_RestoreFile 1101
#define Cmb_RestoreFile 1102
#define Fld_RestoreFile 1103
#define Cmd_RestoreFile 1104
#define Lbl_RestoreTo 1105
#define Fld_RestoreTo 1106
#define Cmd_RestoreTo 1107
#define TV_Restore 1108
#define SSP_TotalFiles 1109
#define Lbl_NoOfFiles 1110
#define Fld_Total 1111
#define Cmd_Restore 1112
#define Cmd_Exit_1 1113
// INI Edit tab
#define Fra_INIFileList 1150
#define Lbl_INIEdit 1151
#define Fil_INI 1152
#define Cmd_INIRefresh 1153
#define Fra_INIEdit 1154
#define Lbl_INIContents 1155
#define Fld_INI 1156
#define Cmd_Save 1157
// Log tab
#define Fra_Log 1200
#define Fld_Log 1201
#define Lbl_LogHint 1202
#define Cmd_Refresh 1203
#define Cmd_Email 1204
// Secure Data tab
#define Fra_SecureData_0 1250
#define Fra_SecureData_1 1251
#define Dri_SecureMode 1252
#define TV_SecureMode 1253
#define SSP_PleaseWait 1254
#define SSP_ProgressSecure 1255
#define Fld_SecureData 1256
// About tab
#define Fra_Logo 1300
#define Img_Logo 1301
#define Lbl_ProductName 1302
#define Lbl_CompanyProduct 1303
#define Lbl_Description 1304
#define Fra_Version 1305
#define Label1 1306
#define Fld_Version 1307
#define Lbl_Build 1308
#define Fld_Build 1309
#define Fra_About 1310
#define Lbl_About 1311
#define Lbl_CompanyName 1312
#define Lbl_Who 1313
#define Lbl_Address_0 1314
#define Lbl_Address_1 1315
#define Lbl_WebAddress 1316
#define Cmd_ContactUs 1317
#define Fra_Warning 1318
#define Lbl_Warning 1319
// Frm_Backup
#define Frm_Backup_Cmd_Ok 2000
#define Frm_Backup_Cmd_Cancel 2001
#define Frm_Backup_Fra_Details 2002
#define Frm_Backup_Lst_Details 2003
#define Frm_Backup_Frame1 2004
#define Frm_Backup_Lbl_File 2005
#define Frm_Backup_Lbl_JobProgress 2006
#define Frm_Backup_Lbl_BackupPath 2007
#define Frm_Backup_Lbl_Folder 2008
#define Frm_Backup_Lbl_BackingUp 2009
#define Frm_Backup_Ani_File 2010
#define Frm_Backup_PB_Folder 2011
#define Frm_Backup_PB_File 2012
#define Frm_Backup_Lbl_Figures 2013
#define Frm_Backup_Lbl_Location 2014
#define Frm_Backup_Lbl_LeftOut 2015
// Frm_Splash
#define Frm_Splash_Lbl_ProductName 2050
#define Frm_Splash_Lbl_Description 2051
#define Frm_Splash_Lbl_Version 2052
#define Frm_Splash_Lbl_Platform 2053
#define Frm_Splash_Lbl_CompanyProduct 2054
#define Frm_Splash_Lbl_Copyright 2055
#define Frm_Splash_Lbl_Warning 2056
#define Frm_Splash_Img_Logo 2057
// Frm_BackupWhere
#define Frm_BackupWhere_Dri_DriveList 2100
#define Frm_BackupWhere_Dir_DirList 2101
#define Frm_BackupWhere_Cmd_NewFolder 2102
#define Frm_BackupWhere_Cmd_Ok 2103
#define Frm_BackupWhere_Cmd_Cancel 2104
// Frm_BackupOptions
#define Frm_BackupOptions_Fra_Options 2150
#define Frm_BackupOptions_Chk_TimeBackup 2151
#define Frm_BackupOptions_Chk_MultiVolumeBackup 2152
#define Frm_BackupOptions_Chk_BackupSubDirectories 2153
#define Frm_BackupOptions_Lbl_BackupFiles 2154
#define Frm_BackupOptions_Fld_BackupFile 2155
#define Frm_BackupOptions_Lbl_BackupFileName 2156
#define Frm_BackupOptions_Fld_BackupFileName 2157
#define Frm_BackupOptions_Cmd_Ok 2158
#define Frm_BackupOptions_Cmd_Cancel 2159
// Frm_RestoreWhere
#define Frm_RestoreWhere_Dri_DriveList 2200
#define Frm_RestoreWhere_Dir_DirList 2201
#define Frm_RestoreWhere_Cmd_NewFolder 2202
#define Frm_RestoreWhere_Cmd_Ok 2203
#define Frm_RestoreWhere_Cmd_Cancel 2204
// Frm_Restore
#define Frm_Restore_Cmd_Ok 2250
#define Frm_Restore_Cmd_Cancel 2251
#define Frm_Restore_Fra_Details 2252
#define Frm_Restore_Lst_Details 2253
#define Frm_Restore_Frame1 2254
#define Frm_Restore_Lbl_File 2255
#define Frm_Restore_Lbl_JobProgress 2256
#define Frm_Restore_Lbl_RestorePath 2257
#define Frm_Restore_Lbl_Folder 2258
#define Frm_Restore_Ani_File 2259
#define Frm_Restore_PB_Folder 2260
#define Frm_Restore_PB_File 2261
#define Frm_Restore_Lbl_Figures 2262
#define Frm_Restore_Lbl_Location 2263
#define Frm_Restore_Lbl_LeftOut 2264
// Controls: end

// Labels that are only in the dialogs.
#define IDC_BackupFolder 2900
#define IDC_BackupLocation 2901

// The input box, a window of the desktop's own.
#define Frm_Input_Lbl_Prompt 3000
#define Frm_Input_Fld_Answer 3001

// Pictures. The program's own icon is the first, which is why the shell shows it.
#define IDI_Product 1
#define IDI_Folder 2
#define IDI_OpenFolder 3
#define IDI_ProtectedFolder 4
#define IDI_BackupSet 5
#define IDI_Files 6
#define IDI_Archive 7
#define IDI_Destination 8

#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif
