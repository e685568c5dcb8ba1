#include "restore/restore_actions.h"

#include "backupset/clsINI.h"
#include "common/error.h"
#include "forms/file_lists.h"
#include "forms/form.h"
#include "protect/clsCfg.h"
#include "tests/restore/restore_tab_fixture.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

ScriptedDesktop::FileDialog AsksFrom(const std::string& start) {
    return {"Select a Restore File", "Restore Files (*.zip)|*.zip", start};
}

TEST_F(RestoreTabTest, SetThatWasNeverBackedUpIsToldAndDeselected) {
    PutSetWithArchive("", "");
    ChooseSet();
    ExpectBox(
        "There is no Restore Information available for this Backupset.\r\nPlease select a new "
        "Backupset to Restore From or manually select a file.",
        forms::Icon::kExclamation, "Restore");
    EXPECT_EQ(program.globals.MessageText, desktop.boxes.back().text);
    EXPECT_EQ(tab.Cmb_RestoreFile.Index(), -1);
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
}

// Who asked for this set must not restore the archive of the one before.
TEST_F(RestoreTabTest, SetThatWasNeverBackedUpLeavesNothingOfTheArchiveBefore) {
    Archive();
    Browse(kArchive);
    PutSetWithArchive("", "");
    ChooseSet();
    EXPECT_EQ(tab.Cmb_RestoreFile.Index(), -1);
    EXPECT_EQ(tab.Fld_RestoreFile.Caption(), "");
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_EQ(tab.Fld_Total.Caption(), "0");
    tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    tab.actions.Cmd_Restore_Click();
    ExpectBox("Nothing has been selected to Restore.\r\n\r\nPlease enter a valid Restore File.",
              forms::Icon::kExclamation, "Restore", 2);
}

TEST_F(RestoreTabTest, SetWhoseArchiveIsGoneIsToldAndNothingStaysChosen) {
    Archive();
    Browse(kArchive);
    PutSetWithArchive("C:\\Backups\\", "GONE.zip");
    ChooseSet();
    ExpectBox(
        "This configuration file indicates that a backup file was created but it no longer appears "
        "to exist.\r\n\r\nFile being sought is C:\\Backups\\GONE.zip\r\n\r\nIf the File is from a "
        "Removable Drive then place the disk into the drive now and try again.",
        forms::Icon::kExclamation, "Restore");
    EXPECT_EQ(tab.Cmb_RestoreFile.Index(), -1);
    EXPECT_EQ(tab.TV_Restore.Count(), 0);
    EXPECT_EQ(tab.Fld_Total.Caption(), "0");
    EXPECT_EQ(tab.Fld_RestoreFile.Caption(), "");
}

TEST_F(RestoreTabTest, ChoosingASetListsItsArchive) {
    Archive();
    PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
    ChooseSet();
    EXPECT_EQ(tab.Fld_RestoreFile.Caption(), kArchive);
    EXPECT_THAT(Listed(), ElementsAre("a.txt", "Sub/b.txt"));
    EXPECT_EQ(tab.Fld_Total.Caption(), "2");
    EXPECT_TRUE(tab.TV_Restore.Visible());
    EXPECT_EQ(tab.SSP_TotalFiles.FloodPercent(), 0);
}

TEST_F(RestoreTabTest, UnreadableArchiveCountsOneAndListsNothing) {
    machine.PutFile(kArchive, "this is no archive");
    Browse(kArchive);
    EXPECT_EQ(tab.Fld_Total.Caption(), "0");
    EXPECT_THAT(Listed(), IsEmpty());
}

TEST_F(RestoreTabTest, PathThatDoesNotExistLeavesTheTreeHidden) {
    Browse("C:\\Backups\\GONE.zip");
    EXPECT_FALSE(tab.TV_Restore.Visible());
    EXPECT_EQ(tab.Fld_Total.Caption(), "0");
}

TEST_F(RestoreTabTest, ErrorWhileAnArchiveIsListedCarriesTheLabelOfTheFileClass) {
    desktop.on_events.push_back([] { RaiseError(error_number::kPermissionDenied); });
    ExpectReported([&] { ShowZipContents(program, tab.Controls(), kArchive); },
                   "clsFiles:ShowZipContents Method", "Permission denied");
}

TEST_F(RestoreTabTest, CancelledBrowsingChangesNothing) {
    Archive();
    Browse(kArchive);
    tab.actions.Cmd_RestoreFile_Click();
    EXPECT_EQ(tab.Fld_RestoreFile.Caption(), kArchive);
    EXPECT_THAT(desktop.file_dialogs, ElementsAre(AsksFrom(""), AsksFrom(kArchive)));
}

TEST_F(RestoreTabTest, BrowsingStartsAtNoArchiveThatIsGone) {
    tab.Fld_RestoreFile.SetCaption("C:\\Backups\\GONE.zip");
    tab.actions.Cmd_RestoreFile_Click();
    EXPECT_THAT(desktop.file_dialogs, ElementsAre(AsksFrom("")));
    EXPECT_EQ(tab.Fld_RestoreFile.Caption(), "C:\\Backups\\GONE.zip");
}

TEST_F(RestoreTabTest, BrowsingToTheSetsArchiveInOtherCaseKeepsTheSet) {
    Archive();
    PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
    ChooseSet();
    Browse("c:\\backups\\weekly.ZIP");
    EXPECT_EQ(tab.Cmb_RestoreFile.Text(), "WEEKLY.INI");
}

TEST_F(RestoreTabTest, BrowsingToAnotherArchiveClearsTheSet) {
    Archive();
    PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
    ChooseSet();
    machine.PutFile("C:\\Other.zip", machine.Content(kArchive));
    Browse("C:\\Other.zip");
    EXPECT_EQ(tab.Cmb_RestoreFile.Index(), -1);
    EXPECT_EQ(tab.Fld_RestoreFile.Caption(), "C:\\Other.zip");
}

TEST_F(RestoreTabTest, BrowsingClearsASetWhoseFileIsGone) {
    Archive();
    PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
    ChooseSet();
    machine.files().RemoveFile("C:\\Vantrel\\WEEKLY.INI");
    Browse(kArchive);
    EXPECT_EQ(tab.Cmb_RestoreFile.Index(), -1);
}

TEST_F(RestoreTabTest, DestinationButtonWithoutAnArchiveOnlyAsksForOne) {
    tab.actions.Cmd_RestoreTo_Click();
    ExpectBox("Please select a Backup File to Restore.", forms::Icon::kInformation, "Backup");
}

TEST_F(RestoreTabTest, DestinationIsChosenAfterTheWarningInUpperCaseWithoutBackslash) {
    machine.MakeFolders("C:\\Restore\\Here");
    tab.Fld_RestoreFile.SetCaption(kArchive);
    desktop.idle.push_back([this] {
        dynamic_cast<forms::FolderList*>(desktop.Front()->Find("Dir_DirList"))
            ->SetPath("C:\\Restore\\Here");
        dynamic_cast<forms::Button*>(desktop.Front()->Find("Cmd_Ok"))->UserPress();
    });
    tab.actions.Cmd_RestoreTo_Click();
    ExpectBox(
        "Vantrel has been designed to allow the user to manualy select the Restore Location "
        "themselves as this can cause major risks to Users Data.\r\n\r\nPLEASE SELECT THE RESTORE "
        "LOCATION WITH CARE!",
        forms::Icon::kCritical, "Restore");
    EXPECT_TRUE(desktop.boxes.back().right_aligned);
    EXPECT_EQ(program.globals.MessageText, desktop.boxes.back().text);
    EXPECT_EQ(tab.Fld_RestoreTo.Caption(), "C:\\RESTORE\\HERE");
}

TEST_F(RestoreTabTest, DestinationFolderThatIsGoneWhenItIsOpenedIsTold) {
    machine.MakeFolders("C:\\Restore\\Here");
    tab.Fld_RestoreFile.SetCaption(kArchive);
    tab.Fld_RestoreTo.SetCaption("C:\\Restore");
    std::string path;
    desktop.idle.push_back([&] {
        auto& list = dynamic_cast<forms::FolderList&>(*desktop.Front()->Find("Dir_DirList"));
        machine.files().RemoveFolder("C:\\Restore\\Here");
        list.UserOpen(static_cast<int>(list.Entries().size()) - 1);
        path = list.Path();
        dynamic_cast<forms::Button&>(*desktop.Front()->Find("Cmd_Cancel")).UserPress();
    });
    tab.actions.Cmd_RestoreTo_Click();
    ExpectError("Path not found: C:\\Restore\\Here", 2);
    EXPECT_EQ(path, "C:\\Restore");
}

TEST_F(RestoreTabTest, CancelledDestinationStaysAsItWas) {
    tab.Fld_RestoreFile.SetCaption(kArchive);
    tab.Fld_RestoreTo.SetCaption("C:\\BACKUPS");
    desktop.idle.push_back(
        [this] { dynamic_cast<forms::Button*>(desktop.Front()->Find("Cmd_Cancel"))->UserPress(); });
    tab.actions.Cmd_RestoreTo_Click();
    EXPECT_EQ(tab.Fld_RestoreTo.Caption(), "C:\\BACKUPS");
}

TEST_F(RestoreTabTest, NothingSelectedIsRefused) {
    tab.actions.Cmd_Restore_Click();
    ExpectBox("Nothing has been selected to Restore.\r\n\r\nPlease enter a valid Restore File.",
              forms::Icon::kExclamation, "Restore");
}

TEST_F(RestoreTabTest, MissingLocationIsRefused) {
    tab.Fld_RestoreFile.SetCaption(kArchive);
    tab.actions.Cmd_Restore_Click();
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_THAT(desktop.boxes[0].text,
                ::testing::StartsWith("No Location has been selected to Restore the File To."
                                      "\r\n\r\nVantrel has been designed"));
}

TEST_F(RestoreTabTest, BrowsedArchiveComesBackAndIsLogged) {
    Archive();
    machine.MakeFolders("C:\\RESTORE");
    tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    Browse(kArchive);
    Restore();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\a.txt"), "alpha");
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "beta");
    EXPECT_THAT(LogRecords(),
                ElementsAre("Starting Restore from ZIP File - C:\\Backups\\WEEKLY.zip",
                            "Finished Restore from ZIP File - C:\\Backups\\WEEKLY.zip"));
}

TEST_F(RestoreTabTest, RestoredSetRemembersTheDestination) {
    Archive();
    machine.MakeFolders("C:\\RESTORE");
    PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
    ChooseSet();
    tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    Restore();
    clsINI set(program);
    set.Read_INI("C:\\Vantrel\\WEEKLY.INI");
    EXPECT_EQ(set.RestoreDestination(), "C:\\RESTORE");
    EXPECT_THAT(LogRecords(), ElementsAre("Starting Restore from WEEKLY.INI",
                                          "Finished Restore from WEEKLY.INI"));
}

TEST_F(RestoreTabTest, ProtectedFolderIsRenamedBeforeTheRestoreWritesIntoIt) {
    Archive();
    ProtectSub();
    Browse(kArchive);
    Restore();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "beta");
    EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
}

// What could not be listed when it was chosen is listed again, so that the pass knows of it.
TEST_F(RestoreTabTest, ListingThatFailedIsTriedAgainBeforeThePass) {
    Archive();
    ProtectSub();
    const std::string whole = machine.Content(kArchive);
    const auto times = machine.files().Find(kArchive)->times;
    machine.PutFile(kArchive, std::string(whole.size(), '?'));
    machine.files().SetTimes(kArchive, times);
    Browse(kArchive);
    machine.PutFile(kArchive, whole);
    machine.files().SetTimes(kArchive, times);
    Restore();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
}

TEST_F(RestoreTabTest, ListingThatIsOutOfDateIsListedAnewBeforeThePass) {
    machine.PutFile("C:\\Old\\top.txt", "old");
    Archive("C:\\Old");
    ProtectSub();
    Browse(kArchive);
    Archive();  // another backup has replaced it since it was listed
    Restore();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
    EXPECT_THAT(Listed(), Contains("Sub/b.txt"));
}

TEST_F(RestoreTabTest, MissingProtectedListEndsTheProgramBeforeTheWindowOpens) {
    Archive();
    clsCfg cfg(program);
    machine.files().RemoveFile(cfg.ListPath());
    tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    Browse(kArchive);
    EXPECT_EQ(ErrorOf([&] { tab.actions.Cmd_Restore_Click(); }), error_number::kFileNotFound);
    EXPECT_THAT(desktop.happened, Not(Contains("load Frm_Restore")));
}

TEST_F(RestoreTabTest, ArchiveDeletedSinceItWasListedIsAQuestion) {
    Archive();
    machine.MakeFolders("C:\\RESTORE");
    tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    Browse(kArchive);
    machine.files().RemoveFile(kArchive);
    desktop.answers = {forms::Answer::kCancel};
    Restore();
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].buttons, forms::Buttons::kRetryCancel);
    EXPECT_THAT(desktop.boxes[0].text, ::testing::HasSubstr(kArchive));
    EXPECT_THAT(LogRecords(), Contains("Cancelled by User"));
    EXPECT_THAT(machine.Names("C:\\RESTORE"), IsEmpty());
}

TEST_F(RestoreTabTest, FileInUseAtTheTargetIsSkippedAndLogged) {
    Archive();
    machine.PutFile("C:\\RESTORE\\a.txt", "in use");
    tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    Browse(kArchive);
    {
        const auto held = machine.files().Open("C:\\RESTORE\\a.txt", platform::OpenMode::kAppend);
        Restore();
    }
    EXPECT_EQ(machine.Content("C:\\RESTORE\\a.txt"), "in use");
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "beta");
    EXPECT_THAT(LogRecords(), Contains("a.txt is not restored: Permission denied."));
    EXPECT_THAT(LogRecords(), Contains("1 file not restored"));
}

TEST_F(RestoreTabTest, CancelledRestoreIsLoggedAndTheSetStaysAsItWas) {
    Archive();
    machine.MakeFolders("C:\\RESTORE");
    PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
    ChooseSet();
    tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    desktop.on_events.push_back(
        [this] { dynamic_cast<forms::Button*>(desktop.Front()->Find("Cmd_Cancel"))->UserPress(); });
    std::string status;
    desktop.idle.push_back([&] {
        status = desktop.Front()->Find("Lbl_RestorePath")->Caption();
        dynamic_cast<forms::Button*>(desktop.Front()->Find("Cmd_Ok"))->UserPress();
    });
    tab.actions.Cmd_Restore_Click();
    EXPECT_EQ(status, "Restore Cancelled by User");
    EXPECT_THAT(LogRecords(), ElementsAre("Starting Restore from WEEKLY.INI",
                                          "Finished Restore from WEEKLY.INI", "Cancelled by User"));
    clsINI set(program);
    set.Read_INI("C:\\Vantrel\\WEEKLY.INI");
    EXPECT_EQ(set.RestoreDestination(), "");
}

// The first bytes are those of the first of several disks.
TEST_F(RestoreTabTest, ListingASetOfDisksAsksForTheLastOne) {
    machine.PutFile("C:\\Backups\\SET.zip", "PK\7\x8PK\3\4 and so on");
    desktop.answers = {forms::Answer::kRetry, forms::Answer::kCancel};
    desktop.on_box = [this](const forms::Box&) {
        EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
    };
    Browse("C:\\Backups\\SET.zip");
    ExpectBox(
        "Please insert the last disk of SET.zip into drive C: and press Retry.\r\n\r\nThe disk in "
        "the drive is not the last one of an archive.\r\n\r\nPress Continue to restore the other "
        "files without this disk.",
        forms::Icon::kExclamation, "Restore", 2);
    EXPECT_EQ(desktop.boxes[1].buttons, forms::Buttons::kRetryContinueCancel);
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
}

}  // namespace
}  // namespace vantrel::test
