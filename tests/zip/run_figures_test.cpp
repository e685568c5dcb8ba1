// The figures that a run reports: files, bytes, what was left out, the disk that is asked for.
#include "tests/zip/reader_fixture.h"
#include "tests/zip/spanning_fixture.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;
using zip::RunFigures;

TEST(RunFigures, CostIsTheBytesAndAFixedPartForEachFile) {
    RunFigures figures;
    EXPECT_EQ(figures.CostTotal(), 0);
    figures.files_total = 10;
    figures.bytes_total = 1000;
    figures.file_cost = 50;
    figures.files_done = 4;
    figures.bytes_done = 300;
    EXPECT_EQ(figures.CostTotal(), 1500);
    EXPECT_EQ(figures.CostDone(), 500);
    figures.left_out = 2;
    figures.bytes_left_out = 100;
    EXPECT_EQ(figures.CostDone(), 700);
}

TEST(RunFigures, CostDoneIsAtMostTheTotal) {
    RunFigures figures;
    figures.files_total = 1;
    figures.bytes_total = 10;
    figures.file_cost = 5;
    figures.files_done = 1;
    figures.left_out = 3;     // folders, which are not in the total
    figures.bytes_done = 20;  // the file has grown
    EXPECT_EQ(figures.CostDone(), figures.CostTotal());
}

class WriterFigures : public WriterTest {
  protected:
    WriterFigures() {
        options.level = 1;
        files.Put("C:\\Data\\a", Prose(1000));
        files.Put("C:\\Data\\b", Prose(3 * kChunkSize));
        files.Put("C:\\Data\\Sub\\c", Prose(500));
        files.PutFolder("C:\\Data\\Empty");
    }
    void MakeUnreadable(const std::string& unreadable) {
        FailCalls(files, {.name = "Open", .path = unreadable}, error_number::kPermissionDenied);
    }
    const RunFigures& Last() const { return events.figures.back(); }
};

TEST_F(WriterFigures, LastOnesHaveAllFilesBytesAndTheArchive) {
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Last().files_found, 3u);
    EXPECT_EQ(Last().files_total, 3u);
    EXPECT_EQ(Last().files_done, 3u);
    EXPECT_EQ(Last().bytes_total, 1500 + 3 * kChunkSize);
    EXPECT_EQ(Last().bytes_done, Last().bytes_total);
    EXPECT_EQ(Last().left_out, 0u);
    EXPECT_EQ(Last().archive_bytes, files.Content(options.archive).size());
    EXPECT_TRUE(Last().finishing);
    EXPECT_GT(Last().file_cost, 0u);
}

TEST_F(WriterFigures, FilesThatAreStoredAgainCountOnce) {
    files.Put("C:\\Data\\noise", Noise(2 * kChunkSize));
    // Passes the samples as compressible, and does not shrink in the end.
    files.Put("C:\\Data\\mixed", Prose(100'000) + Noise(2 * kChunkSize));
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Last().files_done, 5u);
    EXPECT_EQ(Last().bytes_done, Last().bytes_total);
}

TEST_F(WriterFigures, SmallFileThatIsLeftOutIsNeitherDoneNorInTheBytes) {
    MakeUnreadable("C:\\Data\\a");
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Last().left_out, 1u);
    EXPECT_EQ(Last().files_done, 2u);
    EXPECT_EQ(Last().bytes_done, 500 + 3 * kChunkSize);
    EXPECT_EQ(Last().bytes_left_out, 1000u);
    EXPECT_EQ(Last().CostDone(), Last().CostTotal());
    ASSERT_FALSE(events.messages.empty());
    const auto is_left_out = [](const zip::ComponentMessage& each) { return each.left_out; };
    const auto message = std::find_if(events.messages.begin(), events.messages.end(), is_left_out);
    ASSERT_NE(message, events.messages.end());
    EXPECT_EQ(message->path, "C:\\Data\\a");
}

TEST_F(WriterFigures, LargeFileThatBecomesUnreadableIsTakenBack) {
    FailCalls(files, {.name = "Read", .path = "C:\\Data\\b", .first = 4}, error_number::kDeviceIo);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    ASSERT_EQ(result.skipped, 1);
    EXPECT_EQ(Last().left_out, 1u);
    EXPECT_EQ(Last().files_done, 2u);
    EXPECT_EQ(Last().bytes_done, 1500u);
    EXPECT_EQ(Last().bytes_left_out, 3 * kChunkSize);
}

TEST_F(WriterFigures, UnreadableFolderIsLeftOut) {
    FailCalls(files, {.name = "List", .path = "C:\\Data\\Sub"}, error_number::kPathFileAccess);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Last().left_out, 1u);
    EXPECT_EQ(Last().files_total, 2u);
    EXPECT_EQ(Last().files_done, 2u);
}

TEST_F(WriterFigures, WarningAboutAFileThatIsStoredLeavesNothingOut) {
    BeforeCalls(files, {.name = "Read", .path = "C:\\Data\\a", .last = 1},
                [this] { files.Put("C:\\Data\\a", Prose(1200)); });
    options.threads = 1;
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Last().left_out, 0u);
}

TEST_F(WriterFigures, CancelledRunHasNoArchive) {
    events.cancel_at = 1;
    ASSERT_EQ(Run(), RunOutcome::kCancelled);
    EXPECT_EQ(Last().archive_bytes, 0u);
}

TEST_F(WriterFigures, RunThatBeginsAgainCountsFromZero) {
    files.Remove("C:\\Data");
    files.PutFolder("C:\\Data");
    files.Put("C:\\Data\\a", "locked");
    MakeUnreadable("C:\\Data\\a");
    questions.RetryAfter([this] { files.before = nullptr; });
    events.questions = &questions;
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Last().left_out, 0u);
    EXPECT_EQ(Last().files_total, 1u);
    EXPECT_EQ(Last().files_done, 1u);
    EXPECT_EQ(Last().bytes_done, 6u);
}

TEST_F(WriterFigures, FilesThatAreFoundAreReportedBeforeTheTotal) {
    std::atomic<bool> seen{false};
    events.on_overall = [&] {
        const RunFigures& now = events.figures.back();
        seen = seen || (now.files_found == 2 && now.files_total == 0);
    };
    // With the first folder counted, the listing of another waits for the event.
    files.before = [&](const std::string& call, const std::string& path) {
        while (call == "List" && path == "C:\\Data\\Sub" && !seen) {
            std::this_thread::yield();
        }
    };
    options.threads = 1;
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_TRUE(seen);
}

// A thousand small files cost more than their bytes.
TEST_F(WriterFigures, OverallProgressFollowsFilesWhenTheBytesHardlyMove) {
    files.Remove("C:\\Data");
    for (int i = 0; i < 1000; ++i) {
        files.Put("C:\\Data\\1\\" + std::to_string(i), "x");
    }
    files.Put("C:\\Data\\2\\last", Prose(8 * kChunkSize));
    std::atomic<int> percent{0};
    events.on_overall = [&] { percent = events.overall.back(); };
    options.threads = 1;
    // 1,000 files of 16 KB are two thirds of the work besides 8 MB.
    files.before = [&](const std::string& call, const std::string& path) {
        while (call == "Open" && path == "C:\\Data\\2\\last" && percent < 60) {
            std::this_thread::yield();
        }
    };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_GE(percent, 60);
}

class ReaderFigures : public ReaderTest {
  protected:
    const RunFigures& Last() const { return events.figures.back(); }
};

TEST_F(ReaderFigures, LastOnesHaveAllFilesAndBytes) {
    Extract({{.name = "a", .content = "12345"},
             {.name = "Sub/"},
             {.name = "Sub/b", .content = Prose(100'000)}});
    EXPECT_EQ(Last().files_total, 2u);
    EXPECT_EQ(Last().files_done, 2u);
    EXPECT_EQ(Last().bytes_total, 100'005u);
    EXPECT_EQ(Last().bytes_done, 100'005u);
    EXPECT_EQ(Last().archive_bytes, 0u);
    EXPECT_TRUE(Last().finishing);
}

TEST_F(ReaderFigures, EntriesThatAreNotRestoredAreLeftOut) {
    files.PutFolder("C:\\Out\\a");  // no file can have its name
    Extract({{.name = "a", .content = "12345"},
             {.name = "../b", .content = "123"},
             {.name = "c", .content = "12"}});
    EXPECT_EQ(result.failed, 2);
    EXPECT_EQ(Last().left_out, 2u);
    EXPECT_EQ(Last().files_total, 2u) << "a refused name is not planned";
    EXPECT_EQ(Last().files_done, 1u);
    EXPECT_EQ(Last().bytes_done, 2u);
    EXPECT_EQ(Last().bytes_left_out, 5u);
}

using SpanningFigures = SpanningTest;

TEST_F(SpanningFigures, HaveTheDiskThatIsAskedForAndTheSizeOnAllDisks) {
    files.Put("C:\\Data\\a", Noise(2 * kChunkSize + 1000));
    NewBox(kChunkSize);
    std::vector<std::uint32_t> disks;
    changer.at[1] = changer.at[2] = [&] {
        disks.push_back(events.figures.back().disk);
        return changer.Next();
    };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(disks, (std::vector<std::uint32_t>{2, 3}));
    EXPECT_EQ(events.figures.back().disk, 0u);
    std::uint64_t bytes = 0;
    for (const std::string& volume : Volumes()) {
        bytes += volume.size();
    }
    EXPECT_EQ(events.figures.back().archive_bytes, bytes);
}

TEST_F(SpanningFigures, HaveTheDiskThatARestoreAsksFor) {
    files.Put("C:\\Data\\a", Noise(2 * kChunkSize + 1000));
    NewBox(kChunkSize);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    box.limits = false;
    box.Insert(0);
    events.figures.clear();
    std::vector<std::uint32_t> disks;
    changer.asked.clear();
    for (const auto& [prompt, disk] : std::map<std::size_t, int>{{1, 2}, {2, 0}, {3, 1}, {4, 2}}) {
        changer.at[prompt] = [&disks, this, disk = disk] {
            disks.push_back(events.figures.back().disk);
            box.Insert(disk);
            return true;
        };
    }
    zip::ExtractOptions restore;
    restore.archive = options.archive;
    restore.destination = "C:\\Out";
    ASSERT_EQ(zip::ExtractArchive(Machine(), restore, events).outcome, RunOutcome::kComplete);
    ASSERT_GE(disks.size(), 3u);
    EXPECT_EQ(disks[0], zip::kLastDisk);
    EXPECT_EQ(disks[1], 1u);
    EXPECT_EQ(disks[2], 2u);
}

}  // namespace
}  // namespace vantrel::test
