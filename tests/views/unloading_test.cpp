// A handler may unload the window of its own event: a long handler lets the user close the window.
#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

template <typename Window>
class Unloading : public WindowFixture<Window> {
  protected:
    forms::Event Unloads() {
        return [this] { this->program.desktop.Unload(this->window); };
    }
    void ExpectGone() {
        EXPECT_FALSE(this->window.Loaded());
        EXPECT_EQ(0, this->window.running_handlers);
        EXPECT_TRUE(this->user->errors.empty());
        // It can be shown again.
        this->program.desktop.ShowModeless(this->window);
        EXPECT_TRUE(this->window.Loaded());
    }
    // The handler of `event`, which `act` raises, unloads the window.
    void UnloadsBy(forms::Event& event, const std::function<void()>& act) {
        event = Unloads();
        act();
        ExpectGone();
    }
};
using UnloadingMain = Unloading<MainWindow>;
using UnloadingRun = Unloading<RunWindow>;
using UnloadingOptions = Unloading<OptionsWindow>;
using UnloadingWhere = Unloading<WhereWindow>;

TEST_F(UnloadingMain, FromAButton) {
    UnloadsBy(window.Cmd_Backup.Click, [&] { user->Click(window.Cmd_Backup); });
}

TEST_F(UnloadingMain, FromALabel) {
    ShowPage(MainWindow::kAbout);
    UnloadsBy(window.Lbl_WebAddress.Click, [&] { user->Click(window.Lbl_WebAddress); });
}

TEST_F(UnloadingMain, FromACombo) {
    window.Cmb_BackupSet.Add("Daily.ini");
    UnloadsBy(window.Cmb_BackupSet.Click, [&] { user->Choose(window.Cmb_BackupSet, 0); });
}

TEST_F(UnloadingMain, FromATab) {
    window.TAB_Backup.Click = [&](int) { program.desktop.Unload(window); };
    user->ClickTab(window.TAB_Backup, 3);
    ExpectGone();
}

TEST_F(UnloadingMain, FromTheMenuBar) {
    UnloadsBy(window.Menu_File_Exit.Click, [&] { user->ChooseInMenuBar(window.Menu_File_Exit); });
}

TEST_F(UnloadingMain, FromAPopUpMenu) {
    UnloadsBy(window.Menu_Options_Delete.Click, [&] {
        user->ChooseInPopUp(window.Menu_Options_Delete, [&] { window.Menu_Options.PopUp(); });
    });
}

TEST_F(UnloadingMain, FromATimer) {
    window.Tim_Flash.Tick = Unloads();
    window.Tim_Flash.SetEnabled(true);
    user->LetTimePass(window);
    ExpectGone();
}

TEST_F(UnloadingMain, FromTheRightButtonOnATree) {
    ShowPage(MainWindow::kSecure);
    window.SSP_PleaseWait.SetVisible(false);
    window.TV_SecureMode.MouseDown = [&](int) { program.desktop.Unload(window); };
    user->RightClick(window.TV_SecureMode);
    ExpectGone();
}

TEST_F(UnloadingMain, FromTheRightButtonOnAFileList) {
    ShowPage(MainWindow::kEdit);
    window.Fil_INI.MouseDown = [&](int) { program.desktop.Unload(window); };
    user->RightClick(window.Fil_INI);
    ExpectGone();
}

TEST_F(UnloadingRun, FromAListBox) {
    window.Lst_Details.Add("Adding a.txt");
    UnloadsBy(window.Lst_Details.Click, [&] { user->Choose(window.Lst_Details, 0); });
}

TEST_F(UnloadingOptions, FromACheckBox) {
    UnloadsBy(window.Chk_TimeBackup.Click, [&] { user->Click(window.Chk_TimeBackup); });
}

TEST_F(UnloadingOptions, FromATextBox) {
    UnloadsBy(window.Fld_BackupFile.Change, [&] { user->Type(window.Fld_BackupFile, "x"); });
}

TEST_F(UnloadingWhere, FromADriveList) {
    forms::DriveList& list = window.Dri_DriveList;
    list.Change = Unloads();
    user->Choose(list, list.Index() == 0 ? 1 : 0);
    ExpectGone();
}

TEST_F(UnloadingWhere, FromAFolderList) {
    window.Dir_DirList.SetPath(machine->WorkDrive());
    const std::string folder = machine->WorkDrive() + "\\Vantrel unloading";
    if (!program.machine.files.Find(folder)) {
        program.machine.files.MakeFolder(folder);
    }
    window.Dir_DirList.SetPath(folder);
    UnloadsBy(window.Dir_DirList.Change, [&] { user->DoubleClick(window.Dir_DirList, 0); });
    program.machine.files.RemoveFolder(folder);
}

}  // namespace

}  // namespace vantrel::test
