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
    }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (int i = 0; i < list.Count(); ++i) {
            names.push_back(list.Item(i));
        }
        return names;
    }
    forms::FileList list{form, "Fil_INI", "*.INI"};
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

}  // namespace
}  // namespace vantrel::test
