#include "forms/file_lists.h"
#include "tests/forms/bare_form.h"

namespace vantrel::test {

namespace {

namespace type = platform::drive_type;

class DriveLists : public FormsFixture {
  protected:
    DriveLists() {
        machine.AddDrive('A', type::kRemovable, "", false);
        machine.AddDrive('D', type::kCdRom, "MUSIC");
        machine.AddDrive('N', type::kRemote);
    }
    std::vector<std::string> changes;
    void Watch(forms::DriveList& list) {
        list.Change = [this, &list] { changes.push_back(list.Drive()); };
    }
};

TEST_F(DriveLists, ShowDrivesInOrderWithTheirLabels) {
    forms::DriveList list(form, "Dri_DriveList");
    EXPECT_EQ((std::vector<std::string>{"a:", "c:", "d: [MUSIC]", "n:"}), list.Entries());
}

TEST_F(DriveLists, ShowOnlyTypesFromRemovableToRamDisk) {
    machine.AddDrive('E', type::kUnknown);
    machine.AddDrive('R', type::kRamDisk);
    forms::DriveList list(form, "Dri_DriveList");
    EXPECT_EQ((std::vector<std::string>{"a:", "c:", "d: [MUSIC]", "n:", "r:"}), list.Entries());
}

TEST_F(DriveLists, StartAtTheDriveOfTheApplicationFolder) {
    forms::DriveList list(form, "Dri_DriveList");
    EXPECT_EQ("c:", list.Drive());
}

TEST_F(DriveLists, TakeADriveFromAnyTextThatBeginsWithIt) {
    forms::DriveList list(form, "Dri_DriveList");
    Watch(list);
    list.SetDrive("D:\\Some\\Folder");
    list.SetDrive("n:");
    list.SetDrive("d: [MUSIC]");
    EXPECT_EQ((std::vector<std::string>{"d: [MUSIC]", "n:", "d: [MUSIC]"}), changes);
}

TEST_F(DriveLists, RefuseWithError68AndKeepTheirValue) {
    forms::DriveList list(form, "Dri_DriveList");
    Watch(list);
    for (const char* refused : {"X:\\", "A:\\", "\\", "\\\\server\\share", "", "C", "::"}) {
        EXPECT_EQ(68, ErrorOf([&] { list.SetDrive(refused); })) << refused;
    }
    EXPECT_EQ("c:", list.Drive());
    EXPECT_TRUE(changes.empty());
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(DriveLists, NameThePathThatTheyRefuseAsItWasGiven) {
    machine.AddDrive('E', type::kUnknown);
    forms::DriveList list(form, "Dri_DriveList");
    for (const std::string refused : {"x:\\There\\", "A:", "\\\\server\\share", "\\", "", "e:\\"}) {
        EXPECT_EQ("Device unavailable: " + refused, DescriptionOf([&] { list.SetDrive(refused); }));
    }
    EXPECT_EQ("Invalid property value", DescriptionOf([&] { list.UserChoose(-1); }));
}

TEST_F(DriveLists, RefuseAFolderOnTheApplicationDrive) {
    machine.MakeFolders("C:\\DATA");
    forms::DriveList list(form, "Dri_DriveList");
    EXPECT_EQ(68, ErrorOf([&] { list.SetDrive("\\DATA"); }));
}

TEST_F(DriveLists, TakeADriveOnceItsDiskIsIn) {
    forms::DriveList list(form, "Dri_DriveList");
    machine.SetReady('A', true);
    list.SetDrive("A:\\");
    EXPECT_EQ("a:", list.Drive());
}

}  // namespace

TEST_F(DriveLists, RefuseADriveThatIsReadyButNotListed) {
    machine.AddDrive('E', type::kUnknown);
    forms::DriveList list(form, "Dri_DriveList");
    EXPECT_EQ(68, ErrorOf([&] { list.SetDrive("E:\\"); }));
    EXPECT_EQ("c:", list.Drive());
}

TEST_F(DriveLists, FindADriveThatCameAfterTheyWereRead) {
    forms::DriveList list(form, "Dri_DriveList");
    Watch(list);
    machine.AddDrive('T', type::kRemovable, "STICK");
    list.SetDrive("T:\\");
    EXPECT_EQ(std::vector<std::string>{"t: [STICK]"}, changes);
    EXPECT_EQ((std::vector<std::string>{"a:", "c:", "d: [MUSIC]", "n:", "t: [STICK]"}),
              list.Entries());
}

TEST_F(DriveLists, ReadAnewShowDrivesThatCameAndNoneThatWent) {
    forms::DriveList list(form, "Dri_DriveList");
    Watch(list);
    machine.AddDrive('B', type::kRemovable);
    machine.drives.drives.erase('N');
    list.Reload();
    EXPECT_EQ((std::vector<std::string>{"a:", "b:", "c:", "d: [MUSIC]"}), list.Entries());
    EXPECT_EQ("c:", list.Drive());
    EXPECT_EQ(2, list.Index());
    EXPECT_TRUE(changes.empty());
}

TEST_F(DriveLists, KeepTheChosenDriveAsTheirValueAlsoWhenItWent) {
    forms::DriveList list(form, "Dri_DriveList");
    list.SetDrive("D:\\");
    Watch(list);
    machine.drives.drives.erase('D');
    list.Reload();
    EXPECT_EQ("d: [MUSIC]", list.Drive());
    EXPECT_EQ(68, ErrorOf([&] { list.SetDrive("X:\\"); }));
    EXPECT_EQ("d: [MUSIC]", list.Drive());
    EXPECT_TRUE(changes.empty());
    list.SetDrive("N:\\");
    list.Reload();
    EXPECT_EQ((std::vector<std::string>{"a:", "c:", "n:"}), list.Entries());
}

TEST_F(DriveLists, RefuseAnIndexBesideTheListWithError380) {
    forms::DriveList list(form, "Dri_DriveList");
    Watch(list);
    for (const int index : {-1, 4}) {
        EXPECT_EQ(380, ErrorOf([&] { list.UserChoose(index); }));
    }
    EXPECT_EQ("c:", list.Drive());
    EXPECT_TRUE(changes.empty());
}

}  // namespace vantrel::test
