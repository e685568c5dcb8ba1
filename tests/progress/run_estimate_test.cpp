// Speed and remaining time over recorded clocks.
#include "progress/run_estimate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace vantrel::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using zip::RunFigures;

constexpr std::uint64_t kMb = 1024 * 1024;

// Replays a run of which `per_second` bytes and files are done, sampled every 50 ms.
class EstimateTest : public ::testing::Test {
  protected:
    EstimateTest() {
        figures.files_total = 1000;
        figures.bytes_total = 1000 * kMb;
        figures.file_cost = 0;
        estimate.Start(now);
    }

    void Work(milliseconds time, double bytes_per_second, double files_per_second = 0) {
        constexpr milliseconds kTick{50};
        for (const auto end = now + time; now < end;) {
            now += kTick;
            bytes += bytes_per_second * 0.05;
            files += files_per_second * 0.05;
            figures.bytes_done = static_cast<std::uint64_t>(bytes);
            figures.files_done = static_cast<std::uint64_t>(files);
            estimate.Add(now, figures);
        }
    }
    double RemainingSeconds() const {
        const auto remaining = estimate.Remaining();
        return remaining ? static_cast<double>(remaining->count()) / 1000 : -1;
    }

    milliseconds now{5'000'000};
    double bytes = 0;
    double files = 0;
    RunFigures figures;
    RunEstimate estimate;
};

TEST_F(EstimateTest, IsUnknownBeforeTheTotalIs) {
    figures.files_total = 0;
    figures.bytes_total = 0;
    Work(seconds(30), 10 * kMb);
    EXPECT_EQ(estimate.Remaining(), std::nullopt);
    EXPECT_EQ(estimate.Speed(), 0u);
}

TEST_F(EstimateTest, SpeedNeedsASecond) {
    Work(milliseconds(1000), 10 * kMb);
    EXPECT_EQ(estimate.Speed(), 0u);
    Work(milliseconds(50), 10 * kMb);
    EXPECT_NEAR(static_cast<double>(estimate.Speed()), 10 * kMb, 10);
}

TEST_F(EstimateTest, RemainingTimeNeedsTwoSeconds) {
    Work(milliseconds(2000), 100 * kMb);
    EXPECT_EQ(estimate.Remaining(), std::nullopt);
    Work(milliseconds(50), 100 * kMb);
    EXPECT_NEAR(RemainingSeconds(), 7.95, 0.01);
}

TEST_F(EstimateTest, RemainingTimeNeedsTwoPercentOfTheWork) {
    Work(milliseconds(9950), 2 * kMb);
    EXPECT_EQ(estimate.Remaining(), std::nullopt);
    Work(milliseconds(100), 2 * kMb);
    EXPECT_NEAR(RemainingSeconds(), 490, 1);
}

TEST_F(EstimateTest, AfterFifteenSecondsLessOfTheWorkIsEnough) {
    Work(milliseconds(14'900), 0.1 * kMb);
    EXPECT_EQ(estimate.Remaining(), std::nullopt);
    Work(milliseconds(200), 0.1 * kMb);
    EXPECT_NEAR(RemainingSeconds(), 9985, 10);
}

TEST_F(EstimateTest, OfASteadyRunCountsDownWithTheClock) {
    Work(seconds(20), 10 * kMb);
    for (double left = 80; left > 1; left -= 5) {
        EXPECT_NEAR(RemainingSeconds(), left, 0.1);
        Work(seconds(5), 10 * kMb);
    }
}

// The bytes hardly move while the files do: the remaining time follows both.
TEST_F(EstimateTest, UsesBytesAndFilesTogether) {
    figures.file_cost = kMb;  // the files cost as much as the bytes
    Work(seconds(20), 0, 10);
    EXPECT_NEAR(RemainingSeconds(), 180, 1);
    EXPECT_EQ(estimate.Speed(), 0u);
}

TEST_F(EstimateTest, FilesThatWereLeftOutAreWorkThatIsDone) {
    figures.file_cost = kMb;
    figures.left_out = 500;
    figures.bytes_left_out = 500 * kMb;
    Work(seconds(20), 10 * kMb, 10);
    EXPECT_NEAR(RemainingSeconds(), 30, 1);
}

TEST_F(EstimateTest, ChangesSlowlyWhenTheRateDoes) {
    Work(seconds(20), 10 * kMb);
    const double before = RemainingSeconds();
    Work(milliseconds(500), 1 * kMb);
    EXPECT_NEAR(RemainingSeconds(), before - 0.5, 3);
    Work(seconds(60), 1 * kMb);
    EXPECT_GT(RemainingSeconds(), 400);  // 739.5 MB at 1 MB/s, and some memory of the faster time
}

TEST_F(EstimateTest, DoesNotJumpOverAMixOfSmallAndLargeFiles) {
    figures.file_cost = 16 * 1024;
    figures.files_total = 100'000;
    // A second of small files, a second of large ones, as a tree of folders gives.
    const auto mixed = [this](int pairs) {
        for (int i = 0; i < pairs; ++i) {
            Work(seconds(1), 2 * kMb, 3000);
            Work(seconds(1), 40 * kMb, 10);
        }
    };
    mixed(5);
    double before = RemainingSeconds();
    for (int i = 0; i < 10; ++i) {
        mixed(1);
        EXPECT_NEAR(RemainingSeconds(), before - 2, 4);
        before = RemainingSeconds();
    }
}

TEST_F(EstimateTest, IsUnknownWhenNothingHasMovedForFiveSeconds) {
    Work(seconds(20), 10 * kMb);
    Work(milliseconds(5000), 0);
    EXPECT_NE(estimate.Remaining(), std::nullopt);
    Work(milliseconds(100), 0);
    EXPECT_EQ(estimate.Remaining(), std::nullopt);
    Work(milliseconds(100), 10 * kMb);
    EXPECT_NE(estimate.Remaining(), std::nullopt);
}

TEST_F(EstimateTest, TimeOfAQuestionDoesNotCount) {
    Work(seconds(20), 10 * kMb);
    estimate.Pause(now);
    EXPECT_EQ(estimate.Worked(now + seconds(5)), seconds(20));
    now += seconds(3600);
    bytes += 50 * kMb;  // what other threads did meanwhile
    estimate.Resume(now);
    EXPECT_EQ(estimate.Worked(now), seconds(20));
    Work(seconds(1), 10 * kMb);
    EXPECT_NEAR(RemainingSeconds(), 74, 2);
    EXPECT_NEAR(static_cast<double>(estimate.Speed()), 10 * kMb, kMb);
    EXPECT_EQ(estimate.Worked(now), seconds(21));
}

TEST_F(EstimateTest, SamplesAtTheSameTimeAreOne) {
    Work(seconds(20), 10 * kMb);
    const double before = RemainingSeconds();
    for (int i = 0; i < 100; ++i) {
        figures.bytes_done += 1000;
        estimate.Add(now, figures);
    }
    EXPECT_EQ(RemainingSeconds(), before);
}

TEST_F(EstimateTest, BytesThatAreTakenBackDoNotCount) {
    Work(seconds(20), 10 * kMb);
    bytes -= 100 * kMb;  // a large file became unreadable
    figures.bytes_left_out += 400 * kMb;
    Work(milliseconds(50), 0);
    EXPECT_LT(estimate.Speed(), 10 * kMb);
    EXPECT_NEAR(RemainingSeconds(), 79, 1);
}

TEST_F(EstimateTest, StartForgetsTheEarlierRun) {
    Work(seconds(20), 10 * kMb);
    estimate.Start(now);
    EXPECT_EQ(estimate.Worked(now), seconds(0));
    EXPECT_EQ(estimate.Speed(), 0u);
    EXPECT_EQ(estimate.Remaining(), std::nullopt);
}

// 30,000 small files in 9 s, then 12 large ones in 5 s: hardly any bytes for most of the time.
TEST_F(EstimateTest, OfSmallFilesBeforeLargeOnesIsRightWithinAThird) {
    figures.files_total = 30'012;
    figures.bytes_total = 297 * kMb;
    figures.file_cost = 16 * 1024;
    constexpr double kSmallSeconds = 9;
    constexpr double kLargeSeconds = 5;
    const auto expect_near = [&](double left) {
        EXPECT_GT(RemainingSeconds(), left * 2 / 3);
        EXPECT_LT(RemainingSeconds(), left * 4 / 3);
    };
    for (int i = 0; i < 9; ++i) {
        Work(seconds(1), 29.0 * kMb / kSmallSeconds, 30'000 / kSmallSeconds);
        if (i >= 2) {
            expect_near(kSmallSeconds - i - 1 + kLargeSeconds);
        }
    }
    for (int i = 0; i < 4; ++i) {
        Work(seconds(1), 268.0 * kMb / kLargeSeconds, 12 / kLargeSeconds);
        expect_near(kLargeSeconds - i - 1);
    }
}

}  // namespace
}  // namespace vantrel::test
