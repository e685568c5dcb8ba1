// Windows over the program's own dialogs, with the controls that the suite works, and no rules of
// their own: each event is written down as "control event value", and that is all that happens.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "common/error.h"
#include "tests/platform/machine_under_test.h"
#include "tests/support/error_of.h"
#include "tests/views/control_user.h"

namespace vantrel::test {

using Lines = std::vector<std::string>;

class EventfulForm : public forms::Form {
  public:
    using Form::Form;
    Lines happened;

  protected:
    template <typename ClickedControl>
    void Watch(ClickedControl& control) {
        control.Click = [this, &control] { Note(control, "Click"); };
    }
    void Note(const forms::Control& control, const std::string& event,
              const std::string& value = "") {
        happened.push_back(control.name() + " " + event + (value.empty() ? "" : " " + value));
    }
};

class MainWindow : public EventfulForm {
  public:
    enum Page { kBackup, kRestore, kEdit, kLog, kSecure, kAbout };
    explicit MainWindow(forms::Program& owner) : EventfulForm(owner, "Frm_Mainmenu") {
        Watch(Menu_File_Exit);
        Watch(Menu_Options_Delete);
        Watch(Cmd_Backup);
        Watch(Lbl_WebAddress);
        TAB_Backup.Click = [this](int before) {
            Note(TAB_Backup, "Click", std::to_string(before));
        };
        Cmb_BackupSet.Click = [this] { Note(Cmb_BackupSet, "Click", Cmb_BackupSet.Text()); };
        Fil_INI.Click = [this] { Note(Fil_INI, "Click", Fil_INI.FileName()); };
        Fil_INI.MouseDown = [this](int button) {
            Note(Fil_INI, "MouseDown", std::to_string(button));
        };
        Fld_INI.Change = [this] { Note(Fld_INI, "Change", Fld_INI.Text()); };
        Fld_Log.Change = [this] { Note(Fld_Log, "Change", Fld_Log.Text()); };
        TV_SecureMode.MouseDown = [this](int button) {
            Note(TV_SecureMode, "MouseDown", std::to_string(button));
        };
        Tim_Flash.Tick = [this] { Note(Tim_Flash, "Tick"); };
    }

    forms::Tabs TAB_Backup{
        *this, "TAB_Backup", {"Backup", "Restore", "INI Edit", "Log", "Secure Data", "About"}};
    forms::StatusBar Sta_Mainmenu{*this, "Sta_Mainmenu"};
    forms::MenuItem Menu_File_Exit{*this, "Menu_File_Exit", "E&xit"};
    forms::MenuItem Menu_Options{*this, "Menu_Options", "&Options"};
    forms::MenuItem Menu_Options_Delete{*this, "Menu_Options_Delete", "&Delete"};
    forms::Picture Img_Set{*this, "Img_Set"};
    forms::Label Lbl_RestoreSet{*this, "Lbl_RestoreSet", "&Backup Set"};
    forms::ComboBox Cmb_BackupSet{*this, "Cmb_BackupSet"};
    forms::Label Fld_BackupWhere{*this, "Fld_BackupWhere"};
    forms::Button Cmd_AddNew{*this, "Cmd_AddNew", "New Backup"};
    forms::Button Cmd_Backup{*this, "Cmd_Backup", "&Backup Now"};
    forms::Panel SSP_TotalFiles{*this, "SSP_TotalFiles"};
    forms::FileList Fil_INI{*this, "Fil_INI", "*.INI"};
    forms::TextBox Fld_INI{*this, "Fld_INI", true};
    forms::TextBox Fld_Log{*this, "Fld_Log", true, true};
    forms::Tree TV_SecureMode{*this, "TV_SecureMode"};
    forms::Panel SSP_PleaseWait{*this, "SSP_PleaseWait", "Please Wait"};
    forms::Panel SSP_ProgressSecure{*this, "SSP_ProgressSecure"};
    forms::Frame Fra_Version{*this, "Fra_Version", "Product Information"};
    forms::Label Lbl_WebAddress{*this, "Lbl_WebAddress", "www.example.com"};
    forms::Timer Tim_Flash{*this, "Tim_Flash", std::chrono::milliseconds(20)};
};

class RunWindow : public EventfulForm {
  public:
    explicit RunWindow(forms::Program& owner) : EventfulForm(owner, "Frm_Backup") {
        Lst_Details.Click = [this] { Note(Lst_Details, "Click", Lst_Details.Text()); };
        Cmd_Ok.SetVisible(false);
    }
    forms::Button Cmd_Ok{*this, "Cmd_Ok", "OK"};
    forms::Button Cmd_Cancel{*this, "Cmd_Cancel", "Cancel"};
    forms::ListBox Lst_Details{*this, "Lst_Details"};
    forms::Animation Ani_File{*this, "Ani_File"};
    forms::ProgressBar PB_Folder{*this, "PB_Folder"};
    forms::ProgressBar PB_File{*this, "PB_File"};
    forms::Label Lbl_BackupPath{*this, "Lbl_BackupPath"};
    forms::Label Lbl_Location{*this, "Lbl_Location"};
};

class OptionsWindow : public EventfulForm {
  public:
    explicit OptionsWindow(forms::Program& owner) : EventfulForm(owner, "Frm_BackupOptions") {
        Watch(Cmd_Ok);
        Chk_TimeBackup.Click = [this] {
            Note(Chk_TimeBackup, "Click", Chk_TimeBackup.Checked() ? "on" : "off");
        };
        Fld_BackupFile.Change = [this] { Note(Fld_BackupFile, "Change", Fld_BackupFile.Text()); };
    }
    forms::Frame Fra_Options{*this, "Fra_Options"};
    forms::CheckBox Chk_TimeBackup{*this, "Chk_TimeBackup", "&Time Backup"};
    forms::TextBox Fld_BackupFile{*this, "Fld_BackupFile"};
    forms::Button Cmd_Ok{*this, "Cmd_Ok", "OK"};
};

class WhereWindow : public EventfulForm {
  public:
    explicit WhereWindow(forms::Program& owner) : EventfulForm(owner, "Frm_BackupWhere") {
        Watch(Cmd_Ok);
        Dri_DriveList.Change = [this] { Note(Dri_DriveList, "Change", Dri_DriveList.Drive()); };
        Dir_DirList.Change = [this] { Note(Dir_DirList, "Change", Dir_DirList.Path()); };
    }
    forms::DriveList Dri_DriveList{*this, "Dri_DriveList"};
    forms::FolderList Dir_DirList{*this, "Dir_DirList"};
    forms::Button Cmd_Ok{*this, "Cmd_Ok", "OK"};
};

// Shows one of them, empty, and takes it away again.
template <typename Window>
class WindowFixture : public ::testing::Test {
  protected:
    WindowFixture() { program.desktop.ShowModeless(window); }
    ~WindowFixture() override { program.desktop.Unload(window); }

    // What has happened since it was asked last.
    Lines Happened() {
        program.desktop.DoEvents();
        return std::exchange(window.happened, {});
    }

    // Of the main window; what happens meanwhile is not noted.
    void ShowPage(int page) {
        window.TAB_Backup.SetTab(page);
        Happened();
    }

    std::unique_ptr<MachineUnderTest> machine = NewMachineUnderTest();
    std::unique_ptr<ControlUser> user = NewControlUser();
    forms::Program program{machine->machine(), user->desktop()};
    Window window{program};
};

}  // namespace vantrel::test
