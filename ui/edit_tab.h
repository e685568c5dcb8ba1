// The INI Edit tab: the list of set files, and the text of one of them, which is saved only when it
// is a valid set. The Save button is enabled exactly while there are unsaved changes.
#pragma once

#include <functional>
#include <string>

#include "backupset/clsINI.h"
#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/form.h"
#include "forms/lists.h"
#include "ui/main_status.h"

namespace vantrel {

class EditTab {
  public:
    explicit EditTab(forms::Form& window);

    forms::Frame Fra_INIFileList;
    forms::Label Lbl_INIEdit;
    forms::FileList Fil_INI;
    forms::Button Cmd_INIRefresh;
    forms::Frame Fra_INIEdit;
    forms::Label Lbl_INIContents;
    forms::TextBox Fld_INI;
    forms::Button Cmd_Save;

    std::string CurrentINI;     // name of the file whose text is shown, "" for none
    bool SaveAccepted = false;  // whether the last save wrote its file
    bool ConfirmSave = false;   // whether the next press of Save asks first

    void Fil_INI_Click();
    void Fld_INI_Change();
    void Cmd_Save_Click();
    void Cmd_INIRefresh_Click();
    EditStatus Status() const;
    // Deletes the selected file, after a question, and removes it from `Cmb_BackupSet`.
    void Menu_Options_Delete_Click(forms::ComboBox& Cmb_BackupSet);

  private:
    // Runs a handler and shows its errors. A file that is picked meanwhile (pending events run
    // while a file is shown) is shown afterwards.
    void Run(const std::function<void()>& handler);
    void ShowPicked();
    bool OfferToSave(const std::string& picked);
    bool ConfirmSaving();
    void Save();
    bool WriteScratch(const std::string& scratch);
    bool ValidateText(const std::string& scratch);
    bool ValidateLengths(const clsINI& set);
    void ShowRefusal(const std::string& reason);
    void PutInPlace(const std::string& scratch);
    std::string ScratchPath() const;
    void Delete(const std::string& name, forms::ComboBox& sets);
    bool ConfirmDeletion(const std::string& name);

    forms::Program& program_;
    bool running_ = false;
    bool picked_meanwhile_ = false;
};

}  // namespace vantrel
