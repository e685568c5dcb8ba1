// The restore window while its component still works, though the cancel has been handed over.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "restore/Frm_Restore.h"
#include "tests/restore/restore_tab_fixture.h"

namespace vantrel::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

// Goes on for two more events after it was told to stop, as workers do that finish what they have.
class SlowToStop : public zip::PKUNZIP {
  public:
    using PKUNZIP::PKUNZIP;
    void Set(int id, const zip::Value& value) override {
        namespace unzip = zip::unzip_id;
        if (id != unzip::kAction || std::get<std::int16_t>(value) != unzip::kActionExtract) return;
        bool cancel = false;
        for (std::int32_t percent : {10, 20, 30}) {
            OverallProgress(percent, cancel);
            FileProgress(percent);
        }
        EXPECT_TRUE(cancel);
    }
};

TEST_F(RestoreTabTest, OkWhileACancelledRunEndsDoesNotTakeItsWindowAway) {
    tab.Fld_RestoreFile.SetCaption(kArchive);
    Frm_Restore window(program, tab.Controls(), std::make_unique<SlowToStop>(machine.machine()));
    desktop.on_events.push_back([&] { window.Cmd_Cancel.UserPress(); });
    bool pressed = false;
    desktop.on_events.push_back([&] {
        pressed = window.Cmd_Ok.Visible();
        window.Cmd_Ok.UserPress();
        EXPECT_TRUE(window.Loaded());
        EXPECT_FALSE(window.Visible());
        EXPECT_THAT(LogRecords(), ElementsAre("Starting Restore from ZIP File - "
                                              "C:\\Backups\\WEEKLY.zip"));
    });
    desktop.ShowModal(window);
    EXPECT_TRUE(pressed);
    EXPECT_FALSE(window.Loaded());
    EXPECT_THAT(LogRecords(), Contains("Cancelled by User"));
    EXPECT_THAT(desktop.happened,
                ElementsAre("load Frm_Restore", "show Frm_Restore", "activate Frm_Restore",
                            "hide Frm_Restore", "unload Frm_Restore"));
}

// The user cancels; before the next event of progress the component has a question.
class AsksAfterTheCancel : public zip::PKUNZIP {
  public:
    using PKUNZIP::PKUNZIP;
    void Set(int id, const zip::Value& value) override {
        namespace unzip = zip::unzip_id;
        if (id != unzip::kAction || std::get<std::int16_t>(value) != unzip::kActionExtract) return;
        std::int32_t percent = 10;
        bool cancel = false;
        FileProgress(percent);
        EXPECT_FALSE(questions->AskRetry("The archive cannot be read."));
        OverallProgress(percent, cancel);
        EXPECT_TRUE(cancel);
    }
};

TEST_F(RestoreTabTest, NoQuestionIsShownAfterTheCancel) {
    tab.Fld_RestoreFile.SetCaption(kArchive);
    Frm_Restore window(program, tab.Controls(),
                       std::make_unique<AsksAfterTheCancel>(machine.machine()));
    desktop.on_events.push_back([&] { window.Cmd_Cancel.UserPress(); });
    desktop.idle.push_back([&] { window.Cmd_Ok.UserPress(); });
    desktop.ShowModal(window);
    EXPECT_THAT(desktop.boxes, ::testing::IsEmpty());
    EXPECT_THAT(LogRecords(), Contains("Cancelled by User"));
}

}  // namespace
}  // namespace vantrel::test
