// A backup onto several disks, somebody changing them, while everything fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include "tests/faults/computer.h"
#include "tests/faults/fault_sweep.h"
#include "tests/faults/wholeness.h"
#include "tests/zip/archive_reader.h"
#include "tests/zip/sample_data.h"

namespace vantrel::test {
namespace {

constexpr const char* kArchive = "A:\\WEEKLY.zip";
constexpr std::uint64_t kDiskSize = 3000;  // bytes: the source takes three disks

// Puts in the disk that is asked for.
void ChangeDisks(Computer& computer) {
    const auto answer = computer.desktop.on_box;
    computer.desktop.on_box = [&computer, answer](const forms::Box& box) {
        static const std::regex asks_for("insert disk ([0-9]+)");
        std::smatch found;
        if (std::regex_search(box.text, found, asks_for)) {
            computer.box.Insert(std::stoi(found[1]) - 1);
        }
        answer(box);
    };
}

void Arrange(Computer& computer) {
    computer.Furnish();
    // Without either of them it still takes two disks.
    computer.Put("C:\\Data\\noise.bin", Noise(3500));
    computer.Put("C:\\Data\\more.bin", Noise(3500));
    computer.Put(kSetPath, SetText("WEEKLY", "A:\\", "ON"));
    computer.box.usual_size = kDiskSize;
    computer.box.Insert(0);
    computer.memory.Put(kArchive, kEarlierArchive);
    computer.before = computer.Below("C:");
    computer.Start();
    computer.window().Backup.Cmb_BackupSet.SetText("WEEKLY.INI");
    computer.desktop.boxes.clear();
    ChangeDisks(computer);
}

void BackUp(Computer& computer) {
    CloseWhenOver(computer);
    computer.window().Backup.Cmd_Backup.UserPress();
}

// "" when the disks together are an archive of files of the source; how many it holds.
std::string DisksWhole(const std::vector<std::string>& volumes, const Tree& source, int& files) {
    try {
        const SetContents set = ReadSet(volumes);
        files = static_cast<int>(set.files.size());
        for (const auto& [stored, content] : set.files) {
            std::string name = "C:\\Data\\" + stored;
            std::replace(name.begin(), name.end(), '/', '\\');
            const auto found = source.find(name);
            if (found == source.end() || found->second != content) {
                return "wrong " + stored;
            }
        }
        return "";
    } catch (const std::exception& error) {
        return error.what();
    }
}

std::string Judge(Computer& computer, bool& reached) {
    const std::string log = computer.Content(kLogPath);
    const std::string& earlier_log = computer.before[kLogPath];
    const bool claimed =
        log.find("Successful Backup") != std::string::npos || computer.outcome == "Backup Complete";
    Tree source = computer.before;
    std::erase_if(source, [](const auto& file) { return !file.first.starts_with("C:\\Data\\"); });
    // The box counts what is written to C: as bytes of the small disk: the log, too, may find it
    // full, and is then cut without being struck itself.
    computer.writes_are_cut = true;
    std::string lost = FirstOf({
        OneOf(computer, kSetPath, {computer.before[kSetPath], SetAfterBackup("A:\\", "ON")}),
        LogWhole(computer, earlier_log),
        Untouched(computer, {kListPath, "C:\\Data\\a.txt", "C:\\Data\\noise.bin"}),
    });
    const std::vector<std::string> volumes = computer.box.Volumes(kArchive);
    int files = 0;
    const std::string why_not = DisksWhole(volumes, source, files);
    reached = claimed && why_not.empty() && files == static_cast<int>(source.size());
    if (!lost.empty()) {
        return lost;
    }
    if (claimed && !why_not.empty()) {
        return "successful, but the disks are no archive: " + why_not;
    }
    if (claimed && !reached && !IsReported(computer, earlier_log)) {
        return "files left out, unreported";
    }
    if (!claimed && !IsReported(computer, earlier_log)) {
        return "it failed and has not said so";
    }
    // The first disk's earlier archive goes only when all disks of the new one are written.
    const bool kept = !volumes.empty() && volumes[0] == kEarlierArchive;
    return kept || why_not.empty() ? "" : "the earlier archive is gone: " + why_not;
}

// Every other call of a long run.
TEST(Faults, BackupOntoSeveralDisks) {
    ExpectNothingLost({.name = "Backup onto several disks, attended",
                       .arrange = Arrange,
                       .act = BackUp,
                       .judge = Judge,
                       .disk = Computer::Disk::kBoxOfDisks,
                       .step = 2});
}

}  // namespace
}  // namespace vantrel::test
