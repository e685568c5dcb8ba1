// The list of protected folders, edited on the Secure Data tab over a disk on which everything
// fails. Who loses an entry of it loses newer work at the next restore.
#include <gtest/gtest.h>

#include "protect/clsCfg.h"
#include "tests/faults/fault_sweep.h"
#include "tests/faults/wholeness.h"

namespace vantrel::test {
namespace {

constexpr int kTab = 4;

void Arrange(Computer& computer) {
    computer.Furnish();
    computer.MakeFolders("C:\\Letters");
    computer.before = computer.Below("C:");
    computer.Start();
    computer.desktop.boxes.clear();
}

void Select(Computer& computer, const std::string& tag) {
    auto& tree = computer.window().Secure.TV_SecureMode;
    for (int i = 1; i <= tree.Count(); ++i) {
        if (tree.At(i).tag == tag) {
            return tree.UserSelect(i);
        }
    }
    ADD_FAILURE() << tag << " is not in the tree";
}

void ShowTab(Computer& computer, const std::string& selected) {
    Arrange(computer);
    computer.window().TAB_Backup.SetTab(kTab);
    Select(computer, selected);
}

auto JudgeList(const std::vector<std::string>& texts) {
    return [=](Computer& computer, bool& reached) -> std::string {
        const std::string now = computer.Content(kListPath);
        reached = now == texts.back();
        const std::string lost = FirstOf({OneOf(computer, kListPath, texts),
                                          Untouched(computer, {kSetPath, "C:\\Data\\a.txt"}),
                                          LogWhole(computer, computer.before[kLogPath])});
        if (!lost.empty()) {
            return lost;
        }
        const bool reported = IsReported(computer, computer.before[kLogPath]);
        return reached || reported ? "" : "the list was not changed, unreported";
    };
}

TEST(Faults, FolderAddedToTheList) {
    const std::string before = ListText({"C:\\DATA", "C:\\DIARY"});
    ExpectNothingLost(
        {.name = "Folder added to the protected list",
         .arrange = [](Computer& computer) { ShowTab(computer, "C:\\Letters"); },
         .act = [](Computer& computer) { computer.window().Menu_Secure_Add.UserChoose(); },
         .judge = JudgeList({before, before + "C:\\LETTERS\r\n"})});
}

TEST(Faults, FolderTakenFromTheList) {
    ExpectNothingLost(
        {.name = "Folder taken from the protected list",
         .arrange = [](Computer& computer) { ShowTab(computer, "C:\\Data"); },
         .act = [](Computer& computer) { computer.window().Menu_Secure_Delete.UserChoose(); },
         .judge = JudgeList({ListText({"C:\\DATA", "C:\\DIARY"}), ListText({"C:\\DIARY"})})});
}

// Merely looking at the tab makes a list where there is none, and must never make one where there
// is.
TEST(Faults, ListLookedAt) {
    ExpectNothingLost({.name = "Protected list looked at",
                       .arrange = Arrange,
                       .act = [](Computer& computer) { computer.window().TAB_Backup.SetTab(kTab); },
                       .judge = JudgeList({ListText({"C:\\DATA", "C:\\DIARY"})})});
}

TEST(Faults, MissingListMade) {
    ExpectNothingLost({.name = "Missing protected list made",
                       .arrange =
                           [](Computer& computer) {
                               Arrange(computer);
                               computer.disk.RemoveFile(kListPath);
                           },
                       .act = [](Computer& computer) { computer.window().TAB_Backup.SetTab(kTab); },
                       .judge = JudgeList({"", ListText({})})});
}

}  // namespace
}  // namespace vantrel::test
