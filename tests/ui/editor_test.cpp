// Showing set files, and the question about unsaved changes.
#include "tests/support/matchers.h"
#include "tests/ui/editor_fixture.h"

namespace vantrel::test {
namespace {

class Editor : public EditorFixture {
  protected:
    Editor() {
        PutSet("DAILY.INI", {.name = "DAILY"});
        PutSet("WEEKLY.INI", {.name = "WEEKLY"});
    }
};

TEST_F(Editor, ShowingTheTabListsTheSetFilesSorted) {
    PutSet("another.ini", {});
    machine.PutFile("C:\\Vantrel\\Notes.txt", "");
    Open();
    EXPECT_THAT(Listed(), ElementsAre("another.ini", "DAILY.INI", "WEEKLY.INI"));
}

TEST_F(Editor, NothingIsEditedAtFirst) {
    Open();
    EXPECT_FALSE(Tab().Cmd_Save.Enabled());
    EXPECT_EQ(Tab().CurrentINI, "");
    EXPECT_EQ(Tab().Lbl_INIContents.Caption(), "INI File Contents");
    EXPECT_FALSE(Tab().ConfirmSave);
    EXPECT_FALSE(Tab().SaveAccepted);
}

TEST_F(Editor, PickingAFileShowsItCleanUnderItsName) {
    Open();
    Pick("DAILY.INI");
    EXPECT_EQ(Tab().Fld_INI.Text(), TextWithName("DAILY"));
    EXPECT_EQ(Tab().Lbl_INIContents.Caption(), "INI File Contents - DAILY.INI");
    EXPECT_EQ(Tab().CurrentINI, "DAILY.INI");
    EXPECT_FALSE(Tab().Cmd_Save.Enabled());
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Editor, FirstChangeEnablesSave) {
    Open();
    PickAndType("DAILY.INI", "x");
    EXPECT_TRUE(Tab().Cmd_Save.Enabled());
}

TEST_F(Editor, FileThatVanishedBetweenListAndShowIsAnEmptyText) {
    Open();
    machine.files().RemoveFile(PathOf("DAILY.INI"));
    Pick("DAILY.INI");
    EXPECT_EQ(Tab().Fld_INI.Text(), "");
    EXPECT_EQ(Tab().CurrentINI, "DAILY.INI");
    EXPECT_FALSE(Tab().Cmd_Save.Enabled());
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Editor, ChoosingAnotherFileWithoutChangesAsksNothing) {
    Open();
    Pick("DAILY.INI");
    Pick("WEEKLY.INI");
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(Tab().CurrentINI, "WEEKLY.INI");
}

TEST_F(Editor, ChoosingAnotherFileWithChangesAsksWithNoAsDefault) {
    Open();
    PickAndType("DAILY.INI", "x");
    Pick("WEEKLY.INI");
    ASSERT_EQ(desktop.boxes.size(), 1u);
    const forms::Box& box = desktop.boxes[0];
    EXPECT_EQ(box.text,
              "You have not saved your changes to DAILY.INI.\r\nDo you wish to do this now?");
    EXPECT_EQ(box.title, "Changes");
    EXPECT_EQ(box.buttons, forms::Buttons::kYesNo);
    EXPECT_EQ(box.default_button, 2);
    EXPECT_EQ(box.icon, forms::Icon::kNone);
}

TEST_F(Editor, AnsweringNoLosesTheEditsWithoutALogRecord) {
    Open();
    PickAndType("DAILY.INI", TextWithName("EDITED"));
    desktop.answers = {forms::Answer::kNo};
    Pick("WEEKLY.INI");
    EXPECT_EQ(Tab().Fld_INI.Text(), TextWithName("WEEKLY"));
    EXPECT_EQ(Tab().CurrentINI, "WEEKLY.INI");
    EXPECT_FALSE(Tab().Cmd_Save.Enabled());
    EXPECT_EQ(machine.Content(PathOf("DAILY.INI")), SetText({.name = "DAILY"}));
    EXPECT_THAT(LogRecords(), IsEmpty());
    EXPECT_FALSE(machine.Exists(PathOf("Temp.INI")));
}

TEST_F(Editor, AnsweringYesSavesTheOldFileAndShowsTheNewOne) {
    Open();
    PickAndType("DAILY.INI", TextWithName("EDITED"));
    desktop.answers = {forms::Answer::kYes};
    Pick("WEEKLY.INI");
    EXPECT_EQ(
        machine.Content(PathOf("DAILY.INI")).find("BackupFileName=EDITED\r\n") != std::string::npos,
        true);
    EXPECT_EQ(Tab().CurrentINI, "WEEKLY.INI");
    EXPECT_EQ(Tab().Fld_INI.Text(), TextWithName("WEEKLY"));
    EXPECT_EQ(Tab().Fil_INI.FileName(), "WEEKLY.INI");
    EXPECT_FALSE(Tab().Cmd_Save.Enabled());
    EXPECT_THAT(LogRecords(), ElementsAre("INI DAILY.INI Edited"));
    EXPECT_EQ(desktop.boxes.size(), 1u);
}

TEST_F(Editor, AnsweringYesWithATextThatFailsKeepsTheOldFileSelectedAndTheEditedText) {
    Open();
    PickAndType("DAILY.INI", "nothing of a set");
    desktop.answers = {forms::Answer::kYes};
    int clicks = 0;
    Tab().Fil_INI.Click = [&, handler = Tab().Fil_INI.Click] {
        ++clicks;
        handler();
    };
    Pick("WEEKLY.INI");
    EXPECT_EQ(Tab().Fil_INI.FileName(), "DAILY.INI");
    EXPECT_EQ(clicks, 1) << "putting the selection back is no click";
    EXPECT_EQ(Tab().Fld_INI.Text(), "nothing of a set");
    EXPECT_EQ(Tab().CurrentINI, "DAILY.INI");
    EXPECT_TRUE(Tab().Cmd_Save.Enabled());
    EXPECT_EQ(machine.Content(PathOf("DAILY.INI")), SetText({.name = "DAILY"}));
    ASSERT_EQ(desktop.boxes.size(), 2u);
    EXPECT_EQ(desktop.boxes[1].title, "INI Validation");
}

TEST_F(Editor, SaveOfAFileThatCannotBeWrittenKeepsTheEditedText) {
    Open();
    machine.files().SetAttributes(PathOf("DAILY.INI"), platform::attribute::kReadOnly);
    PickAndType("DAILY.INI", TextWithName("EDITED"));
    desktop.answers = {forms::Answer::kYes};
    Pick("WEEKLY.INI");
    ExpectError("Permission denied", 2);
    EXPECT_EQ(Tab().Fil_INI.FileName(), "DAILY.INI");
    EXPECT_EQ(Tab().Fld_INI.Text(), TextWithName("EDITED"));
    EXPECT_TRUE(Tab().Cmd_Save.Enabled());
}

TEST_F(Editor, FileThatCannotBeReadIsAnErrorBox) {
    Open();
    machine.files().RemoveFile(PathOf("DAILY.INI"));
    machine.PutFile(PathOf("DAILY.INI"), "x");
    desktop.on_events.push_back([&] {
        machine.files().RemoveFile(PathOf("DAILY.INI"));
        machine.MakeFolders(PathOf("DAILY.INI"));
    });
    Pick("DAILY.INI");
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].title, "Error");
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
}

TEST_F(Editor, FilePickedWhileAnotherIsBeingShownComesAfterIt) {
    Open();
    Tab().Fld_INI.UserType("something to be emptied");
    desktop.on_events.push_back([&] { Pick("WEEKLY.INI"); });
    Pick("DAILY.INI");
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(Tab().CurrentINI, "WEEKLY.INI");
    EXPECT_EQ(Tab().Fld_INI.Text(), TextWithName("WEEKLY"));
    EXPECT_EQ(Tab().Fil_INI.FileName(), "WEEKLY.INI");
}

TEST_F(Editor, DoubleClickShowsAFileOnceAndAsksNothing) {
    Open();
    Pick("WEEKLY.INI");
    desktop.do_events_calls = 0;
    desktop.on_events.push_back([&] { Pick("DAILY.INI"); });
    Pick("DAILY.INI");
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(Tab().Fld_INI.Text(), TextWithName("DAILY"));
    EXPECT_EQ(desktop.do_events_calls, 1);
}

TEST_F(Editor, ClosingTheWindowAsksNothingAboutUnsavedChanges) {
    Open();
    PickAndType("DAILY.INI", "x");
    desktop.Unload(*window);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(machine.Content(PathOf("DAILY.INI")), SetText({.name = "DAILY"}));
}

}  // namespace
}  // namespace vantrel::test
