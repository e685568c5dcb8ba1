#include "views/win32/own_texts.h"

#include <algorithm>
#include <array>

#include "views/win32/resource.h"

namespace vantrel::views {

namespace {

struct OwnText {
    std::array<int, 2> control_ids;  // of windows that are alike; 0 for none
    const char* name;
    const char* tip;
};

constexpr OwnText kTexts[] = {
    // Backup
    {{Cmb_BackupSet}, "Backup Set", ""},
    {{Dri_DriveList}, "Drive of the Folder to Backup", ""},
    {{Cmd_Options_0}, "Edit Options, Files to Backup", ""},
    {{Cmd_Options_1}, "Edit Options, Backup File Name", ""},
    {{Cmd_Options_2}, "Edit Options, Backup Options", ""},
    {{Cmd_Navigate}, "Choose the Backup Location", "Choose the Folder for the Backup File"},
    {{Dir_DirList}, "Folder to Backup", ""},
    // Restore
    {{Cmb_RestoreFile},
     "What to Restore?",
     "Select the Backup Set whose latest Backup is to be restored"},
    {{Fld_RestoreFile}, "", "The Zip File to Restore"},
    {{Cmd_RestoreFile}, "Browse for a Zip File to Restore", ""},
    {{Fld_RestoreTo}, "", "The Folder that is restored to"},
    {{Cmd_RestoreTo}, "Choose the Folder to Restore To", "Choose the Folder to Restore To"},
    {{TV_Restore}, "Contents of the Zip File", "The Files in the Zip File"},
    {{Cmd_Restore}, "", "Start the Restore Now"},
    {{Cmd_Exit_1}, "", "Exit this Product"},
    // INI Edit
    {{Fil_INI}, "INI File List", ""},
    {{Fld_INI}, "INI File Contents", ""},
    // Log
    {{Fld_Log}, "Log", "The Records of the Log File, the newest last"},
    // Secure Data
    {{Dri_SecureMode}, "Drive", "Select the Drive whose Folders are shown"},
    {{TV_SecureMode},
     "Folders",
     "Select a Folder, then press the right Mouse Button to protect it or to end its Protection"},
    {{Fld_SecureData}, "About Protected Folders", "What protecting a Folder means"},
    // Runs
    {{Frm_Backup_Ani_File, Frm_Restore_Ani_File}, "Animation", ""},
    {{Frm_Backup_PB_File, Frm_Restore_PB_File},
     "File Progress",
     "How much of the current File is done"},
    {{Frm_Backup_PB_Folder, Frm_Restore_PB_Folder},
     "Overall Progress",
     "How much of all Files is done"},
    {{Frm_Backup_Lst_Details, Frm_Restore_Lst_Details}, "Details", "The Messages about the Files"},
    {{Frm_Backup_Cmd_Cancel}, "", "Stop the Backup; the earlier Backup File stays"},
    {{Frm_Restore_Cmd_Cancel}, "", "Stop; restored Files stay"},
    {{Frm_Backup_Cmd_Ok, Frm_Restore_Cmd_Ok}, "", "Close this Window"},
    // Dialogs
    {{Frm_BackupWhere_Dri_DriveList, Frm_RestoreWhere_Dri_DriveList},
     "Drive",
     "Select the Drive whose Folders are shown"},
    {{Frm_BackupWhere_Dir_DirList, Frm_RestoreWhere_Dir_DirList},
     "Folder",
     "Select the Folder; a double Click opens it"},
    {{Frm_BackupWhere_Cmd_NewFolder, Frm_RestoreWhere_Cmd_NewFolder}, "", "Make a new Folder"},
    {{Frm_BackupWhere_Cmd_Ok, Frm_RestoreWhere_Cmd_Ok}, "", "Use this Folder"},
    {{Frm_BackupWhere_Cmd_Cancel, Frm_RestoreWhere_Cmd_Cancel}, "", "Close without a Change"},
    {{Frm_BackupOptions_Chk_TimeBackup},
     "",
     "Each Backup goes into a new Folder named by Date and Time"},
    {{Frm_BackupOptions_Chk_MultiVolumeBackup},
     "",
     "The Backup may continue on further Disks; for removable Disks only"},
    {{Frm_BackupOptions_Chk_BackupSubDirectories}, "", "Backup the Folders inside the Folder, too"},
    {{Frm_BackupOptions_Fld_BackupFile}, "Backup Files", "Which Files, for example *.* or *.DOC"},
    {{Frm_BackupOptions_Fld_BackupFileName},
     "Backup File Name",
     "The Name of the Backup File without .zip"},
    {{Frm_BackupOptions_Cmd_Ok}, "", "Save the Options"},
    {{Frm_BackupOptions_Cmd_Cancel}, "", "Close without a Change"},
};

const OwnText* Find(int control_id) {
    const auto* const text =
        std::find_if(std::begin(kTexts), std::end(kTexts), [=](const OwnText& each) {
            return each.control_ids[0] == control_id || each.control_ids[1] == control_id;
        });
    return text == std::end(kTexts) ? nullptr : text;
}

}  // namespace

std::string OwnTip(int control_id) {
    const OwnText* const text = Find(control_id);
    return text ? text->tip : "";
}

std::string OwnName(int control_id) {
    const OwnText* const text = Find(control_id);
    return text ? text->name : "";
}

}  // namespace vantrel::views
