// What killed runs leave behind, and that nothing else is taken for it.
#include "tests/zip/writer_fixture.h"
#include "zip/disks/archive_target.h"

namespace vantrel::test {
namespace {

class Leftovers : public WriterTest {
  protected:
    Leftovers() { files.Put("C:\\Data\\a", "x"); }
    const std::string ours_ = std::string("PK\x03\x04") + "rest";
};

TEST_F(Leftovers, BesideTheArchiveAreRemoved) {
    files.Put("C:\\Backup\\Weekly.zip.vantrel-new", ours_);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_FALSE(files.Exists("C:\\Backup\\Weekly.zip.vantrel-new"));
}

TEST_F(Leftovers, EmptyOnesAreRemoved) {
    files.Put("C:\\Backup\\Weekly.zip.vantrel-new", "");
    EXPECT_EQ(Run(), RunOutcome::kComplete);
}

TEST_F(Leftovers, InStampedFoldersBesideItAreRemovedWithTheFolderIfItIsThenEmpty) {
    files.Put("C:\\Backup\\20260101_000000\\Weekly.zip.vantrel-new", ours_);
    files.Put("C:\\Backup\\20260102_000000\\Weekly.zip.vantrel-new", ours_);
    files.Put("C:\\Backup\\20260102_000000\\Weekly.zip", "good");
    files.PutFolder("C:\\Backup\\20260103_000000");
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_FALSE(files.Exists("C:\\Backup\\20260101_000000"));
    EXPECT_FALSE(files.Exists("C:\\Backup\\20260102_000000\\Weekly.zip.vantrel-new"));
    EXPECT_EQ(files.Content("C:\\Backup\\20260102_000000\\Weekly.zip"), "good");
    EXPECT_TRUE(files.Exists("C:\\Backup\\20260103_000000")) << "held nothing of ours";
}

TEST_F(Leftovers, InSiblingsOfAStampedFolderAreRemoved) {
    options.archive = "C:\\Backup\\20261115_130509\\Weekly.zip";
    files.Put("C:\\Backup\\20260101_000000\\Weekly.zip.vantrel-new", ours_);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_FALSE(files.Exists("C:\\Backup\\20260101_000000"));
}

TEST_F(Leftovers, OfOtherNamesOrContentsAreNotTouched) {
    files.Put("C:\\Backup\\20260101_000000\\Monthly.zip.vantrel-new", ours_);
    files.Put("C:\\Backup\\20260102_000000\\Weekly.zip.vantrel-new", "not ours");
    files.Put("C:\\Backup\\20260103_000000\\Weekly.zip.vantrel-new", "PK");
    files.Put("C:\\Backup\\Folder\\Weekly.zip.vantrel-new", ours_);
    const Strings before = files.Everything();
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    files.Remove(options.archive);
    EXPECT_EQ(files.Everything(), before);
}

TEST_F(Leftovers, AFileOfSomebodyElseInTheWayIsAFailureNotALoss) {
    files.Put("C:\\Backup\\Weekly.zip.vantrel-new", "not ours");
    EXPECT_EQ(Run(), RunOutcome::kFailed);
    EXPECT_EQ(files.Content("C:\\Backup\\Weekly.zip.vantrel-new"), "not ours");
    EXPECT_EQ(events.messages.back().code, error_number::kFileExists);
}

TEST_F(Leftovers, OneThatIsStillBeingWrittenIsNotTouched) {
    files.Put("C:\\Backup\\20260101_000000\\Weekly.zip.vantrel-new", ours_);
    files.Remove("C:\\Backup\\20260101_000000\\Weekly.zip.vantrel-new");
    const auto other = files.Open("C:\\Backup\\20260101_000000\\Weekly.zip.vantrel-new",
                                  platform::OpenMode::kCreateNew);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_TRUE(files.Exists("C:\\Backup\\20260101_000000\\Weekly.zip.vantrel-new"));
}

TEST(TemporaryPath, NameThatWouldBeTooLongLosesCharactersAtItsEnd) {
    EXPECT_EQ(zip::TemporaryPath("C:\\" + std::string(243, 'N')),
              "C:\\" + std::string(243, 'N') + zip::kTemporarySuffix);
    std::string umlauts;
    for (int i = 0; i < 250; ++i) {
        umlauts += "\xC3\xA4";
    }
    EXPECT_EQ(zip::TemporaryPath("C:\\" + umlauts),
              "C:\\" + umlauts.substr(0, 2 * 243) + zip::kTemporarySuffix);
}

}  // namespace
}  // namespace vantrel::test
