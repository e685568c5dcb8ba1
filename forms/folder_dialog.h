// The dialog for choosing a folder: drives, folders of the chosen drive, a new folder. The backup
// and restore destination dialogs derive from it, with their own texts and their own OK.
#pragma once

#include <string>

#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/form.h"

namespace vantrel::forms {

// Shows that `folder` cannot be used and why: `reason` is a sentence. The text stays in
// MessageText.
void ShowFolderRefusal(Program& program, const std::string& folder, const std::string& reason);

class FolderDialog : public Form {
  public:
    DriveList Dri_DriveList;
    FolderList Dir_DirList;
    Button Cmd_NewFolder;
    Button Cmd_Ok;
    Button Cmd_Cancel;

    void Form_Load() override;
    void Dri_DriveList_Change();
    void Cmd_NewFolder_Click();
    void Cmd_Ok_Click();
    void Cmd_Cancel_Click();

  protected:
    // `missing_title` is the title of the message about a destination that does not exist.
    FolderDialog(Program& program, std::string name, const std::string& caption,
                 std::string missing_title);
    // The destination chosen so far, "" for none.
    virtual std::string Destination() const = 0;
    // Whether that folder exists, by the program's own test.
    virtual bool FolderExists(const std::string& folder) const = 0;
    // On OK: stores the shown folder if it is valid, and closes the dialog.
    virtual void StoreFolder() = 0;
    // Shows a trapped run-time error.
    virtual void DisplayError(const Error& error) const = 0;
    // Shows the reason why the chosen folder cannot be stored.
    void RefuseFolder(const std::string& reason) const;

  private:
    std::string ApplicationDrive() const;
    void ShowDestination();
    std::string missing_title_;
};

}  // namespace vantrel::forms
