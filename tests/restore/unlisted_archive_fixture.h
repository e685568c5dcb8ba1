// The Restore tab with an archive, kArchive, that has a file for the protected folder
// C:\RESTORE\Sub.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <utility>

#include "tests/restore/restore_tab_fixture.h"

namespace vantrel::test {

class UnlistedArchive : public RestoreTabTest {
  protected:
    UnlistedArchive() {
        Archive();
        whole_ = machine.Content(kArchive);
        ProtectSub();
    }
    void ProtectNothing() { clsCfg(program).Create_CFG(clsCfg(program).ListPath()); }
    void TakeArchiveAway() { machine.files().RemoveFile(kArchive); }
    // When the n-th box is shown.
    void PutArchiveBackAt(std::size_t n) {
        desktop.on_box = [this, n](const forms::Box&) {
            if (desktop.boxes.size() == n) {
                machine.PutFile(kArchive, whole_);
            }
        };
    }
    // To each question more than expected, the answer is Cancel: Retry might be for ever.
    void AnswerWith(std::deque<forms::Answer> answers) {
        desktop.answers = std::move(answers);
        desktop.answers.insert(desktop.answers.end(), 5, forms::Answer::kCancel);
    }
    void ExpectNothingRestored() {
        EXPECT_THAT(desktop.happened, ::testing::Not(::testing::Contains("load Frm_Restore")));
        EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "newer work");
        EXPECT_THAT(machine.Names("C:\\RESTORE"), ::testing::ElementsAre("Sub\\"));
        EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
    }
    void ExpectRestored() {
        EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "beta");
        EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
    }

    std::string whole_;
};

}  // namespace vantrel::test
