#include "backupset/clsFiles.h"
#include "tests/support/program_fixture.h"

namespace vantrel {
namespace {

class Exist : public test::ProgramFixture {
  protected:
    bool File(const std::string& path) { return clsFiles(program).Exist(path, true); }
    bool Folder(const std::string& path) { return clsFiles(program).Exist(path, false); }
};

TEST_F(Exist, EmptyPathExists) {
    EXPECT_TRUE(File(""));
    EXPECT_TRUE(Folder(""));
}

TEST_F(Exist, FileNameInAnotherLetterCaseIsFound) {
    machine.PutFile("C:\\Vantrel\\Weekly.Ini", "");
    EXPECT_TRUE(File("C:\\Vantrel\\Weekly.Ini"));
    EXPECT_TRUE(File("C:\\Vantrel\\WEEKLY.INI"));
    EXPECT_TRUE(File("c:\\vantrel\\weekly.ini"));
    EXPECT_FALSE(File("C:\\Vantrel\\Weekly.In"));
}

TEST_F(Exist, FileNameWithAccentsInAnotherCaseIsFound) {
    machine.PutFile("C:\\Vantrel\\M\xC3\xBCll.ini", "");
    EXPECT_TRUE(File("C:\\Vantrel\\M\xC3\x9CLL.INI"));
}

TEST_F(Exist, EmptyFolderSatisfiesTheAllFilesMask) {
    machine.MakeFolders("C:\\Empty");
    EXPECT_TRUE(File("C:\\Empty\\*.*"));
    EXPECT_TRUE(File("C:\\*.*"));
    EXPECT_FALSE(File("C:\\Nowhere\\*.*"));
}

TEST_F(Exist, AnyOtherMaskIsTheNameOfNoFile) {
    machine.PutFile("C:\\Vantrel\\a.txt", "");
    EXPECT_FALSE(File("C:\\Vantrel\\*.txt"));
    EXPECT_FALSE(File("C:\\Vantrel\\*"));
    EXPECT_FALSE(File("C:\\Vantrel\\?.txt"));
    EXPECT_FALSE(Folder("C:\\Vantre?"));
    EXPECT_FALSE(Folder("C:\\*.*"));
}

TEST_F(Exist, MissingDriveIsFalseWithoutAMessage) {
    EXPECT_FALSE(File("Q:\\A.ZIP"));
    EXPECT_FALSE(File("Q:\\*.*"));
    EXPECT_FALSE(Folder("Q:\\"));
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Exist, DriveWithoutDiskIsFalseUntilOneIsInserted) {
    machine.AddDrive('A', platform::drive_type::kRemovable, "", false);
    EXPECT_FALSE(Folder("A:\\"));
    machine.SetReady('A', true);
    EXPECT_TRUE(Folder("A:\\"));
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Exist, PathWithoutDriveIsTestedOnTheApplicationsDrive) {
    machine.AddDrive('E', platform::drive_type::kFixed);
    machine.MakeFolders("E:\\Vantrel");
    machine.PutFile("E:\\Data\\A.ZIP", "");
    EXPECT_FALSE(File("\\Data\\A.ZIP"));
    EXPECT_TRUE(Folder("\\"));
    machine.process.application_folder = "E:\\Vantrel";
    EXPECT_TRUE(File("\\Data\\A.ZIP"));
    EXPECT_TRUE(Folder("\\Data"));
    EXPECT_FALSE(Folder("\\Nowhere"));
    machine.SetReady('E', false);
    EXPECT_FALSE(Folder("\\"));
    EXPECT_FALSE(File("\\Data\\A.ZIP"));
}

TEST_F(Exist, FileWithoutFolderPartIsNotThere) {
    machine.PutFile("C:\\ARCHIVE.ZIP", "");
    machine.PutFile("C:\\Vantrel\\ARCHIVE.ZIP", "");
    EXPECT_FALSE(File("\\ARCHIVE.ZIP"));
    EXPECT_FALSE(File("ARCHIVE.ZIP"));
    EXPECT_FALSE(File("C:ARCHIVE.ZIP"));
    EXPECT_FALSE(File("*.*"));
    EXPECT_TRUE(File("C:\\ARCHIVE.ZIP"));
}

TEST_F(Exist, RelativeFolderIsNotThere) {
    EXPECT_FALSE(Folder("Vantrel"));
    EXPECT_FALSE(Folder("C:Vantrel"));
    EXPECT_FALSE(Folder("."));
}

TEST_F(Exist, FolderTestTakesTheWholePath) {
    machine.PutFile("C:\\Data\\A.ZIP", "");
    EXPECT_TRUE(Folder("C:\\Data"));
    EXPECT_TRUE(Folder("C:\\Data\\"));
    EXPECT_TRUE(Folder("c:\\dATA"));
    EXPECT_FALSE(Folder("C:\\Data\\A.ZIP"));
    EXPECT_FALSE(Folder("C:\\Data\\Nowhere"));
    EXPECT_FALSE(Folder("C:\\Nowhere\\A.ZIP"));
}

TEST_F(Exist, DriveAloneIsItsRoot) {
    EXPECT_TRUE(Folder("C:"));
    EXPECT_TRUE(Folder("C:\\"));
    EXPECT_TRUE(Folder("c:\\"));
}

TEST_F(Exist, FolderOfThatNameIsNoFile) {
    machine.MakeFolders("C:\\Data\\A.ZIP");
    EXPECT_FALSE(File("C:\\Data\\A.ZIP"));
    EXPECT_TRUE(Folder("C:\\Data\\A.ZIP"));
}

TEST_F(Exist, FolderPathIsNoFile) { EXPECT_FALSE(File("C:\\Vantrel\\")); }

TEST_F(Exist, HiddenAndSystemFilesCount) {
    machine.PutFile("C:\\Data\\hidden.zip", "");
    machine.files().SetAttributes("C:\\Data\\hidden.zip", platform::attribute::kHidden);
    machine.PutFile("C:\\Data\\system.zip", "");
    machine.files().SetAttributes("C:\\Data\\system.zip", platform::attribute::kSystem);
    EXPECT_TRUE(File("C:\\Data\\HIDDEN.ZIP"));
    EXPECT_TRUE(File("C:\\Data\\SYSTEM.ZIP"));
}

TEST_F(Exist, FileInMissingFolderIsFalse) { EXPECT_FALSE(File("C:\\Nowhere\\A.ZIP")); }

TEST_F(Exist, NameMatchesAsAWhole) {
    machine.PutFile("C:\\Data\\A.ZIP", "");
    EXPECT_FALSE(File("C:\\Data\\A.ZIP "));
    EXPECT_FALSE(File("C:\\Data\\A.ZIP."));
    EXPECT_FALSE(File("C:\\Data\\\"A.ZIP\""));
}

TEST_F(Exist, NothingMalformedRaises) {
    for (const std::string path :
         {"::", ":", "C", "\\\\", "\\\\\\", "C:\\\\", "|", "C:\\a<b\\c", "9:\\", "\\x", "?:\\"}) {
        EXPECT_NO_THROW(File(path)) << path;
        EXPECT_NO_THROW(Folder(path)) << path;
    }
    const std::string nul("C:\\a\0b\\c", 8);
    EXPECT_FALSE(File(nul));
    EXPECT_FALSE(Folder(nul));
    EXPECT_FALSE(File("9:\\*.*"));
}

// A drive list takes no network path: with the application on one, the drive that the rule tests
// first does not exist.
TEST_F(Exist, ApplicationOnANetworkPathHasNoDriveToTest) {
    machine.process.application_folder = "\\\\server\\share\\Vantrel";
    EXPECT_FALSE(File("\\\\server\\share\\Vantrel\\*.*"));
    EXPECT_FALSE(Folder("\\"));
    EXPECT_TRUE(Folder("C:\\Vantrel"));
}

}  // namespace
}  // namespace vantrel
