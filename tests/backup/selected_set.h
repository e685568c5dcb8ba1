// A window with the controls that show the selected set, without the rest of the main window.
#pragma once

#include "backup/backup_controls.h"
#include "forms/form.h"

namespace vantrel::test {

class SelectedSet : public forms::Form {
  public:
    explicit SelectedSet(forms::Program& program)
        : Form(program, "Frm_Mainmenu"),
          Cmb_BackupSet(*this, "Cmb_BackupSet"),
          Dir_DirList(*this, "Dir_DirList"),
          Lbl_FilestoBackup(*this, "Lbl_FilestoBackup"),
          Lbl_BackupFileName(*this, "Lbl_BackupFileName"),
          Fld_BackupWhere(*this, "Fld_BackupWhere"),
          Fld_BackupOptions(*this, "Fld_BackupOptions") {}
    forms::ComboBox Cmb_BackupSet;
    forms::FolderList Dir_DirList;
    forms::Label Lbl_FilestoBackup;
    forms::Label Lbl_BackupFileName;
    forms::Label Fld_BackupWhere;
    forms::Label Fld_BackupOptions;
    BackupControls Controls() {
        return {Cmb_BackupSet,      Dir_DirList,     Lbl_FilestoBackup,
                Lbl_BackupFileName, Fld_BackupWhere, Fld_BackupOptions};
    }
};

}  // namespace vantrel::test
