#include "backupset/clsFiles.h"
#include "backupset/clsINI.h"
#include "common/utf.h"
#include "tests/support/program_fixture.h"

namespace vantrel {
namespace {

TEST(Backslash, EndsATextInOneBackslash) {
    EXPECT_EQ(clsString().Backslash("C:"), "C:\\");
    EXPECT_EQ(clsString().Backslash("C:\\"), "C:\\");
    EXPECT_EQ(clsString().Backslash("C:\\Data"), "C:\\Data\\");
}

TEST(Backslash, EmptyTextBecomesABackslash) { EXPECT_EQ(clsString().Backslash(""), "\\"); }

class BackupParts : public test::ProgramFixture {
  protected:
    std::vector<std::string> Of(const std::string& path) {
        clsINI ini(program);
        return {ini.Backup_Parts(path, clsINI::kDrive), ini.Backup_Parts(path, clsINI::kFolder),
                ini.Backup_Parts(path, clsINI::kFile)};
    }
    using Parts = std::vector<std::string>;
};

TEST_F(BackupParts, FullPathHasAllThree) {
    EXPECT_EQ(Of("D:\\DATA\\A.ZIP"), (Parts{"D:\\", "D:\\DATA\\", "A.ZIP"}));
    EXPECT_EQ(Of("D:\\A.ZIP"), (Parts{"D:\\", "D:\\", "A.ZIP"}));
    EXPECT_EQ(Of("D:\\DATA\\"), (Parts{"D:\\", "D:\\DATA\\", ""}));
}

TEST_F(BackupParts, OnlyBackslashInFrontGivesNeitherFolderNorFile) {
    EXPECT_EQ(Of("\\ARCHIVE.ZIP"), (Parts{"C:\\", "", ""}));
}

TEST_F(BackupParts, BareNameIsAllFile) {
    EXPECT_EQ(Of("ARCHIVE.ZIP"), (Parts{"C:\\", "", "ARCHIVE.ZIP"}));
}

TEST_F(BackupParts, BackslashAloneIsOnTheApplicationsDrive) {
    machine.process.application_folder = "E:\\Tools\\Vantrel";
    EXPECT_EQ(Of("\\"), (Parts{"E:\\", "", ""}));
}

TEST_F(BackupParts, PathWithoutDriveIsOnTheApplicationsDrive) {
    machine.process.application_folder = "E:\\Tools\\Vantrel";
    EXPECT_EQ(Of("\\DATA\\A.ZIP"), (Parts{"E:\\", "\\DATA\\", "A.ZIP"}));
    EXPECT_EQ(Of("\\\\server\\share\\A.ZIP"), (Parts{"E:\\", "\\\\server\\share\\", "A.ZIP"}));
    EXPECT_EQ(Of(""), (Parts{"E:\\", "", ""}));
}

TEST_F(BackupParts, DriveIsTheFirstThreeCharactersWhateverTheyAre) {
    EXPECT_EQ(Of("D:DATA")[0], "D:D");
    EXPECT_EQ(Of("D:")[0], "D:");
    EXPECT_EQ(Of("\xC3\xA4:\\x")[0], "\xC3\xA4:\\");
}

TEST_F(BackupParts, DriveKeepsItsLetterCase) { EXPECT_EQ(Of("d:\\x")[0], "d:\\"); }

TEST_F(BackupParts, AnyOtherPartIsEmpty) {
    clsINI ini(program);
    EXPECT_EQ(ini.Backup_Parts("D:\\DATA\\A.ZIP", 3), "");
    EXPECT_EQ(ini.Backup_Parts("D:\\DATA\\A.ZIP", -1), "");
}

TEST(Utf8, CountsCharactersNotBytes) {
    const std::string text = "a\xC3\xA4\xE2\x82\xAC z";
    EXPECT_EQ(utf::Length(text), 5u);
    EXPECT_EQ(utf::Left(text, 2), "a\xC3\xA4");
    EXPECT_EQ(utf::Left(text, 0), "");
    EXPECT_EQ(utf::Left(text, 9), text);
    EXPECT_EQ(utf::At(text, 2), "\xE2\x82\xAC");
    EXPECT_EQ(utf::At(text, 5), "");
}

TEST(Utf8, TakesBytesThatAreNoText) {
    EXPECT_EQ(utf::Length("\x80\x80"), 1u);
    EXPECT_EQ(utf::Left("\xFF\xFE", 1), "\xFF");
    EXPECT_EQ(utf::At("", 0), "");
}

}  // namespace
}  // namespace vantrel
