#include "backup/Frm_BackupOptions.h"
#include "tests/backup/dialog_fixture.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

class OptionsDialog : public DialogTest<Frm_BackupOptions> {
  protected:
    // Presses OK on `name` and other entries that are not those of the set.
    void ExpectRefusalKeepsWhatIsEntered(const std::string& name) {
        dialog->Fld_BackupFileName.SetText(name);
        dialog->Fld_BackupFile.SetText("");
        dialog->Chk_TimeBackup.SetChecked(true);
        dialog->Chk_BackupSubDirectories.SetChecked(false);
        dialog->Cmd_Ok.UserPress();
        EXPECT_TRUE(dialog->Loaded());
        EXPECT_EQ(program.globals.MessageText, desktop.boxes.back().text);
        EXPECT_EQ(dialog->Fld_BackupFileName.Text(), name);
        EXPECT_EQ(dialog->Fld_BackupFile.Text(), "");
        EXPECT_TRUE(dialog->Chk_TimeBackup.Checked());
        EXPECT_TRUE(dialog->Chk_MultiVolumeBackup.Checked());
        EXPECT_FALSE(dialog->Chk_BackupSubDirectories.Checked());
        EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText({}));
    }
    void ExpectRefusalKeepsTheSet(const std::string& name) {
        dialog->Fld_BackupFileName.SetText(name);
        dialog->Cmd_Ok.UserPress();
        EXPECT_TRUE(dialog->Loaded());
        EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText({}));
    }
};

TEST_F(OptionsDialog, ShowsTheSet) {
    Select({.files = "C:\\Data\\*.DOC", .sub_directories = "OFF", .time = "ON"});
    Open();
    EXPECT_TRUE(dialog->Chk_TimeBackup.Checked());
    EXPECT_FALSE(dialog->Chk_MultiVolumeBackup.Checked());
    EXPECT_FALSE(dialog->Chk_BackupSubDirectories.Checked());
    EXPECT_EQ(dialog->Fld_BackupFile.Text(), "*.DOC");
    EXPECT_EQ(dialog->Fld_BackupFileName.Text(), "WEEKLY");
}

TEST_F(OptionsDialog, SwitchIsCheckedForExactlyOnOnly) {
    Select({.sub_directories = "on", .time = "YES"});
    Open();
    EXPECT_FALSE(dialog->Chk_TimeBackup.Checked());
    EXPECT_FALSE(dialog->Chk_BackupSubDirectories.Checked());
}

TEST_F(OptionsDialog, OkWritesFiveKeysInUpperCaseAndRefreshesTheMainWindow) {
    Select({});
    Open();
    dialog->Chk_TimeBackup.SetChecked(true);
    dialog->Chk_BackupSubDirectories.SetChecked(false);
    dialog->Fld_BackupFile.SetText("*.doc");
    dialog->Fld_BackupFileName.SetText("weekly two");
    dialog->Cmd_Ok.UserPress();
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText({.files = "C:\\DATA\\*.DOC",
                                                                   .sub_directories = "OFF",
                                                                   .name = "WEEKLY TWO",
                                                                   .time = "ON"}));
    EXPECT_EQ(window.Fld_BackupOptions.Caption(), "SubDir=OFF, MultiVolume=OFF, Time=ON");
    EXPECT_EQ(window.Lbl_FilestoBackup.Caption(), "*.DOC");
    EXPECT_EQ(window.Lbl_BackupFileName.Caption(), "WEEKLY TWO");
    EXPECT_FALSE(dialog->Loaded());
}

TEST_F(OptionsDialog, OkWritesMissingKeysInTheirOrderAndSpelling) {
    Select({});
    machine.PutFile("C:\\Vantrel\\WEEKLY.INI", "");
    Open();
    dialog->Chk_BackupSubDirectories.SetChecked(true);
    dialog->Fld_BackupFile.SetText("*.doc");
    dialog->Fld_BackupFileName.SetText("weekly");
    dialog->Cmd_Ok.UserPress();
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"),
              "[BACKUP SOURCE]\r\nBackupFiles=*.DOC\r\nBackupSubDirectories=ON\r\n"
              "[Destination]\r\nBackupFileName=WEEKLY\r\nMultiVolumeBackup=OFF\r\n"
              "TimeBackup=OFF\r\n");
}

// Its folder is not known: what was saved would be the files of the whole drive.
TEST_F(OptionsDialog, SetThatCouldNotBeReadIsNotSaved) {
    Select({});
    machine.files().Rename("C:\\Vantrel\\WEEKLY.INI", "C:\\Vantrel\\away");
    Open();
    machine.files().Rename("C:\\Vantrel\\away", "C:\\Vantrel\\WEEKLY.INI");
    dialog->Fld_BackupFileName.SetText("MONTHLY");
    dialog->Cmd_Ok.UserPress();
    ExpectBox("Unable to Save as C:\\Vantrel\\WEEKLY.INI could not be read.",
              forms::Icon::kExclamation, "Backup");
    EXPECT_EQ(Stored().BackupFileName(), "WEEKLY");
    EXPECT_TRUE(dialog->Loaded());
}

TEST_F(OptionsDialog, EmptyMaskIsSavedAsAllFiles) {
    Select({.files = "C:\\Data\\*.DOC"});
    Open();
    dialog->Fld_BackupFile.SetText("");
    dialog->Cmd_Ok.UserPress();
    EXPECT_EQ(Stored().BackupFiles(), "C:\\DATA\\*.*");
}

TEST_F(OptionsDialog, EmptyNameIsRefusedBeforeTheDriveIsLookedAt) {
    Select({});
    Open();
    dialog->Chk_MultiVolumeBackup.SetChecked(true);
    ExpectRefusalKeepsWhatIsEntered("");
    ExpectBox("Unable to Save as no Backup Name has been entered.", forms::Icon::kExclamation,
              "Backup");
}

TEST_F(OptionsDialog, MultiVolumeOnAFixedDiskListsTheRemovableDrivesUnderTheOtherHeading) {
    machine.AddDrive('A', platform::drive_type::kRemovable);
    Select({});
    Open();
    dialog->Chk_MultiVolumeBackup.SetChecked(true);
    ExpectRefusalKeepsWhatIsEntered("monthly");
    ExpectBox(
        "Unable to Save as you have selected the Multi Volume flag on a Non-Removable Drive."
        "\r\n\r\nThe Non-Removable Drives on this machine are;\r\nA: ",
        forms::Icon::kExclamation, "Backup");
}

TEST_F(OptionsDialog, MultiVolumeRefusalSaysNilWithoutARemovableDrive) {
    Select({});
    Open();
    dialog->Chk_MultiVolumeBackup.SetChecked(true);
    dialog->Cmd_Ok.UserPress();
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_THAT(desktop.boxes[0].text, ::testing::EndsWith("are;\r\nNil"));
}

TEST_F(OptionsDialog, MultiVolumeLooksAtTheDestinationShownNotAtTheFile) {
    machine.AddDrive('A', platform::drive_type::kRemovable);
    Select({});
    window.Fld_BackupWhere.SetCaption("A:\\Sets\\");
    Open();
    dialog->Chk_MultiVolumeBackup.SetChecked(true);
    dialog->Cmd_Ok.UserPress();
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(Stored().MultiVolumeBackup(), "ON");
}

TEST_F(OptionsDialog, TextsThatTheCodePageCannotHoldAreRefused) {
    const std::string name = "\xE6\x96\x87";  // a Chinese character
    Select({});
    Open();
    for (forms::TextBox* const field : {&dialog->Fld_BackupFileName, &dialog->Fld_BackupFile}) {
        const std::string before = field->Text();
        field->SetText(name);
        dialog->Cmd_Ok.UserPress();
        ExpectBox("Unable to Save as " + name + " holds characters that a Backup Set cannot store.",
                  forms::Icon::kExclamation, "Backup");
        EXPECT_TRUE(dialog->Loaded());
        field->SetText(before);
        desktop.boxes.clear();
    }
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText({}));
}

TEST_F(OptionsDialog, CancelLeavesFileAndMainWindowUnchanged) {
    Select({});
    window.Fld_BackupOptions.SetCaption("as before");
    Open();
    dialog->Chk_TimeBackup.SetChecked(true);
    dialog->Cmd_Cancel.UserPress();
    EXPECT_FALSE(dialog->Loaded());
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText({}));
    EXPECT_EQ(window.Fld_BackupOptions.Caption(), "as before");
}

class ImpossibleArchiveNames : public OptionsDialog,
                               public ::testing::WithParamInterface<const char*> {};

TEST_P(ImpossibleArchiveNames, AreRefusedWithOneMessage) {
    Select({});
    Open();
    dialog->Chk_MultiVolumeBackup.SetChecked(true);
    ExpectRefusalKeepsWhatIsEntered(GetParam());
    ExpectBox(std::string("Unable to Save as ") + GetParam() + " cannot be the name of a file.",
              forms::Icon::kExclamation, "Backup");
}

INSTANTIATE_TEST_SUITE_P(OptionsDialog, ImpossibleArchiveNames,
                         ::testing::Values("a/b", "a\\b", "x:y", "con", "nul.", "Lpt1.old", "ends.",
                                           "blank ", "what?", "tab\there"));

TEST_F(OptionsDialog, ArchiveNameThatIsTooLongWithItsExtensionIsRefused) {
    Select({});
    Open();
    const std::string name(251, 'n');
    ExpectRefusalKeepsTheSet(name);
    ExpectBox("Unable to Save as BackupFileName with .zip is longer than 254 bytes.",
              forms::Icon::kExclamation, "Backup");
}

TEST_F(OptionsDialog, LongestArchiveNameIsStored) {
    Select({});
    Open();
    dialog->Fld_BackupFileName.SetText(std::string(250, 'n'));
    dialog->Cmd_Ok.UserPress();
    EXPECT_EQ(Stored().BackupFileName(), std::string(250, 'N'));
}

TEST_F(OptionsDialog, MaskThatMakesTheSourceTooLongIsRefused) {
    Select({});
    Open();
    dialog->Fld_BackupFile.SetText("*." + std::string(245, 'x'));  // 255 with C:\Data\.
    ExpectRefusalKeepsTheSet("WEEKLY");
    ExpectBox("Unable to Save as BackupFiles is longer than 254 bytes.", forms::Icon::kExclamation,
              "Backup");
    dialog->Fld_BackupFile.SetText("*." + std::string(244, 'x'));
    dialog->Cmd_Ok.UserPress();
    EXPECT_EQ(Stored().BackupFiles(), "C:\\DATA\\*." + std::string(244, 'X'));
}

TEST_F(OptionsDialog, SourceThatWasCutWhenItWasReadIsNotWrittenBack) {
    const SetValues long_source{.files = "C:\\Data\\" + std::string(300, 'D') + "\\*.*"};
    Select(long_source);
    Open();
    dialog->Fld_BackupFile.SetText("*.*");
    dialog->Cmd_Ok.UserPress();
    ExpectBox("Unable to Save as BackupFiles is longer than 254 bytes.", forms::Icon::kExclamation,
              "Backup");
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText(long_source));
}

TEST_F(OptionsDialog, DatedFoldersAreRefusedWhereTheirPathIsTooLong) {
    const SetValues long_destination{.to_drive = "C:\\" + std::string(235, 'B') + "\\"};
    Select(long_destination);
    Open();
    dialog->Chk_TimeBackup.SetChecked(true);
    dialog->Cmd_Ok.UserPress();
    ExpectBox(
        "Unable to Save as BackupToDrive with the name of a dated folder is longer than 254 bytes.",
        forms::Icon::kExclamation, "Backup");
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), SetText(long_destination));
    dialog->Chk_TimeBackup.SetChecked(false);
    dialog->Cmd_Ok.UserPress();
    EXPECT_FALSE(dialog->Loaded());
}

}  // namespace
}  // namespace vantrel::test
