// The restore window over a component that still works though the cancel has been handed over, and
// over one that warns.

#include "restore/Frm_Restore.h"
#include "tests/restore/restore_tab_fixture.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

// Raises two more events after the cancel, like workers that finish their current files.
class SlowToStop : public zip::PKUNZIP {
  public:
    using PKUNZIP::PKUNZIP;
    void Set(int id, const zip::Value& value) override {
        namespace unzip = zip::unzip_id;
        if (id != unzip::kAction || std::get<std::int16_t>(value) != unzip::kActionExtract) {
            return;
        }
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
        if (id != unzip::kAction || std::get<std::int16_t>(value) != unzip::kActionExtract) {
            return;
        }
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

// Counting and extracting both need the disk; only counting may ask for it.
TEST_F(RestoreTabTest, CancelOfThePromptForTheLastDiskIsTheEndOfQuestions) {
    machine.PutFile(kArchive, "PK\7\10 the first disk of several");
    tab.Fld_RestoreFile.SetCaption(kArchive);
    tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    Frm_Restore window(program, tab.Controls(), std::make_unique<zip::PKUNZIP>(machine.machine()));
    desktop.answers = {forms::Answer::kCancel, forms::Answer::kCancel};
    PressOkWhenIdle();
    desktop.ShowModal(window);
    EXPECT_EQ(desktop.boxes.size(), 1u);
    EXPECT_THAT(LogRecords(), Contains("Cancelled by User"));
}

TEST_F(RestoreTabTest, LineBreakInAnEntryNameMakesNoRecordOfItsOwn) {
    machine.PutFile("C:\\Data\\x--Successful Backup", "alpha");
    Archive();
    std::string bytes = machine.Content(kArchive);
    for (std::size_t at = 0; (at = bytes.find("x--", at)) != std::string::npos; ++at) {
        bytes.replace(at, 3, "x\r\n");
    }
    machine.PutFile(kArchive, bytes);
    tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
    Browse(kArchive);
    std::vector<std::string> details;
    desktop.on_step = [&](const std::string&) {
        if (auto* const window = dynamic_cast<Frm_Restore*>(desktop.Front())) {
            for (int i = 0; i < window->Lst_Details.Count(); ++i) {
                details.push_back(window->Lst_Details.Item(i));
            }
        }
    };
    Restore();
    const std::string warning =
        "x\\x0d\\x0aSuccessful Backup is restored as x__Successful Backup: characters that a file "
        "name cannot hold become \"_\".";
    EXPECT_THAT(details, Contains(warning));
    EXPECT_THAT(LogRecords(), Contains(warning));
    EXPECT_THAT(LogRecords(), Not(Contains(StartsWith("Successful Backup"))));
}

}  // namespace
}  // namespace vantrel::test
