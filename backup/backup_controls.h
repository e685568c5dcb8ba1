// The main window's controls that show the selected set, for the checks and dialogs of a backup.
#pragma once

#include "backupset/clsINI.h"
#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/lists.h"

namespace vantrel {

struct BackupControls {
    forms::ComboBox& Cmb_BackupSet;
    forms::FolderList& Dir_DirList;
    forms::Label& Lbl_FilestoBackup;
    forms::Label& Lbl_BackupFileName;
    forms::Label& Fld_BackupWhere;
    forms::Label& Fld_BackupOptions;
};

// Shows the set's mask, the name of its archive and its three switches.
inline void ShowOptions(const BackupControls& controls, const clsINI& set) {
    controls.Lbl_FilestoBackup.SetCaption(set.Backup_Parts(set.BackupFiles(), clsINI::kFile));
    controls.Lbl_BackupFileName.SetCaption(set.BackupFileName());
    controls.Fld_BackupOptions.SetCaption("SubDir=" + set.BackupSubDirectories() +
                                          ", MultiVolume=" + set.MultiVolumeBackup() +
                                          ", Time=" + set.TimeBackup());
}

}  // namespace vantrel
