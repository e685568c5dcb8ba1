#include "protect/folder_tree.h"

#include <filesystem>

#include "common/error.h"
#include "protect/clsCfg.h"
#include "protect/clsInfo.h"
#include "tests/forms/denied_listing.h"
#include "tests/support/error_of.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {
namespace {

constexpr const char* kList = "C:\\Vantrel\\Vantrel.Cfg";

// Remembers every fill that the panel shows.
struct Fills : forms::ControlView {
    explicit Fills(forms::Panel& shown) : panel(shown) { panel.Bind(this); }
    ~Fills() override { panel.Bind(nullptr); }
    void Changed(forms::Aspect aspect) override {
        if (aspect == forms::Aspect::kValue) {
            seen.push_back(panel.FloodPercent());
        }
    }
    forms::Panel& panel;
    std::vector<double> seen;
};

class FolderTree : public ProgramFixture {
  protected:
    FolderTree() { machine.AddDrive('D', platform::drive_type::kFixed); }

    void Protect(const std::string& lines) {
        clsCfg cfg(program);
        cfg.Create_CFG(kList);
        machine.PutFile(kList, machine.Content(kList) + lines);
    }
    void Load(const std::string& path = "D:\\", const std::string& parent = "") {
        Create_DirectoryStructure(tree, progress, path, parent);
    }
    std::vector<std::string> Tags() const {
        std::vector<std::string> tags;
        for (int i = 1; i <= tree.Count(); ++i) {
            tags.push_back(tree.At(i).tag);
        }
        return tags;
    }

    // A tree of drive D: as these files have it, loaded.
    struct TreeOver {
        TreeOver(platform::FileSystem& files, FolderTree& test)
            : machine(WithFiles(test.machine.machine(), files)),
              program{machine, test.desktop, test.program.globals} {
            Create_DirectoryStructure(tree, progress, "D:\\", "");
        }
        platform::Machine machine;
        forms::Program program;
        forms::Form window{program, "Frm_Mainmenu"};
        forms::Tree tree{window, "TV_SecureMode"};
        forms::Panel progress{window, "SSP_ProgressSecure"};
    };

    forms::Form window{program, "Frm_Mainmenu"};
    forms::Tree tree{window, "TV_SecureMode"};
    forms::Panel progress{window, "SSP_ProgressSecure"};
};

TEST_F(FolderTree, HoldsEveryFolderOfTheDriveAtOnceDepthFirst) {
    Protect("");
    machine.MakeFolders("D:\\beta\\inner\\Deep");
    machine.MakeFolders("D:\\Alpha");
    machine.PutFile("D:\\file.txt", "");
    Load();
    EXPECT_THAT(Tags(),
                ElementsAre("D:\\Alpha", "D:\\beta", "D:\\beta\\inner", "D:\\beta\\inner\\Deep"));
}

TEST_F(FolderTree, NodesShowTheFoldersNameBelowTheirParent) {
    Protect("");
    machine.MakeFolders("D:\\One\\Two");
    machine.MakeFolders("D:\\Three");
    Load();
    EXPECT_EQ(tree.At(1).text, "One");
    EXPECT_EQ(tree.At(1).parent, 0);
    EXPECT_EQ(tree.At(2).text, "Two");
    EXPECT_EQ(tree.At(2).parent, 1);
    EXPECT_EQ(tree.At(3).text, "Three");
    EXPECT_EQ(tree.At(3).parent, 0);
}

TEST_F(FolderTree, RootItselfIsNoNode) {
    Protect("");
    machine.MakeFolders("D:\\Only");
    Load();
    EXPECT_THAT(Tags(), ElementsAre("D:\\Only"));
}

TEST_F(FolderTree, DriveLetterIsACapitalHoweverTheDriveIsGiven) {
    Protect("");
    machine.MakeFolders("D:\\one");
    Load("d:\\");
    EXPECT_THAT(Tags(), ElementsAre("D:\\one"));
}

TEST_F(FolderTree, ProtectedFoldersHaveTheirOwnPicture) {
    Protect("D:\\ONE\\TWO\r\n");
    machine.MakeFolders("D:\\One\\Two\\Below");
    Load();
    EXPECT_EQ(tree.At(1).image, 1);
    EXPECT_EQ(tree.At(1).selected_image, 2);
    EXPECT_EQ(tree.At(2).image, 3);
    EXPECT_EQ(tree.At(2).selected_image, 3);
    EXPECT_EQ(tree.At(3).image, 1);
}

// One entry a way of writing it: the tree must say of each folder what the list says of its path.
TEST_F(FolderTree, PicturesAreTheListsAnswers) {
    Protect(
        "d:\\lower\r\nD:\\SLASH\\\r\nD:\\TWO\\\\\r\nD:\\\r\n\r\nD:\\PREF\r\n\\\r\nD:\\Mixed\\a");
    for (const char* folder : {"Lower", "Slash", "Two", "Prefix", "Mixed\\A", "Plain"}) {
        machine.MakeFolders(std::string("D:\\") + folder);
    }
    Load();
    ASSERT_EQ(tree.Count(), 7);
    std::vector<std::string> marked;
    for (int i = 1; i <= tree.Count(); ++i) {
        EXPECT_EQ(tree.At(i).image == 3, clsCfg(program).IsProtected(tree.At(i).tag))
            << tree.At(i).tag;
        if (tree.At(i).image == 3) {
            marked.push_back(tree.At(i).tag);
        }
    }
    EXPECT_THAT(marked, ElementsAre("D:\\Lower", "D:\\Mixed\\A", "D:\\Slash"));
}

TEST_F(FolderTree, HiddenAndSystemFoldersAndLinksAreLeftOut) {
    Protect("");
    for (const char* folder : {"D:\\Hidden\\Below", "D:\\System", "D:\\Seen"}) {
        machine.MakeFolders(folder);
    }
    machine.files().SetAttributes("D:\\Hidden", platform::attribute::kHidden);
    machine.files().SetAttributes("D:\\System", platform::attribute::kSystem);
    std::filesystem::create_directory_symlink(machine.HostPath("D:\\Seen"),
                                              machine.HostPath("D:\\Link"));
    Load();
    EXPECT_THAT(Tags(), ElementsAre("D:\\Seen"));
}

TEST_F(FolderTree, EscapeStopsTheReadingAndKeepsWhatHasBeenRead) {
    Protect("");
    for (const char* folder : {"D:\\A\\B", "D:\\C\\E", "D:\\F"}) {
        machine.MakeFolders(folder);
    }
    desktop.on_paint = [this] { return tree.Count() == 3; };
    EXPECT_FALSE(Create_DirectoryStructure(tree, progress, "D:\\", ""));
    EXPECT_THAT(Tags(), ElementsAre("D:\\A", "D:\\A\\B", "D:\\C"));
    EXPECT_EQ(progress.FloodPercent(), 0);
}

TEST_F(FolderTree, EscapeIsServedWithinAFolderOfManyFiles) {
    Protect("");
    machine.MakeFolders("D:\\A");
    for (int i = 0; i < 20; ++i) {
        machine.PutFile("D:\\A\\" + std::to_string(i), "");
    }
    int calls = 0;
    desktop.on_paint = [&] { return ++calls == 15; };
    EXPECT_FALSE(Create_DirectoryStructure(tree, progress, "D:\\", ""));
    EXPECT_EQ(calls, 15) << "asked before each entry, and not after the answer";
}

TEST_F(FolderTree, CompleteReadingIsReportedAsSuch) {
    Protect("");
    machine.MakeFolders("D:\\A");
    EXPECT_TRUE(Create_DirectoryStructure(tree, progress, "D:\\", ""));
}

TEST_F(FolderTree, UnreadableFolderHasNoSubFolders) {
    Protect("");
    machine.MakeFolders("D:\\Closed\\Unseen");
    machine.MakeFolders("D:\\Open\\Seen");
    DeniedListing denied(machine.files(), "D:\\Closed");
    const TreeOver its(denied, *this);
    ASSERT_EQ(its.tree.Count(), 3);
    EXPECT_EQ(its.tree.At(1).tag, "D:\\Closed");
    EXPECT_EQ(its.tree.At(2).tag, "D:\\Open");
    EXPECT_EQ(its.tree.At(3).tag, "D:\\Open\\Seen");
}

TEST_F(FolderTree, ProgressIsTheShareOfTopLevelFoldersAndEndsAtNothing) {
    Protect("");
    for (const char* folder : {"D:\\1\\x", "D:\\2\\x\\y", "D:\\3", "D:\\4"}) {
        machine.MakeFolders(folder);
    }
    Fills fills(progress);
    Load();
    EXPECT_THAT(fills.seen, ElementsAre(25, 50, 75, 100, 0));
}

TEST_F(FolderTree, BelowAParentNodesAreItsChildrenAndProgressStands) {
    Protect("");
    machine.MakeFolders("D:\\One\\Two\\Three");
    progress.SetFloodPercent(40);
    tree.Add({.text = "other"});
    tree.Add({.text = "One"});
    Fills fills(progress);
    Load("D:\\One", "2");
    ASSERT_EQ(tree.Count(), 4);
    EXPECT_EQ(tree.At(3).tag, "D:\\One\\Two");
    EXPECT_EQ(tree.At(3).parent, 2);
    EXPECT_EQ(tree.At(4).parent, 3);
    EXPECT_THAT(fills.seen, IsEmpty());
}

TEST_F(FolderTree, MissingListIsAnErrorReportedUnderTheFileClassesLabel) {
    machine.MakeFolders("D:\\One");
    ExpectReported([&] { Load(); }, "clsFiles:Create_DirectoryStructure Method",
                   ErrorText(error_number::kFileNotFound));
}

TEST_F(FolderTree, DriveWithoutFoldersAsksForNoList) {
    Load();
    EXPECT_EQ(tree.Count(), 0);
}

// Whole drives have to load in seconds: one look into each folder, one at the list.
TEST_F(FolderTree, ListIsReadOnceAndEachFolderIsListedOnce) {
    Protect("D:\\7\r\n");
    for (int i = 0; i < 40; ++i) {
        machine.MakeFolders("D:\\" + std::to_string(i) + "\\Sub");
    }
    FaultyFileSystem counting(machine.files());
    const TreeOver its(counting, *this);
    EXPECT_EQ(its.tree.Count(), 80);
    EXPECT_EQ(counting.plan.Count(Call::kList), 81);
    EXPECT_EQ(counting.plan.Count(Call::kOpen), 1);
}

// Levels are not calls: a deep tree must not need a deep stack.
TEST_F(FolderTree, DeepFoldersAreFollowedToTheirEnd) {
    Protect("");
    std::string path = "D:";
    for (int i = 0; i < 300; ++i) {
        path += "\\f";
    }
    machine.MakeFolders(path);
    Load();
    EXPECT_EQ(tree.Count(), 300);
    EXPECT_EQ(tree.At(300).tag, path);
}

TEST_F(FolderTree, HelpTextReportsItsErrorsUnderItsLabel) {
    forms::TextBox box{window, "Fld_SecureData", true, true};
    box.Change = [] { RaiseError(error_number::kOutOfMemory); };
    ExpectReported([&] { clsInfo().SecureData(box); }, "clsInfo:SecureData Method",
                   "Out of memory");
}

TEST_F(FolderTree, HelpTextIsShownAsItAlwaysWas) {
    forms::TextBox box{window, "Fld_SecureData", true, true};
    clsInfo().SecureData(box);
    EXPECT_EQ(box.Text(),
              "When restoring files, the User MUST be sure that the Process will not overwrite the "
              "existing data and destroy updated information.\r\n\r\n"
              "This function allows selected Directories (or Folders) to be 'Protected'.  What "
              "this means is a Restore process will NEVER overwrite anything in the Protected "
              "Directory.\r\n\r\n"
              "If Vantrel detects that a 'Protected' Directory is about to be overwritten, it "
              "renames the 'Protected' Directory and then allows the Restore Process to "
              "continue.\r\n\r\n"
              "For example if 'C:\\My Directory' is Protected and a Restore process is conducted "
              "whereupon ANY files in the 'C:\\My Directory' is about to be overwritten, then "
              "'C:\\My Directory' is renamed to 'C:\\My Directory.xxx' where xxx is a number from "
              "001 to 999.  The Restore process then continues.\r\n\r\n"
              "To Create a 'Protected' Directory, select a Directory in the Tree, use the Right "
              "Mouse Button and Add It.  To Delete a 'Protected' Directory, select the Directory "
              "in the Tree, use the Right Mouse Button and Delete it.\r\n\r\n"
              "For futher Information please contact Corvane.");
}

}  // namespace
}  // namespace vantrel::test
