// Archives with a damaged directory, chosen on the Restore tab: the question, the search, and what
// a restore makes of its result.
#include "tests/restore/unlisted_archive_fixture.h"
#include "tests/support/matchers.h"
#include "tests/zip/zip_builder.h"

namespace vantrel::test {
namespace {

using forms::Answer;

constexpr const char* kQuestion =
    "The list of files in this archive is damaged or missing:\r\nC:\\Backups\\WEEKLY.zip\r\n\r\n"
    "Press Search to read the archive and find every file that is intact. This can take as long as "
    "a "
    "restore.";

class SearchedArchive : public UnlistedArchive {
  protected:
    SearchedArchive() {
        archive_.entries = {{.name = "Sub/b.txt", .content = "beta"},
                            {.name = "Sub/bad.txt", .content = "gamma"},
                            {.name = "Other/c.txt", .content = "delta"}};
        PutDamaged();
    }
    // Its directory is lost, and the content of one file is damaged.
    void PutDamaged() {
        std::string bytes = archive_.Bytes();
        bytes[bytes.find("gamma")] = 'G';
        machine.PutFile(kArchive, bytes.substr(0, bytes.find("PK\1\2")));
    }
    void BrowseAndSearch() {
        AnswerWith({Answer::kSearch});
        Browse(kArchive);
    }

    BuiltArchive archive_;
};

TEST_F(SearchedArchive, ChoiceAsksOnceAndListsWhatTheSearchFinds) {
    BrowseAndSearch();
    ASSERT_THAT(desktop.boxes, SizeIs(1));
    EXPECT_EQ(desktop.boxes[0].buttons, forms::Buttons::kSearchCancel);
    ExpectBox(kQuestion, forms::Icon::kExclamation, "Restore");
    EXPECT_THAT(Listed(), ElementsAre("Sub/b.txt", "Other/c.txt"));
    EXPECT_EQ(tab.Fld_Total.Caption(), "2");
    EXPECT_THAT(desktop.happened, Contains("show Frm_Restore").Times(1));
}

TEST_F(SearchedArchive, RefusedSearchCountsAsBefore) {
    AnswerWith({Answer::kCancel});
    Browse(kArchive);
    EXPECT_THAT(desktop.boxes, SizeIs(1));
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_EQ(tab.Fld_Total.Caption(), "0");
    EXPECT_THAT(desktop.happened, Not(Contains("show Frm_Restore")));
}

TEST_F(SearchedArchive, RestorePassesTheProtectedFoldersAndLogsTheLosses) {
    BrowseAndSearch();
    Restore();
    EXPECT_THAT(desktop.boxes, SizeIs(1)) << "no second question";
    ExpectRestored();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Other\\c.txt"), "delta");
    EXPECT_FALSE(machine.Exists("C:\\RESTORE\\Sub\\bad.txt"));
    EXPECT_THAT(LogRecords(), Contains("Sub/bad.txt is not restored: its checksum is wrong."));
    EXPECT_THAT(LogRecords(), Contains("1 file not restored"));
    EXPECT_THAT(LogRecords(), Contains("C:\\RESTORE\\SUB renamed to C:\\RESTORE\\SUB_001"));
}

TEST_F(SearchedArchive, SetIsSearchedLikeABrowsedArchive) {
    PutSetWithArchive("C:\\Backups\\", "WEEKLY.zip");
    AnswerWith({Answer::kSearch});
    ChooseSet();
    EXPECT_THAT(Listed(), ElementsAre("Sub/b.txt", "Other/c.txt"));
    Restore();
    ExpectRestored();
}

TEST_F(SearchedArchive, CancelledSearchListsNothing) {
    AnswerWith({Answer::kSearch});
    bool pressed = false;
    desktop.on_box = [&](const forms::Box&) {
        std::string headers;
        while (headers.size() < 4 << 20) {
            headers += "PK\3\4";
        }
        machine.PutFile(kArchive, headers);
        for (int i = 0; i < 3; ++i) {
            desktop.on_events.push_back([&] {
                auto* const window = desktop.Front();
                auto* const cancel = window == nullptr ? nullptr : window->Find("Cmd_Cancel");
                if (cancel != nullptr && !pressed) {
                    pressed = true;
                    dynamic_cast<forms::Button*>(cancel)->UserPress();
                }
            });
        }
    };
    Browse(kArchive);
    EXPECT_TRUE(pressed);
    EXPECT_THAT(Listed(), IsEmpty());
}

// Each restore asks for the disks again; the result of the search is used whichever is in the
// drive.
TEST_F(SearchedArchive, SetWithoutItsLastDiskIsSearchedFromTheFirstOn) {
    const std::string bytes = archive_.Bytes();
    const std::size_t second = bytes.rfind("PK\3\4");
    const std::string disks[] = {"PK\7\x8" + bytes.substr(0, second),
                                 bytes.substr(second, bytes.find("PK\1\2") - second)};
    machine.PutFile(kArchive, disks[0]);
    desktop.on_box = [&](const forms::Box& box) {
        for (const std::size_t disk : {0u, 1u}) {
            if (box.text.starts_with("Please insert disk " + std::to_string(disk + 1))) {
                machine.PutFile(kArchive, disks[disk]);
            }
        }
    };
    AnswerWith(
        {Answer::kContinue, Answer::kSearch, Answer::kRetry, Answer::kContinue, Answer::kContinue});
    Browse(kArchive);
    EXPECT_THAT(desktop.boxes, SizeIs(5));
    EXPECT_THAT(Listed(), ElementsAre("Sub/b.txt", "Sub/bad.txt", "Other/c.txt"));
    AnswerWith({Answer::kRetry, Answer::kRetry});
    Restore();
    EXPECT_THAT(desktop.boxes, SizeIs(7));
    ExpectRestored();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Other\\c.txt"), "delta");
    EXPECT_THAT(LogRecords(), Contains("The archive is incomplete: its last disk is missing. It "
                                       "was searched for its files."));
}

TEST_F(SearchedArchive, ResultIsNotUsedForAnArchiveThatHasChanged) {
    BrowseAndSearch();
    machine.PutFile(kArchive, whole_);
    Restore();
    ExpectRestored();
    EXPECT_FALSE(machine.Exists("C:\\RESTORE\\Other\\c.txt"));
}

// The protected-folder pass has seen the entries of the archive that was listed.
TEST_F(UnlistedArchive, AnotherArchiveAtTheSamePathIsRefusedByTheRestoreWindow) {
    Browse(kArchive);
    BuiltArchive other;
    other.entries = {{.name = "Sub/b.txt", .content = "not listed"},
                     {.name = "Later/d.txt", .content = "not listed either"}};
    machine.PutFile("C:\\RESTORE\\Later\\d.txt", "precious");
    Protect("C:\\RESTORE\\LATER");
    bool removed = false;
    desktop.on_step = [&](const std::string& step) {
        if (step == "load Frm_Restore" && !removed) {
            removed = true;
            TakeArchiveAway();
        }
    };
    desktop.on_box = [&](const forms::Box&) {
        if (desktop.boxes.size() == 1) {
            machine.PutFile(kArchive, other.Bytes());
        }
    };
    AnswerWith({Answer::kRetry, Answer::kCancel});
    Restore();
    ExpectBox(
        "The archive cannot be read: C:\\Backups\\WEEKLY.zip (It is another archive than the one "
        "listed).",
        forms::Icon::kExclamation, "Restore", 2);
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Later\\d.txt"), "precious");
    EXPECT_FALSE(machine.Exists("C:\\RESTORE\\Sub\\b.txt"));
    EXPECT_THAT(LogRecords(), Contains("Cancelled by User"));
}

}  // namespace
}  // namespace vantrel::test
