#include "backup/Frm_BackupOptions.h"

#include "backupset/clsFiles.h"
#include "common/file_name.h"
#include "system/clsDrives.h"

namespace vantrel {

namespace {
std::string OnOff(const forms::CheckBox& box) { return box.Checked() ? "ON" : "OFF"; }
}  // namespace

Frm_BackupOptions::Frm_BackupOptions(forms::Program& program, const BackupControls& main_window)
    : Form(program, "Frm_BackupOptions"),
      Fra_Options(*this, "Fra_Options"),
      Chk_TimeBackup(*this, "Chk_TimeBackup", "Time Backup"),
      Chk_MultiVolumeBackup(*this, "Chk_MultiVolumeBackup", "Multi Volume Backup"),
      Chk_BackupSubDirectories(*this, "Chk_BackupSubDirectories", "Backup Sub Directories"),
      Lbl_BackupFiles(*this, "Lbl_BackupFiles", "Backup Files"),
      Fld_BackupFile(*this, "Fld_BackupFile"),
      Lbl_BackupFileName(*this, "Lbl_BackupFileName", "Backup File Name"),
      Fld_BackupFileName(*this, "Fld_BackupFileName"),
      Cmd_Ok(*this, "Cmd_Ok", "OK"),
      Cmd_Cancel(*this, "Cmd_Cancel", "Cancel"),
      main_(main_window),
      set_(program) {
    SetCaption("Backup Options");
    Cmd_Ok.Click = [this] { Cmd_Ok_Click(); };
    Cmd_Cancel.Click = [this] { Cmd_Cancel_Click(); };
}

std::string Frm_BackupOptions::SetPath() const {
    return program().InApplicationFolder(main_.Cmb_BackupSet.Text());
}

void Frm_BackupOptions::Form_Load() {
    set_.Read_INI(SetPath());
    Chk_TimeBackup.SetChecked(set_.TimeBackup() == "ON");
    Chk_MultiVolumeBackup.SetChecked(set_.MultiVolumeBackup() == "ON");
    Chk_BackupSubDirectories.SetChecked(set_.BackupSubDirectories() == "ON");
    Fld_BackupFile.SetText(set_.Backup_Parts(set_.BackupFiles(), clsINI::kFile));
    Fld_BackupFileName.SetText(set_.BackupFileName());
}

// A new set has the flag on. On a fixed disk clearing it is what the dialog is opened for.
void Frm_BackupOptions::Form_Activate() {
    if (Chk_MultiVolumeBackup.Checked() && !IsDestinationRemovable()) {
        Chk_MultiVolumeBackup.SetFocus();
    }
}

void Frm_BackupOptions::Cmd_Ok_Click() {
    if (!ValidateEntries()) {
        return;
    }
    if (Fld_BackupFile.Text().empty()) {
        Fld_BackupFile.SetText("*.*");
    }
    const clsINI changed = WithValues();
    if (!ValidateLengths(changed)) {
        return;
    }
    WriteKeys(changed);
    ShowOptions(main_, changed);
    program().desktop.Unload(*this);
}

void Frm_BackupOptions::ShowMessage(const std::string& text) {
    program().ShowMessage({.text = text, .icon = forms::Icon::kExclamation, .title = "Backup"});
}

bool Frm_BackupOptions::ValidateEntries() {
    return ValidateArchiveName() && ValidateCharacters(Fld_BackupFileName.Text()) &&
           ValidateCharacters(Fld_BackupFile.Text()) && ValidateVolumes() && RequireLoadedSet();
}

bool Frm_BackupOptions::ValidateArchiveName() {
    const std::string name = Fld_BackupFileName.Text();
    if (name.empty()) {
        ShowMessage("Unable to Save as no Backup Name has been entered.");
        return false;
    }
    if (IsValidFileName(name)) {
        return true;
    }
    ShowMessage("Unable to Save as " + name + " cannot be the name of a file.");
    return false;
}

bool Frm_BackupOptions::IsDestinationRemovable() {
    const std::string root = main_.Fld_BackupWhere.Caption().substr(0, 3);
    return clsDrives(program()).VerifyDriveType(root, platform::drive_type::kRemovable);
}

// Checks the destination that the main window shows, not the one in the set's file. The list under
// the message's last heading is that of the removable drives, where such a set is accepted.
bool Frm_BackupOptions::ValidateVolumes() {
    if (!Chk_MultiVolumeBackup.Checked() || IsDestinationRemovable()) {
        return true;
    }
    const std::string& line = program().globals.CrLf;
    ShowMessage(
        "Unable to Save as you have selected the Multi Volume "
        "flag on a Non-Removable Drive." +
        line + line + "The Non-Removable Drives on this machine are;" + line +
        clsDrives(program()).ShowDrives(platform::drive_type::kRemovable));
    Chk_MultiVolumeBackup.SetFocus();
    return false;
}

// The source's folder comes from the set's file. Without it the file would lose its source.
bool Frm_BackupOptions::RequireLoadedSet() {
    if (set_.WasRead()) {
        return true;
    }
    ShowMessage("Unable to Save as " + SetPath() + " could not be read.");
    return false;
}

bool Frm_BackupOptions::ValidateCharacters(const std::string& text) {
    if (program().machine.code_page.Encode(text)) {
        return true;
    }
    ShowMessage("Unable to Save as " + text + " holds characters that a Backup Set cannot store.");
    return false;
}

// The loaded set with the dialog's entries. The source's folder stays the loaded one.
clsINI Frm_BackupOptions::WithValues() const {
    auto& code_page = program().machine.code_page;
    clsINI set = set_;
    set.TimeBackup(OnOff(Chk_TimeBackup));
    set.MultiVolumeBackup(OnOff(Chk_MultiVolumeBackup));
    set.BackupSubDirectories(OnOff(Chk_BackupSubDirectories));
    set.BackupFiles(set.Backup_Parts(set.BackupFiles(), clsINI::kFolder));
    set.BackupFiles(code_page.Upper(set.BackupFiles() + Fld_BackupFile.Text()));
    set.BackupFileName(code_page.Upper(Fld_BackupFileName.Text()));
    return set;
}

// A source that was cut when it was loaded would be stored as another folder. The destination
// matters only for the name of a dated folder: the dialog stores no other part of it.
bool Frm_BackupOptions::ValidateLengths(const clsINI& changed) {
    for (const std::string& problem :
         {set_.SourceProblem(), changed.SourceProblem(), changed.ArchiveNameProblem(),
          Chk_TimeBackup.Checked() ? changed.DestinationProblem() : ""}) {
        if (!problem.empty()) {
            ShowMessage("Unable to Save as " + problem + ".");
            return false;
        }
    }
    return true;
}

void Frm_BackupOptions::WriteKeys(const clsINI& set) {
    clsFiles(program()).WriteINI(
        {{"BACKUP SOURCE", "BackupFiles", set.BackupFiles()},
         {"BACKUP SOURCE", "BackupSubDirectories", set.BackupSubDirectories()},
         {"Destination", "BackupFileName", set.BackupFileName()},
         {"Destination", "MultiVolumeBackup", set.MultiVolumeBackup()},
         {"Destination", "TimeBackup", set.TimeBackup()}},
        SetPath());
}

void Frm_BackupOptions::Cmd_Cancel_Click() { program().desktop.Unload(*this); }

}  // namespace vantrel
