#include "ui/last_run.h"

#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

using Outcome = LastRun::Outcome;

struct RunRow {
    const char* what;
    std::vector<std::string> records;  // undated ones begin with a space
    Outcome outcome;
    std::string name{}, when{}, detail{};
};

std::ostream& operator<<(std::ostream& out, const RunRow& row) { return out << row.what; }

// A header, then each record with a stamp whose seconds count them.
std::string LogOf(const std::vector<std::string>& records) {
    std::string log = std::string(80, '-') + "\r\n\r\nVantrel - Backup Utility\r\n";
    int second = 10;
    for (const std::string& record : records) {
        const bool dated = !record.starts_with(' ');
        log += dated ? "15/11/2026 13:05:" + std::to_string(second) + " " + record
                     : std::string(20, ' ') + record.substr(1);
        log += "\r\n";
        ++second;
    }
    return log;
}

const RunRow kRunRows[] = {
    {"NoRun", {"Application 3.0.6 Started", " Command Line Parameter = Nil"}, Outcome::kNone},
    {"Successful",
     {"Starting Backup DAILY.INI", "Creating Backup File E:\\DAILY.zip",
      "Finished Backup DAILY.INI", "Successful Backup"},
     Outcome::kComplete,
     "Backup DAILY.INI",
     "15/11/2026 13:05:13"},
    {"FilesLeftOut",
     {"Starting Backup DAILY.INI", "Creating Backup File E:\\DAILY.zip",
      " Skipped a file that cannot be read: D:\\a (Permission denied).", " 1 file not backed up",
      "Finished Backup DAILY.INI", "Successful Backup"},
     Outcome::kComplete,
     "Backup DAILY.INI",
     "15/11/2026 13:05:15",
     "1 file not backed up"},
    {"Cancelled",
     {"Starting Backup DAILY.INI", "Finished Backup DAILY.INI", "Cancelled by User"},
     Outcome::kCancelled,
     "Backup DAILY.INI",
     "15/11/2026 13:05:12"},
    {"Refused",
     {"Starting Backup DAILY.INI", "Finished Backup DAILY.INI",
      "Backup Failed - Unable to locate E:\\"},
     Outcome::kFailed,
     "Backup DAILY.INI",
     "15/11/2026 13:05:12",
     "Unable to locate E:\\"},
    {"EndedDuringTheRun",
     {"Starting Backup DAILY.INI", "Creating Backup File E:\\DAILY.zip",
      "Application 3.0.6 Started"},
     Outcome::kUnfinished,
     "Backup DAILY.INI",
     "15/11/2026 13:05:10"},
    {"OnlyTheLastCounts",
     {"Starting Backup DAILY.INI", " 3 files not backed up", "Finished Backup DAILY.INI",
      "Successful Backup", "Starting Backup WEEKLY.INI", "Finished Backup WEEKLY.INI",
      "Successful Backup"},
     Outcome::kComplete,
     "Backup WEEKLY.INI",
     "15/11/2026 13:05:16"},
    {"RestoreOfASet",
     {"Starting Restore from DAILY.INI", " 2 files not restored",
      "Finished Restore from DAILY.INI"},
     Outcome::kComplete,
     "Restore from DAILY.INI",
     "15/11/2026 13:05:12",
     "2 files not restored"},
    {"RestoreOfAnArchive",
     {"Starting Restore from ZIP File - E:\\OLD.zip",
      "Finished Restore from ZIP File - E:\\OLD.zip"},
     Outcome::kComplete,
     "Restore from E:\\OLD.zip",
     "15/11/2026 13:05:11"},
    {"CancelledRestore",
     {"Starting Restore from DAILY.INI", "Finished Restore from DAILY.INI", "Cancelled by User"},
     Outcome::kCancelled,
     "Restore from DAILY.INI",
     "15/11/2026 13:05:12"},
    {"EndWithoutABeginning", {"Successful Backup"}, Outcome::kNone},
};

class LastRuns : public ::testing::TestWithParam<RunRow> {};

TEST_P(LastRuns, AreFoundInTheLog) {
    const RunRow& row = GetParam();
    const LastRun run = FindLastRun(LogOf(row.records));
    EXPECT_EQ(run.outcome, row.outcome);
    EXPECT_EQ(run.name, row.name);
    EXPECT_EQ(run.when, row.when);
    EXPECT_EQ(run.detail, row.detail);
}

INSTANTIATE_TEST_SUITE_P(Rows, LastRuns, ::testing::ValuesIn(kRunRows),
                         [](const auto& row) { return row.param.what; });

TEST(FindLastRun, LogWithoutALastLineEndIsReadToItsEnd) {
    std::string log = LogOf({"Starting Backup A.INI", "Successful Backup"});
    log.resize(log.size() - 2);
    EXPECT_EQ(FindLastRun(log).outcome, Outcome::kComplete);
}

TEST(FindLastRun, EmptyLogHasNoRun) { EXPECT_EQ(FindLastRun("").outcome, Outcome::kNone); }

}  // namespace
}  // namespace vantrel::test
