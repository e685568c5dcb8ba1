#include "forms/folder_dialog.h"

#include <utility>

#include "common/error.h"

namespace vantrel::forms {

void ShowFolderRefusal(Program& program, const std::string& folder, const std::string& reason) {
    auto& globals = program.globals;
    globals.MessageText = "Unable to use the folder " + folder + "." + globals.CrLf + reason;
    program.desktop.Show(
        {.text = globals.MessageText, .icon = Icon::kExclamation, .title = "Backup"});
}

FolderDialog::FolderDialog(Program& program, std::string name, const std::string& caption,
                           std::string missing_title)
    : Form(program, std::move(name)),
      Dri_DriveList(*this, "Dri_DriveList"),
      Dir_DirList(*this, "Dir_DirList"),
      Cmd_NewFolder(*this, "Cmd_NewFolder", "New &Folder"),
      Cmd_Ok(*this, "Cmd_Ok", "OK"),
      Cmd_Cancel(*this, "Cmd_Cancel", "Cancel"),
      missing_title_(std::move(missing_title)) {
    SetCaption(caption);
    Dri_DriveList.Change = [this] { Dri_DriveList_Change(); };
    Dir_DirList.Refused = [this](const Error& error) { DisplayError(error); };
    Cmd_NewFolder.Click = [this] { Cmd_NewFolder_Click(); };
    Cmd_Ok.Click = [this] { Cmd_Ok_Click(); };
    Cmd_Cancel.Click = [this] { Cmd_Cancel_Click(); };
}

std::string FolderDialog::ApplicationDrive() const {
    return program().machine.process.ApplicationFolder().substr(0, 3);
}

void FolderDialog::Form_Load() {
    try {
        ShowDestination();
    } catch (const Error& error) {
        DisplayError(error);
    }
}

void FolderDialog::ShowDestination() {
    const std::string destination = Destination();
    if (!destination.empty() && !FolderExists(destination)) {
        auto& globals = program().globals;
        globals.MessageText =
            "Unable to find " + destination + globals.CrLf + "Please select an available path.";
        program().desktop.Show(
            {.text = globals.MessageText, .icon = Icon::kExclamation, .title = missing_title_});
        Dri_DriveList.SetDrive(ApplicationDrive());
        return;
    }
    const std::string folder =
        destination.empty() ? program().machine.process.ApplicationFolder() : destination;
    // A folder on the network has no drive to show.
    if (!folder.starts_with("\\\\")) {
        Dri_DriveList.SetDrive(folder.substr(0, 3));
    }
    Dir_DirList.SetPath(folder);
}

// Run-time errors are ignored while this handler runs: an unreachable drive is reported in its box.
void FolderDialog::Dri_DriveList_Change() {
    try {
        const std::string selected = Dri_DriveList.Drive();
        if (FolderExists(selected.substr(0, 2) + "\\")) {
            Dir_DirList.SetPath(selected);
            return;
        }
        program().desktop.Show({.text = "Unable to connect to " + selected,
                                .icon = Icon::kInformation,
                                .title = "Backup"});
        Dri_DriveList.SetDrive(ApplicationDrive());
    } catch (const Error&) {
        return;
    }
}

// The name is joined to the shown path without a separator: at a root that is a folder in it,
// inside a folder a folder beside it whose name begins with this one's.
void FolderDialog::Cmd_NewFolder_Click() {
    const std::string name =
        program().desktop.Input("Please enter a Folder Name", "Create New Folder", "New Folder");
    if (name.empty()) {
        return;
    }
    const std::string folder = Dir_DirList.Path() + name;
    program().machine.files.MakeFolder(folder);
    Dir_DirList.SetPath(folder);
    Dir_DirList.Reload();
}

void FolderDialog::Cmd_Ok_Click() {
    try {
        StoreFolder();
    } catch (const Error& error) {
        DisplayError(error);
    }
}

void FolderDialog::Cmd_Cancel_Click() { program().desktop.Unload(*this); }

void FolderDialog::RefuseFolder(const std::string& reason) const {
    ShowFolderRefusal(program(), Dir_DirList.Path(), reason);
}

}  // namespace vantrel::forms
