#include "ui/Frm_Mainmenu.h"

#include <optional>
#include <utility>

#include "backupset/clsFiles.h"
#include "common/error.h"
#include "log/clsLog.h"
#include "protect/clsInfo.h"
#include "ui/new_backup.h"

namespace vantrel {

namespace {
constexpr const char* kSection = "Startup";
constexpr const char* kKey = "INI File";
constexpr const char* kNothing = "Nil";

// The error that `body` raises, if it raises one.
template <typename Body>
std::optional<Error> Trapped(Body&& body) {
    try {
        body();
    } catch (const Error& error) {
        return error;
    }
    return std::nullopt;
}
}  // namespace

Frm_Mainmenu::Frm_Mainmenu(forms::Program& program)
    : Form(program, "Frm_Mainmenu"),
      TAB_Backup(*this, "TAB_Backup",
                 {"Backup", "Restore", "INI Edit", "Log", "Secure Data", "About"}),
      Backup(*this),
      Restore(*this),
      Edit(*this),
      Log(*this),
      Secure(*this, {Menu_Secure, Menu_Secure_Add, Menu_Secure_Delete}),
      About(*this),
      Sta_Mainmenu(*this, "Sta_Mainmenu"),
      Menu_File(*this, "Menu_File", "&File"),
      Menu_File_Exit(*this, "Menu_File_Exit", "E&xit"),
      Menu_Options(*this, "Menu_Options", "&Options"),
      Menu_Options_Delete(*this, "Menu_Options_Delete", "&Delete Configuration File"),
      Menu_Secure(*this, "Menu_Secure", "&Secure"),
      Menu_Secure_Add(*this, "Menu_Secure_Add", "&Add Protected Item"),
      Menu_Secure_Delete(*this, "Menu_Secure_Delete", "&Delete Protected Item") {
    TAB_Backup.SetTooltip("Select Different Options");
    TAB_Backup.Click = [this](int previous) { TAB_Backup_Click(previous); };
    Backup.Cmd_Exit.Click = [this] { Cmd_Exit_Click(); };
    Restore.Cmd_Exit.Click = [this] { Cmd_Exit_Click(); };
    Menu_File_Exit.Click = [this] { Menu_File_Exit_Click(); };
    Backup.Cmd_AddNew.Click = [this] {
        Cmd_AddNew_Click(this->program(), Backup, Restore.Cmb_RestoreFile);
    };
    Edit.Fil_INI.MouseDown = [this](int button) { Fil_INI_MouseDown(button); };
    Menu_Options_Delete.Click = [this] { Edit.Menu_Options_Delete_Click(Backup.Cmb_BackupSet); };
    About.Cmd_ContactUs.Click = [this] { Log.mailing.Cmd_ContactUs_Click(); };
    Menu_Secure_Add.Click = [this] { Secure.Menu_Secure_Add_Click(); };
    Menu_Secure_Delete.Click = [this] { Secure.Menu_Secure_Delete_Click(); };
    Secure.ReadingBegins = [this] {
        ShowStatus();
        Sta_Mainmenu.Refresh();
    };
}

void Frm_Mainmenu::Form_Load() {
    SetCaption(program().machine.process.ExecutableBaseName());
    Edit.Cmd_Save.SetEnabled(false);
    TAB_Backup.SetTab(0);
    Backup.GoToApplicationDrive();
    Restore.Fld_RestoreFile.SetCaption("");
    Restore.TV_Restore.Clear();
    Secure.SSP_PleaseWait.SetCaption("Please Wait..." + program().globals.CrLf +
                                     "Loading Folder Structure");
    Secure.SSP_PleaseWait.SetVisible(false);
    clsInfo().SecureData(Secure.Fld_SecureData);
    Backup.SetEditMode(false);
    FillSetLists();
    if (!program().Unattended()) {
        SelectRememberedSet();
        numbers_ = program().machine.settings.Numbers();
        Sta_Mainmenu.SetNote("F1 opens the guide");
        ShowStatus();
    }
}

MainStatus Frm_Mainmenu::Status() const {
    return {.tab = static_cast<Tab>(TAB_Backup.Tab()),
            .backup = Backup.Status(),
            .restore = Restore.Status(),
            .edit = Edit.Status(),
            .last_run = Log.ShownRun(),
            .secure = Secure.Status(),
            .numbers = numbers_};
}

void Frm_Mainmenu::ShowStatus() {
    if (program().Unattended()) {
        return;
    }
    const StatusLine line = StatusText(Status());
    Sta_Mainmenu.SetLine(line.text, line.path);
}

void Frm_Mainmenu::FillSetLists() {
    for (const std::string& name : SetFileNames(program())) {
        Backup.Cmb_BackupSet.Add(name);
        Restore.Cmb_RestoreFile.Add(name);
    }
}

// Compares exactly. The loop does not stop at a match.
void Frm_Mainmenu::SelectRememberedSet() {
    const std::string remembered =
        program().machine.settings.Read(kSection, kKey).value_or(kNothing);
    if (remembered == kNothing) {
        return;
    }
    for (int i = 0; i < Backup.Cmb_BackupSet.Count(); ++i) {
        if (Backup.Cmb_BackupSet.Item(i) == remembered) {
            Backup.Cmb_BackupSet.SetText(remembered);
        }
    }
}

void Frm_Mainmenu::Form_Activate() {
    program().desktop.SetPointer(forms::Pointer::kDefault);
    if (!std::exchange(was_active_, true)) {
        Backup.FocusFirstStep();
    }
    ShowStatus();
}

// Closing is never refused. A failing step does not prevent the other; errors are shown after both.
void Frm_Mainmenu::Form_QueryUnload(forms::UnloadMode mode) {
    const auto failed_record = Trapped([&] {
        clsLog(program()).WriteToLog("Exit", true, std::to_string(static_cast<int>(mode)));
    });
    const auto failed_setting = Trapped([&] {
        if (!program().Unattended()) {
            StoreSelection();
        }
    });
    for (const auto& failure : {failed_record, failed_setting}) {
        if (failure) {
            ShowError(program(), *failure);
        }
    }
}

void Frm_Mainmenu::StoreSelection() {
    program().machine.settings.Write(kSection, kKey,
                                     Backup.Cmb_BackupSet.Item(Backup.Cmb_BackupSet.Index()));
}

void Frm_Mainmenu::Cmd_Exit_Click() { Menu_File_Exit_Click(); }

void Frm_Mainmenu::Menu_File_Exit_Click() { program().desktop.Unload(*this); }

void Frm_Mainmenu::Fil_INI_MouseDown(int button) {
    constexpr int kRightButton = 2;
    if (button == kRightButton) {
        Menu_Options.PopUp();
    }
}

void Frm_Mainmenu::TAB_Backup_Click(int) {
    About.Tim_Flash.SetEnabled(false);
    switch (static_cast<Tab>(TAB_Backup.Tab())) {
        case Tab::kBackup:
            return Backup.Cmb_BackupSet_Click();
        case Tab::kEdit:
            return Edit.Cmd_INIRefresh.Press();
        case Tab::kLog:
            return Log.Cmd_Refresh.Press();
        case Tab::kSecureData:
            return Secure.OnShown();
        case Tab::kAbout:
            return About.OnShown();
        default:
            return;
    }
}

}  // namespace vantrel
