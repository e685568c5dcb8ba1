#include "tests/support/matchers.h"
#include "tests/ui/main_window_fixture.h"

namespace vantrel::test {
namespace {

class MainWindow : public MainWindowFixture {
  protected:
    MainWindow() { MakeSourceAndDestination(); }
    Frm_Mainmenu& Open() { return LoadWindow(); }
    std::vector<std::string> Sets() { return EntriesOf(Backup().Cmb_BackupSet); }
    static constexpr const char* kRemembered = "Startup/INI File";
};

TEST_F(MainWindow, CaptionIsTheExecutablesBaseName) {
    machine.process.base_name = "MyBackup";
    EXPECT_EQ(Open().Caption(), "MyBackup");
}

TEST_F(MainWindow, ListsStartAtTheApplicationsDrive) {
    machine.AddDrive('D', platform::drive_type::kFixed);
    machine.MakeFolders("D:\\Program");
    machine.process.application_folder = "D:\\Program";
    Open();
    EXPECT_EQ(window->Backup.Dri_DriveList.Drive().substr(0, 2), "d:");
    EXPECT_EQ(window->Backup.Dir_DirList.Path(), "D:\\");
}

TEST_F(MainWindow, SetListsHoldTheSetFilesAsNamedOnDisk) {
    PutSet("Daily.ini", {});
    PutSet("WEEKLY.INI", {});
    machine.PutFile("C:\\Vantrel\\Old.initial", "");
    machine.PutFile("C:\\Vantrel\\Vantrel.Log", "");
    machine.MakeFolders("C:\\Vantrel\\Folder.ini");
    Open();
    EXPECT_THAT(Sets(), UnorderedElementsAre("Daily.ini", "WEEKLY.INI"));
    EXPECT_EQ(window->Restore.Cmb_RestoreFile.Count(), 2);
}

TEST_F(MainWindow, HiddenAndSystemSetFilesAreNotListed) {
    PutSet("Seen.ini", {});
    PutSet("Hidden.ini", {});
    PutSet("System.ini", {});
    machine.files().SetAttributes("C:\\Vantrel\\Hidden.ini", platform::attribute::kHidden);
    machine.files().SetAttributes("C:\\Vantrel\\System.ini", platform::attribute::kSystem);
    Open();
    EXPECT_THAT(Sets(), ElementsAre("Seen.ini"));
}

TEST_F(MainWindow, FolderWithoutSetsLeavesBothListsEmptyAndChangeStillEnables) {
    Open();
    EXPECT_THAT(Sets(), IsEmpty());
    EXPECT_EQ(window->Restore.Cmb_RestoreFile.Count(), 0);
    window->Backup.Cmd_Change.Press();
    EXPECT_TRUE(window->Backup.Cmd_Navigate.Enabled());
}

TEST_F(MainWindow, RememberedSetIsSelectedAndShown) {
    PutSet("Daily.ini", {});
    machine.settings.values[kRemembered] = "Daily.ini";
    Open();
    EXPECT_EQ(window->Backup.Cmb_BackupSet.Text(), "Daily.ini");
    EXPECT_EQ(window->Backup.Dir_DirList.Path(), "C:\\Data");
}

TEST_F(MainWindow, RememberedNameInOtherCaseGoneOrEmptySelectsNothing) {
    PutSet("Daily.ini", {});
    for (const char* name : {"DAILY.INI", "Gone.ini", ""}) {
        machine.settings.values[kRemembered] = name;
        Open();
        EXPECT_EQ(Backup().Cmb_BackupSet.Index(), -1) << name;
    }
}

TEST_F(MainWindow, NothingRememberedSelectsNothing) {
    PutSet("Daily.ini", {});
    Open();
    EXPECT_EQ(window->Backup.Cmb_BackupSet.Index(), -1);
    EXPECT_EQ(machine.settings.reads, 1);
}

TEST_F(MainWindow, UnattendedNeitherReadsNorWritesTheRememberedSet) {
    PutSet("Daily.ini", {});
    machine.settings.values[kRemembered] = "Daily.ini";
    Unattended("Other.ini");
    Open();
    EXPECT_EQ(window->Backup.Cmb_BackupSet.Index(), -1);
    desktop.Unload(*window);
    EXPECT_EQ(machine.settings.reads, 0);
    EXPECT_EQ(machine.settings.writes, 0);
}

TEST_F(MainWindow, ClosingWritesTheExitRecordAndStoresTheSelection) {
    PutSet("Daily.ini", {});
    Open();
    window->Backup.Cmb_BackupSet.SetText("Daily.ini");
    desktop.Unload(*window, forms::UnloadMode::kControlMenu);
    EXPECT_THAT(LogRecords(), ElementsAre("Application Closed - Unloaded by Close on Control menu.",
                                          std::string(60, '-')));
    EXPECT_EQ(machine.settings.values[kRemembered], "Daily.ini");
}

TEST_F(MainWindow, ExitRecordIsWrittenBeforeTheSelectionIsStored) {
    Open();
    std::vector<std::string> records;
    machine.settings.on_write = [&] { records = LogRecords(); };
    desktop.Unload(*window);
    EXPECT_THAT(records, ElementsAre("Application Closed - Unloaded by Invoked from code.",
                                     std::string(60, '-')));
}

TEST_F(MainWindow, ClosingWithNothingSelectedStoresAnEmptyName) {
    Open();
    desktop.Unload(*window);
    EXPECT_EQ(machine.settings.values.at(kRemembered), "");
}

TEST_F(MainWindow, ExitButtonsAndFileMenuUnloadFromCode) {
    Open();
    window->Backup.Cmd_Exit.Press();
    EXPECT_FALSE(window->Loaded());
    EXPECT_EQ(LogRecords().front(), "Application Closed - Unloaded by Invoked from code.");
    Open();
    window->Restore.Cmd_Exit.Press();
    EXPECT_FALSE(window->Loaded());
    Open();
    window->Menu_File_Exit.UserChoose();
    EXPECT_FALSE(window->Loaded());
}

TEST_F(MainWindow, WaitingPanelSaysItsTwoLinesAndIsHiddenUntilATreeLoads) {
    Open();
    EXPECT_EQ(window->Secure.SSP_PleaseWait.Caption(),
              "Please Wait...\r\nLoading Folder Structure");
    EXPECT_FALSE(window->Secure.SSP_PleaseWait.Visible());
}

TEST_F(MainWindow, PointerIsAnHourglassUntilTheFirstActivation) {
    desktop.SetPointer(forms::Pointer::kHourglass);
    Open();
    EXPECT_EQ(desktop.pointer, forms::Pointer::kHourglass);
    window->Form_Activate();
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
}

TEST_F(MainWindow, ShowingTheBackupTabReadsTheSetAgainUnlessItIsShown) {
    PutSet("Daily.ini", {.name = "OLD"});
    Open();
    window->Backup.Cmb_BackupSet.SetText("Daily.ini");
    PutSet("Daily.ini", {.name = "NEW"});
    for (const int still : {0, 3}) {
        window->TAB_Backup.SetTab(still);
        EXPECT_EQ(window->Backup.Lbl_BackupFileName.Caption(), "OLD");
    }
    window->TAB_Backup.SetTab(0);
    EXPECT_EQ(window->Backup.Lbl_BackupFileName.Caption(), "NEW");
}

}  // namespace
}  // namespace vantrel::test
