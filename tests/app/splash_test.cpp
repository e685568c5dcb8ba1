#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/Frm_Splash.h"
#include "app/application.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {
namespace {

using std::chrono::milliseconds;

class Splash : public ProgramFixture {
  protected:
    Frm_Splash splash{program};
};

TEST_F(Splash, ShowsTheVersionOfTheProgram) {
    EXPECT_EQ(splash.Lbl_Version.Caption(), "Version 3.0.0");
    desktop.Load(splash);
    EXPECT_EQ(splash.Lbl_Version.Caption(), "Version 3.0.6");
}

TEST_F(Splash, TimerIsOffUntilTheWindowIsActivated) {
    desktop.ShowModeless(splash);
    EXPECT_FALSE(splash.Tim_Delay.Enabled());
    EXPECT_EQ(splash.Tim_Delay.Interval(), milliseconds(5000));
}

TEST_F(Splash, ActivationHoldsFiveSecondsAndLeavesTheTimerOn) {
    desktop.ShowModeless(splash);
    desktop.DoEvents();
    EXPECT_EQ(desktop.waited, milliseconds(5000));
    EXPECT_TRUE(splash.Tim_Delay.Enabled());
}

TEST_F(Splash, OtherEventsDoNotEndTheWait) {
    desktop.on_events = {[] {}, [] {}, [] {}};
    desktop.ShowModeless(splash);
    desktop.DoEvents();
    EXPECT_EQ(desktop.waited, milliseconds(5000));
}

TEST_F(Splash, SecondActivationReturnsAtOnce) {
    desktop.ShowModeless(splash);
    desktop.DoEvents();
    splash.Form_Activate();
    EXPECT_EQ(desktop.waited, milliseconds(5000));
}

TEST_F(Splash, LaterTicksOnlySetTheFlagAgain) {
    desktop.ShowModeless(splash);
    desktop.DoEvents();
    splash.Tim_Delay.Elapse();
    splash.Form_Activate();
    EXPECT_EQ(desktop.waited, milliseconds(5000));
}

TEST_F(Splash, ClosedDuringTheDelayDoesNotWaitForever) {
    desktop.on_events = {[] {}, [this] { desktop.Unload(splash); }};
    desktop.ShowModeless(splash);
    desktop.DoEvents();
    desktop.DoEvents();
    EXPECT_FALSE(splash.Loaded());
    EXPECT_EQ(desktop.waited, milliseconds(0));
}

TEST_F(Splash, ResizeRepaintsTheGradientOverTheWholeWindow) {
    desktop.Load(splash);
    splash.MarkSize(6000, 3150);
    splash.Form_Resize();
    ASSERT_EQ(splash.Boxes().size(), 63u);
    const auto& first = splash.Boxes().front();
    EXPECT_EQ(first.top, 0);
    EXPECT_EQ(first.right, 6000);
    EXPECT_EQ(first.blue, 255);
    const auto& last = splash.Boxes().back();
    EXPECT_EQ(last.bottom, 3150);
    EXPECT_EQ(last.blue, 7);

    splash.MarkSize(8000, 6300);
    splash.Form_Resize();
    ASSERT_EQ(splash.Boxes().size(), 63u);
    EXPECT_EQ(splash.Boxes().back().bottom, 6300);
}

TEST_F(Splash, StartWithoutAnyOtherWorkShowsItForFiveSecondsBeforeTheMainWindow) {
    Application application(machine.machine(), desktop);
    milliseconds waited_at_main{-1};
    bool main_was_there = true;
    desktop.on_events = {[] {}, [&] { main_was_there = application.HasMainWindow(); }};
    application.Main();
    waited_at_main = desktop.waited;
    EXPECT_FALSE(main_was_there);
    EXPECT_EQ(waited_at_main, milliseconds(5000));
    EXPECT_TRUE(application.main_window().Visible());
}

TEST_F(Splash, SecondCopyIsHeldToo) {
    machine.process.previous_instance = true;
    Application application(machine.machine(), desktop);
    application.Main();
    EXPECT_EQ(desktop.waited, milliseconds(5000));
}

TEST_F(Splash, UnattendedRunIsHeldToo) {
    Unattended("GONE.INI");
    Application application(machine.machine(), desktop);
    application.Main();
    EXPECT_EQ(desktop.waited, milliseconds(5000));
    EXPECT_EQ(desktop.Front(), nullptr);
}

}  // namespace
}  // namespace vantrel::test
