// Bars, panels, the clip: what only shows something.
#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

class ProgressBars : public WindowFixture<RunWindow> {
  protected:
    void SetAndExpect(int set, int value) {
        window.PB_File.SetValue(set);
        Expect(value);
    }
    void Expect(int value) {
        EXPECT_EQ(value, window.PB_File.Value());
        EXPECT_EQ(value, user->Percent(window.PB_File));
        EXPECT_EQ(0, user->Percent(window.PB_Folder));
    }
};
class Panels : public WindowFixture<MainWindow> {
  protected:
    Panels() { window.TAB_Backup.SetTab(MainWindow::kRestore); }
    void SetAndExpect(double set, double percent) {
        window.SSP_TotalFiles.SetFloodPercent(set);
        Expect(percent);
    }
    void Expect(double percent) {
        constexpr double kOnePixel = 0.75;
        EXPECT_EQ(percent, window.SSP_TotalFiles.FloodPercent());
        EXPECT_NEAR(percent, user->Percent(window.SSP_TotalFiles), kOnePixel);
    }
};
class Animations : public WindowFixture<RunWindow> {
  protected:
    const std::string clip = program.InApplicationFolder("app\\System\\FileCopy.AVI");
};

TEST_F(ProgressBars, ShowTheirValue) {
    Expect(0);
    SetAndExpect(35, 35);
    SetAndExpect(34, 34);
}

TEST_F(ProgressBars, StayBetweenNothingAndAll) {
    SetAndExpect(101, 100);
    SetAndExpect(-1, 0);
}

TEST_F(Panels, AreFilledFromTheLeftAsFarAsTheyAreTold) {
    Expect(0);
    SetAndExpect(40, 40);
    SetAndExpect(33.25, 33.25);
}

TEST_F(Panels, StayBetweenNothingAndAll) {
    SetAndExpect(100.5, 100);
    SetAndExpect(-1, 0);
}

TEST_F(Animations, PlayOnceOpenedAndUntilStopped) {
    EXPECT_FALSE(user->Playing(window.Ani_File));
    window.Ani_File.Open(clip);
    EXPECT_TRUE(user->Playing(window.Ani_File));
    window.Ani_File.Stop();
    EXPECT_FALSE(user->Playing(window.Ani_File));
    EXPECT_EQ(clip, window.Ani_File.Path());
}

TEST_F(Animations, OpenedAgainPlayAgain) {
    window.Ani_File.Open(clip);
    window.Ani_File.Stop();
    window.Ani_File.Open(clip);
    EXPECT_TRUE(user->Playing(window.Ani_File));
}

TEST_F(Animations, WithoutAPathShowNothing) {
    window.Ani_File.Open(clip);
    window.Ani_File.Open("");
    EXPECT_FALSE(user->Playing(window.Ani_File));
    EXPECT_FALSE(window.Ani_File.Playing());
}

}  // namespace

}  // namespace vantrel::test
