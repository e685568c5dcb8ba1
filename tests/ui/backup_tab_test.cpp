#include "tests/support/matchers.h"
#include "tests/support/redraw_watch.h"
#include "tests/ui/main_window_fixture.h"

namespace vantrel::test {
namespace {

class BackupTabTest : public MainWindowFixture {
  protected:
    BackupTabTest() { MakeSourceAndDestination(); }

    void Open() { LoadWindow(); }
    BackupTab& Tab() { return window->Backup; }
    void Select(const std::string& name) { Tab().Cmb_BackupSet.SetText(name); }
};

TEST_F(BackupTabTest, SelectingASetShowsItsFourValues) {
    PutSet("DAILY.INI", {.name = "DAILY", .time = "ON"});
    Open();
    Select("DAILY.INI");
    EXPECT_EQ(Tab().Lbl_FilestoBackup.Caption(), "*.*");
    EXPECT_EQ(Tab().Lbl_BackupFileName.Caption(), "DAILY");
    EXPECT_EQ(Tab().Fld_BackupWhere.Caption(), "C:\\Backups\\");
    EXPECT_EQ(Tab().Fld_BackupOptions.Caption(), "SubDir=ON, MultiVolume=OFF, Time=ON");
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\Data");
    EXPECT_EQ(Tab().Dri_DriveList.Drive().substr(0, 2), "c:");
}

TEST_F(BackupTabTest, SelectionRedrawsTheWindowAndYieldsOnceBeforeItReadsTheSet) {
    PutSet("DAILY.INI", {.name = "OLD"});
    Open();
    std::vector<std::string> steps;
    const RedrawWatch watch(*window, [&] { steps.emplace_back("redraw"); });
    desktop.on_step = [&](const std::string& step) { steps.push_back(step); };
    desktop.on_events = {[this] { PutSet("DAILY.INI", {.name = "NEW"}); }};
    Select("DAILY.INI");
    EXPECT_THAT(steps, ElementsAre("redraw", "events"));
    EXPECT_EQ(Tab().Lbl_BackupFileName.Caption(), "NEW");
}

TEST_F(BackupTabTest, DestinationIsShownWithABackslashEnsured) {
    PutSet("DAILY.INI", {.to_drive = "C:\\Backups"});
    Open();
    Select("DAILY.INI");
    EXPECT_EQ(Tab().Fld_BackupWhere.Caption(), "C:\\Backups\\");
}

TEST_F(BackupTabTest, SelectingASetWritesItsFolderWithAllFilesAtFirst) {
    PutSet("DOCS.INI", {.files = "C:\\Data\\*.DOC"});
    Open();
    Select("DOCS.INI");
    EXPECT_EQ(StoredSource("DOCS.INI"), "C:\\Data\\*.*");
}

TEST_F(BackupTabTest, SelectingASetWritesItsFolderWithTheMaskShownBefore) {
    machine.MakeFolders("C:\\Notes");
    PutSet("DOCS.INI", {.files = "C:\\Data\\*.DOC"});
    PutSet("NOTES.INI", {.files = "C:\\Notes\\*.TXT"});
    Open();
    Select("DOCS.INI");
    EXPECT_EQ(Tab().Lbl_FilestoBackup.Caption(), "*.DOC");
    Select("NOTES.INI");
    EXPECT_EQ(StoredSource("NOTES.INI"), "C:\\Notes\\*.DOC");
    EXPECT_EQ(Tab().Lbl_FilestoBackup.Caption(), "*.TXT");
}

TEST_F(BackupTabTest, UnattendedSelectionWritesTheSourceTooAndBacksUpWhatItWrote) {
    Unattended("DOCS.INI");
    PutSet("DOCS.INI", {.files = "C:\\Data\\*.DOC"});
    Open();
    Select("DOCS.INI");
    EXPECT_EQ(StoredSource("DOCS.INI"), "C:\\Data\\*.*");
}

TEST_F(BackupTabTest, SelectingASetInTheFolderShownAlreadyWritesNothing) {
    PutSet("ALL.INI", {});
    PutSet("DOCS.INI", {.files = "C:\\Data\\*.DOC"});
    Open();
    Select("ALL.INI");
    Select("DOCS.INI");
    EXPECT_EQ(StoredSource("DOCS.INI"), "C:\\Data\\*.DOC");
}

TEST_F(BackupTabTest, MovingTheListsToASetNeverStoresTheRootOnTheWay) {
    machine.AddDrive('D', platform::drive_type::kFixed);
    machine.MakeFolders("D:\\Work");
    PutSet("WORK.INI", {.files = "D:\\Work\\*.*"});
    Open();
    Tab().Dir_DirList.Change = [this, handler = Tab().Dir_DirList.Change] {
        handler();
        EXPECT_EQ(StoredSource("WORK.INI"), "D:\\Work\\*.*");
    };
    Select("WORK.INI");
    EXPECT_EQ(Tab().Dir_DirList.Path(), "D:\\Work");
}

TEST_F(BackupTabTest, MissingFolderOnAnAvailableDriveMovesNeitherListAndWritesNothing) {
    machine.AddDrive('D', platform::drive_type::kFixed);
    PutSet("GONE.INI", {.files = "D:\\Gone\\*.DOC"});
    Open();
    Select("GONE.INI");
    EXPECT_EQ(StoredSource("GONE.INI"), "D:\\Gone\\*.DOC");
    EXPECT_EQ(Tab().Dri_DriveList.Drive().substr(0, 2), "c:");
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\");
    ExpectError("Path not found: D:\\Gone\\");
    EXPECT_EQ(Tab().Lbl_FilestoBackup.Caption(), "*.DOC");
}

TEST_F(BackupTabTest, MissingFolderShowsNothingUnattended) {
    Unattended("GONE.INI");
    PutSet("GONE.INI", {.files = "C:\\Gone\\*.*"});
    Open();
    Select("GONE.INI");
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_THAT(LogRecords(), IsEmpty());
}

TEST_F(BackupTabTest, AbsentSourceDriveShowsTheFirstMessageAndTheApplicationsDrive) {
    machine.AddDrive('A', platform::drive_type::kRemovable, "", false);
    PutSet("FLOPPY.INI", {.files = "A:\\*.*"});
    PutSet("DAILY.INI", {});
    Open();
    Select("DAILY.INI");
    Select("FLOPPY.INI");
    ExpectBox(
        "You have selected a file whereupon files from A:\\*.* are to backed up.  Vantrel cannot "
        "locate A:\\*.*\r\n\r\n",
        forms::Icon::kExclamation, "Backup");
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\");
    EXPECT_EQ(StoredSource("FLOPPY.INI"), "A:\\*.*");
}

TEST_F(BackupTabTest, AbsentSourceDriveUnattendedEndsAtOnceWithTheDestinationShown) {
    Unattended("FLOPPY.INI");
    PutSet("FLOPPY.INI", {.files = "A:\\*.*", .to_drive = "C:\\Backups"});
    Open();
    Select("FLOPPY.INI");
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(Tab().Fld_BackupWhere.Caption(), "C:\\Backups\\");
    EXPECT_EQ(Tab().Lbl_BackupFileName.Caption(), "");
}

TEST_F(BackupTabTest, UnreachableDestinationShowsTheSecondMessageAtEachSelection) {
    PutSet("FAR.INI", {.to_drive = "Q:\\Backups\\"});
    Open();
    Select("FAR.INI");
    ExpectBox(
        "You have selected to backup files to Q:\\Backups\\ are to backed up.  Vantrel cannot "
        "locate Q:\\Backups\\\r\n\r\nIf the Drive Selected is a Removable Drive then place a Disk "
        "into the Drive Now.",
        forms::Icon::kExclamation, "Backup");
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\Data");
    window->TAB_Backup.SetTab(2);
    window->TAB_Backup.SetTab(0);
    EXPECT_EQ(desktop.boxes.size(), 2u);
}

TEST_F(BackupTabTest, UnreachableDestinationUnattendedEndsBeforeTheListsMove) {
    Unattended("FAR.INI");
    PutSet("FAR.INI", {.files = "C:\\Data\\*.DOC", .to_drive = "Q:\\Backups"});
    Open();
    Select("FAR.INI");
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(Tab().Fld_BackupWhere.Caption(), "Q:\\Backups\\");
    EXPECT_EQ(StoredSource("FAR.INI"), "C:\\Data\\*.DOC");
}

TEST_F(BackupTabTest, ComingBackWithNoSetSelectedRunsOnEmptyValues) {
    Open();
    window->TAB_Backup.SetTab(1);
    window->TAB_Backup.SetTab(0);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(Tab().Fld_BackupWhere.Caption(), "\\");
    EXPECT_EQ(Tab().Fld_BackupOptions.Caption(), "SubDir=, MultiVolume=, Time=");
    EXPECT_EQ(machine.Names("C:\\Vantrel"), std::vector<std::string>{});
}

TEST_F(BackupTabTest, SetWithoutASourceIsGivenNoneByBeingShown) {
    PutSet("EMPTY.INI", {.files = ""});
    Open();
    Tab().Dir_DirList.SetPath("C:\\Data");
    Select("EMPTY.INI");
    EXPECT_EQ(StoredSource("EMPTY.INI"), "");
}

TEST_F(BackupTabTest, ChoosingAFolderWritesItWithTheMaskShownAndARootDoublesNoBackslash) {
    PutSet("DOCS.INI", {.files = "C:\\Data\\*.DOC"});
    Open();
    Select("DOCS.INI");
    Tab().Dir_DirList.SetPath("C:\\Data\\Sub");
    EXPECT_EQ(StoredSource("DOCS.INI"), "C:\\Data\\Sub\\*.DOC");
    Tab().Dir_DirList.SetPath("C:\\");
    EXPECT_EQ(StoredSource("DOCS.INI"), "C:\\*.DOC");
}

TEST_F(BackupTabTest, ChoosingAFolderWithNoSetSelectedWritesNothing) {
    PutSet("ALL.INI", {});
    Open();
    Tab().Dir_DirList.SetPath("C:\\Data");
    EXPECT_EQ(machine.Content("C:\\Vantrel\\ALL.INI"), SetText({}));
    EXPECT_EQ(Tab().Lbl_FilestoBackup.Caption(), "");
}

TEST_F(BackupTabTest, ChoosingADriveMovesTheFolderListToItsRootAndWritesThat) {
    machine.AddDrive('D', platform::drive_type::kFixed, "WORK");
    PutSet("ALL.INI", {});
    Open();
    Select("ALL.INI");
    Tab().Dri_DriveList.SetDrive("d:");
    EXPECT_EQ(Tab().Dir_DirList.Path(), "D:\\");
    EXPECT_EQ(StoredSource("ALL.INI"), "D:\\*.*");
}

TEST_F(BackupTabTest, FolderThatTheCodePageCannotHoldIsRefusedAndNothingIsStored) {
    const std::string folder = "C:\\\xE6\x96\x87";  // a Chinese character
    machine.MakeFolders(folder);
    PutSet("ALL.INI", {});
    Open();
    Select("ALL.INI");
    Tab().Dir_DirList.SetPath(folder);
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_THAT(desktop.boxes[0].text, ::testing::HasSubstr(folder));
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\Data");
    EXPECT_EQ(machine.Content("C:\\Vantrel\\ALL.INI"), SetText({}));
}

TEST_F(BackupTabTest, EditModeIsOffAfterLoadAndAfterEachSelection) {
    PutSet("ALL.INI", {});
    Open();
    EXPECT_FALSE(Tab().Dir_DirList.Enabled());
    Tab().Cmd_Change.Press();
    EXPECT_TRUE(Tab().Dri_DriveList.Enabled());
    EXPECT_TRUE(Tab().Dir_DirList.Enabled());
    EXPECT_TRUE(Tab().Cmd_Navigate.Enabled());
    for (const auto& button : Tab().Cmd_Options) {
        EXPECT_TRUE(button.Enabled());
    }
    EXPECT_FALSE(Tab().Cmd_Change.Enabled());
    Select("ALL.INI");
    EXPECT_FALSE(Tab().Dir_DirList.Enabled());
    EXPECT_TRUE(Tab().Cmd_Change.Enabled());
}

TEST_F(BackupTabTest, EditModeEndsThoughTheSourceDriveIsMissing) {
    PutSet("GONE.INI", {.files = "Q:\\*.*"});
    Open();
    Tab().Cmd_Change.Press();
    Select("GONE.INI");
    EXPECT_FALSE(Tab().Dir_DirList.Enabled());
    EXPECT_TRUE(Tab().Cmd_Change.Enabled());
}

TEST_F(BackupTabTest, ButtonsOfADialogAskForASetFirst) {
    Open();
    Tab().Cmd_Change.Press();
    Tab().Cmd_Navigate.Press();
    ExpectBox("Please select a Backup Configuration.", forms::Icon::kInformation, "Backup");
    for (auto& button : Tab().Cmd_Options) {
        button.Press();
        EXPECT_EQ(desktop.boxes.back().text, "Please select a Backup Configuration first.");
        EXPECT_EQ(desktop.boxes.back().icon, forms::Icon::kInformation);
        EXPECT_EQ(desktop.boxes.back().title, "Backup");
    }
    EXPECT_EQ(desktop.boxes.size(), 4u);
    EXPECT_EQ(desktop.Front(), window.get());
}

TEST_F(BackupTabTest, ButtonsOpenTheirDialogsForTheSetShownAndReadItNoMore) {
    PutSet("ALL.INI", {.name = "SHOWN"});
    Open();
    Select("ALL.INI");
    Tab().Cmd_Change.Press();
    std::vector<std::string> opened;
    const auto close = [&] {
        opened.push_back(desktop.Front()->name());
        PutSet("ALL.INI", {.name = "CHANGED"});
        dynamic_cast<forms::Button&>(*desktop.Front()->Find("Cmd_Cancel")).UserPress();
    };
    desktop.idle.assign(4, close);
    Tab().Cmd_Navigate.Press();
    for (auto& button : Tab().Cmd_Options) {
        button.Press();
    }
    EXPECT_THAT(opened, ElementsAre("Frm_BackupWhere", "Frm_BackupOptions", "Frm_BackupOptions",
                                    "Frm_BackupOptions"));
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(machine.Content("C:\\Vantrel\\ALL.INI"), SetText({.name = "CHANGED"}));
    EXPECT_EQ(Tab().Lbl_BackupFileName.Caption(), "SHOWN");
}

TEST_F(BackupTabTest, ChoosingAnEmptyDriveIsToldAndWritesNothing) {
    machine.AddDrive('A', platform::drive_type::kRemovable, "", false);
    PutSet("ALL.INI", {});
    Open();
    Select("ALL.INI");
    Tab().Dri_DriveList.UserChoose(0);
    ExpectError("Path not found: a:");
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\Data");
    EXPECT_EQ(machine.Content("C:\\Vantrel\\ALL.INI"), SetText({}));
}

TEST_F(BackupTabTest, SourceOnADriveThatIsNotListedIsToldAndKept) {
    machine.AddDrive('E', platform::drive_type::kUnknown);
    PutSet("ODD.INI", {.files = "E:\\*.DOC"});
    Open();
    Select("ODD.INI");
    ExpectError("Device unavailable: E:\\");
    EXPECT_EQ(StoredSource("ODD.INI"), "E:\\*.DOC");
}

}  // namespace
}  // namespace vantrel::test
