// Events and cancelling while disks are written, flushed, read back and read.
#include "tests/zip/spanning_fixture.h"
#include "zip/disks/archive_target.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;

class SpanningProgress : public SpanningTest, public ::testing::WithParamInterface<const char*> {
  protected:
    SpanningProgress() {
        files.Put("C:\\Data\\a", Noise(2 * kChunkSize));
        files.Put("C:\\Data\\b", Prose(30'000));
        NewBox(kChunkSize);
    }
    // Runs `here` where the archive's file meets the call that is the parameter.
    void At(const std::function<void()>& here) {
        files.before = [here](const std::string& call, const std::string& path) {
            if (call == GetParam() && path.starts_with("A:")) {
                here();
            }
        };
    }
};

// If the caller's thread took part in the work, or waited for it, there would be no events.
TEST_P(SpanningProgress, EventsGoOn) {
    std::atomic<int> raised{0};
    std::atomic<int> hung{0};
    events.on_overall = [&] { ++raised; };
    At([&] {
        if (++hung <= 5) {
            for (const int until = raised + 10; raised < until;) {
                std::this_thread::yield();
            }
        }
    });
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_GT(hung, 0) << "the phase never came";
    EXPECT_TRUE(std::is_sorted(events.overall.begin(), events.overall.end()));
    EXPECT_EQ(std::count(events.overall.begin(), events.overall.end(), 100), 1);
}

TEST_P(SpanningProgress, ACancelStopsBeforeTheNextCall) {
    std::atomic<bool> cancelled{false};
    std::atomic<int> seen{0};
    std::atomic<bool> started{false};
    events.on_overall = [&] {
        if (started && events.cancel_at == 0) {
            events.cancel_at = events.overall.size() + 1;  // the next event
        }
        cancelled = events.cancel_at > 0 && events.overall.size() >= events.cancel_at;
    };
    At([&] {
        started = true;
        ++seen;
        while (!cancelled) {
            std::this_thread::yield();
        }
    });
    EXPECT_EQ(Run(), RunOutcome::kCancelled);
    EXPECT_LE(seen, 2);
    box.Eject();
    EXPECT_TRUE(box.disks[0].files.empty());
}

INSTANTIATE_TEST_SUITE_P(Phases, SpanningProgress,
                         ::testing::Values("Open", "Write", "Flush", "Read", "Close"));

}  // namespace
}  // namespace vantrel::test
