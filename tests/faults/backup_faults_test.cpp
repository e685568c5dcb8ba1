// Backups of one set over a disk on which everything fails once, and for good.
#include <gtest/gtest.h>

#include "backup/Frm_Backup.h"
#include "tests/faults/fault_sweep.h"
#include "tests/faults/wholeness.h"

namespace vantrel::test {
namespace {

constexpr const char* kArchive = "C:\\Backups\\WEEKLY.zip";
const std::string kEarlier = "an earlier archive";

void Arrange(Computer& computer) {
    computer.Furnish();
    computer.Put(kArchive, kEarlier);
    computer.before = computer.Below("C:");
}

void ArrangeWindow(Computer& computer) {
    Arrange(computer);
    computer.Start();
    computer.window().Backup.Cmb_BackupSet.SetText("WEEKLY.INI");
    computer.desktop.boxes.clear();
}

// Whoever sits there reads how it ended and presses the button that is left.
void WaitAndClose(Computer& computer) {
    computer.desktop.idle.push_back([&computer] {
        auto* const window = dynamic_cast<Frm_Backup*>(computer.desktop.Front());
        ASSERT_NE(window, nullptr);
        computer.outcome = window->Lbl_BackupPath.Caption();
        window->Cmd_Ok.UserPress();
    });
}

std::string SetAfterwards() {
    std::string text = SetText("WEEKLY", "C:\\BACKUPS\\");
    text.replace(text.find("FromDrive=") + 10, 0, "C:\\BACKUPS\\");
    return text.replace(text.find("FileName=\r\n\r\n[RESTORE D") + 9, 0, "WEEKLY.zip");
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
        ArchiveWhole(computer, kArchive, kEarlier, source, files),
        OneOf(computer, kSetPath, {computer.before[kSetPath], SetAfterwards()}),
        LogWhole(computer, earlier_log),
        Untouched(computer,
                  {kListPath, "C:\\Data\\a.txt", "C:\\Data\\b.bin", "C:\\Data\\Sub\\c.txt"}),
    });
    const bool whole = files == static_cast<int>(source.size());
    reached = claimed && whole;
    if (!lost.empty()) return lost;
    if (claimed && files < 0) return "it says that it was successful, and there is no archive";
    if (claimed && !whole && !HasSaid(computer, earlier_log)) return "files left out, untold";
    if (!claimed && !HasSaid(computer, earlier_log)) return "it failed and has not said so";
    return "";
}

TEST(Faults, BackupWithSomebodyThere) {
    ExpectNothingLost(Sweep({.name = "Backup, attended",
                             .arrange = ArrangeWindow,
                             .act =
                                 [](Computer& computer) {
                                     WaitAndClose(computer);
                                     computer.window().Backup.Cmd_Backup.UserPress();
                                 },
                             .judge = Judge,
                             .disk = Computer::Disk::kHost}));
}

// Its calls are those of a start, which the log's sweeps try one by one, and of a backup, as above.
TEST(Faults, BackupFromItsStartWithNobodyThere) {
    ExpectNothingLost(Sweep({.name = "Backup, unattended, from the start",
                             .arrange = Arrange,
                             .act = [](Computer& computer) { computer.Start("WEEKLY.INI"); },
                             .judge = Judge,
                             .step = 3}));
}

}  // namespace
}  // namespace vantrel::test
