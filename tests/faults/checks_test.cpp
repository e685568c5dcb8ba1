// The checks of the sweeps, tried on work that loses something: each must say so.

#include <set>

#include "log/clsLog.h"
#include "platform/text_file.h"
#include "tests/faults/computer.h"
#include "tests/faults/fault_sweep.h"
#include "tests/faults/wholeness.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

const std::string kNew = "a new text, whole\r\n";

void Arrange(Computer& computer) {
    FurnishForBackup(computer);
    computer.Start();
    computer.desktop.boxes.clear();
}

std::string JudgeFile(Computer& computer, const std::string& path, bool& reached) {
    reached = computer.Content(path) == kNew;
    const bool reported = reached || IsReported(computer, computer.before[kLogPath]);
    return FirstOf({OneOf(computer, path, {computer.before[path], kNew}),
                    reported ? "" : "not done, unreported"});
}

// What a sweep of such work finds lost. The work itself must be right while nothing fails.
std::vector<std::string> LossesOf(
    const std::function<void(Computer&)>& act,
    const std::function<std::string(Computer&, bool&)>& judge =
        [](Computer& computer, bool& reached) { return JudgeFile(computer, kSetPath, reached); }) {
    const Tally tally =
        Sweep({.name = "Work to be judged", .arrange = Arrange, .act = act, .judge = judge});
    EXPECT_GT(tally.faults, 0);
    return tally.lost;
}

TEST(Checks, SetReplacedInOneStepIsNeverLost) {
    EXPECT_THAT(LossesOf([](Computer& computer) {
                    platform::ReplaceWholeFile(computer.machine.files, kSetPath, kNew);
                }),
                IsEmpty());
}

TEST(Checks, SetWrittenInPlaceIsLost) {
    const auto lost = LossesOf([](Computer& computer) {
        platform::WriteWholeFile(computer.machine.files, kSetPath, kNew);
    });
    EXPECT_THAT(lost, Contains(HasSubstr("disk full at call 2")));
    EXPECT_THAT(lost, Contains(HasSubstr("short write at call 1")));
    EXPECT_THAT(lost, Contains(HasSubstr("process dies at call 2")));
}

TEST(Checks, SetRemovedBeforeItsNewTextTakesItsNameIsLost) {
    const auto lost = LossesOf([](Computer& computer) {
        auto& files = computer.machine.files;
        platform::WriteWholeFile(files, "C:\\Vantrel\\new", kNew);
        files.RemoveFile(kSetPath);
        files.Rename("C:\\Vantrel\\new", kSetPath);
    });
    EXPECT_THAT(lost, Contains(HasSubstr("process dies at call 5")));
}

// The names are exchanged in one step, but the bytes are not on the disk yet.
TEST(Checks, SetReplacedWithoutAFlushIsLostWithThePowerOnly) {
    const auto lost = LossesOf([](Computer& computer) {
        auto& files = computer.machine.files;
        platform::WriteWholeFile(files, "C:\\Vantrel\\new", kNew);
        files.Replace("C:\\Vantrel\\new", kSetPath);
    });
    EXPECT_THAT(lost, Not(IsEmpty()));
    EXPECT_THAT(lost, ::testing::Each(HasSubstr("power fails")));
}

TEST(Checks, ErrorThatIsSwallowedIsUnreported) {
    const auto lost = LossesOf([](Computer& computer) {
        try {
            platform::ReplaceWholeFile(computer.machine.files, kSetPath, kNew);
        } catch (const Error&) {
        }
    });
    EXPECT_THAT(lost, Contains(HasSubstr("not done, unreported")));
    EXPECT_THAT(lost, Not(Contains(HasSubstr("neither the old one"))));
}

TEST(Checks, ErrorThatIsShownIsTold) {
    EXPECT_THAT(LossesOf([](Computer& computer) {
                    try {
                        platform::ReplaceWholeFile(computer.machine.files, kSetPath, kNew);
                    } catch (const Error& error) {
                        ShowError(computer.application->program(), error);
                    }
                }),
                IsEmpty());
}

TEST(Checks, LogRewrittenInPlaceIsLost) {
    const auto lost = LossesOf(
        [](Computer& computer) {
            auto& files = computer.machine.files;
            const std::string log = platform::ReadWholeFile(files, kLogPath);
            const std::string record = "15/11/2026 13:05:09 One more record\r\n";
            platform::WriteWholeFile(files, kLogPath, log + record);
        },
        [](Computer& computer, bool& reached) {
            reached = computer.Content(kLogPath).ends_with("One more record\r\n");
            return LogWhole(computer, computer.before[kLogPath]);
        });
    EXPECT_THAT(lost, Contains(HasSubstr("records of the log")));
    EXPECT_THAT(lost, Contains(HasSubstr("process dies")));
}

TEST(Checks, LogWithHalfARecordIsOddUnlessAWriteWasCut) {
    Computer computer;
    Arrange(computer);
    const std::string earlier = computer.before[kLogPath];
    EXPECT_EQ(LogWhole(computer, earlier), "");
    computer.Put(kLogPath, earlier + "15/11/2026 13:05:09 Whole\r\n15/11/2026 13:");
    EXPECT_NE(LogWhole(computer, earlier), "");
    computer.writes_are_cut = true;  // but none has been
    EXPECT_NE(LogWhole(computer, earlier), "");
    computer.Put(kLogPath, earlier.substr(1));
    EXPECT_NE(LogWhole(computer, earlier), "");
}

TEST(Checks, ArchiveIsTheEarlierOneOrWholeAndOfTheSource) {
    Computer computer;
    FurnishForBackup(computer);
    const Tree source = computer.Below("C:\\Data");
    int files = 0;
    EXPECT_EQ(ArchiveWhole(computer, kArchivePath, kEarlierArchive, source, files), "");
    EXPECT_EQ(files, -1);
    computer.Start("WEEKLY.INI");
    EXPECT_EQ(ArchiveWhole(computer, kArchivePath, kEarlierArchive, source, files), "");
    EXPECT_EQ(files, 3);
    const std::string whole = computer.Content(kArchivePath);
    for (const std::size_t size : {whole.size() - 1, whole.size() / 2, std::size_t{0}}) {
        computer.Put(kArchivePath, whole.substr(0, size));
        EXPECT_NE(ArchiveWhole(computer, kArchivePath, kEarlierArchive, source, files), "") << size;
    }
    computer.Put(kArchivePath, whole);
    Tree changed = source;
    changed["C:\\Data\\a.txt"] = "omega";
    EXPECT_NE(ArchiveWhole(computer, kArchivePath, kEarlierArchive, changed, files), "");
}

TEST(Checks, ArchiveWrittenInPlaceIsLost) {
    const std::string archive = [] {
        Computer computer;
        FurnishForBackup(computer);
        computer.Start("WEEKLY.INI");
        return computer.Content(kArchivePath);
    }();
    const auto lost = LossesOf(
        [&](Computer& computer) {
            platform::WriteWholeFile(computer.machine.files, kArchivePath, archive);
        },
        [](Computer& computer, bool& reached) {
            int files = 0;
            Tree source = computer.Below("C:\\Data");
            const std::string loss =
                ArchiveWhole(computer, kArchivePath, kEarlierArchive, source, files);
            reached = files == 3;
            return loss;
        });
    EXPECT_THAT(lost, Contains(HasSubstr("neither the earlier one nor whole")));
}

// Every call is reached by every kind that can strike it.
TEST(Checks, EveryCallIsTriedInEachWay) {
    std::set<std::string> tried;
    Sweep({.name = "Work to be judged",
           .arrange = Arrange,
           .act =
               [&](Computer& computer) {
                   auto& files = computer.machine.files;
                   files.Find(kSetPath);
                   files.Open(kSetPath, platform::OpenMode::kRead)->Close();
               },
           .judge =
               [&](Computer& computer, bool& reached) {
                   reached = true;
                   const CallRecord call = computer.plan().FirstFired();
                   if (computer.plan().Fired() > 0) {
                       tried.insert(std::to_string(static_cast<int>(call.kind)));
                   }
                   return std::string();
               }});
    EXPECT_THAT(tried, ElementsAre(std::to_string(static_cast<int>(Call::kOpen)),
                                   std::to_string(static_cast<int>(Call::kClose)),
                                   std::to_string(static_cast<int>(Call::kFind))));
}

}  // namespace
}  // namespace vantrel::test
