// The Backup tab's two lists on a machine that changes behind the window's back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/program_fixture.h"
#include "ui/Frm_Mainmenu.h"

namespace vantrel::test {
namespace {

using ::testing::Contains;
using ::testing::Not;

class BackupLists : public ProgramFixture {
  protected:
    BackupLists() {
        MakeSourceAndDestination();
        PutSet("ALL.INI", {});
    }
    void Open() {
        window = std::make_unique<Frm_Mainmenu>(program);
        desktop.Load(*window);
    }
    void Select(const std::string& name) {
        Tab().Cmb_BackupSet.SetText(name);
        Tab().Cmd_Change.Press();
    }
    BackupTab& Tab() { return window->Backup; }
    std::vector<std::string> Shown() {
        std::vector<std::string> names;
        for (const auto& entry : Tab().Dir_DirList.Entries()) names.push_back(entry.name);
        return names;
    }
    int IndexOf(const std::string& name) {
        const auto names = Shown();
        const auto found = std::find(names.begin(), names.end(), name);
        EXPECT_NE(found, names.end()) << name;
        return static_cast<int>(found - names.begin());
    }
    std::unique_ptr<Frm_Mainmenu> window;
};

TEST_F(BackupLists, OpeningAFolderThatIsGoneIsToldAndThePathStays) {
    Open();
    Select("ALL.INI");
    const int sub = IndexOf("Sub");
    machine.files().RemoveFile("C:\\Data\\Sub\\b.txt");
    machine.files().RemoveFolder("C:\\Data\\Sub");
    Tab().Dir_DirList.UserOpen(sub);
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].text, "Path not found");
    EXPECT_EQ(desktop.boxes[0].icon, forms::Icon::kCritical);
    EXPECT_EQ(desktop.boxes[0].title, "Error");
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\Data");
    EXPECT_THAT(Shown(), Not(Contains("Sub")));
    EXPECT_EQ(machine.Content("C:\\Vantrel\\ALL.INI"), SetText({}));
    Tab().Dir_DirList.UserOpen(IndexOf("C:\\"));
    EXPECT_EQ(Tab().Dir_DirList.Path(), "C:\\");
}

}  // namespace
}  // namespace vantrel::test
