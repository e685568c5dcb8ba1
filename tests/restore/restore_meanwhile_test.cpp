// What else is done, or goes wrong, while Restore Now lists the archive once more.

#include "common/error.h"
#include "tests/restore/restore_tab_fixture.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

constexpr const char* kOther = "C:\\Backups\\OTHER.zip";

class RestoreMeanwhile : public RestoreTabTest {
  protected:
    RestoreMeanwhile() {
        platform::AppendToFile(machine.files(), clsCfg(program).ListPath(), "C:\\RESTORE\\SUB\r\n");
        machine.PutFile("C:\\RESTORE\\Sub\\b.txt", "newer work");
        tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    }
    // An archive with nothing for the protected folder, as `path`, which has been listed.
    void BrowseHarmless(const char* path) {
        machine.PutFile("C:\\Harmless\\top.txt", "old");
        Archive("C:\\Harmless");
        machine.PutFile(path, machine.Content(kArchive));
        Browse(path);
    }
    // It will be listed anew: it is another one than a moment ago.
    void Replace(const char* path) { machine.PutFile(path, machine.Content(path) + "\n"); }
};

// The button waits in the queue a second time, as after a double click.
TEST_F(RestoreMeanwhile, SecondPressDoesNotRestoreInsideTheFirst) {
    Archive();
    Browse(kArchive);
    Replace(kArchive);
    int pressed = 0;
    desktop.on_events.push_back([&] {
        ++pressed;
        tab.actions.Cmd_Restore_Click();
    });
    Restore();
    EXPECT_EQ(pressed, 1);
    EXPECT_THAT(desktop.happened, Contains("show Frm_Restore").Times(1));
    EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
    EXPECT_FALSE(machine.Exists("C:\\RESTORE\\SUB_002"));
}

TEST_F(RestoreMeanwhile, PressAfterARestoreRestoresAgain) {
    Archive();
    Browse(kArchive);
    Restore();
    Restore();
    EXPECT_THAT(desktop.happened, Contains("show Frm_Restore").Times(2));
}

TEST_F(RestoreMeanwhile, PressAfterOneThatEndedInAnErrorIsTakenAgain) {
    clsCfg cfg(program);
    const std::string list = machine.Content(cfg.ListPath());
    machine.files().RemoveFile(cfg.ListPath());
    Archive();
    Browse(kArchive);
    EXPECT_THROW(tab.actions.Cmd_Restore_Click(), Error);
    machine.PutFile(cfg.ListPath(), list);
    Restore();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
}

// What is restored is what is chosen when the listing has ended; the pass has to know that.
TEST_F(RestoreMeanwhile, ArchiveThatIsChosenMeanwhileIsTheOneThatThePassKnows) {
    BrowseHarmless(kOther);
    Archive();
    Replace(kOther);
    desktop.on_events.push_back([this] { Browse(kArchive); });
    Restore();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "beta");
    EXPECT_FALSE(machine.Exists("C:\\RESTORE\\top.txt"));
}

TEST_F(RestoreMeanwhile, WindowThatIsClosedMeanwhileRestoresNothing) {
    desktop.Load(tab);
    Archive();
    Browse(kArchive);
    Replace(kArchive);
    desktop.on_events.push_back([this] { desktop.Unload(tab); });
    tab.actions.Cmd_Restore_Click();
    EXPECT_THAT(desktop.happened, Not(Contains("load Frm_Restore")));
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "newer work");
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(RestoreMeanwhile, ArchiveThatMayNotBeLookedAtIsAMissingOne) {
    Archive();
    FaultyFileSystem faulty(machine.files());
    platform::Machine failing = WithFiles(machine.machine(), faulty);
    forms::Program there{failing, desktop, program.globals};
    Tab shown(there);
    shown.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    desktop.files.push_back(kArchive);
    shown.actions.Cmd_RestoreFile_Click();
    ASSERT_EQ(shown.TV_Restore.Count(), 2);
    faulty.plan.Inject({.kind = Call::kFind,
                        .from_then_on = true,
                        .number = error_number::kPermissionDenied,
                        .path_part = "WEEKLY.zip"});
    faulty.plan.Inject({.kind = Call::kList,
                        .from_then_on = true,
                        .number = error_number::kPathFileAccess,
                        .path_part = "C:\\Backups"});
    desktop.answers = {forms::Answer::kCancel};
    shown.actions.Cmd_Restore_Click();
    EXPECT_GT(faulty.plan.Fired(), 0);
    ASSERT_EQ(desktop.boxes.size(), 1u);
    ExpectBox("The archive cannot be read: C:\\Backups\\WEEKLY.zip (File not found).",
              forms::Icon::kExclamation, "Restore");
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "newer work");
}

}  // namespace
}  // namespace vantrel::test
