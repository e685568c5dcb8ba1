// The log: records, the monthly roll-over and the trim at the start, over a disk on which
// everything fails.
#include <gtest/gtest.h>

#include <algorithm>

#include "log/clsLog.h"
#include "platform/text_file.h"
#include "tests/faults/fault_sweep.h"
#include "tests/faults/wholeness.h"

namespace vantrel::test {
namespace {

constexpr const char* kOldLogPath = "C:\\Vantrel\\Vantrel.Bak";
constexpr platform::Ticks kTenDays = 10ull * 24 * 3600 * 10'000'000;
constexpr std::size_t kKept = 13;  // lines that a trim keeps: header and first record

void Arrange(Computer& computer) {
    computer.Furnish();
    computer.before = computer.Below("C:");
}

std::string Others(Computer& computer) {
    return Untouched(computer, {kSetPath, kListPath, "C:\\Data\\a.txt"});
}

TEST(Faults, RecordsWritten) {
    ExpectNothingLost({.name = "Log records written",
                       .arrange =
                           [](Computer& computer) {
                               Arrange(computer);
                               computer.Start();
                               computer.desktop.boxes.clear();
                           },
                       .act =
                           [](Computer& computer) {
                               forms::Program& program = computer.application->program();
                               for (const char* text : {"one", "two", "three"}) {
                                   clsLog(program).WriteToLog("Backup", true, text);
                               }
                               computer.window().Menu_File_Exit.UserChoose();
                           },
                       .judge =
                           [](Computer& computer, bool& reached) {
                               const std::string& earlier = computer.before[kLogPath];
                               reached = computer.Content(kLogPath).ends_with("-\r\n");
                               const bool reported = reached || IsReported(computer, earlier);
                               return FirstOf({LogWhole(computer, earlier), Others(computer),
                                               reported ? "" : "records missing, unreported"});
                           }});
}

// The disk dates files by the host's clock, the program looks at that of the test: a log that has
// been begun anew is of today.
void DateNewLogs(Computer& computer) {
    computer.plan().before_call = [&computer](const CallRecord& call) {
        if (call.kind != Call::kFind || call.path != kLogPath) {
            return;
        }
        if (!computer.Exists(kLogPath)) {
            return;
        }
        if (computer.Content(kLogPath).starts_with(computer.before[kLogPath])) {
            return;
        }
        computer.disk.SetTimes(kLogPath, {.modified = computer.services.clock.UtcNow()});
    };
}

// On the first of a month the log of the month before takes another name.
TEST(Faults, LogRolledOver) {
    ExpectNothingLost({.name = "Log rolled over at the start",
                       .arrange =
                           [](Computer& computer) {
                               computer.Put(kOldLogPath, "the month before that");
                               Arrange(computer);
                               computer.services.clock.Set(2026, 12, 1);
                               computer.disk.SetTimes(
                                   kLogPath,
                                   {.modified = computer.services.clock.UtcNow() - kTenDays});
                               DateNewLogs(computer);
                           },
                       .act = [](Computer& computer) { computer.Start(); },
                       .judge = [](Computer& computer, bool& reached) -> std::string {
                           const std::string earlier = computer.before[kLogPath];
                           reached = computer.Content(kOldLogPath).starts_with(earlier);
                           if (reached) {
                               return FirstOf({LogWhole(computer, ""), Others(computer)});
                           }
                           return FirstOf({LogWhole(computer, earlier), Others(computer),
                                           Untouched(computer, {kOldLogPath})});
                       }});
}

// A trimmed log has its first lines and all from some record on.
std::string LogTrimmed(Computer& computer) {
    const auto before = platform::SplitLines(computer.before[kLogPath]);
    const auto now = platform::SplitLines(computer.Content(kLogPath));
    if (now.size() < kKept || !std::equal(before.begin(), before.begin() + kKept, now.begin())) {
        return "the log's header or its first record";
    }
    const auto last_of_before = std::find(now.begin(), now.end(), before.back());
    if (last_of_before == now.end()) {
        return "the newest of the earlier records";
    }
    const auto kept = std::find(before.begin(), before.end(), now[kKept]);
    if (!std::equal(kept, before.end(), now.begin() + kKept)) {
        return "records in the middle";
    }
    return "";
}

TEST(Faults, LogTrimmedAtTheStart) {
    ExpectNothingLost({.name = "Log trimmed at the start",
                       .arrange =
                           [](Computer& computer) {
                               computer.Furnish();
                               computer.Put(kLogPath, LogText(53000));
                               computer.before = computer.Below("C:");
                           },
                       .act = [](Computer& computer) { computer.Start(); },
                       .judge =
                           [](Computer& computer, bool& reached) {
                               const std::string earlier = computer.before[kLogPath];
                               const std::string now = computer.Content(kLogPath);
                               reached = now.size() < 52100;
                               // Untouched, or with its note and start records, or trimmed.
                               const bool appended = now.starts_with(earlier);
                               return FirstOf(
                                   {appended ? LogWhole(computer, earlier) : LogTrimmed(computer),
                                    Others(computer)});
                           }});
}

}  // namespace
}  // namespace vantrel::test
