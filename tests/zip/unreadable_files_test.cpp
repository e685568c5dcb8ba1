// Files that cannot be read or that change while they are read: the run continues.
#include "tests/zip/writer_fixture.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;

class UnreadableFiles : public WriterTest {
  protected:
    UnreadableFiles() {
        files.Put("C:\\Data\\a", "first");
        files.Put("C:\\Data\\b", "second");
        files.Put("C:\\Data\\c", "third");
        options.level = 1;  // fast, because there are many runs
    }
    // The calls of one kind on one path fail with `number`, the first `times` of them.
    void FailOn(const std::string& call, const std::string& path, int number, int times = 1000) {
        FailCalls(files, {.name = call, .path = path, .last = times}, number);
    }
    void ExpectSkipped(const std::string& name) {
        files.before = nullptr;
        EXPECT_EQ(result.skipped, 1);
        const ReadResult archive = Archive();
        for (const auto& entry : archive.entries) {
            EXPECT_NE(entry.name, name);
        }
        const auto warnings = events.Texts(MessageKind::kWarning);
        ASSERT_EQ(warnings.size(), 1u);
        EXPECT_TRUE(
            warnings[0].starts_with("Skipped a file that cannot be read: C:\\Data\\" + name))
            << warnings[0];
    }
};

TEST_F(UnreadableFiles, LockedFileIsTriedFourTimesThenSkippedWithAWarning) {
    std::atomic<int> opens{0};
    BeforeCalls(files, {.name = "Open", .path = "C:\\Data\\b"}, [&] {
        ++opens;
        RaiseError(error_number::kPermissionDenied);
    });
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(opens, 4);
    ExpectSkipped("b");
    EXPECT_EQ(events.messages[1].code, error_number::kPermissionDenied);
    EXPECT_EQ(events.messages[1].text,
              "Skipped a file that cannot be read: C:\\Data\\b (Permission denied).");
    EXPECT_EQ(Archive().Names(), (Strings{"a", "c"}));
}

TEST_F(UnreadableFiles, FileLockedForAMomentIsStored) {
    FailOn("Open", "C:\\Data\\b", error_number::kPermissionDenied, 3);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(result.skipped, 0);
    EXPECT_EQ(Archive().Names(), (Strings{"a", "b", "c"}));
    EXPECT_TRUE(events.Texts(MessageKind::kWarning).empty());
}

TEST_F(UnreadableFiles, VanishedFileIsSkippedWithoutFurtherTries) {
    std::atomic<int> opens{0};
    BeforeCalls(files, {.name = "Open", .path = "C:\\Data\\b"}, [&] {
        ++opens;
        files.Remove("C:\\Data\\b");
    });
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(opens, 1);
    ExpectSkipped("b");
}

TEST_F(UnreadableFiles, ReadErrorSkipsASmallFile) {
    FailOn("Read", "C:\\Data\\b", error_number::kDeviceIo);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    ExpectSkipped("b");
}

TEST_F(UnreadableFiles, BigFileThatCannotBeOpenedIsSkipped) {
    files.Put("C:\\Data\\b", Prose(3 * kChunkSize));
    FailOn("Open", "C:\\Data\\b", error_number::kPermissionDenied);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    ExpectSkipped("b");
    EXPECT_EQ(Archive().Names(), (Strings{"a", "c"}));
}

TEST_F(UnreadableFiles, ReadErrorInTheMiddleOfABigFileRemovesIt) {
    files.Put("C:\\Data\\b", Prose(5 * kChunkSize) + Noise(5 * kChunkSize));
    files.Put("C:\\Data\\c", Prose(2 * kChunkSize));
    // One sample shows that it shrinks, then comes one read for each chunk.
    for (const int good_reads : {2, 5, 10}) {
        FailCalls(files, {.name = "Read", .path = "C:\\Data\\b", .first = good_reads + 1},
                  error_number::kDeviceIo);
        events.messages.clear();
        ASSERT_EQ(Run(), RunOutcome::kComplete);
        ExpectSkipped("b");
        EXPECT_EQ(Archive().Names(), (Strings{"a", "c"}));
        EXPECT_EQ(Archive().At("c").content, Prose(2 * kChunkSize));
    }
}

TEST_F(UnreadableFiles, SmallFileThatGrewAboveAChunkIsStored) {
    std::string grown = "second" + Prose(3 * kChunkSize);
    BeforeCalls(files, {.name = "Open", .path = "C:\\Data\\b", .last = 1},
                [&] { files.Put("C:\\Data\\b", grown); });
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Archive().Names(), (Strings{"a", "c", "b"}));
    EXPECT_EQ(Archive().At("b").content, grown);
    EXPECT_TRUE(events.Texts(MessageKind::kWarning).empty()) << "its length when opened counts";
    EXPECT_EQ(result.skipped, 0);
}

TEST_F(UnreadableFiles, BigFileFoundSmallIsStored) {
    files.Put("C:\\Data\\b", Prose(3 * kChunkSize));
    BeforeCalls(files, {.name = "Open", .path = "C:\\Data\\b", .last = 1},
                [&] { files.Put("C:\\Data\\b", "now small"); });
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Archive().At("b").content, "now small");
}

TEST_F(UnreadableFiles, FileThatGrowsWhileReadIsStoredAtTheLengthItHadWhenOpened) {
    const std::string before = Prose(3 * kChunkSize);
    files.Put("C:\\Data\\b", before);
    BeforeCalls(files, {.name = "Read", .path = "C:\\Data\\b", .last = 1},
                [&] { files.Append("C:\\Data\\b", Prose(2 * kChunkSize, 5)); });
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_TRUE(Archive().At("b").content == before);
    EXPECT_EQ(events.Texts(MessageKind::kWarning),
              (Strings{"Changed while it was read, stored as read: C:\\Data\\b"}));
    EXPECT_EQ(result.skipped, 0);
}

// A listing may be older than the file; the result of one read is a state that the file had.
TEST_F(UnreadableFiles, SmallFileThatIsNotAsListedIsStoredAsItIs) {
    for (const std::string& now : {std::string("sec"), std::string(), Prose(5000)}) {
        files.Put("C:\\Data\\b", "second");
        BeforeCalls(files, {.name = "Read", .path = "C:\\Data\\b", .last = 1},
                    [&] { files.Put("C:\\Data\\b", now); });
        ASSERT_EQ(Run(), RunOutcome::kComplete);
        EXPECT_EQ(Archive().At("b").content, now);
        EXPECT_EQ(events.Texts(MessageKind::kWarning), Strings{});
    }
}

TEST_F(UnreadableFiles, SmallFileThatChangesBetweenTwoReadsIsAWarning) {
    std::atomic<int> reads{0};
    BeforeCalls(files, {.name = "Read", .path = "C:\\Data\\b"},
                [&] { files.Put("C:\\Data\\b", ++reads == 1 ? Prose(5000) : Prose(3000)); });
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Archive().At("b").content, Prose(3000));
    EXPECT_EQ(events.Texts(MessageKind::kWarning),
              (Strings{"Changed while it was read, stored as read: C:\\Data\\b"}));
}

TEST_F(UnreadableFiles, BigFileThatShrinksWhileReadIsStoredAsRead) {
    const std::string whole = Prose(8 * kChunkSize);
    for (const std::size_t left : {2 * kChunkSize + 100, 2 * kChunkSize, std::size_t{0}}) {
        files.Put("C:\\Data\\b", whole);
        std::atomic<int> reads{0};
        files.before = [&](const std::string& call, const std::string& path) {
            // One sample shows that it shrinks; the second read is the first chunk's.
            if (call == "Read" && path == "C:\\Data\\b" && ++reads == 2) {
                files.Put("C:\\Data\\b", whole.substr(0, left));
            }
        };
        events.messages.clear();
        ASSERT_EQ(Run(), RunOutcome::kComplete);
        files.before = nullptr;
        EXPECT_TRUE(Archive().At("b").content == whole.substr(0, left)) << left;
        EXPECT_EQ(events.Texts(MessageKind::kWarning).size(), 1u);
    }
}

TEST_F(UnreadableFiles, MissingSourceIsAQuestionNotAWarningForEachFile) {
    events.questions = &questions;
    BeforeCalls(files, {.name = "Open", .path = "C:\\Data\\b", .last = 1},
                [&] { files.TakeAway("C:\\Data"); });
    questions.answers = {[] { return true; },
                         [&] {
                             files.BringBack();
                             return true;
                         }};
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(questions.asked,
              (Strings{"The folder to back up cannot be read: C:\\Data (Path not found).",
                       "The folder to back up cannot be read: C:\\Data (Path not found)."}));
    EXPECT_TRUE(events.Texts(MessageKind::kWarning).empty());
    EXPECT_EQ(Archive().Names(), (Strings{"a", "b", "c"}));
}

TEST_F(UnreadableFiles, BigFileIsContinuedWhenTheSourceIsBack) {
    files.Put("C:\\Data\\b", Prose(6 * kChunkSize));
    events.questions = &questions;
    BeforeCalls(files, {.name = "Read", .path = "C:\\Data\\b", .first = 4, .last = 4}, [&] {
        files.TakeAway("C:\\Data");
        RaiseError(error_number::kDeviceUnavailable);
    });
    questions.RetryAfter([&] { files.BringBack(); });
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(questions.asked.size(), 1u);
    EXPECT_TRUE(Archive().At("b").content == Prose(6 * kChunkSize));
    EXPECT_EQ(result.skipped, 0);
}

}  // namespace
}  // namespace vantrel::test
