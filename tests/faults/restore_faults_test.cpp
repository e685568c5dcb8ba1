// Restores over a disk on which everything fails: of folders that are protected, and over files
// that are there.
#include <gtest/gtest.h>

#include "restore/Frm_Restore.h"
#include "tests/faults/computer.h"
#include "tests/faults/fault_sweep.h"
#include "tests/faults/wholeness.h"

namespace vantrel::test {
namespace {

const std::string kNewer = "newer work, longer than what was backed up";
const Tree kSource = {
    {"\\a.txt", "alpha"}, {"\\b.bin", std::string(3000, 'b')}, {"\\Sub\\c.txt", "gamma"}};

// The archive of C:\Data, and the set that remembers it.
struct BackedUp {
    std::string archive;
    std::string set;
};

const BackedUp& Backup() {
    static const BackedUp made = [] {
        Computer computer;
        computer.Furnish();
        computer.Start("WEEKLY.INI");
        return BackedUp{computer.Content(kArchivePath), computer.Content(kSetPath)};
    }();
    return made;
}

void Arrange(Computer& computer, const std::string& destination) {
    computer.Furnish();
    computer.Put(kArchivePath, Backup().archive);
    computer.Put(kSetPath, Backup().set);
    computer.Put(destination + "\\a.txt", kNewer);
    computer.before = computer.Below("C:");
    computer.Start();
    computer.window().Restore.Fld_RestoreTo.SetCaption(destination);
    computer.desktop.boxes.clear();
}

void Restore(Computer& computer) {
    computer.window().Restore.Cmb_RestoreFile.SetText("WEEKLY.INI");
    computer.desktop.idle.push_back([&computer] {
        auto* const window = dynamic_cast<Frm_Restore*>(computer.desktop.Front());
        ASSERT_NE(window, nullptr);
        computer.outcome = window->Lbl_RestorePath.Caption();
        window->Cmd_Ok.UserPress();
    });
    computer.window().Restore.Cmd_Restore.UserPress();
}

std::string SetAfterwards(const std::string& destination) {
    std::string text = Backup().set;
    const std::string key = "RestoreDestination=";
    return text.replace(text.find(key) + key.size(), 0, destination);
}

// Everything but the files that are restored.
std::string OthersWhole(Computer& computer, const std::string& destination) {
    return FirstOf({
        Untouched(computer, {kArchivePath, kListPath}),
        OneOf(computer, kSetPath, {computer.before[kSetPath], SetAfterwards(destination)}),
        LogWhole(computer, computer.before[kLogPath]),
    });
}

// A restore that says nothing has restored everything.
std::string Claims(Computer& computer, const std::string& destination, bool& reached) {
    bool equal = true;
    for (const auto& [name, content] : kSource) {
        equal = equal && computer.Content(destination + name) == content;
    }
    const bool reported = IsReported(computer, computer.before[kLogPath]);
    reached = equal && computer.outcome == "Restore Complete";
    if (!equal && !reported) {
        return "not everything is restored, unreported (" + computer.outcome + ")";
    }
    return "";
}

// Every other call: the protected folder's restore, below, makes nearly the same ones.
TEST(Faults, RestoreOverFilesThatAreThere) {
    const std::string target = "C:\\Target";
    ExpectNothingLost({.name = "Restore over files that are there",
                       .arrange = [=](Computer& computer) { Arrange(computer, target); },
                       .act = Restore,
                       .judge =
                           [=](Computer& computer, bool& reached) {
                               return FirstOf({
                                   OneOf(computer, target + "\\a.txt", {kNewer, "alpha"}),
                                   OthersWhole(computer, target),
                                   Claims(computer, target, reached),
                               });
                           },
                       .step = 2});
}

TEST(Faults, RestoreOfAProtectedFolder) {
    const std::string target = "C:\\Data";
    ExpectNothingLost({.name = "Restore of a protected folder",
                       .arrange = [=](Computer& computer) { Arrange(computer, target); },
                       .act = Restore,
                       .judge = [=](Computer& computer, bool& reached) -> std::string {
                           const bool aside = computer.Content("C:\\DATA_001\\a.txt") == kNewer;
                           const bool in_place = computer.Content("C:\\Data\\a.txt") == kNewer;
                           if (!aside && !in_place) {
                               return "newer work in a protected folder";
                           }
                           const std::string lost = OthersWhole(computer, target);
                           return lost.empty() ? Claims(computer, target, reached) : lost;
                       },
                       .disk = Computer::Disk::kHost});
}

}  // namespace
}  // namespace vantrel::test
