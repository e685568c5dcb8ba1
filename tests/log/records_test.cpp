#include "common/error.h"
#include "tests/log/log_fixture.h"
#include "tests/support/error_of.h"

namespace vantrel {
namespace {

using test::TransactionLog;
const std::string kRule(80, '-');
const std::string kUndated(20, ' ');

TEST_F(TransactionLog, FirstRecordMakesTheTwelveLineHeader) {
    Write("Backup", "one");
    EXPECT_EQ(machine.Content(kLog), Header() + "15/11/2026 13:05:09 one\r\n");
    EXPECT_EQ(platform::SplitLines(Header()).size(), 12u);
}

TEST_F(TransactionLog, HeaderIsWrittenOnce) {
    Write("Backup", "one");
    Write("Backup", "two");
    EXPECT_EQ(Records(), "15/11/2026 13:05:09 one\r\n15/11/2026 13:05:09 two\r\n");
}

TEST_F(TransactionLog, StampHasFixedWidthAndLeadingZeros) {
    machine.clock.Set(1999, 3, 7, 4, 5, 9);
    Write("Backup", "x");
    EXPECT_EQ(Records(), "07/03/1999 04:05:09 x\r\n");
}

TEST_F(TransactionLog, UndatedBackupRecordStandsUnderTheText) {
    Write("Backup", "x", false);
    EXPECT_EQ(Records(), kUndated + "x\r\n");
}

TEST_F(TransactionLog, DateFlagMattersForBackupOnly) {
    Write("INI Edit", "INI WEEKLY.INI Edited", false);
    Write("Startup", "", false);
    Write("Command Line", "", true);
    EXPECT_EQ(Records(),
              "15/11/2026 13:05:09 INI WEEKLY.INI Edited\r\n"
              "15/11/2026 13:05:09 Application 3.0.6 Started\r\n" +
                  kUndated + "Command Line Parameter = Nil\r\n");
}

TEST_F(TransactionLog, CommandLineIsRecordedVerbatim) {
    Unattended(" \"weekly.ini\" /x ");
    Write("Command Line");
    EXPECT_EQ(Records(), kUndated + "Command Line Parameter =  \"weekly.ini\" /x \r\n");
}

TEST_F(TransactionLog, CommandLineOfABlankIsNotNil) {
    Unattended(" ");
    Write("Command Line");
    EXPECT_EQ(Records(), kUndated + "Command Line Parameter =  \r\n");
}

TEST_F(TransactionLog, ExitRecordsNameTheUnloadMode) {
    const std::vector<std::string> reasons = {
        "Close on Control menu.",          "Invoked from code.",         "Windows O/S is ending.",
        "Windows Task Manager is ending.", "Child MDI form is closing.", "Parent Form is closing."};
    std::string expected;
    for (std::size_t mode = 0; mode < reasons.size(); ++mode) {
        Write("Exit", std::to_string(mode));
        expected += "15/11/2026 13:05:09 Application Closed - Unloaded by " + reasons[mode] +
                    "\r\n" + kRule + "\r\n";
    }
    EXPECT_EQ(Records(), expected);
}

TEST_F(TransactionLog, ExitModeOutsideZeroToFiveLeavesItsLineOpen) {
    Write("Exit", "6");
    Write("Exit", "-1");
    const std::string record = "15/11/2026 13:05:09 Application Closed - Unloaded by " + kRule;
    EXPECT_EQ(Records(), record + "\r\n" + record + "\r\n");
}

TEST_F(TransactionLog, PrevInstanceLeavesItsLineOpenForTheNextRecord) {
    Write("PrevInstance");
    EXPECT_EQ(Records(), "15/11/2026 13:05:09 Previous Instance Detected - Not Started");
    Write("Backup", "next", false);
    EXPECT_EQ(Records(), "15/11/2026 13:05:09 Previous Instance Detected - Not Started" + kUndated +
                             "next\r\n");
}

TEST_F(TransactionLog, UnknownKindShowsABoxAndWritesNoRecord) {
    Write("backup", "x");
    ExpectBox("Hey", forms::Icon::kExclamation, "Select Case Missing");
    EXPECT_EQ(desktop.boxes[0].buttons, forms::Buttons::kOk);
    EXPECT_EQ(Records(), "");  // the header, which comes before the kind is looked at
    Write("");
    Write("Backup ");
    EXPECT_EQ(desktop.boxes.size(), 3u);
    EXPECT_EQ(Records(), "");
}

TEST_F(TransactionLog, KnownKindsShowNothing) {
    Write("Backup", "x");
    Write("Exit", "1");
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(TransactionLog, TextIsInTheCodePageWithQuestionMarksForTheRest) {
    Write("Backup", "C:\\M\xC3\xBCll\\\xD0\x96", false);
    EXPECT_EQ(Records(), kUndated + "C:\\M\xFCll\\?\r\n");
}

TEST_F(TransactionLog, RenamedExecutableAppendsToItsOwnFile) {
    program.globals.LogFilePath = "C:\\Vantrel\\Other.Log";
    machine.PutFile(kLog, "old\r\n");
    Write("Backup", "x", false);
    EXPECT_EQ(machine.Content("C:\\Vantrel\\Other.Log"), kUndated + "x\r\n");
    EXPECT_EQ(machine.Content(kLog), "old\r\n");
}

// The test for a log asks for the fixed name, the header goes to the executable's own: while there
// is none of the fixed name every record brings a header.
TEST_F(TransactionLog, RenamedExecutableWritesItsHeaderBeforeEveryRecord) {
    program.globals.LogFilePath = "C:\\Vantrel\\Other.Log";
    Write("Backup", "x", false);
    Write("Backup", "y", false);
    EXPECT_EQ(machine.Content("C:\\Vantrel\\Other.Log"),
              Header() + kUndated + "x\r\n" + Header() + kUndated + "y\r\n");
    EXPECT_FALSE(machine.Exists(kLog));
}

class LogFailure : public TransactionLog {
  protected:
    void ExpectReported(const std::string& kind, const std::string& message,
                        const std::string& description) {
        test::ExpectReported([&] { Write(kind, message); }, "clsLog:WriteToLog Method",
                             description);
    }
};

TEST_F(LogFailure, LogThatCannotBeWrittenIsReportedForEveryKind) {
    machine.PutFile(kLog, "old");
    machine.files().SetAttributes(kLog, platform::attribute::kReadOnly);
    for (const char* kind : {"Backup", "INI Edit", "Startup", "Command Line", "PrevInstance"}) {
        ExpectReported(kind, "x", "Permission denied");
    }
    ExpectReported("Exit", "1", "Permission denied");
    EXPECT_EQ(machine.Content(kLog), "old");
}

TEST_F(LogFailure, LogInAMissingFolderIsReported) {
    program.globals.LogFilePath = "C:\\Nowhere\\Vantrel.Log";
    ExpectReported("Backup", "x", "Path not found");
}

TEST_F(LogFailure, UnloadModeMustBeASixteenBitNumber) {
    ExpectReported("Exit", "", "Type mismatch");
    ExpectReported("Exit", "one", "Type mismatch");
    ExpectReported("Exit", "32768", "Overflow");
    EXPECT_EQ(Records(), "");
}

}  // namespace
}  // namespace vantrel
