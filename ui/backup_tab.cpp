#include "ui/backup_tab.h"

#include "backup/Frm_BackupOptions.h"
#include "backup/Frm_BackupWhere.h"
#include "backup/preflight.h"
#include "backupset/clsFiles.h"
#include "forms/folder_dialog.h"
#include "log/clsLog.h"

namespace vantrel {

using forms::Icon;

class BackupTab::MovesScope {
  public:
    MovesScope(BackupTab& tab, Moves moves) : tab_(tab), before_(tab.moves_) {
        tab_.moves_ = moves;
        tab_.moved_ = false;
    }
    ~MovesScope() { tab_.moves_ = before_; }
    MovesScope(const MovesScope&) = delete;
    MovesScope& operator=(const MovesScope&) = delete;

  private:
    BackupTab& tab_;
    Moves before_;
};

BackupTab::BackupTab(forms::Form& window)
    : Fra_Backup(window, "Fra_Backup"),
      Img_Set(window, "Img_Set"),
      Lbl_RestoreSet(window, "Lbl_RestoreSet", "&Backup Set"),
      Cmb_BackupSet(window, "Cmb_BackupSet"),
      Img_What(window, "Img_What"),
      Dri_DriveList(window, "Dri_DriveList"),
      Dir_DirList(window, "Dir_DirList"),
      Img_FilesToBackup(window, "Img_FilesToBackup"),
      Lbl_BackupSet{{{window, "Lbl_BackupSet_0", "Files to Backup?"},
                     {window, "Lbl_BackupSet_1", "Backup File Name"},
                     {window, "Lbl_BackupSet_2", "Backup Options"}}},
      Lbl_FilestoBackup(window, "Lbl_FilestoBackup"),
      Img_BackupFileName(window, "Img_BackupFileName"),
      Lbl_BackupFileName(window, "Lbl_BackupFileName"),
      Img_Where(window, "Img_Where"),
      Fld_BackupWhere(window, "Fld_BackupWhere"),
      Cmd_Navigate(window, "Cmd_Navigate", "..."),
      Fld_BackupOptions(window, "Fld_BackupOptions"),
      Cmd_Options{{{window, "Cmd_Options_0", "..."},
                   {window, "Cmd_Options_1", "..."},
                   {window, "Cmd_Options_2", "..."}}},
      Lin_Mainmenu(window, "Lin_Mainmenu"),
      Cmd_Change(window, "Cmd_Change", "&Change Settings"),
      Cmd_AddNew(window, "Cmd_AddNew", "New Backup"),
      Cmd_Backup(window, "Cmd_Backup", "&Backup Now"),
      Cmd_Exit(window, "Cmd_Exit_0", "&Exit"),
      window_(window),
      last_good_path_(Dir_DirList.Path()) {
    Cmb_BackupSet.SetTooltip("Select an Existing Backup Set");
    Dri_DriveList.SetTooltip("Select the Drive that you wish to Backup");
    Dir_DirList.SetTooltip("Select a Folder that you wish to Backup");
    Lbl_FilestoBackup.SetTooltip("Displays the File Types that you wish to Backup");
    Lbl_BackupFileName.SetTooltip("The Name of the Backup File");
    Fld_BackupWhere.SetTooltip("Location of the Backup File");
    Fld_BackupOptions.SetTooltip("Displays the Backup Options");
    for (auto& button : Cmd_Options) {
        button.SetTooltip("Edit Options");
    }
    Cmd_Change.SetTooltip("Modify Backup What/Where/Options Settings");
    Cmd_AddNew.SetTooltip("Add a New Backup Configuration File");
    Cmd_Backup.SetTooltip("Start the Backup Now!");
    Cmd_Exit.SetTooltip("Exit this Product");

    Cmb_BackupSet.Click = [this] { Cmb_BackupSet_Click(); };
    Dri_DriveList.Change = [this] { Dri_DriveList_Change(); };
    Dir_DirList.Change = [this] { Dir_DirList_Change(); };
    Dir_DirList.Refused = [this](const Error& error) { ShowError(window_.program(), error); };
    Cmd_Change.Click = [this] { Cmd_Change_Click(); };
    Cmd_Backup.Click = [this] { Cmd_Backup_Click(); };
    Cmd_Navigate.Click = [this] { Cmd_Navigate_Click(); };
    for (auto& button : Cmd_Options) {
        button.Click = [this] { Cmd_Options_Click(); };
    }
}

BackupControls BackupTab::Controls() {
    return {Cmb_BackupSet,      Dir_DirList,     Lbl_FilestoBackup,
            Lbl_BackupFileName, Fld_BackupWhere, Fld_BackupOptions};
}

void BackupTab::Cmd_Backup_Click() {
    vantrel::Cmd_Backup_Click(window_.program(), Controls());
    UpdateFacts();
    // The backup has been refused: the status bar names this button.
    if (HasProblem(facts_) && Cmd_Change.Enabled()) {
        Cmd_Change.SetFocus();
    }
}

void BackupTab::FocusFirstStep() {
    if (Cmb_BackupSet.Count() == 0) {
        Cmd_AddNew.SetFocus();
    } else if (Cmb_BackupSet.Text().empty()) {
        Cmb_BackupSet.SetFocus();
    }
}

// An unattended run shows no status and asks no more of the disks than its checks do.
void BackupTab::UpdateFacts() {
    if (!window_.program().Unattended()) {
        facts_ = ReadSetFacts(window_.program(), Cmb_BackupSet.Text());
    }
}

BackupStatus BackupTab::Status() const {
    return {.sets = Cmb_BackupSet.Count(),
            .set = Cmb_BackupSet.Text(),
            .is_locked = Cmd_Change.Enabled(),
            .facts = facts_};
}

template <typename Dialog>
void BackupTab::ShowDialog(const std::string& request) {
    forms::Program& program = window_.program();
    if (Cmb_BackupSet.Text().empty()) {
        program.desktop.Show({.text = request, .icon = Icon::kInformation, .title = "Backup"});
        return;
    }
    Dialog dialog(program, Controls());
    program.desktop.ShowModal(dialog);
    UpdateFacts();
}

void BackupTab::Cmd_Navigate_Click() {
    ShowDialog<Frm_BackupWhere>("Please select a Backup Configuration.");
}

void BackupTab::Cmd_Options_Click() {
    ShowDialog<Frm_BackupOptions>("Please select a Backup Configuration first.");
}

std::string BackupTab::SetPath() const {
    return window_.program().InApplicationFolder(Cmb_BackupSet.Text());
}

void BackupTab::SetEditMode(bool editable) {
    for (auto& button : Cmd_Options) {
        button.SetEnabled(editable);
    }
    Dri_DriveList.SetEnabled(editable);
    Dir_DirList.SetEnabled(editable);
    Cmd_Navigate.SetEnabled(editable);
    Cmd_Change.SetEnabled(!editable);
}

void BackupTab::Cmd_Change_Click() {
    SetEditMode(true);
    Dri_DriveList.SetFocus();
}

void BackupTab::Cmb_BackupSet_Click() {
    window_.Refresh();
    window_.program().desktop.DoEvents();
    clsINI set(window_.program());
    set.Read_INI(SetPath());

    const std::string where = clsString().Backslash(set.BackupToDrive());
    const bool source_found = DriveFound(set, set.BackupFiles());
    if (!source_found) {
        if (window_.program().Unattended()) {
            return Fld_BackupWhere.SetCaption(where);
        }
        ShowSourceMissing(set);
        GoToApplicationDrive();
        Fld_BackupWhere.SetCaption(where);
    }
    if (!DriveFound(set, set.BackupToDrive())) {
        if (window_.program().Unattended()) {
            return Fld_BackupWhere.SetCaption(where);
        }
        ShowDestinationMissing(set);
        Fld_BackupWhere.SetCaption(where);
    }
    SetEditMode(false);
    // The lists move while the mask label still shows the previous set: the folder is written
    // together with that mask. The label changes afterwards.
    if (source_found) {
        ShowSource(set);
    }
    ShowValues(set);
    UpdateFacts();
}

bool BackupTab::DriveFound(const clsINI& set, const std::string& path) {
    return clsFiles(window_.program()).Exist(set.Backup_Parts(path, clsINI::kDrive), false);
}

void BackupTab::ShowSourceMissing(clsINI& set) {
    forms::Program& program = window_.program();
    const std::string& line = program.globals.CrLf;
    program.ShowMessage({.text = "You have selected a file whereupon files from " +
                                 set.BackupFiles() + " are to backed up.  Vantrel cannot locate " +
                                 set.BackupFiles() + line + line,
                         .icon = Icon::kExclamation,
                         .title = "Backup"});
}

void BackupTab::ShowDestinationMissing(clsINI& set) {
    forms::Program& program = window_.program();
    const std::string& line = program.globals.CrLf;
    program.ShowMessage({.text = "You have selected to backup files to " + set.BackupToDrive() +
                                 " are to backed up.  Vantrel cannot locate " +
                                 set.BackupToDrive() + line + line +
                                 "If the Drive Selected is a Removable Drive "
                                 "then place a Disk into the Drive Now.",
                         .icon = Icon::kExclamation,
                         .title = "Backup"});
}

// A move that stops half-way would store a source that the user did not choose. So the folder is
// tested before either list moves, and the set's file is written once, after both have moved.
void BackupTab::ShowSource(clsINI& set) {
    forms::Program& program = window_.program();
    const std::string folder = set.Backup_Parts(set.BackupFiles(), clsINI::kFolder);
    if (folder.empty()) {
        return GoToApplicationDrive();
    }
    if (!clsFiles(program).Exist(folder, false)) {
        // Unattended, the checks before the backup report it.
        if (!program.Unattended()) {
            const int number = error_number::kPathNotFound;
            ShowError(program, Error(number, window_.name(), ErrorText(number) + ": " + folder));
        }
        return;
    }
    const MovesScope showing(*this, MayWriteSource(set) ? Moves::kShowing : Moves::kSilent);
    try {
        Dri_DriveList.SetDrive(set.Backup_Parts(set.BackupFiles(), clsINI::kDrive));
        Dir_DirList.SetPath(folder);
    } catch (const Error& error) {
        return ShowError(program, error);
    }
    if (moved_ && moves_ == Moves::kShowing) {
        WriteSource();
    }
}

// A truncated source is shown as it was read and never written back; nor is its mask written into
// the next set.
bool BackupTab::MayWriteSource(const clsINI& set) const {
    return set.SourceProblem().empty() && !mask_is_cut_;
}

void BackupTab::ShowValues(const clsINI& set) {
    mask_is_cut_ = !set.SourceProblem().empty();
    ShowOptions(Controls(), set);
    Fld_BackupWhere.SetCaption(clsString().Backslash(set.BackupToDrive()));
}

void BackupTab::GoToApplicationDrive() {
    forms::Program& program = window_.program();
    const std::string root = program.machine.process.ApplicationFolder().substr(0, 3);
    const MovesScope silent(*this, Moves::kSilent);
    try {
        Dri_DriveList.SetDrive(root);
        Dir_DirList.SetPath(root);
    } catch (const Error& error) {
        ShowError(program, error);
    }
}

void BackupTab::Dri_DriveList_Change() {
    try {
        Dir_DirList.SetPath(Dri_DriveList.Drive());
    } catch (const Error& error) {
        ShowError(window_.program(), error);
    }
}

void BackupTab::Dir_DirList_Change() {
    const std::string problem = FolderProblem();
    if (!problem.empty()) {
        return RefuseFolder(problem);
    }
    last_good_path_ = Dir_DirList.Path();
    moved_ = true;
    if (moves_ == Moves::kChosen && !Cmb_BackupSet.Text().empty()) {
        WriteSource();
    }
}

// Why the set cannot store the shown folder, as a sentence; "" when it can. Length matters only for
// the user's choice: any other folder is in the set already, or is not written.
std::string BackupTab::FolderProblem() const {
    auto& code_page = window_.program().machine.code_page;
    const std::string& folder = Dir_DirList.Path();
    return StorageProblem(code_page, moves_ == Moves::kChosen ? DisplayedSource() : folder);
}

std::string BackupTab::DisplayedSource() const {
    const std::string& mask = Lbl_FilestoBackup.Caption();
    return clsString().Backslash(Dir_DirList.Path()) + (mask.empty() ? "*.*" : mask);
}

void BackupTab::WriteSource() {
    forms::Program& program = window_.program();
    if (Cmb_BackupSet.Text().empty()) {
        return;
    }
    if (Lbl_FilestoBackup.Caption().empty()) {
        Lbl_FilestoBackup.SetCaption("*.*");
    }
    clsINI set(program);
    set.BackupFiles(DisplayedSource());
    // The mask of the set that was shown before may be too long for this folder.
    if (!set.SourceProblem().empty()) {
        return;
    }
    clsFiles(program).WriteINI("BACKUP SOURCE", "BackupFiles", set.BackupFiles(), SetPath());
    facts_.missing_source.clear();  // the list has just read the folder
}

void BackupTab::RefuseFolder(const std::string& reason) {
    forms::ShowFolderRefusal(window_.program(), Dir_DirList.Path(), reason);
    const MovesScope silent(*this, Moves::kSilent);
    try {
        Dir_DirList.SetPath(last_good_path_);
    } catch (const Error&) {
        GoToApplicationDrive();  // the folder has been removed meanwhile
    }
    moved_ = false;  // the set's folder was not reached
}

}  // namespace vantrel
