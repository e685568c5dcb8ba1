#include "tests/support/matchers.h"
#include "tests/ui/editor_fixture.h"

namespace vantrel::test {
namespace {

class NewBackup : public EditorFixture {
  protected:
    void Type(const std::string& name) {
        if (!window) {
            LoadWindow();
        }
        desktop.inputs = {name};
        window->Backup.Cmd_AddNew.UserPress();
    }
    void ExpectBadName(const std::string& name) {
        Type(name);
        ASSERT_EQ(desktop.boxes.size(), 1u) << name;
        EXPECT_EQ(desktop.boxes[0].text, "Bad file name or number");
        EXPECT_EQ(desktop.boxes[0].icon, forms::Icon::kCritical);
        EXPECT_EQ(desktop.boxes[0].title, "Error");
        desktop.boxes.clear();
        EXPECT_THAT(machine.Names("C:\\Vantrel"), IsEmpty()) << name;
        EXPECT_EQ(Backup().Cmb_BackupSet.Count(), 0) << name;
        EXPECT_EQ(window->Restore.Cmb_RestoreFile.Count(), 0) << name;
        EXPECT_EQ(Backup().Fld_BackupOptions.Caption(), "");
    }
};

TEST_F(NewBackup, AsksForTheName) {
    Type("Weekly");
    ASSERT_EQ(desktop.input_boxes.size(), 1u);
    EXPECT_EQ(desktop.input_boxes[0].prompt, "Please enter the name of the Configuration File.");
    EXPECT_EQ(desktop.input_boxes[0].title, "New Configuration");
    EXPECT_EQ(desktop.input_boxes[0].default_text, "");
}

TEST_F(NewBackup, EmptiesTheMessageTextOnceThereIsAName) {
    program.globals.MessageText = "left over";
    Type("");
    EXPECT_EQ(program.globals.MessageText, "left over");
    Type("Weekly");
    EXPECT_EQ(program.globals.MessageText, "");
}

TEST_F(NewBackup, TypingWeeklyCreatesWeeklyIni) {
    Type("Weekly");
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("Weekly.INI"));
    EXPECT_THAT(machine.Content(PathOf("Weekly.INI")), HasSubstr("BackupFileName=WEEKLY\r\n"));
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(NewBackup, TypingWeeklyIniInLowerCaseKeepsThatCase) {
    Type("weekly.ini");
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("weekly.ini"));
    EXPECT_EQ(Backup().Cmb_BackupSet.Text(), "weekly.ini");
}

TEST_F(NewBackup, OtherExtensionsAreKeptInFrontOfIni) {
    Type("Weekly.txt");
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("Weekly.txt.INI"));
}

TEST_F(NewBackup, CancelAndAnEmptyAnswerDoNothing) {
    Type("");
    EXPECT_THAT(machine.Names("C:\\Vantrel"), IsEmpty());
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(NewBackup, NewSetStandsAtTheEndOfBothListsAndIsSelected) {
    PutSet("Z.INI", {});
    Type("Weekly");
    EXPECT_THAT(EntriesOf(Backup().Cmb_BackupSet), ElementsAre("Z.INI", "Weekly.INI"));
    EXPECT_THAT(EntriesOf(window->Restore.Cmb_RestoreFile), ElementsAre("Z.INI", "Weekly.INI"));
    EXPECT_EQ(Backup().Cmb_BackupSet.Text(), "Weekly.INI");
}

TEST_F(NewBackup, SelectionShowsWhatTheFileSays) {
    Type("Weekly");
    EXPECT_EQ(Backup().Dir_DirList.Path(), "C:\\");
    EXPECT_EQ(Backup().Lbl_FilestoBackup.Caption(), "*.*");
    EXPECT_EQ(Backup().Lbl_BackupFileName.Caption(), "WEEKLY");
    EXPECT_EQ(Backup().Fld_BackupWhere.Caption(), "C:\\");
    EXPECT_EQ(Backup().Fld_BackupOptions.Caption(), "SubDir=OFF, MultiVolume=ON, Time=ON");
}

// The summary shown before the selection is not what the file says; both are meant.
TEST_F(NewBackup, SummaryBeforeTheSelectionIsAnotherAndTheListsStandAtTheRoot) {
    LoadWindow();
    Backup().Dir_DirList.SetPath("C:\\Data");
    std::vector<std::string> seen;
    Backup().Cmb_BackupSet.Click = [&] {
        seen = {Backup().Fld_BackupWhere.Caption(), Backup().Fld_BackupOptions.Caption(),
                Backup().Dir_DirList.Path()};
    };
    Type("Weekly");
    EXPECT_THAT(seen, ElementsAre("C:\\", "SubDir=ON, MultiVolume=OFF, Time=ON", "C:\\"));
}

TEST_F(NewBackup, SetThatWasSelectedBeforeKeepsItsSource) {
    PutSet("DAILY.INI", {});
    LoadWindow();
    Backup().Cmb_BackupSet.SetText("DAILY.INI");
    Type("Weekly");
    EXPECT_EQ(machine.Content(PathOf("DAILY.INI")), SetText({}));
}

TEST_F(NewBackup, NameOfAnExistingFileInOtherCaseIsRefusedAndThatSetSelected) {
    PutSet("Daily.ini", {.name = "OLD"});
    Type("DAILY");
    ExpectBox("Unable to Save the Configuration File as it already exists.",
              forms::Icon::kExclamation, "Backup");
    EXPECT_EQ(Backup().Cmb_BackupSet.Text(), "Daily.ini");
    EXPECT_EQ(Backup().Cmb_BackupSet.Count(), 1);
    EXPECT_EQ(machine.Content(PathOf("Daily.ini")), SetText({.name = "OLD"}));
}

TEST_F(NewBackup, FileThatCameAfterTheListsWereFilledIsRefusedInOneBoxAndNotSelected) {
    LoadWindow();
    PutSet("Late.INI", {.name = "LATE"});
    Type("Late");
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].title, "Backup");
    EXPECT_EQ(Backup().Cmb_BackupSet.Text(), "");
    EXPECT_EQ(machine.Content(PathOf("Late.INI")), SetText({.name = "LATE"}));
}

TEST_F(NewBackup, ScratchFileOfTheEditorIsNeverWrittenOver) {
    PutSet("Temp.INI", {.name = "MINE"});
    Type("temp");
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(machine.Content(PathOf("Temp.INI")), SetText({.name = "MINE"}));
    EXPECT_EQ(Backup().Cmb_BackupSet.Text(), "Temp.INI");
}

TEST_F(NewBackup, HiddenFileIsNeverWrittenOver) {
    PutSet("Weekly.INI", {.name = "MINE"});
    machine.files().SetAttributes(PathOf("Weekly.INI"), platform::attribute::kHidden);
    Type("Weekly");
    ASSERT_FALSE(desktop.boxes.empty());
    EXPECT_EQ(desktop.boxes[0].title, "Backup");
    EXPECT_EQ(machine.Content(PathOf("Weekly.INI")), SetText({.name = "MINE"}));
}

TEST_F(NewBackup, ForbiddenCharactersAreABadNameAndLeaveNothing) {
    for (const char* name : {"a*b", "a?b", "a\"b", "a<b", "a>b", "a|b", "a:b", "a\tb"}) {
        ExpectBadName(name);
    }
}

TEST_F(NewBackup, NameWithAFolderOrADriveIsABadName) {
    machine.MakeFolders("C:\\Vantrel\\Sub");
    for (const char* name : {"Sub\\Weekly", "..\\Weekly", "Sub/Weekly", "C:\\Weekly"}) {
        Type(name);
        ASSERT_EQ(desktop.boxes.size(), 1u) << name;
        desktop.boxes.clear();
    }
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("Sub\\"));
    EXPECT_THAT(machine.Names("C:\\Vantrel\\Sub"), IsEmpty());
}

TEST_F(NewBackup, NameOfADeviceIsABadName) {
    for (const char* name :
         {"con", "NUL.ini", "aux.txt", "PRN ", "COM1", "lpt9.INI", "CONIN$", "com\xC2\xB9"}) {
        ExpectBadName(name);
    }
}

TEST_F(NewBackup, NameThatOnlyBeginsLikeADeviceIsGood) {
    Type("Conrad");
    Type("COM10");
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("COM10.INI", "Conrad.INI"));
}

TEST_F(NewBackup, NameThatTheCodePageCannotHoldIsABadName) { ExpectBadName("\xE6\x96\x87"); }

TEST_F(NewBackup, NameOfOnlyTheExtensionMakesASetWithoutAnArchiveName) {
    Type(".INI");
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre(".INI"));
    EXPECT_THAT(machine.Content(PathOf(".INI")), HasSubstr("BackupFileName=\r\n"));
    EXPECT_EQ(Backup().Cmb_BackupSet.Text(), ".INI");
}

TEST_F(NewBackup, NameShorterThanAnExtensionIsGood) {
    Type("W");
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("W.INI"));
}

TEST_F(NewBackup, DeletedSetCanBeMadeAgain) {
    Type("Weekly");
    window->TAB_Backup.SetTab(2);
    Pick("Weekly.INI");
    desktop.answers = {forms::Answer::kYes};
    window->Menu_Options_Delete.UserChoose();
    Type("Weekly");
    EXPECT_EQ(Backup().Cmb_BackupSet.Text(), "Weekly.INI");
    EXPECT_EQ(Backup().Cmb_BackupSet.Count(), 1);
    EXPECT_EQ(window->Restore.Cmb_RestoreFile.Count(), 2);
}

TEST_F(NewBackup, SetThatCannotBeMadeIsInNoListAndTheShownOneStays) {
    PutSet("DAILY.INI", {});
    LoadWindow();
    Backup().Cmb_BackupSet.SetText("DAILY.INI");
    for (int i = 0; i < 1000; ++i) {  // where the file would be written first
        const std::string number = i == 0 ? "" : std::to_string(i);
        machine.MakeFolders("C:\\Vantrel\\~Vantrel" + number + ".new");
    }
    const std::string options = Backup().Fld_BackupOptions.Caption();
    Type("Weekly");
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].title, "Error");
    EXPECT_EQ(Backup().Cmb_BackupSet.Text(), "DAILY.INI");
    EXPECT_THAT(EntriesOf(Backup().Cmb_BackupSet), ElementsAre("DAILY.INI"));
    EXPECT_THAT(EntriesOf(window->Restore.Cmb_RestoreFile), ElementsAre("DAILY.INI"));
    EXPECT_EQ(Backup().Fld_BackupWhere.Caption(), "C:\\Backups\\");
    EXPECT_EQ(Backup().Fld_BackupOptions.Caption(), options);
    EXPECT_NE(options, "SubDir=ON, MultiVolume=OFF, Time=ON");
    EXPECT_EQ(Backup().Dri_DriveList.Drive(), "c:");
    EXPECT_EQ(Backup().Dir_DirList.Path(), "C:\\Data");
}

}  // namespace
}  // namespace vantrel::test
