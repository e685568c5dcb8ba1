// The dialog for the switches, the file mask and the archive name of the selected set. OK refuses
// entries that the set's file or Windows cannot hold, with one message, and writes nothing then.
#pragma once

#include "backup/backup_controls.h"
#include "backupset/clsINI.h"
#include "forms/controls.h"
#include "forms/form.h"

namespace vantrel {

class Frm_BackupOptions : public forms::Form {
  public:
    Frm_BackupOptions(forms::Program& program, const BackupControls& main_window);

    forms::Frame Fra_Options;
    forms::CheckBox Chk_TimeBackup;
    forms::CheckBox Chk_MultiVolumeBackup;
    forms::CheckBox Chk_BackupSubDirectories;
    forms::Label Lbl_BackupFiles;
    forms::TextBox Fld_BackupFile;
    forms::Label Lbl_BackupFileName;
    forms::TextBox Fld_BackupFileName;
    forms::Button Cmd_Ok;
    forms::Button Cmd_Cancel;

    void Form_Load() override;
    void Form_Activate() override;
    void Cmd_Ok_Click();
    void Cmd_Cancel_Click();

  private:
    // Each shows a message and returns false for an entry that cannot be saved.
    bool ValidateEntries();
    bool ValidateArchiveName();
    bool ValidateVolumes();
    bool IsDestinationRemovable();
    bool ValidateCharacters(const std::string& text);
    bool RequireLoadedSet();
    bool ValidateLengths(const clsINI& changed);
    clsINI WithValues() const;
    void WriteKeys(const clsINI& set);
    void ShowMessage(const std::string& text);
    std::string SetPath() const;

    BackupControls main_;
    clsINI set_;
};

}  // namespace vantrel
