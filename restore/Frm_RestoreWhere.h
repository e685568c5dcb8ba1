// The dialog that says into which folder to restore. The choice lives in the main window's label;
// no set file is touched.
#pragma once

#include "forms/folder_dialog.h"
#include "restore/restore_controls.h"

namespace vantrel {

class Frm_RestoreWhere : public forms::FolderDialog {
  public:
    Frm_RestoreWhere(forms::Program& program, forms::Label& restore_to);

  private:
    std::string Destination() const override;
    bool FolderExists(const std::string& folder) const override;
    void TakeFolder() override;
    void Tell(const Error& error) const override;

    forms::Label& Fld_RestoreTo_;
};

// Warns, every time, and shows the dialog; without an archive chosen only asks for one.
void Cmd_RestoreTo_Click(forms::Program& program, const RestoreControls& controls);

}  // namespace vantrel
