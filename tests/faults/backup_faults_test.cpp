// Backups of one set over a disk on which everything fails once, and for good.
#include <gtest/gtest.h>

#include "tests/faults/computer.h"
#include "tests/faults/fault_sweep.h"
#include "tests/faults/wholeness.h"
#include "zip/pkzip.h"

namespace vantrel::test {
namespace {

void ArrangeWindow(Computer& computer) {
    FurnishForBackup(computer);
    computer.Start();
    computer.window().Backup.Cmb_BackupSet.SetText("WEEKLY.INI");
    computer.desktop.boxes.clear();
}

std::string Judge(Computer& computer, bool& reached) {
    const std::string log = computer.Content(kLogPath);
    const std::string earlier_log = computer.before[kLogPath];
    const bool died = computer.ending == Ending::kDied;
    const bool unattended = !computer.services.process.command_line.empty();
    const bool claimed = log.find("Successful Backup") != std::string::npos ||
                         computer.outcome == "Backup Complete" ||
                         (unattended && !died && computer.exit_code <= 1);
    Tree source = computer.before;
    std::erase_if(source, [](const auto& file) { return !file.first.starts_with("C:\\Data\\"); });
    int files = 0;
    std::string lost = FirstOf({
        ArchiveWhole(computer, kArchivePath, computer.before[kArchivePath], source, files),
        OneOf(computer, kSetPath, {computer.before[kSetPath], SetAfterBackup("C:\\BACKUPS\\")}),
        LogWhole(computer, earlier_log),
        Untouched(computer,
                  {kListPath, "C:\\Data\\a.txt", "C:\\Data\\b.bin", "C:\\Data\\Sub\\c.txt"}),
    });
    const bool whole = files == static_cast<int>(source.size());
    reached = claimed && whole;
    if (!lost.empty()) {
        return lost;
    }
    if (claimed && files < 0) {
        return "it says that it was successful, and there is no archive";
    }
    if (claimed && !whole && !IsReported(computer, earlier_log)) {
        return "files left out, unreported";
    }
    if (!claimed && !IsReported(computer, earlier_log)) {
        return "it failed and has not said so";
    }
    return "";
}

TEST(Faults, BackupWithSomebodyThere) {
    ExpectNothingLost({.name = "Backup, attended",
                       .arrange = ArrangeWindow,
                       .act =
                           [](Computer& computer) {
                               CloseWhenOver(computer);
                               computer.window().Backup.Cmd_Backup.UserPress();
                           },
                       .judge = Judge,
                       .disk = Computer::Disk::kHost});
}

// Its calls are those of a start, which the log's sweeps try one by one, and of a backup, as above.
void SweepUnattended(const std::string& name, void (*arrange)(Computer&)) {
    ExpectNothingLost({.name = name,
                       .arrange = arrange,
                       .act = [](Computer& computer) { computer.Start("WEEKLY.INI"); },
                       .judge = Judge,
                       .step = 3});
}

TEST(Faults, BackupFromItsStartWithNobodyThere) {
    SweepUnattended("Backup, unattended, from the start", FurnishForBackup);
}

// The archive that is replaced is one of the program's own, and data of it is reused.
void ArrangeSecondRun(Computer& computer) {
    namespace id = zip::zip_id;
    FurnishForBackup(computer);
    platform::Machine below = WithFiles(computer.machine, computer.disk);
    zip::PKZIP component(below);
    component.Set(id::kLevel, std::int16_t{9});
    component.Set(id::kSubFolders, true);
    component.Set(id::kArchive, std::string(kArchivePath));
    component.Set(id::kFileSpec, std::string("\"C:\\Data\\*.*\""));
    component.Set(id::kAction, id::kActionAdd);
    computer.Put("C:\\Data\\a.txt", "another alpha");
    computer.before = computer.Below("C:");
}

TEST(Faults, BackupOverAnArchiveThatIsReused) {
    SweepUnattended("Backup, unattended, the earlier archive reused", ArrangeSecondRun);
}

}  // namespace
}  // namespace vantrel::test
