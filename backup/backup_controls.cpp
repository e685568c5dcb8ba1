#include "backup/backup_controls.h"

namespace vantrel {

void ShowOptions(const BackupControls& controls, const clsINI& set) {
    controls.Lbl_FilestoBackup.SetCaption(set.Backup_Parts(set.BackupFiles(), clsINI::kFile));
    controls.Lbl_BackupFileName.SetCaption(set.BackupFileName());
    controls.Fld_BackupOptions.SetCaption("SubDir=" + set.BackupSubDirectories() +
                                          ", MultiVolume=" + set.MultiVolumeBackup() +
                                          ", Time=" + set.TimeBackup());
}

}  // namespace vantrel
