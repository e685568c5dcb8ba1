#include "tests/support/scripted_desktop.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "tests/support/test_machine.h"

namespace vantrel::test {
namespace {

using forms::Answer;
using forms::Buttons;
using forms::Form;

class Desktop : public ::testing::Test {
  protected:
    TestMachine machine;
    ScriptedDesktop desktop;
    forms::Program program{machine.machine(), desktop};
    Form one{program, "Frm_One"};
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

TEST_F(Desktop, ModalWindowThatNobodyClosesFailsTheTestAndEnds) {
    EXPECT_NONFATAL_FAILURE(desktop.ShowModal(one), "waits for a user who does nothing");
    EXPECT_FALSE(one.Visible());
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

}  // namespace
}  // namespace vantrel::test
