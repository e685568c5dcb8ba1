// The dialog for the folder into which the selected set writes its archive. OK stores the folder in
// the set's file and shows it in the main window; a folder that a set cannot store is refused.
#pragma once

#include "backup/backup_controls.h"
#include "forms/folder_dialog.h"

namespace vantrel {

class Frm_BackupWhere : public forms::FolderDialog {
  public:
    Frm_BackupWhere(forms::Program& program, const BackupControls& main_window);

  private:
    std::string Destination() const override;
    bool FolderExists(const std::string& folder) const override;
    void StoreFolder() override;
    void DisplayError(const Error& error) const override;

    BackupControls main_;
};

}  // namespace vantrel
