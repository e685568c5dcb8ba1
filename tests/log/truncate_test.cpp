#include "common/error.h"
#include "tests/log/log_fixture.h"
#include "tests/support/error_of.h"

namespace vantrel {
namespace {

using test::TransactionLog;

constexpr long kLimit = 52000;  // bytes, as at start-up

class LogTruncation : public TransactionLog {
  protected:
    void Truncate(long limit = kLimit) { clsLog(program).Log_Truncate(limit); }
    static std::string Record(int number) {
        const std::string digits = std::to_string(number);
        return "01/11/2026 10:00:00 record " + std::string(8 - digits.size(), '0') + digits +
               " of some length";
    }
    // A log of exactly `size` bytes: the header and records, the last one made to fit.
    static std::string LogOf(std::size_t size) {
        std::string text = Header();
        int number = 0;
        while (text.size() + 2 * 60 < size) {
            text += Record(number++) + "\r\n";
        }
        return text + std::string(size - text.size() - 2, 'z') + "\r\n";
    }
    std::string Log() { return machine.Content(kLog); }
};

TEST_F(LogTruncation, MissingLogIsLeftMissing) {
    Truncate();
    EXPECT_TRUE(machine.Names("C:\\Vantrel").empty());
}

TEST_F(LogTruncation, LogBelowTheLimitStaysAsItIs) {
    const std::string text = LogOf(51999);
    machine.PutFile(kLog, text);
    Truncate();
    EXPECT_EQ(Log(), text);
    EXPECT_EQ(desktop.do_events_calls, 0);
}

TEST_F(LogTruncation, SizeEqualToTheLimitIsTrimmedWithoutANote) {
    machine.PutFile(kLog, LogOf(52000));
    Truncate();
    EXPECT_LT(Log().size(), 52000u);
    EXPECT_EQ(Log().find("Log File Truncated"), std::string::npos);
    EXPECT_EQ(program.globals.MessageText, "");
}

TEST_F(LogTruncation, OneByteMoreIsTrimmedWithANoteOf52And52) {
    machine.PutFile(kLog, LogOf(52001));
    Truncate();
    const std::string note = "Log File Truncated from 52K to about 52K";
    EXPECT_TRUE(Log().ends_with("\r\n15/11/2026 13:05:09 " + note + "\r\n\r\n"));
    EXPECT_EQ(program.globals.MessageText, note);
    EXPECT_LT(Log().size(), 52000u);
}

TEST_F(LogTruncation, NoteCountsThousandsOfBytesCutToWholeOnes) {
    machine.PutFile(kLog, LogOf(153999));
    Truncate();
    EXPECT_NE(Log().find("Log File Truncated from 153K to about 52K"), std::string::npos);
}

TEST_F(LogTruncation, HeaderAndFirstRecordStayAndAnEmptyLineEndsTheFile) {
    machine.PutFile(kLog, LogOf(60000));
    Truncate();
    const std::string start = Header() + Record(0) + "\r\n";
    EXPECT_EQ(Log().substr(0, start.size()), start);
    EXPECT_TRUE(Log().ends_with("\r\n\r\n"));
    EXPECT_LT(Log().size(), 52000u);
}

TEST_F(LogTruncation, OldestRecordsGoAndTheRestStaysWhole) {
    const std::string text = LogOf(60000);
    machine.PutFile(kLog, text);
    Truncate();
    const auto before = platform::SplitLines(text);
    const auto after = platform::SplitLines(Log());
    // 13 kept lines, the tail of the old log, the note, the empty line.
    const std::size_t tail = after.size() - 13 - 2;
    ASSERT_GT(tail, 500u);
    for (std::size_t i = 1; i <= tail; ++i) {
        ASSERT_EQ(after[after.size() - 2 - i], before[before.size() - i]);
    }
    EXPECT_EQ(after.back(), "");
    EXPECT_FALSE(machine.Exists(kBak));
}

TEST_F(LogTruncation, NoMoreLinesGoThanTheExcessAsksFor) {
    // 52,000 is an excess of 0: one line brings it below 0, and one goes.
    const std::string text = LogOf(52000);
    machine.PutFile(kLog, text);
    Truncate();
    std::string expected = text;
    expected.erase(expected.find(Record(1)), Record(1).size() + 2);
    EXPECT_EQ(Log(), expected + "\r\n");
}

TEST_F(LogTruncation, LineEndsDoNotCountTowardsTheExcess) {
    const std::string note = "15/11/2026 13:05:09 Log File Truncated from 0K to about 0K\r\n";
    std::string text = Header() + "first\r\n";
    for (int i = 0; i < 30; ++i) {
        text += "aaaaa\r\n";
    }
    machine.PutFile(kLog, text);
    // An excess of 100: 20 lines of 5 bring it to 0, the 21st below.
    Truncate(static_cast<long>(text.size() + note.size()) - 100);
    std::string expected = Header() + "first\r\n";
    for (int i = 0; i < 9; ++i) {
        expected += "aaaaa\r\n";
    }
    EXPECT_EQ(Log(), expected + note + "\r\n");
}

TEST_F(LogTruncation, EventsRunAfterEachLineThatIsThrownAway) {
    machine.PutFile(kLog, LogOf(52000));
    Truncate();
    EXPECT_EQ(desktop.do_events_calls, 1);
    machine.PutFile(kLog, LogOf(52000 + 3 * Record(1).size()));
    desktop.do_events_calls = 0;
    Truncate();
    EXPECT_EQ(desktop.do_events_calls, 5);  // three records and what the note takes
}

TEST_F(LogTruncation, RecordWrittenByAnEventMeanwhileStays) {
    machine.PutFile(kLog, LogOf(52000));
    desktop.on_events.push_back([&] { Write("Backup", "meanwhile"); });
    Truncate();
    EXPECT_NE(Log().find("15/11/2026 13:05:09 meanwhile\r\n"), std::string::npos);
}

TEST_F(LogTruncation, NewLogThatAnEventPutsInPlaceStaysWhole) {
    machine.PutFile(kLog, LogOf(60000));
    const std::string new_log = Header() + "first\r\nsecond\r\n";
    desktop.on_events.push_back([&] { machine.PutFile(kLog, new_log); });
    Truncate();
    EXPECT_EQ(Log(), new_log);
}

TEST_F(LogTruncation, NewLogThatAnEventPutsInPlaceIsTrimmedByItsOwnSize) {
    machine.PutFile(kLog, LogOf(60000));
    desktop.on_events.push_back([&] {
        const std::string text = LogOf(53000);
        machine.PutFile(kLog, Header() + "another first record\r\n" + text.substr(Header().size()));
    });
    Truncate();
    const std::string start = Header() + "another first record\r\n";
    EXPECT_EQ(Log().substr(0, start.size()), start);
    EXPECT_LT(Log().size(), 52000u);
    EXPECT_GT(Log().size(), 51000u);
}

TEST_F(LogTruncation, KeptLinesAboveTheLimitEndTheTrim) {
    machine.PutFile(kLog, Header() + "first\r\nsecond\r\nthird\r\n");
    Truncate(100);
    EXPECT_EQ(Log(), Header() + "first\r\n\r\n");
    Truncate(100);
    EXPECT_EQ(Log(), Header() + "first\r\n\r\n");
}

TEST_F(LogTruncation, NoteIsItselfSubjectToTheTrim) {
    machine.PutFile(kLog, Header() + "first\r\n" + std::string(200, 'x') + "\r\n");
    Truncate(20);
    EXPECT_EQ(Log().find("Truncated"), std::string::npos);
    EXPECT_EQ(program.globals.MessageText, "Log File Truncated from 0K to about 0K");
}

TEST_F(LogTruncation, FewerThanFourteenLinesEndAtTheEndOfTheFile) {
    const std::string text = std::string(300, 'x') + "\r\nsecond\r\n";
    machine.PutFile(kLog, text);
    Truncate(100);
    // Two lines and the note are all kept: nothing to throw away.
    EXPECT_EQ(Log(), text + "15/11/2026 13:05:09 Log File Truncated from 0K to about 0K\r\n");
    EXPECT_EQ(desktop.do_events_calls, 0);
}

TEST_F(LogTruncation, EmptyLogAndLimitZeroEnd) {
    machine.PutFile(kLog, "");
    Truncate(0);
    EXPECT_EQ(Log(), "");
    machine.PutFile(kLog, LogOf(5000));
    Truncate(0);
    EXPECT_EQ(Log(), Header() + Record(0) + "\r\n\r\n");
}

TEST_F(LogTruncation, EmptyLinesAreThrownAwayWithoutEnd) {
    std::string text = Header() + "first\r\n";
    for (int i = 0; i < 500; ++i) {
        text += "\r\n";
    }
    machine.PutFile(kLog, text);
    Truncate(static_cast<long>(text.size()));
    EXPECT_EQ(Log(), Header() + "first\r\n\r\n");
}

TEST_F(LogTruncation, OtherLineEndsBecomePairs) {
    std::string text = Header() + "first\n";
    for (int i = 0; i < 100; ++i) {
        text += std::string(static_cast<std::size_t>(i) % 5, 'y') + (i % 2 == 0 ? "\n" : "\r");
    }
    machine.PutFile(kLog, text);
    const long limit = static_cast<long>(text.size()) - 20;
    Truncate(limit);
    EXPECT_LT(static_cast<long>(Log().size()), limit);
    EXPECT_EQ(Log().substr(0, Header().size() + 7), Header() + "first\r\n");
}

TEST_F(LogTruncation, NoScratchFileStays) {
    machine.PutFile(kLog, LogOf(60000));
    Truncate();
    EXPECT_EQ(machine.Names("C:\\Vantrel"), std::vector<std::string>{"Vantrel.Log"});
}

TEST_F(LogTruncation, RenamedExecutableTrimsTheFixedNameAndNotesInItsOwn) {
    program.globals.LogFilePath = "C:\\Vantrel\\Other.Log";
    machine.PutFile(kLog, LogOf(60000));
    machine.PutFile("C:\\Vantrel\\Other.Log", "");
    Truncate();
    EXPECT_LT(Log().size(), 52000u);
    EXPECT_EQ(Log().find("Truncated"), std::string::npos);
    EXPECT_EQ(machine.Content("C:\\Vantrel\\Other.Log"),
              "15/11/2026 13:05:09 Log File Truncated from 60K to about 52K\r\n");
}

TEST_F(LogTruncation, LogThatCannotBeReplacedStaysAndIsReported) {
    const std::string text = LogOf(52000);
    machine.PutFile(kLog, text);
    machine.files().SetAttributes(kLog, platform::attribute::kReadOnly);
    test::ExpectReported([&] { Truncate(); }, "clsLog:Log_Truncate Method", "Permission denied");
    EXPECT_EQ(Log(), text);
    EXPECT_EQ(machine.Names("C:\\Vantrel"), std::vector<std::string>{"Vantrel.Log"});
}

}  // namespace
}  // namespace vantrel
