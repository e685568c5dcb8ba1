#include <algorithm>

#include "backup/Frm_BackupWhere.h"
#include "common/error.h"
#include "tests/backup/dialog_fixture.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

using DestinationDialog = DialogTest<Frm_BackupWhere>;

TEST_F(DestinationDialog, OpensAtTheDestinationShownAndItsDrive) {
    machine.AddDrive('D', platform::drive_type::kFixed);
    machine.MakeFolders("D:\\Sets");
    Select({.to_drive = "D:\\Sets\\"});
    Open();
    EXPECT_EQ(dialog->Dri_DriveList.Drive(), "d:");
    EXPECT_EQ(dialog->Dir_DirList.Path(), "D:\\Sets");
}

TEST_F(DestinationDialog, OpensAtTheApplicationFolderWithoutADestination) {
    Open();
    EXPECT_EQ(dialog->Dir_DirList.Path(), "C:\\Vantrel");
}

TEST_F(DestinationDialog, VanishedDestinationIsToldAndTheDriveFallsBack) {
    Select({.to_drive = "C:\\Gone\\"});
    Open();
    ExpectBox("Unable to find C:\\Gone\\\r\nPlease select an available path.",
              forms::Icon::kExclamation, "Backup Where");
    EXPECT_EQ(program.globals.MessageText, desktop.boxes[0].text);
    EXPECT_EQ(dialog->Dri_DriveList.Drive().substr(0, 2), "c:");
}

TEST_F(DestinationDialog, OkStoresUpperCaseWithBackslashAndShowsThePathAsItStands) {
    Select({.to_drive = "C:\\"});
    Open();
    dialog->Dir_DirList.SetPath("C:\\Backups");
    dialog->Cmd_Ok.UserPress();
    EXPECT_EQ(Stored().BackupToDrive(), "C:\\BACKUPS\\");
    EXPECT_EQ(window.Fld_BackupWhere.Caption(), "C:\\Backups");
    EXPECT_FALSE(dialog->Loaded());
}

TEST_F(DestinationDialog, OkKeepsTheSectionSpellingInTheFile) {
    Select({});
    Open();
    dialog->Cmd_Ok.UserPress();
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText({.to_drive = "C:\\BACKUPS\\"}));
}

TEST_F(DestinationDialog, OkMakesAMissingSectionInCapitals) {
    Select({});
    machine.PutFile("C:\\Vantrel\\WEEKLY.INI", "");
    Open();
    dialog->Cmd_Ok.UserPress();
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"),
              "[DESTINATION]\r\nBackupToDrive=C:\\BACKUPS\\\r\n");
}

TEST_F(DestinationDialog, CancelLeavesFileAndMainWindowUnchanged) {
    Select({});
    Open();
    dialog->Dir_DirList.SetPath("C:\\Data");
    dialog->Cmd_Cancel.UserPress();
    EXPECT_FALSE(dialog->Loaded());
    EXPECT_EQ(window.Fld_BackupWhere.Caption(), "C:\\Backups\\");
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText({}));
}

TEST_F(DestinationDialog, NewFolderAtARootIsMadeInIt) {
    using InputBox = ScriptedDesktop::InputBox;
    Select({.to_drive = "C:\\"});
    Open();
    desktop.inputs = {"Archive"};
    dialog->Cmd_NewFolder.UserPress();
    EXPECT_THAT(desktop.input_boxes, ElementsAre(InputBox{"Please enter a Folder Name",
                                                          "Create New Folder", "New Folder"}));
    EXPECT_TRUE(machine.Exists("C:\\Archive"));
    EXPECT_EQ(dialog->Dir_DirList.Path(), "C:\\Archive");
}

TEST_F(DestinationDialog, NewFolderInsideAFolderIsMadeBesideItWithBothNamesJoined) {
    Select({.to_drive = "C:\\Data"});
    Open();
    desktop.inputs = {"Archive"};
    dialog->Cmd_NewFolder.UserPress();
    EXPECT_TRUE(machine.Exists("C:\\DataArchive"));
    EXPECT_FALSE(machine.Exists("C:\\Data\\Archive"));
    EXPECT_EQ(dialog->Dir_DirList.Path(), "C:\\DataArchive");
}

TEST_F(DestinationDialog, EmptyNewFolderNameCreatesNothing) {
    Select({});
    Open();
    const auto before = machine.Names("C:\\");
    desktop.inputs = {""};
    dialog->Cmd_NewFolder.UserPress();
    EXPECT_EQ(machine.Names("C:\\"), before);
}

TEST_F(DestinationDialog, NewFolderThatExistsIsNotTrapped) {
    Select({.to_drive = "C:\\"});
    Open();
    desktop.inputs = {"Data"};
    EXPECT_EQ(ErrorOf([&] { dialog->Cmd_NewFolder.UserPress(); }), error_number::kPathFileAccess);
}

TEST_F(DestinationDialog, OpeningAFolderThatIsGoneIsToldAndThePathStays) {
    Select({.to_drive = "C:\\"});
    Open();
    const auto& entries = dialog->Dir_DirList.Entries();
    const auto backups = std::find_if(entries.begin(), entries.end(),
                                      [](const auto& entry) { return entry.name == "Backups"; });
    ASSERT_NE(backups, entries.end());
    const auto index = static_cast<int>(backups - entries.begin());
    machine.files().RemoveFolder("C:\\Backups");
    dialog->Dir_DirList.UserOpen(index);
    ExpectError("Path not found: C:\\Backups");
    EXPECT_EQ(dialog->Dir_DirList.Path(), "C:\\");
    EXPECT_TRUE(dialog->Loaded());
}

// A set without a destination shows "\" alone, which exists and which no drive list takes.
TEST_F(DestinationDialog, DestinationThatTheListsRefuseIsToldAndTheyStayWhereTheyWere) {
    Select({.to_drive = "\\"});
    Open();
    ExpectError("Device unavailable: \\");
    EXPECT_EQ(dialog->Dri_DriveList.Drive().substr(0, 2), "c:");
    EXPECT_EQ(dialog->Dir_DirList.Path(), "C:\\Vantrel");
    dialog->Cmd_Ok.UserPress();
    EXPECT_EQ(Stored().BackupToDrive(), "C:\\VANTREL\\");
}

// A code page that is broken, which is the one thing that OK cannot do without.
class NoCapitals : public platform::CodePage {
  public:
    explicit NoCapitals(platform::CodePage& behind) : behind_(behind) {}
    std::optional<std::string> Encode(const std::string& text) override {
        return behind_.Encode(text);
    }
    std::string EncodeLossy(const std::string& text) override { return behind_.EncodeLossy(text); }
    std::string Decode(const std::string& bytes) override { return behind_.Decode(bytes); }
    std::string DecodeOem(const std::string& bytes) override { return behind_.DecodeOem(bytes); }
    std::string Upper(const std::string&) override { RaiseError(error_number::kOutOfMemory); }
    std::string Fold(const std::string& text) override { return behind_.Fold(text); }

  private:
    platform::CodePage& behind_;
};

TEST_F(DestinationDialog, ErrorWhileAFolderIsTakenIsToldAndTheDialogStays) {
    Select({.to_drive = "C:\\"});
    NoCapitals broken(machine.code_page());
    platform::Machine& real = machine.machine();
    platform::Machine there{real.process, real.files,        real.drives,
                            real.clock,   real.settings,     broken,
                            real.shell,   real.mail_session, real.mail_messages};
    forms::Program other{there, desktop, program.globals};
    Frm_BackupWhere shown(other, window.Controls());
    desktop.Load(shown);
    shown.Cmd_Ok.UserPress();
    ExpectError("Out of memory");
    EXPECT_TRUE(shown.Loaded());
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText({.to_drive = "C:\\"}));
}

TEST_F(DestinationDialog, DestinationOnADriveThatCameLaterIsShown) {
    Select({.to_drive = "T:\\"});
    machine.AddDrive('T', platform::drive_type::kRemovable);
    Open();
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(dialog->Dri_DriveList.Drive(), "t:");
}

TEST_F(DestinationDialog, UnreachableDriveIsToldAndTheApplicationsDriveComesBack) {
    machine.AddDrive('A', platform::drive_type::kRemovable, "", false);
    Select({});
    Open();
    const auto& entries = dialog->Dri_DriveList.Entries();
    const auto floppy = std::find(entries.begin(), entries.end(), "a:");
    ASSERT_NE(floppy, entries.end());
    dialog->Dri_DriveList.UserChoose(static_cast<int>(floppy - entries.begin()));
    ExpectBox("Unable to connect to a:", forms::Icon::kInformation, "Backup");
    EXPECT_EQ(dialog->Dri_DriveList.Drive().substr(0, 2), "c:");
}

TEST_F(DestinationDialog, ChangingTheDriveMovesTheFolderListToItsRoot) {
    machine.AddDrive('D', platform::drive_type::kFixed);
    Select({});
    Open();
    dialog->Dri_DriveList.SetDrive("d:");
    EXPECT_EQ(dialog->Dir_DirList.Path(), "D:\\");
}

TEST_F(DestinationDialog, UnreachableDriveStaysChosenWhenTheApplicationsDriveIsGoneToo) {
    machine.AddDrive('A', platform::drive_type::kRemovable, "", false);
    Select({});
    Open();
    machine.SetReady('C', false);
    EXPECT_NO_THROW(dialog->Dri_DriveList.UserChoose(0));
    ExpectBox("Unable to connect to a:", forms::Icon::kInformation, "Backup");
    EXPECT_EQ(dialog->Dri_DriveList.Drive(), "a:");
    machine.SetReady('C', true);
}

TEST_F(DestinationDialog, FolderThatTheCodePageCannotHoldIsRefused) {
    const std::string folder = "C:\\\xE6\x96\x87";
    machine.MakeFolders(folder);
    Select({});
    Open();
    dialog->Dir_DirList.SetPath(folder);
    dialog->Cmd_Ok.UserPress();
    EXPECT_TRUE(dialog->Loaded());
    EXPECT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText({}));
}

struct LongDestination {
    std::size_t bytes;  // of the stored path, with its backslash
    const char* time;
    const char* reason;  // "" where it is stored
};

class LongDestinations : public DestinationDialog,
                         public ::testing::WithParamInterface<LongDestination> {};

TEST_P(LongDestinations, AreStoredWholeOrRefused) {
    const LongDestination& row = GetParam();
    const std::string folder =
        "C:\\" + std::string(120, 'A') + "\\" + std::string(row.bytes - 125, 'B');
    machine.MakeFolders(folder);
    Select({.time = row.time});
    Open();
    dialog->Dir_DirList.SetPath(folder);
    dialog->Cmd_Ok.UserPress();
    if (*row.reason == '\0') {
        EXPECT_EQ(Stored().BackupToDrive(), folder + "\\");
        EXPECT_FALSE(dialog->Loaded());
        return;
    }
    ExpectBox("Unable to use the folder " + folder + ".\r\n" + row.reason,
              forms::Icon::kExclamation, "Backup");
    EXPECT_TRUE(dialog->Loaded());
    EXPECT_EQ(window.Fld_BackupWhere.Caption(), "C:\\Backups\\");
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText({.time = row.time}));
}

INSTANTIATE_TEST_SUITE_P(
    Around, LongDestinations,
    ::testing::Values(
        LongDestination{254, "OFF", ""},
        LongDestination{255, "OFF", "Its path is longer than a Backup Set can store."},
        LongDestination{238, "ON", ""},
        LongDestination{239, "ON",
                        "With the folder of a dated backup its path is longer than a Backup Set "
                        "can store."}));

}  // namespace
}  // namespace vantrel::test
