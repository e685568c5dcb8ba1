// What a backup does first and what next.

#include "tests/backup/backup_run_fixture.h"
#include "tests/support/diary.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

using BackupRunOrder = BackupRun;

// Whoever finds the success record in the log finds the archive by the set.
TEST_F(BackupRunOrder, LogsTheStartReadsTheSetAndWritesTheRestoreSourceBeforeTheOutcome) {
    FaultyFileSystem files(machine.files());
    platform::Machine watched = WithFiles(machine.machine(), files);
    Diary diary(desktop);
    diary.FollowFiles(files.plan, {"Vantrel.Log", "WEEKLY.INI"});
    zip.action = [&diary](RecordingZip&) { diary.Note("action"); };
    forms::Program there{watched, desktop};
    there.globals = program.globals;
    Run({}, there);
    const std::vector<std::string> lines = diary.Lines();
    EXPECT_THAT(
        std::vector(std::find(lines.begin(), lines.end(), "Vantrel.Log written"),
                    std::find(lines.begin(), lines.end(), "hide Frm_Backup")),
        ElementsAre("Vantrel.Log written", "WEEKLY.INI read", "Vantrel.Log written", "action",
                    "WEEKLY.INI read", "WEEKLY.INI written", "Vantrel.Log written"));
}

TEST_F(BackupRunOrder, ProgressEventsYieldBeforeTheBarsMove) {
    zip.action = [this](RecordingZip& component) {
        Diary diary(desktop);
        diary.Follow(window->PB_Folder);
        diary.Follow(window->PB_File);
        component.RaiseOverall(42);
        std::int32_t percent = 17;
        component.FileProgress(percent);
        EXPECT_THAT(diary.Lines(),
                    ElementsAre("events", "PB_Folder value", "events", "PB_File value"));
    };
    Run({});
}

TEST_F(BackupRunOrder, ArchiveIsLoggedAsTheComponentHasIt) {
    zip.reads_back[zip::zip_id::kArchive] = std::string("C:\\Backups\\AsTaken.zip");
    Run({});
    EXPECT_THAT(LogRecords(), Contains("Creating Backup File C:\\Backups\\AsTaken.zip"));
}

TEST_F(BackupRunOrder, ArchivesPathIsLeftInTheSharedTextBuffer) {
    Run({});
    EXPECT_EQ(program.globals.TextBuffer, "C:\\Backups\\WEEKLY.zip");
}

}  // namespace
}  // namespace vantrel::test
