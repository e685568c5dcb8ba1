// What only a screen has of a modal window: the one behind it is disabled, as long as it is there.
#include "tests/views/modal_window.h"
#include "tests/views/real_controls.h"

namespace vantrel::test {

namespace {

TEST_F(ModalRun, OwnerStaysDisabledUntilTheRunHasEnded) {
    const HWND owner = TopOf(window);
    bool ran = false;
    run_window.run = [&] {
        EXPECT_FALSE(IsWindowEnabled(owner));
        user->Click(run_window.Cmd_Ok);
        EXPECT_FALSE(run_window.Visible());
        program.desktop.DoEvents();
        EXPECT_FALSE(IsWindowEnabled(owner));
        ran = true;
    };
    ShowRun();
    EXPECT_TRUE(ran);
    EXPECT_TRUE(IsWindowEnabled(owner));
    EXPECT_FALSE(run_window.Loaded());
}

}  // namespace

}  // namespace vantrel::test
