// The dialog for the folder to restore into. OK puts the folder into the main window's label; no
// set file is written.
#pragma once

#include <string>

#include "forms/folder_dialog.h"
#include "forms/program.h"
#include "restore/restore_controls.h"

namespace vantrel {

class Frm_RestoreWhere : public forms::FolderDialog {
  public:
    Frm_RestoreWhere(forms::Program& program, forms::Label& restore_to);

  private:
    std::string Destination() const override;
    bool FolderExists(const std::string& folder) const override;
    void StoreFolder() override;
    void DisplayError(const Error& error) const override;

    forms::Label& Fld_RestoreTo_;
};

// The warning that the user chooses the folder without help.
std::string LocationWarning(const forms::Program& program);

// Shows the warning and the dialog. Without a chosen archive, shows a request to choose one
// instead.
void Cmd_RestoreTo_Click(forms::Program& program, const RestoreControls& controls);

}  // namespace vantrel
