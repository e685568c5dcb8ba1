#include "backup/Frm_BackupWhere.h"

#include "backupset/clsFiles.h"
#include "backupset/clsString.h"
#include "log/show_error.h"

namespace vantrel {

Frm_BackupWhere::Frm_BackupWhere(forms::Program& program, const BackupControls& main_window)
    : FolderDialog(program, "Frm_BackupWhere", "Backup to Where?", "Backup Where"),
      main_(main_window) {}

std::string Frm_BackupWhere::Destination() const { return main_.Fld_BackupWhere.Caption(); }

bool Frm_BackupWhere::FolderExists(const std::string& folder) const {
    return clsFiles(program()).Exist(folder, false);
}

void Frm_BackupWhere::Tell(const Error& error) const { ShowError(program(), error); }

void Frm_BackupWhere::TakeFolder() {
    if (!ChosenFolderFits()) return;
    main_.Fld_BackupWhere.SetCaption(Dir_DirList.Path());
    const std::string stored =
        program().machine.code_page.Upper(clsString().Backslash(Dir_DirList.Path()));
    clsFiles(program()).WriteINI("DESTINATION", "BackupToDrive", stored,
                                 program().InApplicationFolder(main_.Cmb_BackupSet.Text()));
    program().desktop.Unload(*this);
}

}  // namespace vantrel
