// Saving: validation, the scratch file, the confirmation, and what is on disk afterwards.
#include "common/error.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/matchers.h"
#include "tests/ui/editor_fixture.h"

namespace vantrel::test {
namespace {

constexpr const char* kScratch = "C:\\Vantrel\\Temp.INI";

class EditorSave : public EditorFixture {
  protected:
    EditorSave() {
        PutSet("DAILY.INI", {.name = "DAILY"});
        PutSet("WEEKLY.INI", {.name = "WEEKLY"});
    }
    // Types `text` over DAILY.INI and presses Save.
    void SaveText(const std::string& text) {
        PickAndType("DAILY.INI", text);
        Tab().Cmd_Save.UserPress();
    }
    // Shows DAILY.INI in the editor of another window, and changes it.
    static void EditDaily(Frm_Mainmenu& its_window) {
        its_window.program().desktop.Load(its_window);
        its_window.TAB_Backup.SetTab(2);
        its_window.Edit.Fil_INI.SetIndex(0);
        ASSERT_EQ(its_window.Edit.CurrentINI, "DAILY.INI");
        its_window.Edit.Fld_INI.UserType(TextWithName("EDITED"));
    }
    std::string Saved() const { return machine.Content(PathOf("DAILY.INI")); }
    // A text whose one value is this, and the reason for which it is refused.
    void ExpectRefused(const SetValues& values, const std::string& reason) {
        Open();
        std::string text = SetText(values);
        SaveText(text);
        ExpectBox("Unable to Save this file:\r\nReason: " + reason, forms::Icon::kExclamation,
                  "INI Validation");
        EXPECT_EQ(desktop.boxes[0].buttons, forms::Buttons::kOk);
        EXPECT_FALSE(Tab().SaveAccepted);
        EXPECT_TRUE(Tab().Cmd_Save.Enabled());
        EXPECT_EQ(Saved(), SetText({.name = "DAILY"}));
        EXPECT_EQ(machine.Content(kScratch), text + "\r\n");
        EXPECT_THAT(LogRecords(), IsEmpty());
    }
};

TEST_F(EditorSave, RefusesATextWithoutFiles) {
    ExpectRefused({.files = ""}, "There are no Files Selected to Backup.");
}

TEST_F(EditorSave, RefusesASubDirectoriesSwitchInLowerCase) {
    ExpectRefused({.sub_directories = "on"},
                  "BackupSubDirectories does not indicate 'ON' or 'OFF'.");
}

TEST_F(EditorSave, RefusesATextWithoutAnArchiveName) {
    ExpectRefused({.name = ""}, "There is no name for the Backup File.");
}

TEST_F(EditorSave, RefusesAnotherMultiVolumeSwitch) {
    ExpectRefused({.multi_volume = "YES"}, "MultiVolumeBackup does not indicate 'ON' or 'OFF'.");
}

TEST_F(EditorSave, RefusesATextWithoutADestination) {
    ExpectRefused({.to_drive = ""}, "There is no Drive for the Backup File.");
}

TEST_F(EditorSave, RefusesATextWithoutATimeSwitch) {
    ExpectRefused({.time = ""}, "TimeBackup does not indicate 'ON' or 'OFF'.");
}

TEST_F(EditorSave, RefusalNamesTheLastReasonOnly) {
    ExpectRefused({.files = "", .name = "", .time = "YES"},
                  "TimeBackup does not indicate 'ON' or 'OFF'.");
}

TEST_F(EditorSave, RefusesAnEmptyText) {
    Open();
    SaveText("");
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_THAT(desktop.boxes[0].text, HasSubstr("TimeBackup"));
    EXPECT_EQ(Saved(), SetText({.name = "DAILY"}));
}

TEST_F(EditorSave, RefusedTextCanBeCorrectedAndSaved) {
    Open();
    SaveText(SetText({.time = "maybe"}));
    Tab().Fld_INI.UserType(TextWithName("RIGHT"));
    Tab().Cmd_Save.UserPress();
    EXPECT_TRUE(Tab().SaveAccepted);
    EXPECT_THAT(Saved(), HasSubstr("BackupFileName=RIGHT\r\n"));
    EXPECT_FALSE(machine.Exists(kScratch)) << "left behind until the next save, not longer";
}

TEST_F(EditorSave, AcceptedTextIsWrittenShownAndLogged) {
    Open();
    SaveText(TextWithName("EDITED"));
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_TRUE(Tab().SaveAccepted);
    EXPECT_FALSE(Tab().Cmd_Save.Enabled());
    EXPECT_FALSE(Tab().ConfirmSave);
    EXPECT_THAT(Saved(), HasSubstr("BackupFileName=EDITED\r\n"));
    EXPECT_EQ(Tab().Lbl_INIContents.Caption(), "INI File Contents - DAILY.INI");
    EXPECT_THAT(LogRecords(), ElementsAre("INI DAILY.INI Edited"));
    EXPECT_FALSE(machine.Exists(kScratch));
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
}

TEST_F(EditorSave, LogRecordIsDated) {
    Open();
    SaveText(TextWithName("EDITED"));
    EXPECT_THAT(machine.Content("C:\\Vantrel\\Vantrel.Log"),
                ::testing::EndsWith("15/11/2026 13:05:09 INI DAILY.INI Edited\r\n"));
}

TEST_F(EditorSave, SavedFileAlwaysEndsWithALineEnd) {
    Open();
    const std::string text = TextWithName("EDITED");
    ASSERT_FALSE(text.ends_with("\r\n"));
    SaveText(text);
    EXPECT_THAT(Saved(), ::testing::EndsWith("RestoreDestination=\r\n"));
    // A text that ends with one already gets another: the whole text is printed, then its end.
    Tab().Fld_INI.UserType(text + "\r\n");
    Tab().Cmd_Save.UserPress();
    EXPECT_THAT(Saved(), ::testing::EndsWith("RestoreDestination=\r\n\r\n"));
}

TEST_F(EditorSave, SavedValuesAreInCapitalsWithABackslashAndShownSo) {
    Open();
    SaveText(SetText({.files = "C:\\Data\\*.doc", .name = "daily", .to_drive = "C:\\Backups"}));
    EXPECT_THAT(Saved(), HasSubstr("BackupFiles=C:\\DATA\\*.DOC\r\n"));
    EXPECT_THAT(Saved(), HasSubstr("BackupFileName=DAILY\r\n"));
    EXPECT_THAT(Saved(), HasSubstr("BackupToDrive=C:\\BACKUPS\\\r\n"));
    EXPECT_THAT(Tab().Fld_INI.Text(), HasSubstr("BackupToDrive=C:\\BACKUPS\\\r\n"));
}

TEST_F(EditorSave, CommentsAndOtherKeysOfTheTextAreKept) {
    Open();
    SaveText("; mine\r\n[Other]\r\nKey=Value\r\n\r\n" + TextWithName("EDITED"));
    EXPECT_THAT(Saved(), ::testing::StartsWith("; mine\r\n[Other]\r\nKey=Value\r\n\r\n[BACKUP"));
}

TEST_F(EditorSave, OldScratchFileIsNotAppendedTo) {
    machine.PutFile(kScratch, "[DESTINATION]\r\nTimeBackup=OLD\r\n");
    Open();
    SaveText(SetText({.time = ""}));
    EXPECT_EQ(machine.Content(kScratch), SetText({.time = ""}) + "\r\n");
}

TEST_F(EditorSave, DirectSaveAsksNothing) {
    Open();
    SaveText(TextWithName("ONE"));
    Tab().Fld_INI.UserType(TextWithName("TWO"));
    Tab().Cmd_Save.UserPress();
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

// The asymmetry of the confirmation, which is meant.
TEST_F(EditorSave, FirstDirectSaveAfterOneThroughTheQuestionIsConfirmedAndNoOther) {
    Open();
    PickAndType("DAILY.INI", TextWithName("ONE"));
    desktop.answers = {forms::Answer::kYes};
    Pick("WEEKLY.INI");
    EXPECT_TRUE(Tab().ConfirmSave);

    Tab().Fld_INI.UserType(TextWithName("TWO"));
    desktop.answers = {forms::Answer::kYes};
    Tab().Cmd_Save.UserPress();
    ExpectBox("Are you sure that you wish to save the changes?", forms::Icon::kNone, "Save Changes",
              2);
    EXPECT_EQ(desktop.boxes[1].buttons, forms::Buttons::kYesNo);
    EXPECT_EQ(desktop.boxes[1].default_button, 2);
    EXPECT_FALSE(Tab().ConfirmSave);
    EXPECT_THAT(machine.Content(PathOf("WEEKLY.INI")), HasSubstr("BackupFileName=TWO\r\n"));

    Tab().Fld_INI.UserType(TextWithName("THREE"));
    Tab().Cmd_Save.UserPress();
    EXPECT_EQ(desktop.boxes.size(), 2u);
}

TEST_F(EditorSave, SavesThroughTheQuestionAreNeverConfirmed) {
    Open();
    PickAndType("DAILY.INI", TextWithName("ONE"));
    desktop.answers = {forms::Answer::kYes, forms::Answer::kYes};
    PickAndType("WEEKLY.INI", TextWithName("TWO"));
    Pick("DAILY.INI");
    ASSERT_EQ(desktop.boxes.size(), 2u);
    for (const auto& box : desktop.boxes) {
        EXPECT_EQ(box.title, "Changes");
    }
    EXPECT_THAT(Saved(), HasSubstr("BackupFileName=ONE\r\n"));
    EXPECT_THAT(machine.Content(PathOf("WEEKLY.INI")), HasSubstr("BackupFileName=TWO\r\n"));
    EXPECT_TRUE(Tab().ConfirmSave);
}

TEST_F(EditorSave, AnsweringNoToTheConfirmationChangesNothingAndItIsAskedAgain) {
    Open();
    PickAndType("DAILY.INI", TextWithName("ONE"));
    desktop.answers = {forms::Answer::kYes};
    Pick("WEEKLY.INI");
    Tab().Fld_INI.UserType(TextWithName("TWO"));
    desktop.answers = {forms::Answer::kNo};
    Tab().Cmd_Save.UserPress();
    EXPECT_TRUE(Tab().ConfirmSave);
    EXPECT_TRUE(Tab().Cmd_Save.Enabled());
    EXPECT_EQ(machine.Content(PathOf("WEEKLY.INI")), SetText({.name = "WEEKLY"}));
    EXPECT_FALSE(machine.Exists(kScratch));
    Tab().Cmd_Save.UserPress();
    EXPECT_EQ(desktop.boxes.size(), 3u);
}

TEST_F(EditorSave, RefusedSaveThroughTheQuestionLeavesTheConfirmationSet) {
    Open();
    PickAndType("DAILY.INI", "no set");
    desktop.answers = {forms::Answer::kYes};
    Pick("WEEKLY.INI");
    EXPECT_TRUE(Tab().ConfirmSave);
    desktop.answers = {forms::Answer::kYes};
    Tab().Cmd_Save.UserPress();  // confirmed, and refused once more
    EXPECT_FALSE(Tab().ConfirmSave);
}

TEST_F(EditorSave, RefusalThroughTheQuestionKeepsTheTextThoughTheSaveBeforeWasAccepted) {
    Open();
    SaveText(TextWithName("ONE"));
    ASSERT_TRUE(Tab().SaveAccepted);
    Tab().Fld_INI.UserType("no set");
    desktop.answers = {forms::Answer::kYes};
    Pick("WEEKLY.INI");
    EXPECT_EQ(Tab().CurrentINI, "DAILY.INI");
    EXPECT_EQ(Tab().Fil_INI.FileName(), "DAILY.INI");
    EXPECT_EQ(Tab().Fld_INI.Text(), "no set");
}

TEST_F(EditorSave, SetThatIsGoneMeanwhileIsMadeAnew) {
    Open();
    PickAndType("DAILY.INI", TextWithName("EDITED"));
    machine.files().RemoveFile(PathOf("DAILY.INI"));
    Tab().Cmd_Save.UserPress();
    EXPECT_THAT(Saved(), HasSubstr("BackupFileName=EDITED\r\n"));
}

TEST_F(EditorSave, TextWithoutAFileIsAnErrorAndStays) {
    Open();
    Tab().Fld_INI.UserType(TextWithName("NOBODY"));
    Tab().Cmd_Save.UserPress();
    ExpectError("Path/File access error");
    EXPECT_FALSE(Tab().SaveAccepted);
    EXPECT_TRUE(Tab().Cmd_Save.Enabled());
    EXPECT_EQ(Tab().Fld_INI.Text(), TextWithName("NOBODY"));
}

TEST_F(EditorSave, TextThatTheCodePageCannotHoldIsRefused) {
    Open();
    SaveText(SetText({.files = "C:\\\xE6\x96\x87\\*.*"}));
    ExpectBox(
        "Unable to Save this file:\r\nReason: It holds characters that a Backup Set cannot store.",
        forms::Icon::kExclamation, "INI Validation");
    EXPECT_EQ(Saved(), SetText({.name = "DAILY"}));
    EXPECT_TRUE(Tab().Cmd_Save.Enabled());
}

TEST_F(EditorSave, LettersOfTheCodePageAreSavedAsItsBytes) {
    Open();
    SaveText(TextWithName("\xC3\x84RGER"));
    EXPECT_THAT(Saved(), HasSubstr("BackupFileName=\xC4RGER\r\n"));
    EXPECT_THAT(Tab().Fld_INI.Text(), HasSubstr("BackupFileName=\xC3\x84RGER\r\n"));
}

TEST_F(EditorSave, LockedLogIsToldAfterTheSetHasBeenSaved) {
    machine.MakeFolders("C:\\Vantrel\\Vantrel.Log");
    Open();
    desktop.boxes.clear();
    SaveText(TextWithName("EDITED"));
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].title, "Error");
    EXPECT_TRUE(Tab().SaveAccepted);
    EXPECT_FALSE(Tab().Cmd_Save.Enabled());
    EXPECT_THAT(Saved(), HasSubstr("BackupFileName=EDITED\r\n"));
}

class ScratchSet : public EditorSave {
  protected:
    ScratchSet() { PutSet("Temp.INI", {.name = "TEMP"}); }
};

TEST_F(ScratchSet, IsASetLikeAnyOther) {
    Open();
    PickAndType("Temp.INI", TextWithName("EDITED"));
    Tab().Cmd_Save.UserPress();
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_THAT(machine.Content(kScratch), HasSubstr("BackupFileName=EDITED\r\n"));
    EXPECT_THAT(LogRecords(), ElementsAre("INI Temp.INI Edited"));
}

TEST_F(ScratchSet, RefusedSaveOfItKeepsItsOnlyCopy) {
    Open();
    PickAndType("Temp.INI", "no set");
    Tab().Cmd_Save.UserPress();
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(machine.Content(kScratch), SetText({.name = "TEMP"}));
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("DAILY.INI", "Temp.INI", "WEEKLY.INI"));
}

TEST_F(ScratchSet, NameInOtherCaseIsTheSameFile) {
    machine.files().Rename(kScratch, "C:\\Vantrel\\other.ini");
    machine.files().Rename("C:\\Vantrel\\other.ini", "C:\\Vantrel\\TEMP.ini");
    Open();
    PickAndType("TEMP.ini", "no set");
    Tab().Cmd_Save.UserPress();
    EXPECT_EQ(machine.Content(kScratch), SetText({.name = "TEMP"}));
}

// A scratch file of a refused save, overlooked because its folder could not be listed.
TEST_F(ScratchSet, WhatWasLeftInTheScratchFileIsNoPartOfTheNextSave) {
    FaultyFileSystem faulty(machine.files());
    platform::Machine failing = WithFiles(machine.machine(), faulty);
    forms::Program its_program{failing, desktop, program.globals};
    Frm_Mainmenu its_window(its_program);
    EditDaily(its_window);
    faulty.plan.Inject({.kind = Call::kList, .number = error_number::kPathFileAccess});
    its_window.Edit.Cmd_Save.UserPress();
    EXPECT_EQ(faulty.plan.Fired(), 1);
    EXPECT_TRUE(its_window.Edit.SaveAccepted);
    EXPECT_EQ(Saved(),
              SetText({.files = "C:\\DATA\\*.*", .name = "EDITED", .to_drive = "C:\\BACKUPS\\"}));
}

// At every step of a save that fails, the set holds its old text or the new one, whole.
TEST_F(EditorSave, GivenValidationComesBeforeTheLengthOfValues) {
    Open();
    PickAndType("DAILY.INI", SetText({.files = "C:\\" + std::string(300, 'X'), .time = "MAYBE"}));
    Tab().Cmd_Save.UserPress();
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_NE(desktop.boxes[0].text.find("TimeBackup does not indicate"), std::string::npos);
}

TEST_F(EditorSave, UsersOwnFilesWithNamesOfScratchFilesStay) {
    PutSet("Temp.INI", {});
    machine.PutFile(PathOf("Temp.INI.new"), "mine");
    machine.PutFile(PathOf("~Vantrel.new"), "mine, too");
    Open();
    PickAndType("Temp.INI", TextWithName("OTHER"));
    Tab().Cmd_Save.UserPress();
    EXPECT_TRUE(Tab().SaveAccepted);
    EXPECT_EQ(machine.Content(PathOf("Temp.INI.new")), "mine");
    EXPECT_EQ(machine.Content(PathOf("~Vantrel.new")), "mine, too");
    EXPECT_FALSE(machine.Exists(PathOf("~Vantrel1.new")));
}

}  // namespace
}  // namespace vantrel::test
