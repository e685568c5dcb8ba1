// What a backup does first and what next, and which archive is the one before.

#include "tests/backup/backup_run_fixture.h"
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
    zip.action = [this](RecordingZip& component) { ExpectYieldsBeforeTheBarsMove(component); };
    Run();
}

TEST_F(BackupRunOrder, ArchiveIsLoggedAsTheComponentHasIt) {
    zip.reads_back[zip::zip_id::kArchive] = std::string("C:\\Backups\\AsTaken.zip");
    Run();
    EXPECT_THAT(LogRecords(), Contains("Creating Backup File C:\\Backups\\AsTaken.zip"));
}

TEST_F(BackupRunOrder, ArchivesPathIsLeftInTheSharedTextBuffer) {
    Run();
    EXPECT_EQ(program.globals.TextBuffer, "C:\\Backups\\WEEKLY.zip");
}

TEST_F(BackupRunOrder, DatedFoldersReuseTheArchiveThatTheSetNames) {
    Run({.time = "ON"});
    EXPECT_EQ(window->PKZIP.earlier_archive, "") << "no archive yet";
    PutSet("WEEKLY.INI", {.time = "ON"});
    const std::string set = machine.Content("C:\\Vantrel\\WEEKLY.INI");
    std::string named = set;
    named.replace(named.find("FromDrive=") + 10, 0, "C:\\Backups\\20261114_120000\\");
    named.replace(named.find("RestoreFileName=") + 16, 0, "WEEKLY.zip");
    Unattended("WEEKLY.INI");
    const auto run = [&](const std::string& text) {
        machine.PutFile("C:\\Vantrel\\WEEKLY.INI", text);
        RunSet("WEEKLY.INI", program);
        return window->PKZIP.earlier_archive;
    };
    EXPECT_EQ(run(named), "C:\\Backups\\20261114_120000\\WEEKLY.zip");
    named.replace(named.find("TimeBackup=ON"), 13, "TimeBackup=OFF");
    EXPECT_EQ(run(named), "") << "the archive that is replaced";
}

}  // namespace
}  // namespace vantrel::test
