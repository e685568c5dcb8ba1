#include "forms/file_lists.h"

#include <filesystem>

#include "forms/folder_path.h"
#include "tests/forms/bare_form.h"
#include "tests/forms/denied_listing.h"

namespace vantrel::test {

namespace {

class FolderLists : public FormsFixture {
  protected:
    FolderLists() {
        for (const char* folder : {"C:\\Data\\beta", "C:\\Data\\Alpha\\Deep", "C:\\Data\\Gamma"}) {
            machine.MakeFolders(folder);
        }
        machine.PutFile("C:\\Data\\file.txt", "text");
        list.Change = [this] { changes.push_back(list.Path()); };
    }
    std::vector<std::string> Shown() const {
        std::vector<std::string> shown;
        for (const auto& entry : list.Entries()) {
            shown.push_back(std::string(static_cast<std::size_t>(entry.depth), ' ') +
                            (entry.open ? "-" : "+") + entry.name);
        }
        return shown;
    }
    // Full paths.
    static std::vector<std::string> SubFolders(const forms::FolderList& of) {
        std::vector<std::string> paths;
        for (const auto& entry : of.Entries()) {
            if (!entry.open) {
                paths.push_back(entry.path);
            }
        }
        return paths;
    }
    int IndexOf(const std::string& name) const {
        for (std::size_t i = 0; i < list.Entries().size(); ++i) {
            if (list.Entries()[i].name == name) {
                return static_cast<int>(i);
            }
        }
        return -1;
    }
    forms::FolderList list{form, "Dir_DirList"};
    std::vector<std::string> changes;
};

TEST_F(FolderLists, StartAtTheApplicationFolder) { EXPECT_EQ("C:\\Vantrel", list.Path()); }

TEST_F(FolderLists, ShowTheWayFromTheRootAndTheSubFoldersSorted) {
    list.SetPath("C:\\Data");
    EXPECT_EQ((std::vector<std::string>{"-C:\\", " -Data", "  +Alpha", "  +beta", "  +Gamma"}),
              Shown());
    EXPECT_EQ((std::vector<std::string>{"C:\\Data\\Alpha", "C:\\Data\\beta", "C:\\Data\\Gamma"}),
              SubFolders(list));
}

TEST_F(FolderLists, PathEndsInABackslashOnlyAtARoot) {
    list.SetPath("C:\\Data\\");
    EXPECT_EQ("C:\\Data", list.Path());
    list.SetPath("C:\\");
    EXPECT_EQ("C:\\", list.Path());
}

TEST_F(FolderLists, DriveLetterIsACapitalAndNamesStayAsGiven) {
    list.SetPath("c:\\DATA\\alpha");
    EXPECT_EQ("C:\\DATA\\alpha", list.Path());
}

TEST_F(FolderLists, BrowsedNamesAreAsOnDisk) {
    list.SetPath("C:\\Data");
    list.UserOpen(IndexOf("Alpha"));
    EXPECT_EQ("C:\\Data\\Alpha", list.Path());
    list.UserOpen(IndexOf("C:\\"));
    EXPECT_EQ("C:\\", list.Path());
}

TEST_F(FolderLists, PointedAtADriveGoToItsRoot) {
    machine.AddDrive('D', platform::drive_type::kFixed, "STORE");
    machine.MakeFolders("D:\\Inside");
    for (const char* drive : {"D:", "d: [STORE]", "D:\\"}) {
        list.SetPath("C:\\Data");
        list.SetPath(drive);
        EXPECT_EQ("D:\\", list.Path()) << drive;
    }
}

TEST_F(FolderLists, RefuseWithError76AndKeepTheirValue) {
    machine.AddDrive('A', platform::drive_type::kRemovable, "", false);
    list.SetPath("C:\\Data");
    changes.clear();
    for (const char* refused : {"C:\\Missing", "C:\\Data\\file.txt", "A:\\", "a:", "Q:\\",
                                "\\Missing", "Data", "", "C:Data"}) {
        EXPECT_EQ(76, ErrorOf([&] { list.SetPath(refused); })) << refused;
    }
    EXPECT_EQ("C:\\Data", list.Path());
    EXPECT_TRUE(changes.empty());
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(FolderLists, NameThePathThatTheyRefuseAsItWasGiven) {
    for (const std::string refused : {"c:\\Missing\\", "q: [GONE]", "\\Missing", "Data", ""}) {
        EXPECT_EQ("Path not found: " + refused, DescriptionOf([&] { list.SetPath(refused); }));
    }
}

TEST_F(FolderLists, NameTheFolderThatWentAwayBeforeItIsOpened) {
    list.SetPath("C:\\Data");
    const int gamma = IndexOf("Gamma");
    machine.files().RemoveFolder("C:\\Data\\Gamma");
    EXPECT_EQ("Path not found: C:\\Data\\Gamma", DescriptionOf([&] { list.UserOpen(gamma); }));
}

TEST_F(FolderLists, PathWithoutADriveIsOnTheApplicationDrive) {
    machine.AddDrive('V', platform::drive_type::kFixed);
    machine.process.application_folder = "V:\\Vantrel";
    machine.MakeFolders("V:\\DATA\\Inside");
    list.SetPath("\\DATA");
    EXPECT_EQ("V:\\DATA", list.Path());
    EXPECT_EQ(std::vector<std::string>{"V:\\DATA\\Inside"}, SubFolders(list));
    list.SetPath("\\");
    EXPECT_EQ("V:\\", list.Path());
    EXPECT_EQ((std::vector<std::string>{"V:\\DATA", "V:\\"}), changes);
}

TEST_F(FolderLists, PathWithoutADriveIsNowhereWhenTheApplicationIsOnANetwork) {
    machine.process.application_folder = "\\\\server\\share\\Vantrel";
    EXPECT_EQ(76, ErrorOf([&] { list.SetPath("\\Data"); }));
}

TEST_F(FolderLists, HiddenAndSystemFoldersAreNotListed) {
    machine.files().SetAttributes("C:\\Data\\beta", platform::attribute::kHidden);
    machine.files().SetAttributes("C:\\Data\\Gamma", platform::attribute::kSystem);
    list.SetPath("C:\\Data");
    EXPECT_EQ(std::vector<std::string>{"C:\\Data\\Alpha"}, SubFolders(list));
}

TEST_F(FolderLists, LinksAreNotListed) {
    std::filesystem::create_directory_symlink(machine.HostPath("C:\\Data\\Alpha"),
                                              machine.HostPath("C:\\Data\\Link"));
    list.SetPath("C:\\Data");
    EXPECT_EQ(-1, IndexOf("Link"));
    EXPECT_EQ(3u, SubFolders(list).size());
}

TEST_F(FolderLists, UnreadableFolderHasNoSubFolders) {
    DeniedListing denied(machine.files(), "C:\\Data");
    platform::Machine with_denied = WithFiles(machine.machine(), denied);
    forms::Program program_there{with_denied, desktop};
    BareForm form_there(program_there);
    forms::FolderList list_there(form_there, "Dir_DirList");
    list_there.SetPath("C:\\Data");
    EXPECT_EQ("C:\\Data", list_there.Path());
    EXPECT_EQ(0u, SubFolders(list_there).size());
    list_there.SetPath("C:\\Data\\Alpha");
    EXPECT_EQ(1u, SubFolders(list_there).size());
}

TEST_F(FolderLists, TakeNetworkPaths) {
    DeniedListing network(machine.files(), "");
    network.folder_there = "\\\\server\\share\\Data";
    platform::Machine with_network = WithFiles(machine.machine(), network);
    forms::Program program_there{with_network, desktop};
    BareForm form_there(program_there);
    forms::FolderList list_there(form_there, "Dir_DirList");
    list_there.SetPath("\\\\server\\share\\Data\\");
    EXPECT_EQ("\\\\server\\share\\Data", list_there.Path());
    EXPECT_EQ("\\\\server\\share", list_there.Entries()[0].name);
    EXPECT_EQ(76, ErrorOf([&] { list_there.SetPath("\\\\server\\share\\Other"); }));
}

TEST_F(FolderLists, UserOpeningAFolderThatWentAwayIsForTheHandlerThatWantsIt) {
    list.SetPath("C:\\Data");
    changes.clear();
    std::vector<int> refused;
    list.Refused = [&](const Error& error) {
        refused.push_back(error.number());
        EXPECT_EQ(1, form.running_handlers);
    };
    const int gamma = IndexOf("Gamma");
    machine.files().RemoveFolder("C:\\Data\\Gamma");
    list.UserOpen(gamma);
    EXPECT_EQ(std::vector{76}, refused);
    EXPECT_EQ("C:\\Data", list.Path());
    EXPECT_EQ(-1, IndexOf("Gamma"));
    EXPECT_TRUE(changes.empty());
}

TEST_F(FolderLists, WayThatWentAwayIsKeptAndItsRootCanBeOpened) {
    list.SetPath("C:\\Data\\Alpha\\Deep");
    std::vector<int> refused;
    list.Refused = [&](const Error& error) { refused.push_back(error.number()); };
    machine.files().RemoveFolder("C:\\Data\\Alpha\\Deep");
    machine.files().RemoveFolder("C:\\Data\\Alpha");
    list.UserOpen(IndexOf("Alpha"));
    EXPECT_EQ(std::vector{76}, refused);
    EXPECT_EQ("C:\\Data\\Alpha\\Deep", list.Path());
    list.UserOpen(IndexOf("C:\\"));
    EXPECT_EQ("C:\\", list.Path());
}

TEST_F(FolderLists, ErrorOfTheHandlerOfAMoveIsNoRefusal) {
    list.SetPath("C:\\Data");
    list.Change = [] { RaiseError(error_number::kDiskFull); };
    list.Refused = [](const Error&) { ADD_FAILURE() << "it was opened"; };
    EXPECT_EQ(error_number::kDiskFull, ErrorOf([&] { list.UserOpen(IndexOf("Gamma")); }));
    EXPECT_EQ("C:\\Data\\Gamma", list.Path());
}

}  // namespace

}  // namespace vantrel::test
