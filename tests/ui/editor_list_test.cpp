// Refreshing the editor's list and deleting sets.
#include "common/error.h"
#include "tests/support/matchers.h"
#include "tests/ui/editor_fixture.h"

namespace vantrel::test {
namespace {

class EditorList : public EditorFixture {
  protected:
    EditorList() {
        for (const char* name : {"A.INI", "B.INI", "C.INI", "D.INI"}) {
            PutSet(name, {});
        }
    }
    void ExpectCleared() {
        EXPECT_EQ(Tab().Fld_INI.Text(), "");
        EXPECT_EQ(Tab().Lbl_INIContents.Caption(), "INI File Contents");
        EXPECT_EQ(Tab().CurrentINI, "");
        EXPECT_EQ(Tab().Fil_INI.Index(), -1);
    }
    void Remove(const std::string& name) { machine.files().RemoveFile(PathOf(name)); }
};

TEST_F(EditorList, RefreshFindsNewFilesAndClearsTheEditor) {
    Open();
    Pick("B.INI");
    PutSet("E.INI", {});
    Tab().Cmd_INIRefresh.UserPress();
    EXPECT_EQ(Tab().Fil_INI.Count(), 5);
    ExpectCleared();
}

TEST_F(EditorList, RefreshWithNothingSelectedClears) {
    Open();
    Tab().Fld_INI.UserType("text of no file");
    Tab().Cmd_INIRefresh.UserPress();
    ExpectCleared();
}

TEST_F(EditorList, RefreshClearsAlsoWhenTheLastSelectedFileIsGone) {
    Open();
    Pick("D.INI");
    Remove("D.INI");
    Tab().Cmd_INIRefresh.UserPress();
    ExpectCleared();
}

// The comparison's direction is meant: the one case in which the index is selected again is one in
// which there is no such entry any more.
TEST_F(EditorList, RefreshAfterTwoFilesWentSelectsAnIndexThatIsGoneAndClearsNothing) {
    Open();
    Pick("D.INI");
    const std::string text = Tab().Fld_INI.Text();
    Remove("A.INI");
    Remove("B.INI");
    Tab().Cmd_INIRefresh.UserPress();
    ExpectError("Invalid property value");
    EXPECT_EQ(Tab().Fld_INI.Text(), text);
    EXPECT_EQ(Tab().CurrentINI, "D.INI");
    EXPECT_THAT(Listed(), ElementsAre("C.INI", "D.INI"));
}

TEST_F(EditorList, RefreshOfANonEmptyEditorIsAChangeAndChoosingAFileAfterwardsAsksNothing) {
    Open();
    Pick("A.INI");
    EXPECT_FALSE(Tab().Cmd_Save.Enabled());
    Tab().Cmd_INIRefresh.UserPress();
    EXPECT_TRUE(Tab().Cmd_Save.Enabled());
    Pick("B.INI");
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(Tab().CurrentINI, "B.INI");
    EXPECT_FALSE(Tab().Cmd_Save.Enabled());
}

TEST_F(EditorList, RefreshOfAnEmptyEditorIsNoChange) {
    Open();
    Tab().Cmd_INIRefresh.UserPress();
    EXPECT_FALSE(Tab().Cmd_Save.Enabled());
}

TEST_F(EditorList, ComingBackToTheTabRefreshes) {
    Open();
    Pick("A.INI");
    PutSet("E.INI", {});
    window->TAB_Backup.SetTab(1);
    window->TAB_Backup.SetTab(2);
    EXPECT_EQ(Tab().Fil_INI.Count(), 5);
    ExpectCleared();
}

TEST_F(EditorList, RightButtonOpensTheOptionsMenuAndTheLeftDoesNot) {
    Open();
    Tab().Fil_INI.UserMouseDown(1);
    EXPECT_EQ(window->Menu_Options.PopUps(), 0);
    Tab().Fil_INI.UserMouseDown(2);
    EXPECT_EQ(window->Menu_Options.PopUps(), 1);
}

TEST_F(EditorList, DeletingWithNothingSelectedDoesNothing) {
    Open();
    window->Menu_Options_Delete.UserChoose();
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(EditorList, DeletingAsksWithNoAsDefault) {
    Open();
    Pick("B.INI");
    window->Menu_Options_Delete.UserChoose();
    ExpectBox("Are you sure that you wish to delete B.INI", forms::Icon::kNone, "Delete File");
    EXPECT_EQ(desktop.boxes[0].buttons, forms::Buttons::kYesNo);
    EXPECT_EQ(desktop.boxes[0].default_button, 2);
    EXPECT_TRUE(machine.Exists(PathOf("B.INI")));
    EXPECT_EQ(Tab().CurrentINI, "B.INI");
}

TEST_F(EditorList, DeletingRemovesTheFileRefreshesAndWritesNoRecord) {
    Open();
    Pick("B.INI");
    desktop.answers = {forms::Answer::kYes};
    window->Menu_Options_Delete.UserChoose();
    EXPECT_FALSE(machine.Exists(PathOf("B.INI")));
    EXPECT_THAT(Listed(), ElementsAre("A.INI", "C.INI", "D.INI"));
    ExpectCleared();
    EXPECT_THAT(LogRecords(), IsEmpty());
}

TEST_F(EditorList, DeletingTheSelectedSetTakesItFromTheBackupListAndNotFromTheRestoreList) {
    Open();
    window->Backup.Cmb_BackupSet.SetText("B.INI");
    Pick("B.INI");
    desktop.answers = {forms::Answer::kYes};
    window->Menu_Options_Delete.UserChoose();
    EXPECT_THAT(EntriesOf(window->Backup.Cmb_BackupSet),
                ::testing::UnorderedElementsAre("A.INI", "C.INI", "D.INI"));
    EXPECT_EQ(window->Backup.Cmb_BackupSet.Text(), "");
    EXPECT_THAT(EntriesOf(window->Restore.Cmb_RestoreFile), ::testing::Contains("B.INI"));
    window->TAB_Backup.SetTab(0);  // and nothing falls over what is gone
    EXPECT_EQ(desktop.boxes.size(), 1u);
}

TEST_F(EditorList, DeletingComparesNamesToTheLetter) {
    Open();
    window->Backup.Cmb_BackupSet.Add("b.ini");
    Pick("B.INI");
    desktop.answers = {forms::Answer::kYes};
    window->Menu_Options_Delete.UserChoose();
    EXPECT_THAT(EntriesOf(window->Backup.Cmb_BackupSet), ::testing::Contains("b.ini"));
}

// The walk's end is counted before it and a removal moves the next entry past it.
TEST_F(EditorList, DeletingSkipsTheEntryBehindARemovedOne) {
    Open();
    auto& sets = window->Backup.Cmb_BackupSet;
    sets.Clear();
    for (const char* name : {"B.INI", "B.INI", "A.INI"}) {
        sets.Add(name);
    }
    Pick("B.INI");
    desktop.answers = {forms::Answer::kYes};
    window->Menu_Options_Delete.UserChoose();
    EXPECT_THAT(EntriesOf(sets), ElementsAre("B.INI", "A.INI"));
}

TEST_F(EditorList, DeletingAFileThatIsGoneAlreadyTakesItFromTheLists) {
    Open();
    Pick("B.INI");
    Remove("B.INI");
    desktop.answers = {forms::Answer::kYes};
    window->Menu_Options_Delete.UserChoose();
    EXPECT_EQ(desktop.boxes.size(), 1u);
    EXPECT_THAT(Listed(), ElementsAre("A.INI", "C.INI", "D.INI"));
    EXPECT_EQ(window->Backup.Cmb_BackupSet.Count(), 3);
}

TEST_F(EditorList, DeletingAProtectedFileIsAnErrorAndKeepsIt) {
    Open();
    Pick("B.INI");
    machine.files().SetAttributes(PathOf("B.INI"), platform::attribute::kReadOnly);
    desktop.answers = {forms::Answer::kYes};
    window->Menu_Options_Delete.UserChoose();
    ExpectError("Permission denied", 2);
    EXPECT_EQ(window->Backup.Cmb_BackupSet.Count(), 4);
    EXPECT_EQ(Tab().CurrentINI, "B.INI");
}

}  // namespace
}  // namespace vantrel::test
