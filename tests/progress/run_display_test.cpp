// When the figures of a run are shown, over a recorded clock, and what remains of its messages.
#include "progress/run_display.h"

#include <gtest/gtest.h>

namespace vantrel::test {
namespace {

using std::chrono::milliseconds;

class RunDisplayTest : public ::testing::Test {
  protected:
    RunDisplayTest() {
        display.Start(now, {});
        figures.files_total = 100;
        figures.bytes_total = 10'000;
    }
    bool Update(int later) {
        now += milliseconds(later);
        return display.Update(now, figures);
    }
    void LeaveOut(const std::string& path) {
        display.Add(zip::LeftOutWarning(path, "Skipped " + path, 70));
        ++figures.left_out;
    }

    milliseconds now{77'000};
    zip::RunFigures figures;
    RunDisplay display;
};

TEST_F(RunDisplayTest, FirstFiguresAreShownAtOnce) {
    EXPECT_TRUE(Update(0));
    EXPECT_EQ(display.FiguresLine(), "0 of 100 files, 0 bytes of 9.8 KB");
}

TEST_F(RunDisplayTest, IsUpdatedAtMostTenTimesASecond) {
    int updates = 0;
    for (int i = 0; i < 1000; ++i) {
        updates += Update(1) ? 1 : 0;
    }
    EXPECT_EQ(updates, 10);
}

TEST_F(RunDisplayTest, ChangedDiskIsShownAtOnce) {
    Update(100);
    figures.disk = 2;
    EXPECT_TRUE(Update(0));
    EXPECT_FALSE(Update(0));
    figures.disk = 0;
    EXPECT_TRUE(Update(0));
}

TEST_F(RunDisplayTest, FiguresThatAreNotShownCountAtTheEnd) {
    Update(100);
    figures.files_done = 7;
    EXPECT_FALSE(Update(5));
    const RunEnd end = display.End(now + milliseconds(4000), false);
    EXPECT_EQ(end.figures.files_done, 7u);
    EXPECT_EQ(end.worked, milliseconds(4105));
    EXPECT_FALSE(end.cancelled);
}

TEST_F(RunDisplayTest, PauseIsNotPartOfTheRun) {
    display.Pause(now);
    display.Resume(now + milliseconds(9000));
    EXPECT_EQ(display.End(now + milliseconds(10'000), true).worked, milliseconds(1000));
}

TEST_F(RunDisplayTest, NamesOfFilesAreTheLastComponentOfTheirPath) {
    for (const char* path : {"C:\\Data\\a.txt", "Sub/b.txt", "Sub/Folder/"}) {
        LeaveOut(path);
    }
    Update(100);
    EXPECT_EQ(display.LeftOutLine(), "3 files left out: a.txt, b.txt, Folder");
}

TEST_F(RunDisplayTest, PathOfSeparatorsOnlyHasNoName) {
    LeaveOut("//");
    Update(100);
    EXPECT_EQ(display.LeftOutLine(), "1 file left out: ");
}

TEST_F(RunDisplayTest, ProblemLineIsEmptyWithoutAProblem) {
    Update(100);
    display.Add(zip::Warning("a", "A warning about a file that is there."));
    EXPECT_EQ(display.ProblemLine(), "");
}

TEST_F(RunDisplayTest, ProblemLineHasTheFirstErrorAndWhatWasLeftOut) {
    LeaveOut("a");
    Update(100);
    EXPECT_EQ(display.ProblemLine(), "1 file left out: a. See the Log tab.");
    display.Add(zip::Failure(57, "", "The directory is damaged."));
    display.Add(zip::Failure(61, "", "Another error."));
    EXPECT_EQ(display.ProblemLine(),
              "The directory is damaged. 1 file left out: a. See the Log tab.");
}

TEST_F(RunDisplayTest, StartForgetsTheEarlierRun) {
    LeaveOut("a");
    display.Add(zip::Failure(57, "", "The directory is damaged."));
    Update(100);
    display.Start(now, {",", ".", 3, 3});
    EXPECT_EQ(display.ProblemLine(), "");
    EXPECT_EQ(display.FiguresLine(), "");
    EXPECT_EQ(display.SummaryLine(display.End(now, true)), "Cancelled after 1 s");
}

}  // namespace
}  // namespace vantrel::test
