#include <algorithm>

#include "common/error.h"
#include "protect/clsCfg.h"
#include "tests/support/diary.h"
#include "tests/support/error_of.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/matchers.h"
#include "tests/ui/main_window_fixture.h"

namespace vantrel::test {
namespace {

using forms::Icon;
using forms::Pointer;

constexpr const char* kList = "C:\\Vantrel\\Vantrel.Cfg";
constexpr const char* kDamaged = "Input past end of file: C:\\Vantrel\\Vantrel.Cfg";
constexpr int kTab = 4;

class SecureTabTest : public MainWindowFixture {
  protected:
    SecureTabTest() {
        machine.MakeFolders("C:\\Data\\Sub");
        machine.MakeFolders("C:\\WINDOWS\\TEMP");
    }

    void Open() { LoadWindow().TAB_Backup.SetTab(kTab); }
    SecureTab& Tab() { return window->Secure; }
    // The only box is this error; the tree is shown again.
    void ExpectErrorBesideTheTree(const std::string& text) {
        ExpectError(text);
        EXPECT_TRUE(Tab().TV_SecureMode.Visible());
        EXPECT_FALSE(Tab().SSP_PleaseWait.Visible());
        EXPECT_EQ(desktop.pointer, Pointer::kDefault);
    }
    std::vector<std::string> Tags() {
        std::vector<std::string> tags;
        for (int i = 1; i <= Tab().TV_SecureMode.Count(); ++i) {
            tags.push_back(Tab().TV_SecureMode.At(i).tag);
        }
        return tags;
    }
    void Select(const std::string& tag) {
        const auto tags = Tags();
        const auto found = std::find(tags.begin(), tags.end(), tag);
        ASSERT_NE(found, tags.end()) << tag;
        Tab().TV_SecureMode.UserSelect(static_cast<int>(found - tags.begin()) + 1);
    }
    void Add(const std::string& tag) {
        Select(tag);
        window->Menu_Secure_Add.UserChoose();
    }
    void ExpectNotProtected() {
        EXPECT_THAT(Entries(), IsEmpty());
        EXPECT_EQ(Picture(), 1);
    }
    int Picture() { return Tab().TV_SecureMode.At(Tab().TV_SecureMode.Selected()).image; }
    int SelectedPicture() {
        return Tab().TV_SecureMode.At(Tab().TV_SecureMode.Selected()).selected_image;
    }
    std::vector<std::string> Entries() { return clsCfg(program).ReturnProtected(); }
};

// What the screen shows of the tab at the moment when a control changes.
struct Moments : forms::ControlView {
    explicit Moments(SecureTab& shown, ScriptedDesktop& screen) : tab(shown), desktop(screen) {
        tab.SSP_ProgressSecure.Bind(this);
    }
    ~Moments() override { tab.SSP_ProgressSecure.Bind(nullptr); }
    void Changed(forms::Aspect) override {
        waiting = waiting && tab.SSP_PleaseWait.Visible() && !tab.TV_SecureMode.Visible() &&
                  desktop.pointer == Pointer::kHourglass;
        ++moments;
    }
    SecureTab& tab;
    ScriptedDesktop& desktop;
    bool waiting = true;
    int moments = 0;
};

TEST_F(SecureTabTest, LoadWritesTheHelpTextAndLoadsNoFolder) {
    LoadWindow();
    EXPECT_EQ(Tab().Fld_SecureData.Text().substr(0, 52),
              "When restoring files, the User MUST be sure that the");
    EXPECT_TRUE(Tab().Fld_SecureData.ReadOnly());
    EXPECT_EQ(Tab().TV_SecureMode.Count(), 0);
    EXPECT_FALSE(machine.Exists(kList));
}

TEST_F(SecureTabTest, EnteringCreatesAMissingListAndLoadsTheApplicationsDrive) {
    Open();
    EXPECT_THAT(Entries(), IsEmpty());
    EXPECT_TRUE(machine.Exists(kList));
    EXPECT_THAT(Tags(), ElementsAre("C:\\Data", "C:\\Data\\Sub", "C:\\Vantrel", "C:\\WINDOWS",
                                    "C:\\WINDOWS\\TEMP"));
    EXPECT_EQ(Tab().Dri_SecureMode.Drive().substr(0, 2), "c:");
}

TEST_F(SecureTabTest, EnteringKeepsAListThatCannotBeLookedAt) {
    clsCfg(program).Create_CFG(kList);
    const std::string list = machine.Content(kList) + "C:\\DATA\r\n";
    machine.PutFile(kList, list);
    FaultyFileSystem faulty(machine.files());
    platform::Machine failing = WithFiles(machine.machine(), faulty);
    forms::Program its_program{failing, desktop, program.globals};
    Frm_Mainmenu its_window(its_program);
    desktop.Load(its_window);
    faulty.plan.Inject({.kind = Call::kList, .number = error_number::kPathFileAccess});
    its_window.TAB_Backup.SetTab(kTab);
    EXPECT_EQ(faulty.plan.Fired(), 1);
    EXPECT_EQ(machine.Content(kList), list);
}

TEST_F(SecureTabTest, EnteringKeepsAListThatIsThere) {
    clsCfg(program).Create_CFG(kList);
    machine.PutFile(kList, machine.Content(kList) + "C:\\DATA\r\n");
    Open();
    EXPECT_THAT(Entries(), ElementsAre("C:\\DATA"));
    Select("C:\\Data");
    EXPECT_EQ(Picture(), clsCfg::kProtectedFolder);
}

TEST_F(SecureTabTest, ListThatCannotBeMadeIsShownAsAnErrorAndNoTreeIsLoaded) {
    LoadWindow();
    machine.process.application_folder = "C:\\Gone";
    window->TAB_Backup.SetTab(kTab);
    ExpectError("Path not found");
    EXPECT_EQ(Tab().TV_SecureMode.Count(), 0);
}

TEST_F(SecureTabTest, EnteringAgainKeepsTheLoadedTree) {
    Open();
    Select("C:\\WINDOWS");
    machine.MakeFolders("C:\\New");
    window->TAB_Backup.SetTab(5);
    window->TAB_Backup.SetTab(kTab);
    EXPECT_EQ(Tab().TV_SecureMode.Count(), 5);
    EXPECT_EQ(Tab().TV_SecureMode.At(Tab().TV_SecureMode.Selected()).tag, "C:\\WINDOWS");
}

TEST_F(SecureTabTest, EnteringWithAnEmptyTreeGoesToTheApplicationsDriveAgain) {
    machine.AddDrive('A', platform::drive_type::kRemovable, "", false);
    Open();
    Tab().Dri_SecureMode.UserChoose(0);
    ASSERT_EQ(Tab().TV_SecureMode.Count(), 0);
    window->TAB_Backup.SetTab(5);
    window->TAB_Backup.SetTab(kTab);
    EXPECT_EQ(Tab().Dri_SecureMode.Drive().substr(0, 2), "c:");
    EXPECT_EQ(Tab().TV_SecureMode.Count(), 5);
}

TEST_F(SecureTabTest, ChoosingADriveShowsItsFolders) {
    machine.AddDrive('D', platform::drive_type::kFixed, "STORE");
    machine.MakeFolders("D:\\Inside");
    Open();
    Tab().Dri_SecureMode.UserChoose(1);
    EXPECT_THAT(Tags(), ElementsAre("D:\\Inside"));
}

TEST_F(SecureTabTest, ChoosingAnEmptyRemovableDriveClearsTheTreeWithoutAMessage) {
    machine.AddDrive('A', platform::drive_type::kRemovable, "", false);
    Open();
    Tab().Dri_SecureMode.UserChoose(0);
    EXPECT_EQ(Tab().TV_SecureMode.Count(), 0);
    EXPECT_TRUE(Tab().TV_SecureMode.Visible());
    EXPECT_FALSE(Tab().SSP_PleaseWait.Visible());
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(SecureTabTest, WhileLoadingThePanelStandsInForTheTree) {
    LoadWindow();
    Moments moments(Tab(), desktop);
    window->TAB_Backup.SetTab(kTab);
    EXPECT_TRUE(moments.waiting);
    EXPECT_GE(moments.moments, 4);
    EXPECT_FALSE(Tab().SSP_PleaseWait.Visible());
    EXPECT_TRUE(Tab().TV_SecureMode.Visible());
    EXPECT_EQ(desktop.pointer, Pointer::kDefault);
}

TEST_F(SecureTabTest, TreeIsHiddenBeforeItIsClearedAndShownWhenItIsFull) {
    machine.AddDrive('D', platform::drive_type::kFixed);
    machine.MakeFolders("D:\\Inside");
    Open();
    Diary diary(desktop);
    diary.Follow(Tab().SSP_PleaseWait);
    diary.Follow(Tab().TV_SecureMode);
    Tab().Dri_SecureMode.UserChoose(1);
    EXPECT_THAT(diary.Lines(),
                ElementsAre("pointer hourglass", "SSP_PleaseWait shown", "TV_SecureMode hidden",
                            "TV_SecureMode items", "SSP_PleaseWait hidden", "TV_SecureMode shown",
                            "pointer default"));
}

TEST_F(SecureTabTest, NothingIsHandledWhileTheTreeLoads) {
    machine.AddDrive('D', platform::drive_type::kFixed);
    machine.MakeFolders("D:\\Inside");
    Open();
    const int before = desktop.do_events_calls;
    Tab().Dri_SecureMode.UserChoose(1);
    EXPECT_EQ(desktop.do_events_calls, before);
}

TEST_F(SecureTabTest, ListThatVanishedIsShownAsAnErrorAndTheTreeComesBack) {
    machine.AddDrive('D', platform::drive_type::kFixed);
    machine.MakeFolders("D:\\Inside");
    Open();
    machine.files().RemoveFile(kList);
    Tab().Dri_SecureMode.UserChoose(1);
    ExpectErrorBesideTheTree(ErrorText(error_number::kFileNotFound));
}

TEST_F(SecureTabTest, MenuOfAnOrdinaryFolderOffersOnlyToAdd) {
    Open();
    Select("C:\\Data");
    Tab().TV_SecureMode.UserMouseDown(2);
    EXPECT_EQ(window->Menu_Secure.PopUps(), 1);
    EXPECT_TRUE(window->Menu_Secure_Add.Enabled());
    EXPECT_FALSE(window->Menu_Secure_Delete.Enabled());
}

TEST_F(SecureTabTest, MenuOfAProtectedFolderOffersOnlyToDelete) {
    Open();
    Add("C:\\Data");
    Tab().TV_SecureMode.UserMouseDown(2);
    EXPECT_FALSE(window->Menu_Secure_Add.Enabled());
    EXPECT_TRUE(window->Menu_Secure_Delete.Enabled());
}

TEST_F(SecureTabTest, MenuDoesNotAppearWithoutASelectedNodeNorForOtherButtons) {
    Open();
    Tab().TV_SecureMode.UserMouseDown(2);
    EXPECT_EQ(window->Menu_Secure.PopUps(), 0);
    Select("C:\\Data");
    Tab().TV_SecureMode.UserMouseDown(1);
    EXPECT_EQ(window->Menu_Secure.PopUps(), 0);
}

TEST_F(SecureTabTest, AddingStoresThePathInCapitalsAndMarksTheNode) {
    Open();
    Add("C:\\Data\\Sub");
    EXPECT_THAT(Entries(), ElementsAre("C:\\DATA\\SUB"));
    EXPECT_EQ(Picture(), 3);
    EXPECT_EQ(SelectedPicture(), 3);
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(SecureTabTest, AddingCreatesAMissingList) {
    Open();
    machine.files().RemoveFile(kList);
    Add("C:\\Data");
    EXPECT_THAT(Entries(), ElementsAre("C:\\DATA"));
}

TEST_F(SecureTabTest, WindowsFolderIsRefusedInAnyLetterCase) {
    machine.process.windows_folder = "c:\\Windows";
    Open();
    Add("C:\\WINDOWS");
    ExpectBox(
        "This folder is maintained by your Operating System.  You may not Protect System Folders.",
        Icon::kExclamation, "Protected Folders");
    ExpectNotProtected();
}

TEST_F(SecureTabTest, RefusingTheWindowsFolderCreatesNoList) {
    Open();
    machine.files().RemoveFile(kList);
    Add("C:\\WINDOWS");
    EXPECT_FALSE(machine.Exists(kList));
}

TEST_F(SecureTabTest, FoldersInTheWindowsFolderMayBeProtected) {
    Open();
    Add("C:\\WINDOWS\\TEMP");
    EXPECT_THAT(Entries(), ElementsAre("C:\\WINDOWS\\TEMP"));
}

TEST_F(SecureTabTest, FolderThatTheCodePageCannotHoldIsRefusedWithAMessage) {
    machine.MakeFolders("C:\\Data\\\xE6\x97\xA5");
    Open();
    Add("C:\\Data\\\xE6\x97\xA5");
    ExpectBox(
        "Unable to use the folder C:\\Data\\\xE6\x97\xA5.\r\nIts name holds characters that the "
        "list of Protected Folders cannot store.",
        forms::Icon::kExclamation, "Protected Folders");
    ExpectNotProtected();
}

TEST_F(SecureTabTest, DeletingDropsTheEntryAndTheMarkAndCreatesAMissingList) {
    Open();
    for (const bool has_list : {true, false}) {
        Add("C:\\Data");
        if (!has_list) {
            machine.files().RemoveFile(kList);
        }
        window->Menu_Secure_Delete.UserChoose();
        EXPECT_TRUE(machine.Exists(kList));
        ExpectNotProtected();
        EXPECT_EQ(SelectedPicture(), 2);
    }
}

TEST_F(SecureTabTest, MenuHandlersTrapNothing) {
    Open();
    Select("C:\\Data");
    machine.files().SetAttributes(kList, platform::attribute::kReadOnly);
    EXPECT_THROW(window->Menu_Secure_Add.UserChoose(), Error);
    EXPECT_THROW(window->Menu_Secure_Delete.UserChoose(), Error);
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

struct DamagedList {
    const char* what;
    std::string text;
};

std::ostream& operator<<(std::ostream& out, const DamagedList& list) { return out << list.what; }

class SecureTabWithDamagedList : public SecureTabTest,
                                 public ::testing::WithParamInterface<DamagedList> {};

TEST_P(SecureTabWithDamagedList, EnteringShowsTheErrorAndKeepsTheList) {
    machine.PutFile(kList, GetParam().text);
    Open();
    ExpectErrorBesideTheTree(kDamaged);
    EXPECT_EQ(machine.Content(kList), GetParam().text);
}

TEST_P(SecureTabWithDamagedList, MenuHandlersTrapNothingAndKeepTheList) {
    Open();
    Select("C:\\Data");
    machine.PutFile(kList, GetParam().text);
    for (forms::MenuItem* item : {&window->Menu_Secure_Add, &window->Menu_Secure_Delete}) {
        const Error error = RaisedBy([&] { item->UserChoose(); });
        EXPECT_EQ(error.number(), error_number::kPastEnd);
        EXPECT_EQ(error.description(), kDamaged);
    }
    EXPECT_EQ(machine.Content(kList), GetParam().text);
    EXPECT_EQ(Picture(), clsCfg::kClosedFolder);
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

const DamagedList kDamagedLists[] = {
    {"NoByte", ""},
    {"ThreeLines", ";\r\n;\r\n;\r\n"},
    {"Nuls", std::string(150, '\0')},
};

INSTANTIATE_TEST_SUITE_P(Rows, SecureTabWithDamagedList, ::testing::ValuesIn(kDamagedLists),
                         [](const auto& row) { return row.param.what; });

}  // namespace
}  // namespace vantrel::test
