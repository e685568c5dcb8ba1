// How the controls of the windows that can be resized follow their window's size. A control without
// a line here keeps its size and its distance to the upper left corner.
#include <algorithm>
#include <array>

#include "views/win32/layout.h"
#include "views/win32/resource.h"

namespace vantrel::views {

namespace {

using forms::Anchors;

// left, top, right, bottom: percent of the window's growth.
constexpr Anchors kFill{0, 0, 100, 100};
constexpr Anchors kWide{0, 0, 100, 0};
constexpr Anchors kRight{100, 0, 100, 0};
constexpr Anchors kBottom{0, 100, 0, 100};
constexpr Anchors kBottomWide{0, 100, 100, 100};
constexpr Anchors kBottomRight{100, 100, 100, 100};
// Two columns of equal growth.
constexpr Anchors kLeftHalf{0, 0, 50, 0};
constexpr Anchors kLeftHalfFill{0, 0, 50, 100};
constexpr Anchors kRightHalf{50, 0, 100, 0};
constexpr Anchors kRightHalfStart{50, 0, 50, 0};
constexpr Anchors kRightHalfFill{50, 0, 100, 100};
// A narrow column beside a wide one.
constexpr Anchors kQuarter{0, 0, 25, 0};
constexpr Anchors kQuarterFill{0, 0, 25, 100};
constexpr Anchors kThreeQuarters{25, 0, 100, 0};
constexpr Anchors kThreeQuartersFill{25, 0, 100, 100};
// In the middle of the left half.
constexpr Anchors kLeftHalfMiddle{25, 50, 25, 50};

struct Line {
    std::array<int, 2> control_ids;  // of windows that are alike; 0 for none
    Anchors anchors;
};

constexpr Line kLines[] = {
    // The main window
    {{TAB_Backup}, kFill},
    {{Sta_Mainmenu}, kBottomWide},
    // Backup
    {{Fra_Backup}, kFill},
    {{Lbl_RestoreSet}, kLeftHalf},
    {{Cmb_BackupSet}, kLeftHalf},
    {{IDC_BackupFolder}, kLeftHalf},
    {{Dri_DriveList}, kLeftHalf},
    {{Dir_DirList}, kLeftHalfFill},
    {{Img_FilesToBackup}, kRightHalfStart},
    {{Lbl_BackupSet_0}, kRightHalf},
    {{Lbl_FilestoBackup}, kRightHalf},
    {{Cmd_Options_0}, kRight},
    {{Img_BackupFileName}, kRightHalfStart},
    {{Lbl_BackupSet_1}, kRightHalf},
    {{Lbl_BackupFileName}, kRightHalf},
    {{Cmd_Options_1}, kRight},
    {{Img_Where}, kRightHalfStart},
    {{IDC_BackupLocation}, kRightHalf},
    {{Fld_BackupWhere}, kRightHalf},
    {{Cmd_Navigate}, kRight},
    {{Lbl_BackupSet_2}, kRightHalf},
    {{Fld_BackupOptions}, kRightHalf},
    {{Cmd_Options_2}, kRight},
    {{Lin_Mainmenu}, kBottomWide},
    {{Cmd_Change}, kBottom},
    {{Cmd_AddNew}, kBottom},
    {{Cmd_Backup}, kBottomRight},
    {{Cmd_Exit_0}, kBottomRight},
    // Restore
    {{Fra_RestoreFull}, kFill},
    {{Fld_RestoreFile}, kWide},
    {{Cmd_RestoreFile}, kRight},
    {{Fld_RestoreTo}, kWide},
    {{Cmd_RestoreTo}, kRight},
    {{TV_Restore}, kFill},
    {{SSP_TotalFiles}, kBottom},
    {{Lbl_NoOfFiles}, kBottom},
    {{Fld_Total}, kBottom},
    {{Cmd_Restore}, kBottomRight},
    {{Cmd_Exit_1}, kBottomRight},
    // INI Edit
    {{Fra_INIFileList}, kQuarterFill},
    {{Lbl_INIEdit}, kQuarter},
    {{Fil_INI}, kQuarterFill},
    {{Cmd_INIRefresh}, kBottom},
    {{Fra_INIEdit}, kThreeQuartersFill},
    {{Lbl_INIContents}, kThreeQuarters},
    {{Fld_INI}, kThreeQuartersFill},
    {{Cmd_Save}, kBottomRight},
    // Log
    {{Fra_Log}, kFill},
    {{Fld_Log}, kFill},
    {{Lbl_LogHint}, kBottomWide},
    {{Cmd_Refresh}, kBottomRight},
    {{Cmd_Email}, kBottomRight},
    // Secure Data
    {{Fra_SecureData_0}, kLeftHalfFill},
    {{Dri_SecureMode}, kLeftHalf},
    {{TV_SecureMode}, kLeftHalfFill},
    {{SSP_PleaseWait}, kLeftHalfMiddle},
    {{SSP_ProgressSecure}, kLeftHalfMiddle},
    {{Fra_SecureData_1}, kRightHalfFill},
    {{Fld_SecureData}, kRightHalfFill},
    // About
    {{Fra_Version}, kRight},
    {{Label1}, kRight},
    {{Fld_Version}, kRight},
    {{Lbl_Build}, kRight},
    {{Fld_Build}, kRight},
    {{Fra_About}, kWide},
    {{Cmd_ContactUs}, kRight},
    {{Fra_Warning}, kWide},
    {{Lbl_Warning}, kWide},
    // Runs
    {{Frm_Backup_Frame1, Frm_Restore_Frame1}, kWide},
    {{Frm_Backup_Ani_File, Frm_Restore_Ani_File}, kWide},
    {{Frm_Backup_Lbl_BackingUp}, kWide},
    {{Frm_Backup_PB_File, Frm_Restore_PB_File}, kWide},
    {{Frm_Backup_PB_Folder, Frm_Restore_PB_Folder}, kWide},
    {{Frm_Backup_Lbl_BackupPath, Frm_Restore_Lbl_RestorePath}, kWide},
    {{Frm_Backup_Lbl_Figures, Frm_Restore_Lbl_Figures}, kWide},
    {{Frm_Backup_Lbl_Location, Frm_Restore_Lbl_Location}, kWide},
    {{Frm_Backup_Fra_Details, Frm_Restore_Fra_Details}, kFill},
    {{Frm_Backup_Lst_Details, Frm_Restore_Lst_Details}, kFill},
    {{Frm_Backup_Lbl_LeftOut, Frm_Restore_Lbl_LeftOut}, kBottomWide},
    {{Frm_Backup_Cmd_Ok, Frm_Restore_Cmd_Ok}, kBottomRight},
    {{Frm_Backup_Cmd_Cancel, Frm_Restore_Cmd_Cancel}, kBottomRight},
    // Destinations
    {{Frm_BackupWhere_Dri_DriveList, Frm_RestoreWhere_Dri_DriveList}, kWide},
    {{Frm_BackupWhere_Dir_DirList, Frm_RestoreWhere_Dir_DirList}, kFill},
    {{Frm_BackupWhere_Cmd_NewFolder, Frm_RestoreWhere_Cmd_NewFolder}, kBottom},
    {{Frm_BackupWhere_Cmd_Ok, Frm_RestoreWhere_Cmd_Ok}, kBottomRight},
    {{Frm_BackupWhere_Cmd_Cancel, Frm_RestoreWhere_Cmd_Cancel}, kBottomRight},
};

}  // namespace

Anchors AnchorsOf(int control_id) {
    const auto* const line =
        std::find_if(std::begin(kLines), std::end(kLines), [=](const Line& each) {
            return each.control_ids[0] == control_id || each.control_ids[1] == control_id;
        });
    const bool is_listed = control_id != 0 && line != std::end(kLines);
    return is_listed ? line->anchors : Anchors{};
}

}  // namespace vantrel::views
