#include "tests/support/scripted_desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "tests/support/test_machine.h"

namespace vantrel::test {
namespace {

using forms::Answer;
using forms::Buttons;
using forms::Form;
using forms::UnloadMode;
using ::testing::ElementsAre;

class RecordingForm : public Form {
  public:
    RecordingForm(forms::Program& program, std::string name) : Form(program, std::move(name)) {}
    std::vector<std::string> ran;
    std::function<void()> on_load;
    void Form_Load() override {
        ran.push_back(Loaded() && !Visible() ? "load" : "load too late");
        if (on_load) on_load();
    }
    void Form_Activate() override { ran.push_back(Visible() ? "activate" : "activate hidden"); }
    void Form_QueryUnload(UnloadMode mode) override {
        ran.push_back("query " + std::to_string(static_cast<int>(mode)));
    }
    void Form_Unload() override { ran.push_back(Loaded() ? "unload" : "unload too late"); }
};

class Desktop : public ::testing::Test {
  protected:
    TestMachine machine;
    ScriptedDesktop desktop;
    forms::Program program{machine.machine(), desktop};
    RecordingForm one{program, "Frm_One"};
    RecordingForm two{program, "Frm_Two"};
};

TEST_F(Desktop, BoxesAreRecordedAndAnsweredInOrder) {
    desktop.answers = {Answer::kNo, Answer::kCancel};
    EXPECT_EQ(desktop.Show({.text = "just so"}), Answer::kOk);
    EXPECT_EQ(desktop.Show({.text = "1", .buttons = Buttons::kYesNo}), Answer::kNo);
    EXPECT_EQ(desktop.Show({.text = "2", .buttons = Buttons::kRetryCancel}), Answer::kCancel);
    EXPECT_EQ(desktop.boxes.size(), 3u);
    EXPECT_EQ(desktop.boxes[1].text, "1");
}

TEST_F(Desktop, QuestionWithoutAnAnswerGetsTheDefaultButton) {
    EXPECT_EQ(desktop.Show({.buttons = Buttons::kYesNo}), Answer::kYes);
    EXPECT_EQ(desktop.Show({.buttons = Buttons::kYesNo, .default_button = 2}), Answer::kNo);
    EXPECT_EQ(desktop.Show({.buttons = Buttons::kRetryCancel}), Answer::kRetry);
}

TEST_F(Desktop, InputBoxWithoutAnAnswerIsCancelled) {
    desktop.inputs = {"typed"};
    EXPECT_EQ(desktop.Input("first?", "Title", "default"), "typed");
    EXPECT_EQ(desktop.Input("second?", "", "default"), "");
    ASSERT_EQ(desktop.input_boxes.size(), 2u);
    EXPECT_EQ(desktop.input_boxes[0].prompt, "first?");
    EXPECT_EQ(desktop.input_boxes[0].title, "Title");
    EXPECT_EQ(desktop.input_boxes[0].default_text, "default");
}

TEST_F(Desktop, ModalWindowLoadsShowsActivatesAndWaitsUntilItIsHidden) {
    desktop.idle = {[&] { EXPECT_EQ(desktop.Front(), &one); }, [&] { desktop.Hide(one); }};
    desktop.ShowModal(one);
    EXPECT_THAT(one.ran, ElementsAre("load", "activate"));
    EXPECT_TRUE(one.Loaded());
    EXPECT_FALSE(one.Visible());
    EXPECT_TRUE(desktop.idle.empty());
}

TEST_F(Desktop, ModalWindowIsOverWhenUnloaded) {
    desktop.idle = {[&] { desktop.Unload(one, UnloadMode::kControlMenu); }};
    desktop.ShowModal(one);
    EXPECT_THAT(one.ran, ElementsAre("load", "activate", "query 0", "unload"));
    EXPECT_FALSE(one.Loaded());
    EXPECT_EQ(desktop.Front(), nullptr);
}

TEST_F(Desktop, ModalWindowThatNobodyClosesFailsTheTestAndEnds) {
    EXPECT_NONFATAL_FAILURE(desktop.ShowModal(one), "waits for a user who does nothing");
    EXPECT_FALSE(one.Visible());
}

TEST_F(Desktop, WindowUnloadedByItsOwnLoadHandlerIsNeverShown) {
    one.on_load = [&] { desktop.Unload(one); };
    desktop.ShowModal(one);
    EXPECT_THAT(desktop.happened, ElementsAre("load Frm_One", "unload Frm_One"));
}

TEST_F(Desktop, ActivationOfAModelessWindowComesFromTheMessageLoop) {
    desktop.ShowModeless(one);
    EXPECT_THAT(one.ran, ElementsAre("load"));
    desktop.DoEvents();
    EXPECT_THAT(one.ran, ElementsAre("load", "activate"));
    desktop.DoEvents();
    EXPECT_THAT(one.ran, ElementsAre("load", "activate"));
}

TEST_F(Desktop, WindowBehindIsActivatedWhenTheUserComesBackToIt) {
    desktop.ShowModeless(one);
    desktop.DoEvents();
    desktop.idle = {[&] { desktop.Hide(two); }};
    desktop.ShowModal(two);
    desktop.DoEvents();
    EXPECT_THAT(one.ran, ElementsAre("load", "activate", "activate"));
}

TEST_F(Desktop, MessageBoxActivatesNothing) {
    desktop.ShowModeless(one);
    desktop.DoEvents();
    desktop.Show({.text = "box"});
    desktop.DoEvents();
    EXPECT_THAT(one.ran, ElementsAre("load", "activate"));
}

TEST_F(Desktop, LoadingTwiceLoadsOnceAndUnloadingTwiceUnloadsOnce) {
    desktop.Load(one);
    desktop.Load(one);
    desktop.Unload(one);
    desktop.Unload(one);
    EXPECT_THAT(one.ran, ElementsAre("load", "query 1", "unload"));
}

TEST_F(Desktop, DoEventsRunsOneQueuedStepACall) {
    int steps = 0;
    desktop.on_events = {[&] { ++steps; }, [&] { ++steps; }};
    desktop.DoEvents();
    EXPECT_EQ(steps, 1);
    desktop.DoEvents();
    desktop.DoEvents();
    EXPECT_EQ(steps, 2);
    EXPECT_EQ(desktop.do_events_calls, 3);
}

TEST_F(Desktop, RunLastsUntilNoWindowIsLeft) {
    desktop.ShowModeless(one);
    desktop.idle = {[] {}, [&] { desktop.Unload(one, UnloadMode::kControlMenu); }};
    desktop.Run();
    EXPECT_TRUE(desktop.idle.empty());
    EXPECT_FALSE(one.Loaded());
}

}  // namespace
}  // namespace vantrel::test
