// Events: raised often in every phase, on the caller's thread, which never blocks; and their
// percentages.
#include "tests/zip/writer_fixture.h"
#include "zip/disks/archive_target.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;

class Progress : public WriterTest {
  protected:
    Progress() {
        files.Put("C:\\Data\\a", Prose(3000));
        files.Put("C:\\Data\\b", Noise(6 * kChunkSize));
        files.Put("C:\\Data\\Sub\\c", Prose(3 * kChunkSize));
        options.level = 1;  // fast, because there are many runs
    }
};

TEST_F(Progress, RisesFromZeroToHundredAndNeverFalls) {
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    ASSERT_FALSE(events.overall.empty());
    EXPECT_TRUE(std::is_sorted(events.overall.begin(), events.overall.end()));
    EXPECT_GE(events.overall.front(), 0);
    EXPECT_EQ(events.overall.back(), 100);
    EXPECT_EQ(std::count(events.overall.begin(), events.overall.end(), 100), 1);
    for (const int percent : events.of_file) {
        EXPECT_GE(percent, 0);
        EXPECT_LE(percent, 100);
    }
}

TEST_F(Progress, CountsBytes) {
    // Two of three files, and half of the bytes, are written when the run comes to the third.
    files.Remove("C:\\Data");
    files.Put("C:\\Data\\1", Noise(10000));
    files.Put("C:\\Data\\2", Noise(3 * 10000 + 2 * kChunkSize));
    files.Put("C:\\Data\\3", Noise(2 * kChunkSize + 4 * 10000));
    options.threads = 1;
    std::atomic<bool> reached{false};
    std::atomic<int> seen{-1};
    events.on_overall = [&] { seen = events.overall.back(); };
    files.before = [&](const std::string& call, const std::string& path) {
        if (call == "Open" && path == "C:\\Data\\3" && !reached.exchange(true)) {
            // With one thread all earlier files are written; wait until the event was raised.
            while (seen < 48) {
                std::this_thread::yield();
            }
            EXPECT_LE(seen, 51);
        }
    };
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_TRUE(reached);
}

// During a slow rename the caller's thread keeps waking up, but raises no event.
TEST_F(Progress, NoEventAfterTheLastOneAndTheRenameAfterIt) {
    constexpr std::size_t kTicks = 5;
    std::atomic<std::size_t> raised{0};
    std::size_t at_replace = 0;
    events.on_overall = [&] { raised = events.overall.size(); };
    BeforeCalls(files, {.name = "Replace"}, [&] {
        at_replace = raised;
        const std::size_t until = machine.clock.Waits().size() + kTicks;
        while (machine.clock.Waits().size() < until) {
            std::this_thread::yield();
        }
    });
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(at_replace, events.overall.size());
    EXPECT_EQ(at_replace, events.of_file.size());
    EXPECT_EQ(events.overall.back(), 100);
}

TEST_F(Progress, CallersThreadMakesNoFileCallAndRaisesAllEvents) {
    std::mutex mutex;
    std::vector<std::thread::id> callers;
    files.before = [&](const std::string&, const std::string&) {
        const std::lock_guard lock(mutex);
        callers.push_back(std::this_thread::get_id());
    };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(std::count(callers.begin(), callers.end(), std::this_thread::get_id()), 0);
    EXPECT_EQ(std::count(events.threads.begin(), events.threads.end(), std::this_thread::get_id()),
              static_cast<std::ptrdiff_t>(events.threads.size()));
}

TEST_F(Progress, CallersThreadWaitsAtMostATenthOfASecond) {
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    ASSERT_FALSE(machine.clock.Waits().empty());
    for (const auto wait : machine.clock.Waits()) {
        EXPECT_LE(wait, std::chrono::milliseconds(100));
    }
}

// In each phase the disk hangs until ten more events have been raised; if any phase raised none,
// the run would never end.
class ProgressWhileTheDiskHangs : public Progress,
                                  public ::testing::WithParamInterface<const char*> {};

TEST_P(ProgressWhileTheDiskHangs, EventsGoOn) {
    const std::string phase = GetParam();
    std::atomic<int> raised{0};
    std::atomic<int> hung{0};
    events.on_overall = [&] { ++raised; };
    std::atomic<bool> finishing{false};
    files.before = [&](const std::string& call, const std::string& path) {
        const bool archive = path.ends_with(zip::kTemporarySuffix);
        const bool here = phase == "Directory"     ? call == "Write" && archive && finishing
                          : phase == "Create"      ? call == "Open" && archive
                          : phase == "Leftover"    ? call == "List" && path == "C:\\Backup"
                          : phase == "OneHugeFile" ? call == "Read" && path == "C:\\Data\\b"
                                                   : call == phase;
        // The last file read; what is written after it ends with the directory.
        finishing = finishing || (call == "Read" && path == "C:\\Data\\Sub\\c");
        if (here && hung < 5) {
            ++hung;
            const int until = raised + 10;
            while (raised < until) {
                std::this_thread::yield();
            }
        }
    };
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_GT(hung, 0) << "the phase never came";
}

INSTANTIATE_TEST_SUITE_P(Phases, ProgressWhileTheDiskHangs,
                         ::testing::Values("Leftover", "Create", "List", "Open", "Read",
                                           "OneHugeFile", "Size", "Write", "Directory", "Seek",
                                           "Flush", "Close", "Find"));

TEST_F(Progress, WaitsForALockedFileOnAnotherThread) {
    FailCalls(files, {.name = "Open", .path = "C:\\Data\\a"}, error_number::kPermissionDenied);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(events.overall.back(), 100);
}

TEST_F(Progress, ACancelStopsBeforeTheNextStep) {
    // One huge file, read no further than the window when the first event cancels.
    files.Remove("C:\\Data");
    files.PutZeros("C:\\Data\\huge", std::uint64_t{1} << 40);
    std::atomic<int> reads{0};
    std::atomic<bool> cancelled{false};
    std::atomic<int> after{0};
    events.on_overall = [&] { cancelled = true; };
    events.cancel_at = 1;
    files.before = [&](const std::string& call, const std::string&) {
        reads += call == "Read" ? 1 : 0;
        // Block the disk until the cancel is requested, so that later calls are counted.
        while (!cancelled) {
            std::this_thread::yield();
        }
        after += call == "Read" ? 1 : 0;
    };
    EXPECT_EQ(Run(), RunOutcome::kCancelled);
    EXPECT_LT(after, 1000);
    EXPECT_EQ(files.Everything(),
              (Strings{"C:\\", "C:\\Backup\\", "C:\\Data\\", "C:\\Data\\huge"}));
}

}  // namespace
}  // namespace vantrel::test
