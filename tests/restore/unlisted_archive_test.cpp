// Restore Now for an archive that cannot be listed. The protected-folder pass goes by the entries,
// so they are asked for before it.
#include <functional>

#include "tests/restore/unlisted_archive_fixture.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

using forms::Answer;

constexpr const char* kMissing =
    "The archive cannot be read: C:\\Backups\\WEEKLY.zip (File not found).";

TEST_F(UnlistedArchive, CancelRestoresNothingAndIsLoggedAsACancelledRun) {
    Browse(kArchive);
    TakeArchiveAway();
    AnswerWith({Answer::kCancel});
    desktop.on_box = [this](const forms::Box&) {
        EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
    };
    tab.actions.Cmd_Restore_Click();
    ASSERT_THAT(desktop.boxes, SizeIs(1));
    EXPECT_EQ(desktop.boxes[0].buttons, forms::Buttons::kRetryCancel);
    ExpectBox(kMissing, forms::Icon::kExclamation, "Restore");
    ExpectNothingRestored();
    EXPECT_THAT(LogRecords(),
                ElementsAre("Starting Restore from ZIP File - C:\\Backups\\WEEKLY.zip",
                            "Finished Restore from ZIP File - C:\\Backups\\WEEKLY.zip",
                            "Cancelled by User"));
    const std::string undated = "\r\n" + std::string(20, ' ');
    EXPECT_THAT(machine.Content("C:\\Vantrel\\Vantrel.Log"), Not(::testing::HasSubstr(undated)));
}

TEST_F(UnlistedArchive, CancelOfAChosenSetIsLoggedWithItsName) {
    PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
    ChooseSet();
    TakeArchiveAway();
    const std::string set = machine.Content("C:\\Vantrel\\WEEKLY.INI");
    AnswerWith({Answer::kCancel});
    tab.actions.Cmd_Restore_Click();
    EXPECT_THAT(LogRecords(), ElementsAre("Starting Restore from WEEKLY.INI",
                                          "Finished Restore from WEEKLY.INI", "Cancelled by User"));
    EXPECT_EQ(machine.Content("C:\\Vantrel\\WEEKLY.INI"), set);
    ExpectNothingRestored();
}

TEST_F(UnlistedArchive, RetryListsAgainAndThenThePassRuns) {
    Browse(kArchive);
    TakeArchiveAway();
    PutArchiveBackAt(1);
    AnswerWith({Answer::kRetry});
    Restore();
    EXPECT_THAT(desktop.boxes, SizeIs(1));
    ExpectRestored();
    EXPECT_THAT(LogRecords(),
                ElementsAre("Restore process about to Overwrite C:\\RESTORE\\SUB",
                            "C:\\RESTORE\\SUB renamed to C:\\RESTORE\\SUB_001",
                            "Starting Restore from ZIP File - C:\\Backups\\WEEKLY.zip",
                            "Finished Restore from ZIP File - C:\\Backups\\WEEKLY.zip"));
}

TEST_F(UnlistedArchive, RetryAsksUntilItCanBeListed) {
    Browse(kArchive);
    TakeArchiveAway();
    PutArchiveBackAt(3);
    AnswerWith({Answer::kRetry, Answer::kRetry, Answer::kRetry});
    Restore();
    EXPECT_THAT(desktop.boxes, SizeIs(3));
    ExpectRestored();
}

TEST_F(UnlistedArchive, CancelAfterARetryIsTheLastQuestion) {
    Browse(kArchive);
    TakeArchiveAway();
    AnswerWith({Answer::kRetry, Answer::kCancel});
    tab.actions.Cmd_Restore_Click();
    EXPECT_THAT(desktop.boxes, SizeIs(2));
    ExpectNothingRestored();
    EXPECT_THAT(LogRecords(), Contains("Cancelled by User").Times(1));
}

TEST_F(UnlistedArchive, PressAfterACancelAsksAgain) {
    Browse(kArchive);
    TakeArchiveAway();
    AnswerWith({Answer::kCancel});
    tab.actions.Cmd_Restore_Click();
    PutArchiveBackAt(2);
    AnswerWith({Answer::kRetry});
    Restore();
    ExpectRestored();
}

TEST_F(UnlistedArchive, WithoutProtectedFoldersTheRestoreWindowAsks) {
    ProtectNothing();
    Browse(kArchive);
    TakeArchiveAway();
    AnswerWith({Answer::kCancel});
    desktop.on_box = [this](const forms::Box&) {
        EXPECT_THAT(desktop.happened, Contains("show Frm_Restore"));
    };
    Restore();
    EXPECT_THAT(desktop.boxes, SizeIs(1));
}

TEST_F(UnlistedArchive, PressDuringTheListingOfARetryDoesNothing) {
    Browse(kArchive);
    TakeArchiveAway();
    int pressed = 0;
    desktop.on_box = [&](const forms::Box&) {
        machine.PutFile(kArchive, whole_);
        desktop.on_events.push_back([&] {
            ++pressed;
            tab.actions.Cmd_Restore_Click();
        });
    };
    AnswerWith({Answer::kRetry});
    Restore();
    EXPECT_EQ(pressed, 1);
    EXPECT_THAT(desktop.happened, Contains("show Frm_Restore").Times(1));
    EXPECT_FALSE(machine.Exists("C:\\RESTORE\\SUB_002"));
    ExpectRestored();
}

// It has other entries than the one that was asked for.
TEST_F(UnlistedArchive, ArchiveThatIsChosenDuringTheListingOfARetryIsTheOneThatThePassKnows) {
    machine.PutFile("C:\\Backups\\OTHER.zip", whole_);
    Browse(kArchive);
    TakeArchiveAway();
    desktop.on_box = [this](const forms::Box&) {
        desktop.on_events.push_back([this] { Browse("C:\\Backups\\OTHER.zip"); });
    };
    AnswerWith({Answer::kRetry});
    Restore();
    EXPECT_THAT(desktop.boxes, SizeIs(1));
    ExpectRestored();
    EXPECT_THAT(LogRecords(), Contains("Finished Restore from ZIP File - C:\\Backups\\OTHER.zip"));
}

TEST_F(UnlistedArchive, WindowThatIsClosedDuringTheListingOfARetryRestoresNothing) {
    desktop.Load(tab);
    Browse(kArchive);
    TakeArchiveAway();
    desktop.on_box = [this](const forms::Box&) {
        machine.PutFile(kArchive, whole_);
        desktop.on_events.push_back([this] { desktop.Unload(tab); });
    };
    AnswerWith({Answer::kRetry});
    tab.actions.Cmd_Restore_Click();
    EXPECT_THAT(desktop.boxes, SizeIs(1));
    ExpectNothingRestored();
}

// The same words, whoever asks.
class UnlistedArchiveQuestion : public UnlistedArchive {
  protected:
    // The box that is shown over this disk, in which the archive is listed first.
    forms::Box Question(const std::function<void(FaultyFileSystem&)>& damage) {
        machine.PutFile(kArchive, whole_);
        FaultyTab over(machine, program);
        Tab& shown = over.tab;
        desktop.files.push_back(kArchive);
        shown.actions.Cmd_RestoreFile_Click();
        damage(over.faulty);
        desktop.boxes.clear();
        AnswerWith({Answer::kCancel});
        PressOkWhenIdle();
        shown.actions.Cmd_Restore_Click();
        desktop.idle.clear();
        EXPECT_THAT(desktop.boxes, SizeIs(1));
        return desktop.boxes.empty() ? forms::Box{} : desktop.boxes[0];
    }
    void ExpectOneWording(const std::function<void(FaultyFileSystem&)>& damage) {
        const forms::Box before_the_pass = Question(damage);
        EXPECT_THAT(desktop.happened, Not(Contains("load Frm_Restore")));
        ProtectNothing();
        const forms::Box of_the_window = Question(damage);
        EXPECT_THAT(desktop.happened, Contains("load Frm_Restore"));
        EXPECT_EQ(before_the_pass.text, of_the_window.text);
        EXPECT_EQ(before_the_pass.title, of_the_window.title);
        EXPECT_EQ(before_the_pass.icon, of_the_window.icon);
        EXPECT_EQ(before_the_pass.buttons, of_the_window.buttons);
    }
};

TEST_F(UnlistedArchiveQuestion, ForAMissingArchive) {
    ExpectOneWording([this](FaultyFileSystem&) { TakeArchiveAway(); });
}

TEST_F(UnlistedArchiveQuestion, ForAMissingFolder) {
    ExpectOneWording([this](FaultyFileSystem&) {
        TakeArchiveAway();
        machine.files().RemoveFolder("C:\\Backups");
    });
    machine.MakeFolders("C:\\Backups");
}

TEST_F(UnlistedArchiveQuestion, ForAFileThatIsNoArchive) {
    ExpectOneWording([this](FaultyFileSystem&) { machine.PutFile(kArchive, "no archive"); });
}

TEST_F(UnlistedArchiveQuestion, ForALockedArchive) {
    ExpectOneWording([this](FaultyFileSystem& faulty) {
        machine.PutFile(kArchive, whole_ + "\n");
        faulty.plan.Inject({.kind = Call::kOpen,
                            .from_then_on = true,
                            .number = error_number::kPermissionDenied,
                            .path_part = "WEEKLY.zip"});
    });
}

TEST_F(UnlistedArchiveQuestion, ForAnArchiveThatCannotBeRead) {
    ExpectOneWording([this](FaultyFileSystem& faulty) {
        machine.PutFile(kArchive, whole_ + "\n");
        faulty.plan.Inject({.kind = Call::kRead, .from_then_on = true, .path_part = "WEEKLY.zip"});
    });
}

}  // namespace
}  // namespace vantrel::test
