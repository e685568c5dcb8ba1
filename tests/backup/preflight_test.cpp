#include "backup/preflight.h"

#include <algorithm>

#include "common/error.h"
#include "tests/backup/dialog_fixture.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

constexpr std::uint32_t kSectors = 1;
constexpr std::uint32_t kBytes = 1;

class Preflight : public SelectedSetTest {
  protected:
    // The folder list shows C:\Brief, which is not there any more.
    void LoseTheShownFolder() {
        machine.MakeFolders("C:\\Brief");
        window.Dir_DirList.SetPath("C:\\Brief");
        machine.files().RemoveFolder("C:\\Brief");
    }
    void Press() { Cmd_Backup_Click(program, window.Controls()); }
    void PressWithoutTheShownFolder(const SetValues& set) {
        Select(set);
        LoseTheShownFolder();
        Press();
    }
    void ExpectMissing(const std::string& path) {
        ExpectOneBox("Unable to continue with the Backup as " + path + " does not appear to exist.",
                     forms::Icon::kExclamation);
    }
    void FreeOn(char letter, std::uint32_t bytes) {
        machine.drives.drives[letter].space = {kSectors, kBytes, bytes, bytes};
    }
    // The user's press of OK in the window that is in front.
    void PressOk() {
        auto* ok = dynamic_cast<forms::Button*>(desktop.Front()->Find("Cmd_Ok"));
        ASSERT_TRUE(ok->Visible());
        ok->UserPress();
    }
    bool BackupWindowShown() const {
        return std::ranges::count(desktop.happened, "load Frm_Backup") > 0;
    }
    // Presses Backup in an unattended run of the set with these values; "Backup Failed - " precedes
    // the reason in the log.
    void ExpectUnattendedRefusal(const SetValues& set, const std::string& reason) {
        Unattended("WEEKLY.INI");
        Select(set);
        PressAndExpectRefusal(reason);
    }
    void PressAndExpectRefusal(const std::string& reason) {
        Press();
        EXPECT_THAT(LogRecords(),
                    ElementsAre("Starting Backup WEEKLY.INI", "Finished Backup WEEKLY.INI",
                                "Backup Failed - " + reason));
        EXPECT_THAT(desktop.boxes, IsEmpty());
        EXPECT_FALSE(BackupWindowShown());
        EXPECT_EQ(program.exit_code, forms::exit_code::kFailed);
    }
    void ExpectOneBox(const std::string& text, forms::Icon icon) {
        ExpectBox(text, icon, "Backup");
        ASSERT_FALSE(desktop.boxes.empty());
        EXPECT_EQ(desktop.boxes[0].buttons, forms::Buttons::kOk);
        EXPECT_EQ(program.globals.MessageText, text);
        EXPECT_FALSE(machine.Exists("C:\\Vantrel\\Vantrel.Log"));
        EXPECT_FALSE(BackupWindowShown());
    }
};

TEST_F(Preflight, AttendedEmptySelectionShowsTwoLinesAndNothingElse) {
    window.Fld_BackupWhere.SetCaption("Q:\\nowhere\\");
    Press();
    ExpectOneBox("Nothing has been selected to Backup.\r\nPlease enter a valid Backup Set.",
                 forms::Icon::kExclamation);
}

TEST_F(Preflight, AttendedMissingDestinationIsNamedAsShown) {
    Select({.to_drive = "C:\\Gone\\"});
    window.Fld_BackupWhere.SetCaption("C:\\Gone\\as Shown\\");
    Press();
    ExpectOneBox(
        "Unable to continue with the Backup as C:\\Gone\\as Shown\\ does not appear to exist.",
        forms::Icon::kExclamation);
}

TEST_F(Preflight, AttendedMissingSourceIsTheFolderListsPath) {
    PressWithoutTheShownFolder({});
    ExpectMissing("C:\\Brief");
}

TEST_F(Preflight, AttendedMissingDestinationIsReportedBeforeTheMissingSource) {
    PressWithoutTheShownFolder({.to_drive = "C:\\Gone\\"});
    ExpectMissing("C:\\Gone\\");
}

TEST_F(Preflight, AttendedMissingSourceIsReportedBeforeTheVolumeRules) {
    PressWithoutTheShownFolder({.multi_volume = "ON"});
    ExpectMissing("C:\\Brief");
}

TEST_F(Preflight, AttendedSingleVolumeOntoRemovableDriveIsRefused) {
    machine.AddDrive('A', platform::drive_type::kRemovable);
    Select({.to_drive = "A:\\"});
    Press();
    ExpectOneBox(
        "Unable to continue as the Multi-Volume Flag is set to OFF and a Backup File is about to "
        "be created on a Removable Drive",
        forms::Icon::kInformation);
}

TEST_F(Preflight, AttendedMultiVolumeOntoFixedDiskIsRefusedWithoutAsking) {
    Select({.multi_volume = "ON"});
    Press();
    ExpectOneBox(
        "Unable to continue as the Multi-Volume Flag is set to ON and a Backup File is about to "
        "be created on a Non-Removable Drive",
        forms::Icon::kInformation);
}

TEST_F(Preflight, AttendedSingleVolumeOntoCdRomOrRamDiskIsNotRefusedButAsked) {
    machine.AddDrive('D', platform::drive_type::kCdRom);
    machine.AddDrive('R', platform::drive_type::kRamDisk);
    for (const char* const root : {"D:\\", "R:\\"}) {
        Select({.to_drive = root});
        Press();
        EXPECT_EQ(desktop.boxes.back().text, "Are you sure that you wish to start the backup now?");
    }
    EXPECT_EQ(desktop.boxes.size(), 2u);
}

TEST_F(Preflight, AttendedNeverLooksAtFreeSpace) {
    machine.AddDrive('A', platform::drive_type::kRemovable);
    FreeOn('A', 1);
    Select({.multi_volume = "ON", .to_drive = "A:\\"});
    desktop.answers = {forms::Answer::kNo};
    Press();
    EXPECT_THAT(machine.drives.space_questions, IsEmpty());
}

TEST_F(Preflight, AttendedConfirmationHasNoAsDefaultAndNoChangesNothing) {
    Select({});
    const std::string before = machine.Content("C:\\Vantrel\\WEEKLY.INI");
    desktop.answers = {forms::Answer::kNo};
    Press();
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].buttons, forms::Buttons::kYesNo);
    EXPECT_EQ(desktop.boxes[0].icon, forms::Icon::kNone);
    EXPECT_EQ(desktop.boxes[0].default_button, 2);
    EXPECT_EQ(desktop.boxes[0].title, "Vantrel");
    EXPECT_FALSE(BackupWindowShown());
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), before);
    EXPECT_FALSE(machine.Exists("C:\\Vantrel\\Vantrel.Log"));
}

TEST_F(Preflight, AttendedYesShowsTheBackupWindowModallyAndUnloadsIt) {
    Select({});
    desktop.answers = {forms::Answer::kYes};
    desktop.idle.push_back([this] { PressOk(); });
    Press();
    EXPECT_TRUE(BackupWindowShown());
    EXPECT_EQ(desktop.happened.back(), "unload Frm_Backup");
    EXPECT_TRUE(machine.Exists("C:\\Backups\\WEEKLY.zip"));
}

TEST_F(Preflight, UnattendedMissingDestinationWritesThreeRecords) {
    ExpectUnattendedRefusal({.to_drive = "C:\\Gone\\"}, "Unable to locate C:\\Gone\\");
}

TEST_F(Preflight, UnattendedMissingSourceIsTheSetsFolderNotTheListsFolder) {
    ExpectUnattendedRefusal({.files = "C:\\Gone\\*.*"}, "Unable to locate C:\\Gone\\");
}

TEST_F(Preflight, UnattendedMissingSourceIsLoggedBeforeTheCdRom) {
    machine.AddDrive('D', platform::drive_type::kCdRom);
    ExpectUnattendedRefusal({.files = "C:\\Gone\\*.*", .to_drive = "D:\\"},
                            "Unable to locate C:\\Gone\\");
}

TEST_F(Preflight, UnattendedMissingDestinationIsLoggedBeforeTheMissingSource) {
    ExpectUnattendedRefusal({.files = "C:\\Gone\\*.*", .to_drive = "C:\\Nowhere\\"},
                            "Unable to locate C:\\Nowhere\\");
}

TEST_F(Preflight, UnattendedCdRomIsRefusedBeforeTheVolumeRules) {
    machine.AddDrive('D', platform::drive_type::kCdRom);
    ExpectUnattendedRefusal({.multi_volume = "ON", .to_drive = "D:\\"},
                            "Cannot Backup to CDROM Drive D:\\");
}

TEST_F(Preflight, UnattendedRamDiskIsRefusedBeforeTheVolumeRules) {
    machine.AddDrive('R', platform::drive_type::kRamDisk);
    ExpectUnattendedRefusal({.multi_volume = "ON", .to_drive = "R:\\"},
                            "Cannot Backup to RAM Disk R:\\");
}

TEST_F(Preflight, UnattendedSingleVolumeOntoRemovableDriveIsRefused) {
    machine.AddDrive('A', platform::drive_type::kRemovable);
    ExpectUnattendedRefusal({.to_drive = "A:\\"},
                            "MultiVolume Flag NOT set for Removable Drive A:\\");
}

TEST_F(Preflight, UnattendedMultiVolumeOntoFixedDiskIsRefusedHoweverFullItIs) {
    FreeOn('C', 1'999'999);
    ExpectUnattendedRefusal({.multi_volume = "ON"},
                            "MultiVolume Flag set for Non-Removable Drive C:\\");
    EXPECT_THAT(machine.drives.space_questions, IsEmpty());
}

TEST_F(Preflight, UnattendedMultiVolumeWith1999999BytesFreeIsRefused) {
    machine.AddDrive('A', platform::drive_type::kRemovable);
    FreeOn('A', 1'999'999);
    ExpectUnattendedRefusal({.multi_volume = "ON", .to_drive = "A:\\"},
                            "Unable to conduct a Backup on a MultiVolume Drive whilst Unattended");
}

TEST_F(Preflight, UnattendedMultiVolumeWith2000000BytesFreeRuns) {
    Unattended("WEEKLY.INI");
    machine.AddDrive('A', platform::drive_type::kRemovable);
    FreeOn('A', 2'000'000);
    Select({.multi_volume = "ON", .to_drive = "A:\\"});
    Press();
    EXPECT_TRUE(BackupWindowShown());
    EXPECT_EQ(LogRecords().front(), "Starting Backup WEEKLY.INI");
}

TEST_F(Preflight, UnattendedRunThatPassesWritesStartingOnce) {
    Unattended("WEEKLY.INI");
    Select({});
    Press();
    EXPECT_THAT(LogRecords(), ElementsAre("Starting Backup WEEKLY.INI",
                                          "Creating Backup File C:\\Backups\\WEEKLY.zip",
                                          "Finished Backup WEEKLY.INI", "Successful Backup"));
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Preflight, UnattendedAsksNoConfirmationAndDoesNotCheckTheName) {
    Unattended("WEEKLY.INI");
    window.Fld_BackupWhere.SetCaption("C:\\Gone\\");
    Press();
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_THAT(LogRecords(), ElementsAre("Starting Backup ", "Finished Backup ",
                                          "Backup Failed - Unable to locate C:\\Gone\\"));
}

// A set whose file cannot be read has no values: its archive would have no name, and sub-folders
// would be left out.
TEST_F(Preflight, SetThatCannotBeReadIsRefused) {
    Select({});
    machine.files().RemoveFile("C:\\Vantrel\\WEEKLY.INI");
    Press();
    ExpectOneBox("Unable to continue with the Backup as C:\\Vantrel\\WEEKLY.INI cannot be read.",
                 forms::Icon::kExclamation);
}

TEST_F(Preflight, UnattendedSetThatCannotBeReadIsRefused) {
    Unattended("WEEKLY.INI");
    Select({});
    machine.files().RemoveFile("C:\\Vantrel\\WEEKLY.INI");
    PressAndExpectRefusal("Unable to read C:\\Vantrel\\WEEKLY.INI");
}

TEST_F(Preflight, FreeSpaceThatOverflowsIsNotTrapped) {
    Unattended("WEEKLY.INI");
    machine.AddDrive('A', platform::drive_type::kRemovable);
    machine.drives.drives['A'].space = {64, 512, 65536, 65536};
    Select({.multi_volume = "ON", .to_drive = "A:\\"});
    EXPECT_EQ(ErrorOf([&] { Press(); }), error_number::kOverflow);
}

}  // namespace
}  // namespace vantrel::test
