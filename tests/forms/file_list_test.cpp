#include "forms/file_lists.h"
#include "forms/folder_path.h"
#include "tests/forms/bare_form.h"

namespace vantrel::test {

namespace {

class FileLists : public FormsFixture {
  protected:
    FileLists() {
        for (const char* name :
             {"weekly.ini", "Daily.INI", "Notes.txt", "Old.ini2", "Letters.Ini"}) {
            machine.PutFile(std::string("C:\\Vantrel\\") + name, "x");
        }
        machine.MakeFolders("C:\\Vantrel\\Folder.ini");
        list.SetPath("C:\\Vantrel");
        list.Click = [this] { clicked.push_back(list.FileName()); };
    }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (int i = 0; i < list.Count(); ++i) {
            names.push_back(list.Item(i));
        }
        return names;
    }
    forms::FileList list{form, "Fil_INI", "*.INI"};
    std::vector<std::string> clicked;
};

TEST_F(FileLists, ShowPlainFilesOfTheExactExtensionSortedCaseAside) {
    EXPECT_EQ((std::vector<std::string>{"Daily.INI", "Letters.Ini", "weekly.ini"}), Names());
}

TEST_F(FileLists, LeaveOutHiddenAndSystemFiles) {
    machine.files().SetAttributes("C:\\Vantrel\\Daily.INI", platform::attribute::kHidden);
    machine.files().SetAttributes("C:\\Vantrel\\weekly.ini", platform::attribute::kSystem);
    list.Reload();
    EXPECT_EQ(std::vector<std::string>{"Letters.Ini"}, Names());
}

TEST_F(FileLists, StartAtTheApplicationFolder) {
    const forms::FileList fresh(form, "Fil_Fresh", "*.INI");
    EXPECT_EQ("C:\\Vantrel", fresh.Path());
    EXPECT_EQ(3, fresh.Count());
}

TEST_F(FileLists, ChoosingRaisesClickAndPuttingBackDoesNot) {
    list.SetIndex(1);
    list.RestoreIndex(2);
    EXPECT_EQ(std::vector<std::string>{"Letters.Ini"}, clicked);
    EXPECT_EQ("weekly.ini", list.FileName());
    EXPECT_EQ(380, ErrorOf([&] { list.SetIndex(3); }));
}

TEST_F(FileLists, ReadingAgainSelectsNothingAndRaisesNothing) {
    list.SetIndex(1);
    clicked.clear();
    list.SetPattern("*.INI");
    EXPECT_EQ(-1, list.Index());
    EXPECT_EQ("", list.FileName());
    EXPECT_TRUE(clicked.empty());
}

TEST_F(FileLists, RefuseAMissingFolderWithError76AndKeepTheirValue) {
    EXPECT_EQ(76, ErrorOf([&] { list.SetPath("C:\\Missing"); }));
    EXPECT_EQ("C:\\Vantrel", list.Path());
    EXPECT_EQ(3, list.Count());
}

TEST_F(FileLists, NameThePathThatTheyRefuseAsItWasGiven) {
    for (const std::string refused : {"c:\\Missing\\", "\\Missing", "Missing", ""}) {
        EXPECT_EQ("Path not found: " + refused, DescriptionOf([&] { list.SetPath(refused); }));
    }
    EXPECT_EQ("Invalid property value", DescriptionOf([&] { list.SetIndex(3); }));
}

TEST_F(FileLists, PathWithoutADriveIsOnTheApplicationDrive) {
    machine.AddDrive('V', platform::drive_type::kFixed);
    machine.process.application_folder = "V:\\Vantrel";
    machine.PutFile("V:\\Data\\There.ini", "x");
    list.SetPath("\\Data");
    EXPECT_EQ("V:\\Data", list.Path());
    EXPECT_EQ(std::vector<std::string>{"There.ini"}, Names());
}

TEST_F(FileLists, RightButtonReachesTheHandler) {
    int button = 0;
    list.MouseDown = [&](int pressed) { button = pressed; };
    list.UserMouseDown(2);
    EXPECT_EQ(2, button);
}

}  // namespace
}  // namespace vantrel::test
