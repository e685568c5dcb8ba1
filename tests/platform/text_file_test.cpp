// Whole small files and lines, with and without faults.
#include "platform/text_file.h"

#include "common/error.h"
#include "tests/support/error_of.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/matchers.h"
#include "tests/support/test_machine.h"

namespace vantrel::test {
namespace {

using namespace error_number;
using platform::SplitLines;
namespace attribute = platform::attribute;

TEST(SplitLines, CrLfCrAndLfAllEndALine) {
    EXPECT_THAT(SplitLines("a\r\nb\rc\nd"), ElementsAre("a", "b", "c", "d"));
}

TEST(SplitLines, LastLineNeedsNoEndAndAnEndAddsNoLine) {
    EXPECT_THAT(SplitLines("a\r\nb"), ElementsAre("a", "b"));
    EXPECT_THAT(SplitLines("a\r\nb\r\n"), ElementsAre("a", "b"));
}

TEST(SplitLines, EmptyLinesCount) {
    EXPECT_THAT(SplitLines("\r\n\r\n"), ElementsAre("", ""));
    EXPECT_THAT(SplitLines("\n\r"), ElementsAre("", ""));
    EXPECT_THAT(SplitLines("a\r\r\nb"), ElementsAre("a", "", "b"));
}

TEST(SplitLines, EmptyTextHasNoLines) { EXPECT_THAT(SplitLines(""), IsEmpty()); }

TEST(SplitLines, Byte1AAndNulAreOrdinary) {
    EXPECT_THAT(SplitLines("a\x1A\x62\r\nc\x1A"), ElementsAre("a\x1A\x62", "c\x1A"));
    EXPECT_THAT(SplitLines({"a\0b\n", 4}), ElementsAre(std::string("a\0b", 3)));
}

class TextFile : public ::testing::Test {
  protected:
    TestMachine machine;
    FaultyFileSystem faulty{machine.files()};
    const std::string path = "C:\\Vantrel\\Daily.ini";
    const std::string old_bytes = "old bytes\r\n";
    const std::string new_bytes = std::string(5000, 'n') + "\r\n";

    int ReplaceError() {
        return ErrorOf([&] { platform::ReplaceWholeFile(faulty, path, new_bytes); });
    }
    // Fails call n for n = 1, 2, 3 ... until none fires; `check` looks at the disk after each.
    void Sweep(Fault fault, const std::function<void()>& check) {
        int runs = 0;
        for (fault.at = 1;; ++fault.at, ++runs) {
            machine.PutFile(path, old_bytes);
            const int fired = faulty.plan.Fired();
            faulty.plan.Inject(fault);
            try {
                platform::ReplaceWholeFile(faulty, path, new_bytes);
            } catch (const Error&) {
            } catch (const ProcessDied&) {
            }
            const bool struck = faulty.plan.Fired() > fired;
            faulty.plan.Heal();
            check();
            RemoveScratch();
            if (!struck) {
                break;
            }
            ASSERT_LT(runs, 100);
        }
        EXPECT_GE(runs, 5) << "opening, writing, flushing, closing and replacing at least";
        EXPECT_EQ(machine.Content(path), new_bytes);
    }
    // What a process leaves that dies before it has put its scratch file in place.
    void RemoveScratch() {
        const std::string scratch = "C:\\Vantrel\\~Vantrel.new";
        if (machine.Exists(scratch)) {
            machine.files().RemoveFile(scratch);
        }
    }
    void ExpectOldOrNew() {
        const std::string now = machine.Content(path);
        EXPECT_TRUE(now == old_bytes || now == new_bytes) << now.size() << " bytes";
    }
};

TEST_F(TextFile, ReadsAllBytes) {
    const std::string bytes(200'000, 'x');
    machine.PutFile(path, bytes);
    EXPECT_EQ(platform::ReadWholeFile(machine.files(), path), bytes);
}

TEST_F(TextFile, ReadsAllBytesInShortReads) {
    machine.PutFile(path, new_bytes);
    faulty.plan.LimitReads(7);
    EXPECT_EQ(platform::ReadWholeFile(faulty, path), new_bytes);
}

TEST_F(TextFile, AppendsInOneWrite) {
    platform::AppendToFile(faulty, path, "one\r\n");
    platform::AppendToFile(faulty, path, "two\r\n");
    EXPECT_EQ(machine.Content(path), "one\r\ntwo\r\n");
    EXPECT_EQ(faulty.plan.Count(Call::kWrite), 2);
}

TEST_F(TextFile, AppendThatIsCutOffLosesAtMostItsOwnRecord) {
    machine.PutFile(path, old_bytes);
    faulty.plan.Inject({.kind = Call::kWrite, .number = kDiskFull, .effect = Effect::kShortWrite});
    EXPECT_THROW(platform::AppendToFile(faulty, path, "record\r\n"), Error);
    EXPECT_EQ(machine.Content(path), old_bytes + "reco");
}

TEST_F(TextFile, ReplaceLeavesOnlyTheFile) {
    machine.PutFile(path, old_bytes);
    EXPECT_EQ(ReplaceError(), 0);
    EXPECT_EQ(machine.Content(path), new_bytes);
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("Daily.ini"));
}

TEST_F(TextFile, ReplaceCreatesAMissingFile) {
    EXPECT_EQ(ReplaceError(), 0);
    EXPECT_EQ(machine.Content(path), new_bytes);
}

TEST_F(TextFile, ReplaceKeepsHiddenAndSystem) {
    machine.PutFile(path, old_bytes);
    machine.files().SetAttributes(path, attribute::kHidden | attribute::kSystem);
    EXPECT_EQ(ReplaceError(), 0);
    const auto info = machine.files().Find(path);
    EXPECT_EQ(info->attributes & (attribute::kHidden | attribute::kSystem),
              attribute::kHidden | attribute::kSystem);
}

TEST_F(TextFile, ReplaceOfAReadOnlyFileIs70AndChangesNothing) {
    machine.PutFile(path, old_bytes);
    machine.files().SetAttributes(path, attribute::kReadOnly);
    EXPECT_EQ(ReplaceError(), kPermissionDenied);
    EXPECT_EQ(machine.Content(path), old_bytes);
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("Daily.ini"));
}

TEST_F(TextFile, ReplaceOfALockedFileIs70AndChangesNothing) {
    machine.PutFile(path, old_bytes);
    auto lock = machine.files().Open(path, platform::OpenMode::kAppend);
    EXPECT_EQ(ReplaceError(), kPermissionDenied);
    lock->Close();
    EXPECT_EQ(machine.Content(path), old_bytes);
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("Daily.ini"));
}

TEST_F(TextFile, ReplaceOfAFolderIs70) {
    machine.MakeFolders(path);
    EXPECT_EQ(ReplaceError(), kPermissionDenied);
}

TEST_F(TextFile, ReplaceOnAFullDiskLeavesTheOldFileAndNoScratch) {
    machine.PutFile(path, old_bytes);
    faulty.plan.LimitDisk(100);
    EXPECT_EQ(ReplaceError(), kDiskFull);
    EXPECT_EQ(machine.Content(path), old_bytes);
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("Daily.ini"));
}

TEST_F(TextFile, ReplaceWithOneFailingCallLeavesOldOrNewBytesAndNoScratch) {
    Sweep({}, [&] {
        ExpectOldOrNew();
        EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("Daily.ini"));
    });
}

TEST_F(TextFile, ReplaceWithEveryCallFailingFromOneOnLeavesOldOrNewBytes) {
    Sweep({.from_then_on = true}, [&] { ExpectOldOrNew(); });
}

TEST_F(TextFile, ReplaceWithTheProcessDyingAnywhereLeavesOldOrNewBytes) {
    Sweep({.effect = Effect::kDie}, [&] { ExpectOldOrNew(); });
}

TEST_F(TextFile, ReplaceWithThePowerFailingAnywhereLeavesOldOrNewBytes) {
    Sweep({.effect = Effect::kDie}, [&] {
        faulty.LoseUnflushed();
        ExpectOldOrNew();
    });
}

TEST_F(TextFile, MakeMakesAMissingFileAndLeavesOnlyIt) {
    platform::MakeWholeFile(faulty, path, new_bytes);
    EXPECT_EQ(machine.Content(path), new_bytes);
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("Daily.ini"));
}

TEST_F(TextFile, MakeOverAFileIs58AndLeavesIt) {
    machine.PutFile(path, old_bytes);
    EXPECT_EQ(ErrorOf([&] { platform::MakeWholeFile(faulty, path, new_bytes); }), kFileExists);
    EXPECT_EQ(machine.Content(path), old_bytes);
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre("Daily.ini"));
}

TEST_F(TextFile, ScratchFileTakesANameThatNoFileHas) {
    machine.PutFile(path, old_bytes);
    machine.PutFile(path + ".new", "mine");
    machine.PutFile("C:\\Vantrel\\~Vantrel.new", "mine, too");
    machine.MakeFolders("C:\\Vantrel\\~Vantrel1.new");
    EXPECT_EQ(platform::UnusedPathBeside(machine.files(), path), "C:\\Vantrel\\~Vantrel2.new");
    EXPECT_EQ(ReplaceError(), 0);
    EXPECT_EQ(machine.Content(path), new_bytes);
    EXPECT_EQ(machine.Content(path + ".new"), "mine");
    EXPECT_EQ(machine.Content("C:\\Vantrel\\~Vantrel.new"), "mine, too");
    EXPECT_THAT(machine.Names("C:\\Vantrel"),
                ElementsAre("Daily.ini", "Daily.ini.new", "~Vantrel.new", "~Vantrel1.new\\"));
}

TEST_F(TextFile, LongestNameOfAFileLeavesSpaceForItsScratchFile) {
    const std::string longest = "C:\\Vantrel\\" + std::string(251, 'n') + ".INI";
    machine.PutFile(longest, old_bytes);
    platform::ReplaceWholeFile(machine.files(), longest, new_bytes);
    EXPECT_EQ(machine.Content(longest), new_bytes);
}

}  // namespace
}  // namespace vantrel::test
