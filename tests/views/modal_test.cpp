// A modal window ends when it is hidden and none of its handlers is running.
#include "tests/views/modal_window.h"

namespace vantrel::test {

namespace {

TEST_F(ModalRun, WindowThatIsUnloadedInsideItsRunIsHiddenUntilTheRunHasEnded) {
    run_window.run = [this] {
        user->Click(run_window.Cmd_Ok);
        EXPECT_FALSE(run_window.Visible());
        EXPECT_TRUE(run_window.Loaded());
        run_window.happened.push_back("end of run");
    };
    ShowRun();
    EXPECT_EQ(run_window.happened, (Lines{"end of run", "Unload"}));
    EXPECT_FALSE(run_window.Loaded());
    EXPECT_EQ(run_window.running_handlers, 0);
    EXPECT_TRUE(user->errors.empty());
}

TEST_F(ModalRun, WindowThatIsUnloadedTwiceInsideItsRunIsUnloadedOnce) {
    run_window.run = [this] {
        program.desktop.Unload(run_window);
        program.desktop.Unload(run_window);
    };
    ShowRun();
    EXPECT_EQ(run_window.happened, Lines{"Unload"});
}

TEST_F(ModalRun, WindowThatIsOnlyHiddenStaysLoaded) {
    run_window.run = [this] { program.desktop.Hide(run_window); };
    ShowRun();
    EXPECT_TRUE(run_window.Loaded());
    program.desktop.Unload(run_window);
    EXPECT_FALSE(run_window.Loaded());
}

TEST_F(ModalRun, WindowWhoseLoadFailsIsNotLoaded) {
    run_window.load = [] { throw Error(error_number::kFileNotFound, "Form_Load", ""); };
    ShowRun();
    EXPECT_EQ(user->errors, std::vector{error_number::kFileNotFound});
    EXPECT_FALSE(run_window.Loaded());
    EXPECT_EQ(run_window.running_handlers, 0);
    run_window.load = nullptr;
    int runs = 0;
    run_window.run = [&] {
        ++runs;
        program.desktop.Unload(run_window);
    };
    ShowRun();
    EXPECT_EQ(runs, 1);
}

TEST_F(ModalRun, WindowCanBeShownAgain) {
    int runs = 0;
    run_window.run = [&] {
        ++runs;
        program.desktop.Unload(run_window);
    };
    ShowRun();
    ShowRun();
    EXPECT_EQ(runs, 2);
}

}  // namespace

}  // namespace vantrel::test
