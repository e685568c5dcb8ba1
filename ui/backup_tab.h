// The Backup tab: the selected set, its source and destination, and the controls that change them.
// The selected set's file is the only other place of this state; moving the two lists writes it.
#pragma once

#include <array>
#include <string>

#include "backup/backup_controls.h"
#include "backupset/clsINI.h"
#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/form.h"
#include "forms/lists.h"
#include "ui/main_status.h"

namespace vantrel {

class BackupTab {
  public:
    explicit BackupTab(forms::Form& window);

    forms::Frame Fra_Backup;
    forms::Picture Img_Set;
    forms::Label Lbl_RestoreSet;
    forms::ComboBox Cmb_BackupSet;
    forms::Picture Img_What;
    forms::DriveList Dri_DriveList;
    forms::FolderList Dir_DirList;
    forms::Picture Img_FilesToBackup;
    std::array<forms::Label, 3> Lbl_BackupSet;
    forms::Label Lbl_FilestoBackup;
    forms::Picture Img_BackupFileName;
    forms::Label Lbl_BackupFileName;
    forms::Picture Img_Where;
    forms::Label Fld_BackupWhere;
    forms::Button Cmd_Navigate;
    forms::Label Fld_BackupOptions;
    std::array<forms::Button, 3> Cmd_Options;
    forms::Frame Lin_Mainmenu;
    forms::Button Cmd_Change;
    forms::Button Cmd_AddNew;
    forms::Button Cmd_Backup;
    forms::Button Cmd_Exit;

    void Cmb_BackupSet_Click();
    void Dri_DriveList_Change();
    void Dir_DirList_Change();
    void Cmd_Backup_Click();
    void Cmd_Change_Click();
    void Cmd_Navigate_Click();
    void Cmd_Options_Click();

    void SetEditMode(bool editable);
    // Both lists to the root of the application's drive, touching no set file.
    void GoToApplicationDrive();
    // Gives the keyboard to New Backup while there is no set, to the list of sets while none is
    // selected.
    void FocusFirstStep();
    BackupStatus Status() const;

  private:
    // What a move of the two lists does to the selected set's file.
    enum class Moves {
        kChosen,   // the user moved a list: the folder is written at once
        kShowing,  // a set is being shown: its folder is written once, after both lists have moved
        kSilent,   // not the user's choice: nothing is written
    };
    class MovesScope;

    bool DriveFound(const clsINI& set, const std::string& path);
    void ShowSourceMissing(clsINI& set);
    void ShowDestinationMissing(clsINI& set);
    void ShowSource(clsINI& set);
    bool MayWriteSource(const clsINI& set) const;
    void ShowValues(const clsINI& set);
    std::string FolderProblem() const;
    std::string DisplayedSource() const;
    void WriteSource();
    void RefuseFolder(const std::string& reason);
    std::string SetPath() const;
    BackupControls Controls();
    void UpdateFacts();
    // Shows a dialog of the selected set, or the message `request` when none is selected.
    template <typename Dialog>
    void ShowDialog(const std::string& request);

    forms::Form& window_;
    Moves moves_ = Moves::kChosen;
    bool moved_ = false;        // a list has moved since kShowing began
    bool mask_is_cut_ = false;  // the mask shown is that of a source that was cut when it was read
    std::string last_good_path_;  // the last folder of the list that a set can store
    SetFacts facts_;              // of the selected set
};

}  // namespace vantrel
