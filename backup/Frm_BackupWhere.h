// The dialog that says into which folder the selected set writes its archive.
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
    void TakeFolder() override;
    void Tell(const Error& error) const override;

    BackupControls main_;
};

}  // namespace vantrel
