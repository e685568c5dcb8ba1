// The status bar of the main window: when its text changes, and which control has the keyboard on
// the way from a fresh installation to the first backup.
#include "tests/support/faulty_file_system.h"
#include "tests/support/matchers.h"
#include "tests/ui/main_window_fixture.h"
#include "tests/zip/zip_builder.h"

namespace vantrel::test {
namespace {

class StatusBarTest : public MainWindowFixture {
  protected:
    StatusBarTest() { MakeSourceAndDestination(); }

    void Open() {
        window = std::make_unique<Frm_Mainmenu>(program);
        desktop.ShowModeless(*window);
        desktop.DoEvents();
    }
    std::string Status() const { return window->Sta_Mainmenu.Caption(); }
    BackupTab& Tab() { return window->Backup; }

    const std::string archive_ =
        BuiltArchive{.prefix = "", .entries = {{.name = "a.txt", .content = "alpha"}}}.Bytes();
};

TEST_F(StatusBarTest, NoteNamesTheGuide) {
    Open();
    EXPECT_EQ(window->Sta_Mainmenu.Note(), "F1 opens the guide");
}

TEST_F(StatusBarTest, UnattendedRunShowsNothing) {
    Unattended("DAILY.INI");
    PutSet("DAILY.INI", {});
    Open();
    Tab().Cmb_BackupSet.SetText("DAILY.INI");
    EXPECT_EQ(Status(), "");
    EXPECT_EQ(window->Sta_Mainmenu.Note(), "");
}

TEST_F(StatusBarTest, FirstStartLeadsToTheFirstBackup) {
    Open();
    EXPECT_EQ(Status(), "There is no backup set yet. Press New Backup.");
    EXPECT_EQ(window->ActiveControl(), &Tab().Cmd_AddNew);

    desktop.inputs = {"Daily"};
    Tab().Cmd_AddNew.UserPress();
    EXPECT_EQ(Status(),
              "Multi Volume is on, but C:\\ is fixed. Press Change Settings, then ... at "
              "Backup Options.");
    EXPECT_EQ(window->ActiveControl(), &Tab().Cmd_Change);

    Tab().Cmd_Change.UserPress();
    EXPECT_EQ(Status(), "Multi Volume is on, but C:\\ is fixed. Press ... at Backup Options.");
    EXPECT_EQ(window->ActiveControl(), &Tab().Dri_DriveList);

    desktop.idle = {
        [this] {
            auto& flag =
                static_cast<forms::CheckBox&>(*desktop.Front()->Find("Chk_MultiVolumeBackup"));
            EXPECT_EQ(desktop.Front()->ActiveControl(), &flag);
            flag.UserToggle();
        },
        [this] { static_cast<forms::Button&>(*desktop.Front()->Find("Cmd_Ok")).UserPress(); }};
    Tab().Cmd_Options[2].UserPress();
    EXPECT_EQ(Status(), "The set has no archive yet. Press Backup Now.");
    EXPECT_THAT(desktop.boxes, IsEmpty()) << "no step was refused";
}

TEST_F(StatusBarTest, RefusedBackupGivesTheKeyboardToChangeSettings) {
    PutSet("DAILY.INI", {.multi_volume = "ON"});
    Open();
    Tab().Cmb_BackupSet.SetText("DAILY.INI");
    Tab().Cmd_Backup.SetFocus();
    Tab().Cmd_Backup.UserPress();
    EXPECT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(window->ActiveControl(), &Tab().Cmd_Change);
}

TEST_F(StatusBarTest, DeclinedBackupKeepsTheKeyboard) {
    PutSet("DAILY.INI", {});
    Open();
    Tab().Cmb_BackupSet.SetText("DAILY.INI");
    Tab().Cmd_Backup.SetFocus();
    desktop.answers = {forms::Answer::kNo};
    Tab().Cmd_Backup.UserPress();
    EXPECT_EQ(window->ActiveControl(), &Tab().Cmd_Backup);
}

TEST_F(StatusBarTest, StartWithSetsButNoneSelectedBeginsAtTheirList) {
    PutSet("DAILY.INI", {});
    Open();
    EXPECT_EQ(Status(), "Choose a Backup Set, or press New Backup.");
    EXPECT_EQ(window->ActiveControl(), &Tab().Cmb_BackupSet);
}

TEST_F(StatusBarTest, SelectedSetIsDescribed) {
    PutSet("DAILY.INI", {});
    PutSet("GONE.INI", {.to_drive = "C:\\Gone\\"});
    Open();
    Tab().Cmb_BackupSet.SetText("DAILY.INI");
    EXPECT_EQ(Status(), "The set has no archive yet. Settings locked: press Change Settings.");
    Tab().Cmb_BackupSet.SetText("GONE.INI");
    EXPECT_EQ(Status(),
              "Missing destination: C:\\Gone\\. Press Change Settings, then ... at Backup "
              "Location.");
}

TEST_F(StatusBarTest, ChosenFolderIsNoLongerMissing) {
    PutSet("GONE.INI", {.files = "C:\\Gone\\*.*"});
    Open();
    Tab().Cmb_BackupSet.SetText("GONE.INI");
    Tab().Cmd_Change.UserPress();
    EXPECT_EQ(Status(), "Missing folder: C:\\Gone\\. Choose a drive and a folder.");
    Tab().Dir_DirList.SetPath("C:\\Data");
    EXPECT_EQ(Status(), "The set has no archive yet. Press Backup Now.");
}

TEST_F(StatusBarTest, EachTabHasItsOwnText) {
    PutSet("DAILY.INI", {});
    machine.PutFile("C:\\Vantrel\\Vantrel.Log", "");
    Open();
    const char* const texts[] = {
        "Choose a Backup Set",           "Choose a set under What to Restore?",
        "Choose a file in the list",     "The log has no backup or restore yet.",
        "Select a folder; the menu key", "Vantrel 3.0.6."};
    for (int tab = 5; tab >= 0; --tab) {
        window->TAB_Backup.SetTab(tab);
        EXPECT_THAT(Status(), StartsWith(texts[tab]));
    }
}

TEST_F(StatusBarTest, UnsavedTextOfTheEditorIsReportedUntilItIsSaved) {
    PutSet("DAILY.INI", {});
    machine.PutFile("C:\\Vantrel\\Vantrel.Log", "");
    Open();
    window->TAB_Backup.SetTab(2);
    window->Edit.Fil_INI.SetIndex(0);
    EXPECT_THAT(Status(), StartsWith("DAILY.INI is unchanged."));
    window->Edit.Fld_INI.UserType(window->Edit.Fld_INI.Text() + "; a note\r\n");
    EXPECT_THAT(Status(), StartsWith("DAILY.INI has unsaved changes."));
    window->Edit.Cmd_Save.UserPress();
    EXPECT_THAT(Status(), StartsWith("DAILY.INI is unchanged."));
}

TEST_F(StatusBarTest, LogTabReportsTheLastRun) {
    machine.PutFile("C:\\Vantrel\\Vantrel.Log",
                    "15/11/2026 13:05:09 Starting Backup DAILY.INI\r\n"
                    "15/11/2026 13:05:10 Successful Backup\r\n");
    Open();
    window->TAB_Backup.SetTab(3);
    EXPECT_EQ(Status(), "Last run: Backup DAILY.INI, 15/11/2026 13:05:10: complete.");
}

TEST_F(StatusBarTest, BoxOfAHandlerLiesOverTheStateThatTheHandlerHasMade) {
    machine.PutFile("C:\\Backups\\GOOD.zip", archive_);
    machine.PutFile("C:\\Backups\\CUT.zip", archive_.substr(0, archive_.find("PK\1\2")));
    Open();
    window->TAB_Backup.SetTab(1);
    desktop.files = {"C:\\Backups\\GOOD.zip", "C:\\Backups\\CUT.zip"};
    window->Restore.Cmd_RestoreFile.UserPress();
    EXPECT_THAT(Status(), StartsWith("1 entry, 5 bytes."));
    std::string behind_the_box;
    desktop.on_box = [&](const forms::Box&) { behind_the_box = Status(); };
    window->Restore.Cmd_RestoreFile.UserPress();
    EXPECT_THAT(behind_the_box, StartsWith("No entries are listed."));
}

TEST_F(StatusBarTest, QuestionForADiskLiesOverTheNameOfTheArchive) {
    machine.AddDrive('A', platform::drive_type::kRemovable);
    machine.PutFile("A:\\CUT.zip", archive_.substr(0, archive_.find("PK\1\2")));
    Open();
    window->TAB_Backup.SetTab(1);
    desktop.files = {"A:\\CUT.zip"};
    std::vector<std::string> behind_the_boxes;
    desktop.on_box = [&](const forms::Box&) { behind_the_boxes.push_back(Status()); };
    desktop.answers = {forms::Answer::kCancel};
    window->Restore.Cmd_RestoreFile.UserPress();
    EXPECT_THAT(desktop.boxes.front().text, StartsWith("Please insert the last disk"));
    EXPECT_EQ(behind_the_boxes.front(), "Reading A:\\CUT.zip.");
    EXPECT_THAT(Status(), StartsWith("No entries are listed."));
}

TEST_F(StatusBarTest, SecureDataNamesTheSelectedFolderAndItsProtection) {
    Open();
    window->TAB_Backup.SetTab(4);
    window->Secure.TV_SecureMode.UserSelect(2);
    EXPECT_THAT(Status(), StartsWith("C:\\Data is not protected."));
    EXPECT_EQ(window->Sta_Mainmenu.Path(), "C:\\Data");
    window->Menu_Secure_Add.UserChoose();
    EXPECT_THAT(Status(), StartsWith("C:\\Data is protected."));
}

TEST_F(StatusBarTest, StoppedReadingIsReported) {
    std::vector<std::string> meanwhile;
    Open();
    desktop.on_paint = [&] {
        meanwhile.push_back(Status());
        return window->Secure.TV_SecureMode.Count() == 2;
    };
    window->TAB_Backup.SetTab(4);
    EXPECT_EQ(meanwhile.front(), "Reading the folders of C:\\. Press Esc to stop.");
    EXPECT_THAT(Status(), StartsWith("Reading was stopped after 2 folders."));
    machine.AddDrive('D', platform::drive_type::kFixed);
    machine.MakeFolders("D:\\Inside");
    desktop.on_paint = nullptr;
    window->Secure.Dri_SecureMode.SetDrive("D:\\");
    EXPECT_THAT(Status(), StartsWith("Select a folder"));
}

// A floppy, a CD-ROM or a sleeping disk may take seconds to answer.
TEST_F(StatusBarTest, EventsThatChangeNoSetAskNoDisk) {
    machine.AddDrive('D', platform::drive_type::kFixed);
    machine.MakeFolders("D:\\Backups");
    PutSet("DAILY.INI", {.to_drive = "D:\\Backups\\"});
    FaultyFileSystem watched(machine.files());
    platform::Machine watched_machine = WithFiles(machine.machine(), watched);
    forms::Program its_program{watched_machine, desktop, program.globals};
    Frm_Mainmenu its_window(its_program);
    desktop.ShowModeless(its_window);
    its_window.Backup.Cmb_BackupSet.SetText("DAILY.INI");
    int calls = 0;
    watched.plan.before_call = [&](const CallRecord&) { ++calls; };
    its_window.Backup.Cmd_Change.UserPress();
    its_window.TAB_Backup.SetTab(1);
    its_window.TAB_Backup.SetTab(5);
    its_window.About.Tim_Flash.Elapse();
    EXPECT_EQ(calls, 0);
    its_window.TAB_Backup.SetTab(0);
    EXPECT_GT(calls, 0) << "the set is read again";
    watched.plan.before_call = nullptr;
    desktop.Unload(its_window);
}

}  // namespace
}  // namespace vantrel::test
