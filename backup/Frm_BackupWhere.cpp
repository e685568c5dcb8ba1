#include "backup/Frm_BackupWhere.h"

#include "backupset/clsFiles.h"
#include "log/clsLog.h"

namespace vantrel {

Frm_BackupWhere::Frm_BackupWhere(forms::Program& program, const BackupControls& main_window)
    : FolderDialog(program, "Frm_BackupWhere", "Backup to Where?", "Backup Where"),
      main_(main_window) {}

std::string Frm_BackupWhere::Destination() const { return main_.Fld_BackupWhere.Caption(); }

bool Frm_BackupWhere::FolderExists(const std::string& folder) const {
    return clsFiles(program()).Exist(folder, false);
}

void Frm_BackupWhere::DisplayError(const Error& error) const { ShowError(program(), error); }

void Frm_BackupWhere::StoreFolder() {
    auto& code_page = program().machine.code_page;
    const std::string stored = code_page.Upper(clsString().Backslash(Dir_DirList.Path()));
    const std::string set_path = program().InApplicationFolder(main_.Cmb_BackupSet.Text());
    const std::string problem = StorageProblem(code_page, stored);
    if (!problem.empty()) {
        return RefuseFolder(problem);
    }
    clsINI set(program());
    set.Read_INI(set_path);
    set.BackupToDrive(stored);
    if (!set.DestinationProblem().empty()) {
        return RefuseFolder(
            "With the folder of a dated backup its path is longer than a Backup Set "
            "can store.");
    }
    main_.Fld_BackupWhere.SetCaption(Dir_DirList.Path());
    clsFiles(program()).WriteINI("DESTINATION", "BackupToDrive", stored, set_path);
    program().desktop.Unload(*this);
}

}  // namespace vantrel
