// The Backup tab's two lists on a machine that changes behind the window's back.

#include <algorithm>

#include "tests/support/matchers.h"
#include "tests/ui/main_window_fixture.h"

namespace vantrel::test {
namespace {

constexpr const char* kUnstorable = "C:\\\xE6\x96\x87";  // a Chinese character

class BackupLists : public MainWindowFixture {
  protected:
    BackupLists() {
        MakeSourceAndDestination();
        PutSet("ALL.INI", {});
    }
    void Open() { LoadWindow(); }
    void Select(const std::string& name) {
        Tab().Cmb_BackupSet.SetText(name);
        Tab().Cmd_Change.Press();
    }
    BackupTab& Tab() { return window->Backup; }
    std::vector<std::string> Shown() {
        std::vector<std::string> names;
        for (const auto& entry : Tab().Dir_DirList.Entries()) {
            names.push_back(entry.name);
        }
        return names;
    }
    int IndexOf(const std::string& name) {
        const auto names = Shown();
        const auto found = std::find(names.begin(), names.end(), name);
        EXPECT_NE(found, names.end()) << name;
        return static_cast<int>(found - names.begin());
    }
    std::vector<std::string> Told() {
        std::vector<std::string> texts;
        for (const forms::Box& box : desktop.boxes) {
            texts.push_back(box.text);
        }
        return texts;
    }
};

TEST_F(BackupLists, OpeningAFolderThatIsGoneIsToldAndThePathStays) {
    Open();
    Select("ALL.INI");
    const int sub = IndexOf("Sub");
    machine.files().RemoveFile("C:\\Data\\Sub\\b.txt");
    machine.files().RemoveFolder("C:\\Data\\Sub");
    Tab().Dir_DirList.UserOpen(sub);
    ExpectError("Path not found: C:\\Data\\Sub");
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\Data");
    EXPECT_THAT(Shown(), Not(Contains("Sub")));
    EXPECT_EQ(machine.Content("C:\\Vantrel\\ALL.INI"), SetText({}));
    Tab().Dir_DirList.UserOpen(IndexOf("C:\\"));
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\");
}

TEST_F(BackupLists, UnstorableFolderIsRefusedBeforeAnyMove) {
    machine.process.application_folder = "C:\\";  // where the lists begin: loading moves none
    machine.MakeFolders(kUnstorable);
    Open();
    Tab().Dir_DirList.SetPath(kUnstorable);
    EXPECT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\");
}

TEST_F(BackupLists, UnstorableFolderLeadsBackToWhereTheListBegan) {
    machine.MakeFolders(kUnstorable);
    window = std::make_unique<Frm_Mainmenu>(program);
    Tab().Dir_DirList.SetPath(kUnstorable);
    EXPECT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\Vantrel");
}

TEST_F(BackupLists, UnstorableFolderChangesNoSetThatTheListsDoNotShow) {
    machine.AddDrive('A', platform::drive_type::kRemovable, "", false);
    machine.MakeFolders(kUnstorable);
    const SetValues values{.files = "A:\\*.DOC"};
    PutSet("FLOPPY.INI", values);
    Open();
    Select("FLOPPY.INI");
    Tab().Dir_DirList.SetPath(kUnstorable);
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\");
    EXPECT_EQ(machine.Content("C:\\Vantrel\\FLOPPY.INI"), SetText(values));
}

TEST_F(BackupLists, UnstorableFolderIsRefusedWhenTheLastGoodOneIsGone) {
    machine.AddDrive('E', platform::drive_type::kFixed);
    machine.MakeFolders("E:\\Work");
    const std::string unstorable = "E:\\\xE6\x96\x87";
    machine.MakeFolders(unstorable);
    PutSet("WORK.INI", {.files = "E:\\Work\\*.*"});
    Open();
    Select("WORK.INI");
    machine.files().RemoveFolder("E:\\Work");
    Tab().Dir_DirList.SetPath(unstorable);
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_THAT(desktop.boxes[0].text, ::testing::HasSubstr(unstorable));
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\");
    EXPECT_EQ(Tab().Dri_DriveList.Drive().substr(0, 2), "c:");
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WORK.INI"), SetText({.files = "E:\\Work\\*.*"}));
}

TEST_F(BackupLists, SetOnADriveThatCameLaterIsShownWhenTheTabIsShownAgain) {
    PutSet("STICK.INI", {.files = "T:\\Photos\\*.*"});
    Open();
    Select("STICK.INI");
    EXPECT_EQ(desktop.boxes.size(), 1u);  // the drive is missing
    machine.AddDrive('T', platform::drive_type::kRemovable, "STICK");
    machine.MakeFolders("T:\\Photos");
    window->TAB_Backup.SetTab(1);
    window->TAB_Backup.SetTab(0);
    EXPECT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(Tab().Dri_DriveList.Drive(), "t: [STICK]");
    EXPECT_EQ(Tab().Dir_DirList.Path(), "T:\\Photos");
    EXPECT_EQ(StoredSource("STICK.INI"), "T:\\Photos\\*.*");
}

TEST_F(BackupLists, DriveThatWentIsToldWhenItIsChosenAndTheFolderStays) {
    machine.AddDrive('E', platform::drive_type::kFixed);
    Open();
    Select("ALL.INI");
    machine.SetReady('E', false);
    machine.drives.drives.erase('E');
    Tab().Dri_DriveList.UserChoose(1);
    EXPECT_THAT(Told(), ::testing::ElementsAre("Path not found: e:"));
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\Data");
    EXPECT_EQ(machine.Content("C:\\Vantrel\\ALL.INI"), SetText({}));
}

}  // namespace
}  // namespace vantrel::test
