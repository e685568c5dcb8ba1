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
    void ShowPage(int page) {
        this->window.TAB_Backup.SetTab(page);
        this->Happened();
    }
};
using UnloadingMain = Unloading<MainWindow>;
using UnloadingRun = Unloading<RunWindow>;
using UnloadingOptions = Unloading<OptionsWindow>;
using UnloadingWhere = Unloading<WhereWindow>;

TEST_F(UnloadingMain, FromAButton) {
    window.Cmd_Backup.Click = Unloads();
    user->Click(window.Cmd_Backup);
    ExpectGone();
}

TEST_F(UnloadingMain, FromALabel) {
    ShowPage(MainWindow::kAbout);
    window.Lbl_WebAddress.Click = Unloads();
    user->Click(window.Lbl_WebAddress);
    ExpectGone();
}

TEST_F(UnloadingMain, FromACombo) {
    window.Cmb_BackupSet.Add("Daily.ini");
    window.Cmb_BackupSet.Click = Unloads();
    user->Choose(window.Cmb_BackupSet, 0);
    ExpectGone();
}

TEST_F(UnloadingMain, FromATab) {
    window.TAB_Backup.Click = [&](int) { program.desktop.Unload(window); };
    user->ClickTab(window.TAB_Backup, 3);
    ExpectGone();
}

TEST_F(UnloadingMain, FromTheMenuBar) {
    window.Menu_File_Exit.Click = Unloads();
    user->ChooseInMenuBar(window.Menu_File_Exit);
    ExpectGone();
}

TEST_F(UnloadingMain, FromAPopUpMenu) {
    window.Menu_Options_Delete.Click = Unloads();
    user->ChooseInPopUp(window.Menu_Options_Delete, [&] { window.Menu_Options.PopUp(); });
    ExpectGone();
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
    window.Lst_Details.Click = Unloads();
    user->Choose(window.Lst_Details, 0);
    ExpectGone();
}

TEST_F(UnloadingOptions, FromACheckBox) {
    window.Chk_TimeBackup.Click = Unloads();
    user->Click(window.Chk_TimeBackup);
    ExpectGone();
}

TEST_F(UnloadingOptions, FromATextBox) {
    window.Fld_BackupFile.Change = Unloads();
    user->Type(window.Fld_BackupFile, "x");
    ExpectGone();
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
    window.Dir_DirList.Change = Unloads();
    user->DoubleClick(window.Dir_DirList, 0);
    ExpectGone();
    program.machine.files.RemoveFolder(folder);
}

}  // namespace

}  // namespace vantrel::test
