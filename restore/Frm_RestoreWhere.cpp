#include "restore/Frm_RestoreWhere.h"

#include "backupset/clsFiles.h"
#include "log/clsLog.h"

namespace vantrel {

Frm_RestoreWhere::Frm_RestoreWhere(forms::Program& program, forms::Label& restore_to)
    : FolderDialog(program, "Frm_RestoreWhere", "Restore To Where?", "Restore To Where"),
      Fld_RestoreTo_(restore_to) {}

std::string Frm_RestoreWhere::Destination() const { return Fld_RestoreTo_.Caption(); }

bool Frm_RestoreWhere::FolderExists(const std::string& folder) const {
    return clsFiles(program()).Exist(folder, false);
}

void Frm_RestoreWhere::DisplayError(const Error& error) const { ShowError(program(), error); }

void Frm_RestoreWhere::StoreFolder() {
    auto& code_page = program().machine.code_page;
    const std::string folder = code_page.Upper(Dir_DirList.Path());
    const std::string problem = StorageProblem(code_page, folder);
    if (!problem.empty()) {
        return RefuseFolder(problem);
    }
    Fld_RestoreTo_.SetCaption(folder);
    program().desktop.Unload(*this);
}

void Cmd_RestoreTo_Click(forms::Program& program, const RestoreControls& controls) {
    if (controls.Cmb_RestoreFile.Text().empty() && controls.Fld_RestoreFile.Caption().empty()) {
        program.desktop.Show({.text = "Please select a Backup File to Restore.",
                              .icon = forms::Icon::kInformation,
                              .title = "Backup"});
        return;
    }
    program.ShowMessage({.text = LocationWarning(program),
                         .icon = forms::Icon::kCritical,
                         .title = "Restore",
                         .right_aligned = true});
    Frm_RestoreWhere dialog(program, controls.Fld_RestoreTo);
    program.desktop.ShowModal(dialog);
}

std::string LocationWarning(const forms::Program& program) {
    const std::string& line = program.globals.CrLf;
    return "Vantrel has been designed to allow the user to "
           "manualy select the Restore Location themselves "
           "as this can cause major risks to Users Data." +
           line + line + "PLEASE SELECT THE RESTORE LOCATION WITH CARE!";
}

}  // namespace vantrel
