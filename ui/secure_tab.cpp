#include "ui/secure_tab.h"

#include "backupset/clsFiles.h"
#include "common/error.h"
#include "common/path.h"
#include "forms/desktop.h"
#include "log/clsLog.h"
#include "protect/clsCfg.h"
#include "protect/folder_tree.h"

namespace vantrel {

using forms::Icon;

namespace {

constexpr int kRightButton = 2;

// Shows the waiting panel in the tree's place during a load, however the load ends.
class WaitScope {
  public:
    explicit WaitScope(SecureTab& tab)
        : hourglass_(tab.TV_SecureMode.owner().program().desktop), tab_(tab) {
        Wait(true);
    }
    ~WaitScope() { Wait(false); }
    WaitScope(const WaitScope&) = delete;
    WaitScope& operator=(const WaitScope&) = delete;

  private:
    void Wait(bool waiting) {
        tab_.SSP_PleaseWait.SetVisible(waiting);
        tab_.TV_SecureMode.SetVisible(!waiting);
        if (waiting && tab_.ReadingBegins) {
            tab_.ReadingBegins();
        }
    }
    const forms::Hourglass hourglass_;
    SecureTab& tab_;
};

}  // namespace

SecureTab::SecureTab(forms::Form& window, const SecureMenu& menu)
    : Fra_SecureData{{{window, "Fra_SecureData_0", "Secure Data"}, {window, "Fra_SecureData_1"}}},
      Dri_SecureMode(window, "Dri_SecureMode"),
      TV_SecureMode(window, "TV_SecureMode"),
      SSP_PleaseWait(window, "SSP_PleaseWait", "Please Wait..."),
      SSP_ProgressSecure(window, "SSP_ProgressSecure", "Loading Folder Structure"),
      Fld_SecureData(window, "Fld_SecureData", true, true),
      window_(window),
      menu_(menu) {
    // Without a handler the selection would not be an event, and the status would stay.
    TV_SecureMode.NodeClick = [] {};
    Dri_SecureMode.Change = [this] { Dri_SecureMode_Change(); };
    TV_SecureMode.MouseDown = [this](int button) { TV_SecureMode_MouseDown(button); };
}

bool SecureTab::CreateMissingList() {
    clsCfg list(window_.program());
    if (clsFiles(window_.program()).Exist(list.ListPath(), true)) {
        return false;
    }
    // The existence test is also false for a list that cannot be read now.
    return list.CreateMissing();
}

void SecureTab::OnShown() {
    forms::Program& program = window_.program();
    try {
        CreateMissingList();
        if (TV_SecureMode.Count() > 0) {
            return;
        }
        Dri_SecureMode.SetDrive(program.machine.process.ApplicationFolder().substr(0, 3));
        program.desktop.DoEvents();
        LoadDrive();
    } catch (const Error& error) {
        ShowError(program, error);
    }
}

void SecureTab::Dri_SecureMode_Change() {
    try {
        LoadDrive();
    } catch (const Error& error) {
        ShowError(window_.program(), error);
    }
}

void SecureTab::LoadDrive() {
    const std::string root = Root();
    was_stopped_ = false;
    if (!clsFiles(window_.program()).Exist(root, false)) {
        return TV_SecureMode.Clear();
    }
    const WaitScope waiting(*this);
    TV_SecureMode.Clear();
    was_stopped_ = !Create_DirectoryStructure(TV_SecureMode, SSP_ProgressSecure, root, "");
}

std::string SecureTab::Root() const { return Dri_SecureMode.Drive().substr(0, 2) + "\\"; }

SecureStatus SecureTab::Status() const {
    const int node = TV_SecureMode.Selected();
    const forms::Tree::Node selected = node == 0 ? forms::Tree::Node() : TV_SecureMode.At(node);
    return {.drive = path::Normalize(Root()),
            .folders = TV_SecureMode.Count(),
            .is_reading = SSP_PleaseWait.Visible(),
            .was_stopped = was_stopped_,
            .folder = selected.tag,
            .is_protected = selected.image == clsCfg::kProtectedFolder};
}

// The menu acts on the selected node, not on the node under the pointer.
void SecureTab::TV_SecureMode_MouseDown(int button) {
    if (button != kRightButton || TV_SecureMode.Selected() == 0) {
        return;
    }
    const bool is_protected =
        TV_SecureMode.At(TV_SecureMode.Selected()).image == clsCfg::kProtectedFolder;
    menu_.Menu_Secure_Add.SetEnabled(!is_protected);
    menu_.Menu_Secure_Delete.SetEnabled(is_protected);
    menu_.Menu_Secure.PopUp();
}

void SecureTab::Menu_Secure_Add_Click() {
    if (TV_SecureMode.Selected() == 0) {
        return;
    }
    if (!ValidateFolder(TV_SecureMode.At(TV_SecureMode.Selected()).tag)) {
        return;
    }
    CreateMissingList();
    clsCfg(window_.program()).Protected_Add(TV_SecureMode);
}

// The list is text in the system's code page, which may lack characters of the folder's name.
bool SecureTab::ValidateFolder(const std::string& folder) {
    auto& machine = window_.program().machine;
    const std::string upper = machine.code_page.Upper(folder);
    if (upper == machine.code_page.Upper(machine.process.WindowsFolder())) {
        ShowMessage(
            "This folder is maintained by your Operating System.  "
            "You may not Protect System Folders.");
        return false;
    }
    if (machine.code_page.Encode(upper)) {
        return true;
    }
    ShowMessage("Unable to use the folder " + folder + "." + window_.program().globals.CrLf +
                "Its name holds characters that the list of Protected Folders cannot store.");
    return false;
}

void SecureTab::ShowMessage(const std::string& text) {
    window_.program().ShowMessage(
        {.text = text, .icon = Icon::kExclamation, .title = "Protected Folders"});
}

void SecureTab::Menu_Secure_Delete_Click() {
    const int node = TV_SecureMode.Selected();
    if (node == 0) {
        return;
    }
    if (CreateMissingList()) {
        TV_SecureMode.SetImages(node, clsCfg::kClosedFolder, clsCfg::kOpenFolder);
    } else {
        clsCfg(window_.program()).Protected_Delete(TV_SecureMode);
    }
}

}  // namespace vantrel
