// The windows of a restore: the run, when it is cancelled and when it warns, and the dialog for the
// destination where it differs from that of a backup.
#include "restore/Frm_RestoreWhere.h"
#include "tests/restore/restore_run_fixture.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

// Two more events are raised after the cancel, as by workers that finish their current files.
TEST_F(RestoreRun, OkWhileACancelledRunEndsDoesNotTakeItsWindowAway) {
    bool cancel = false;
    unzip.action = [&](RecordingUnzip& component) {
        for (const std::int32_t percent : {10, 20, 30}) {
            cancel = component.RaiseOverall(percent);
            component.RaiseFile(percent);
        }
    };
    desktop.on_events.push_back([this] { PressCancel(); });
    bool pressed = false;
    desktop.on_events.push_back([&] {
        pressed = window->Cmd_Ok.Visible();
        window->Cmd_Ok.UserPress();
        EXPECT_TRUE(window->Loaded());
        EXPECT_FALSE(window->Visible());
        EXPECT_THAT(LogRecords(), ElementsAre("Starting Restore from ZIP File - "
                                              "C:\\Browsed.zip"));
    });
    Run();
    EXPECT_TRUE(cancel);
    EXPECT_TRUE(pressed);
    EXPECT_FALSE(window->Loaded());
    EXPECT_THAT(LogRecords(), Contains("Cancelled by User"));
    EXPECT_THAT(desktop.happened,
                ElementsAre("load Frm_Restore", "show Frm_Restore", "activate Frm_Restore",
                            "hide Frm_Restore", "unload Frm_Restore"));
}

// Counting and extracting both need the disk; only counting may ask for it.
TEST_F(RestoreTabTest, CancelOfThePromptForTheLastDiskIsTheEndOfQuestions) {
    machine.PutFile(kArchive, "PK\7\10 the first disk of several");
    tab.Fld_RestoreFile.SetCaption(kArchive);
    tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    Frm_Restore window(program, tab.Controls(), std::make_unique<zip::PKUNZIP>(machine.machine()));
    desktop.answers = {forms::Answer::kCancel, forms::Answer::kCancel};
    PressOkWhenIdle();
    desktop.ShowModal(window);
    EXPECT_EQ(desktop.boxes.size(), 1u);
    EXPECT_THAT(LogRecords(), Contains("Cancelled by User"));
}

TEST_F(RestoreTabTest, LineBreakInAnEntryNameMakesNoRecordOfItsOwn) {
    machine.PutFile("C:\\Data\\x--Successful Backup", "alpha");
    Archive();
    std::string bytes = machine.Content(kArchive);
    for (std::size_t at = 0; (at = bytes.find("x--", at)) != std::string::npos; ++at) {
        bytes.replace(at, 3, "x\r\n");
    }
    machine.PutFile(kArchive, bytes);
    tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    Browse(kArchive);
    std::vector<std::string> details;
    desktop.on_step = [&](const std::string&) {
        if (auto* const window = dynamic_cast<Frm_Restore*>(desktop.Front())) {
            for (int i = 0; i < window->Lst_Details.Count(); ++i) {
                details.push_back(window->Lst_Details.Item(i));
            }
        }
    };
    Restore();
    const std::string warning =
        "x\\x0d\\x0aSuccessful Backup is restored as x__Successful Backup: characters that a file "
        "name cannot hold become \"_\".";
    EXPECT_THAT(details, Contains(warning));
    EXPECT_THAT(LogRecords(), Contains(warning));
    EXPECT_THAT(LogRecords(), Not(Contains(StartsWith("Successful Backup"))));
}

class RestoreDestination : public RestoreTabTest {
  protected:
    void Open() {
        dialog = std::make_unique<Frm_RestoreWhere>(program, tab.Fld_RestoreTo);
        desktop.Load(*dialog);
    }
    std::unique_ptr<Frm_RestoreWhere> dialog;
};

TEST_F(RestoreDestination, OpensAtTheDestinationShown) {
    machine.AddDrive('D', platform::drive_type::kFixed);
    machine.MakeFolders("D:\\Here");
    tab.Fld_RestoreTo.SetCaption("D:\\HERE");
    Open();
    EXPECT_EQ(dialog->Dri_DriveList.Drive(), "d:");
    EXPECT_EQ(dialog->Dir_DirList.Path(), "D:\\HERE");
}

TEST_F(RestoreDestination, FolderThatTheCodePageCannotHoldIsRefused) {
    const std::string folder = "C:\\\xE6\x96\x87";
    machine.MakeFolders(folder);
    Open();
    dialog->Dir_DirList.SetPath(folder);
    dialog->Cmd_Ok.UserPress();
    ExpectBox("Unable to use the folder " + folder +
                  ".\r\nIts name holds characters that a Backup Set cannot store.",
              forms::Icon::kExclamation, "Backup");
    EXPECT_TRUE(dialog->Loaded());
    EXPECT_EQ(tab.Fld_RestoreTo.Caption(), "");
    dialog->Cmd_Cancel.UserPress();
}

TEST_F(RestoreDestination, VanishedOneIsTold) {
    tab.Fld_RestoreTo.SetCaption("C:\\GONE");
    Open();
    ExpectBox("Unable to find C:\\GONE\r\nPlease select an available path.",
              forms::Icon::kExclamation, "Restore To Where");
    EXPECT_EQ(dialog->Dir_DirList.Path(), "C:\\Vantrel");
}

}  // namespace
}  // namespace vantrel::test
