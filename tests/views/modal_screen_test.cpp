// Modal windows on a real screen: the window behind is disabled until the modal one has ended.
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
