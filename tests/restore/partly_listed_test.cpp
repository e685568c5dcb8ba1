// Restore Now for archives of which a part is there: a disk of several, or a directory up to some
// entry.
#include "tests/restore/unlisted_archive_fixture.h"
#include "tests/support/matchers.h"
#include "tests/zip/zip_builder.h"

namespace vantrel::test {
namespace {

using forms::Answer;

// The first bytes are those of the first of several disks.
class UnlistedDisks : public UnlistedArchive {
  protected:
    void BrowseDisks() {
        machine.PutFile("C:\\Backups\\SET.zip", "PK\7\x8PK\3\4 and so on");
        AnswerWith({Answer::kCancel});
        Browse("C:\\Backups\\SET.zip");
        desktop.boxes.clear();
    }
    void ExpectOneQuestion() {
        BrowseDisks();
        AnswerWith({Answer::kCancel});
        tab.actions.Cmd_Restore_Click();
        ASSERT_THAT(desktop.boxes, SizeIs(1));
        EXPECT_THAT(desktop.boxes[0].text, ::testing::StartsWith("Please insert the last disk"));
        ExpectNothingRestored();
        EXPECT_THAT(LogRecords(),
                    ElementsAre("Starting Restore from ZIP File - C:\\Backups\\SET.zip",
                                "Finished Restore from ZIP File - C:\\Backups\\SET.zip",
                                "Cancelled by User"));
    }
};

TEST_F(UnlistedDisks, RefusedDiskIsTheLastQuestion) { ExpectOneQuestion(); }

TEST_F(UnlistedDisks, RefusedDiskIsTheLastQuestionWithoutProtectedFoldersToo) {
    ProtectNothing();
    ExpectOneQuestion();
}

// Asks once more after its question was refused.
class AsksTwice : public zip::PKUNZIP {
  public:
    using PKUNZIP::PKUNZIP;
    void Set(int id, const zip::Value& value) override {
        namespace unzip = zip::unzip_id;
        if (id != unzip::kAction || std::get<std::int16_t>(value) != unzip::kActionCount) {
            return;
        }
        EXPECT_FALSE(questions->AskRetry("Please insert the last disk."));
        EXPECT_FALSE(questions->AskRetry("Please insert disk 1."));
        Message({.text = "The archive cannot be read (Disk not ready)."});
    }
};

TEST_F(UnlistedDisks, ListingShowsNoQuestionAfterARefusedOne) {
    AsksTwice component(machine.machine());
    const RestoreControls controls{
        tab.Cmb_RestoreFile, tab.Fld_RestoreFile, tab.Fld_RestoreTo, tab.TV_Restore,
        tab.Fld_Total,       tab.SSP_TotalFiles,  component};
    AnswerWith({Answer::kCancel});
    EXPECT_TRUE(ShowZipContents(program, controls, kArchive).cancelled);
    EXPECT_THAT(desktop.boxes, SizeIs(1));
}

// A directory that is damaged in its middle: what follows is neither listed nor restored.
class PartlyListedArchive : public UnlistedArchive {
  protected:
    PartlyListedArchive() {
        BuiltArchive archive;
        archive.entries = {{.name = "Sub/b.txt", .content = "beta"},
                           {.name = "Later/c.txt", .content = "gamma"}};
        std::string bytes = archive.Bytes();
        const std::size_t second = bytes.rfind("PK\1\2");
        bytes[second] = '?';
        machine.PutFile(kArchive, bytes);
        machine.PutFile("C:\\RESTORE\\Later\\c.txt", "newer, too");
        Protect("C:\\RESTORE\\LATER");
    }
};

TEST_F(PartlyListedArchive, IsRestoredAsFarAsItIsListed) {
    Browse(kArchive);
    EXPECT_THAT(Listed(), ElementsAre("Sub/b.txt"));
    Restore();
    EXPECT_THAT(desktop.boxes, SizeIs(1)) << "the search was refused when it was chosen";
    ExpectRestored();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Later\\c.txt"), "newer, too");
}

}  // namespace
}  // namespace vantrel::test
