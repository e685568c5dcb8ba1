#include "forms/window_manager.h"

#include <functional>
#include <string>
#include <vector>

#include "forms/controls.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {
namespace {

using forms::Answer;
using forms::Buttons;
using forms::Form;
using forms::UnloadMode;

class RecordingForm : public Form {
  public:
    RecordingForm(forms::Program& program, std::string name) : Form(program, std::move(name)) {}
    std::vector<std::string> ran;
    std::function<void()> on_load, on_activate, on_unload;
    void Form_Load() override {
        ran.push_back(Loaded() && !Visible() ? "load" : "load too late");
        if (on_load) {
            on_load();
        }
    }
    void Form_Activate() override {
        ran.push_back(Visible() ? "activate" : "activate hidden");
        if (on_activate) {
            on_activate();
        }
    }
    void Form_QueryUnload(UnloadMode mode) override {
        ran.push_back("query " + std::to_string(static_cast<int>(mode)));
        if (on_unload) {
            on_unload();
        }
    }
    void Form_Unload() override { ran.push_back(Loaded() ? "unload" : "unload too late"); }
};

class Windows : public ProgramFixture {
  protected:
    RecordingForm one{program, "Frm_One"};
    RecordingForm two{program, "Frm_Two"};
};

// A run in `two` with a Cancel button, in front of `one`.
class WindowsWithARun : public Windows {
  protected:
    WindowsWithARun() {
        cancel.Click = [this] { desktop.Unload(two); };
        desktop.ShowModeless(one);
        desktop.DoEvents();
        one.ran.clear();
    }
    forms::Button cancel{two, "Cmd_Cancel", "Cancel"};
};

TEST_F(Windows, ModalWindowLoadsShowsActivatesAndWaitsUntilItIsHidden) {
    desktop.idle = {[&] { EXPECT_EQ(desktop.Front(), &one); }, [&] { desktop.Hide(one); }};
    desktop.ShowModal(one);
    EXPECT_THAT(one.ran, ElementsAre("load", "activate"));
    EXPECT_TRUE(one.Loaded());
    EXPECT_FALSE(one.Visible());
    EXPECT_TRUE(desktop.idle.empty());
}

TEST_F(Windows, ModalWindowEndsWhenUnloaded) {
    desktop.idle = {[&] { desktop.Unload(one, UnloadMode::kControlMenu); }};
    desktop.ShowModal(one);
    EXPECT_THAT(one.ran, ElementsAre("load", "activate", "query 0", "unload"));
    EXPECT_FALSE(one.Loaded());
    EXPECT_EQ(desktop.Front(), nullptr);
}

TEST_F(Windows, WindowUnloadedByItsOwnLoadHandlerIsNeverShown) {
    one.on_load = [&] { desktop.Unload(one); };
    desktop.ShowModal(one);
    EXPECT_THAT(desktop.happened, ElementsAre("load Frm_One", "unload Frm_One"));
}

TEST_F(Windows, ActivationOfAModelessWindowComesFromTheMessageLoop) {
    desktop.ShowModeless(one);
    EXPECT_THAT(one.ran, ElementsAre("load"));
    desktop.DoEvents();
    EXPECT_THAT(one.ran, ElementsAre("load", "activate"));
    desktop.DoEvents();
    EXPECT_THAT(one.ran, ElementsAre("load", "activate"));
}

TEST_F(Windows, WindowBehindIsActivatedWhenTheUserReturnsToIt) {
    desktop.ShowModeless(one);
    desktop.DoEvents();
    desktop.idle = {[&] { desktop.Hide(two); }};
    desktop.ShowModal(two);
    desktop.DoEvents();
    EXPECT_THAT(one.ran, ElementsAre("load", "activate", "activate"));
}

TEST_F(Windows, MessageBoxActivatesNothing) {
    desktop.ShowModeless(one);
    desktop.DoEvents();
    desktop.Show({.text = "box"});
    desktop.DoEvents();
    EXPECT_THAT(one.ran, ElementsAre("load", "activate"));
}

TEST_F(Windows, LoadingTwiceLoadsOnceAndUnloadingTwiceUnloadsOnce) {
    desktop.Load(one);
    desktop.Load(one);
    desktop.Unload(one);
    desktop.Unload(one);
    EXPECT_THAT(one.ran, ElementsAre("load", "query 1", "unload"));
}

TEST_F(Windows, RunLastsUntilNoWindowIsLeft) {
    desktop.ShowModeless(one);
    desktop.idle = {[] {}, [&] { desktop.Unload(one, UnloadMode::kControlMenu); }};
    desktop.Run();
    EXPECT_TRUE(desktop.idle.empty());
    EXPECT_FALSE(one.Loaded());
}

TEST_F(Windows, WindowWhoseLoadFailsIsNotLoadedAndCanBeLoadedAgain) {
    one.on_load = [] { throw Error(53, "Form_Load", "File not found"); };
    EXPECT_EQ(ErrorOf([&] { desktop.ShowModal(one); }), 53);
    EXPECT_FALSE(one.Loaded());
    EXPECT_FALSE(one.Visible());
    EXPECT_EQ(desktop.Front(), nullptr);
    EXPECT_EQ(one.running_handlers, 0);
    one.on_load = nullptr;
    desktop.Load(one);
    EXPECT_THAT(one.ran, ElementsAre("load", "load"));
}

TEST_F(Windows, WindowWhoseUnloadFailsStaysLoaded) {
    desktop.Load(one);
    one.on_unload = [] { throw Error(70, "Form_QueryUnload", "Permission denied"); };
    EXPECT_EQ(ErrorOf([&] { desktop.Unload(one); }), 70);
    EXPECT_TRUE(one.Loaded());
    one.on_unload = nullptr;
    desktop.Unload(one);
    EXPECT_FALSE(one.Loaded());
}

TEST_F(Windows, UnloadInsideTheUnloadHandlerDoesNothing) {
    desktop.Load(one);
    one.on_unload = [&] { desktop.Unload(one); };
    desktop.Unload(one);
    EXPECT_THAT(one.ran, ElementsAre("load", "query 1", "unload"));
}

TEST_F(Windows, CloseUnloadsAWindowWithoutCancelAndOk) {
    desktop.ShowModeless(one);
    desktop.Escape(one);
    EXPECT_TRUE(one.Loaded());
    desktop.Close(one, UnloadMode::kControlMenu);
    EXPECT_THAT(one.ran, ElementsAre("load", "query 0", "unload"));
}

TEST_F(WindowsWithARun, ErrorInAModalWindowLetsTheOwnerTakeInputAgain) {
    two.on_activate = [&] {
        EXPECT_FALSE(desktop.TakesInput(one));
        throw Error(70, "Form_Activate", "Permission denied");
    };
    EXPECT_EQ(ErrorOf([&] { desktop.ShowModal(two); }), 70);
    EXPECT_TRUE(desktop.TakesInput(one));
}

TEST_F(WindowsWithARun, OwnerTakesNoInputUntilTheRunHasEnded) {
    two.on_activate = [&] {
        desktop.Close(two, UnloadMode::kControlMenu);
        EXPECT_FALSE(two.Visible());
        EXPECT_TRUE(two.Loaded());
        desktop.Close(one, UnloadMode::kControlMenu);
        desktop.DoEvents();
        EXPECT_TRUE(one.Loaded());
        EXPECT_THAT(one.ran, IsEmpty());
    };
    desktop.ShowModal(two);
    EXPECT_TRUE(desktop.TakesInput(one));
    EXPECT_THAT(two.ran, ElementsAre("load", "activate", "query 1", "unload"));
}

TEST_F(WindowsWithARun, CloseMeansTheVisibleOneOfCancelAndOk) {
    forms::Button ok(two, "Cmd_Ok", "OK");
    ok.Click = [&] { desktop.Hide(two); };
    cancel.SetVisible(false);
    desktop.idle = {[&] { desktop.Close(two, UnloadMode::kControlMenu); }};
    desktop.ShowModal(two);
    EXPECT_TRUE(two.Loaded());
    EXPECT_THAT(two.ran, ElementsAre("load", "activate"));
}

TEST_F(WindowsWithARun, EndOfTheSessionCancelsAndUnloadsTheMainWindowLast) {
    one.on_unload = [&] { EXPECT_FALSE(two.Loaded()); };
    desktop.idle = {[&] { desktop.EndSession(); }};
    desktop.ShowModal(two);
    EXPECT_THAT(two.ran, ElementsAre("load", "activate", "query 1", "unload"));
    EXPECT_THAT(one.ran, ElementsAre("query 2", "unload"));
}

TEST_F(WindowsWithARun, EndOfTheSessionWaitsForTheRunThatItCancels) {
    cancel.Click = [&] { cancel.SetEnabled(false); };
    two.on_activate = [&] {
        desktop.DoEvents();
        EXPECT_FALSE(cancel.Enabled());
        EXPECT_TRUE(two.Loaded());
        EXPECT_THAT(one.ran, IsEmpty());
    };
    desktop.on_events = {[&] { desktop.EndSession(); }};
    desktop.ShowModal(two);
    EXPECT_THAT(two.ran, ElementsAre("load", "activate", "query 2", "unload"));
    EXPECT_THAT(one.ran, ElementsAre("query 2", "unload"));
}

TEST_F(WindowsWithARun, NoBoxIsShownAfterTheEndOfTheSession) {
    desktop.answers = {Answer::kYes, Answer::kRetry};
    desktop.EndSession();
    EXPECT_EQ(desktop.Show({.text = "1", .buttons = Buttons::kYesNo}), Answer::kNo);
    EXPECT_EQ(desktop.Show({.text = "2", .buttons = Buttons::kRetryCancel}), Answer::kCancel);
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

}  // namespace
}  // namespace vantrel::test
