#include "backupset/clsFiles.h"
#include "tests/support/program_fixture.h"

namespace vantrel {
namespace {

const std::string kFile = "C:\\Vantrel\\WEEKLY.INI";

class ProfileFile : public test::ProgramFixture {
  protected:
    std::string Read(const std::string& section, const std::string& key) {
        return clsFiles(program).ReadINI(section, key, kFile);
    }
    void Write(const std::string& section, const std::string& key, const std::string& value,
               const std::string& file = kFile) {
        clsFiles(program).WriteINI(section, key, value, file);
    }
};

TEST_F(ProfileFile, ReadsAKey) {
    machine.PutFile(kFile, "[DESTINATION]\r\nTimeBackup=ON\r\n");
    EXPECT_EQ(Read("Destination", "TimeBackup"), "ON");
}

TEST_F(ProfileFile, MissingFileSectionOrKeyReadsEmpty) {
    EXPECT_EQ(Read("S", "K"), "");
    machine.PutFile(kFile, "[S]\r\nA=1\r\n");
    EXPECT_EQ(Read("S", "K"), "");
    EXPECT_EQ(Read("T", "A"), "");
    EXPECT_EQ(clsFiles(program).ReadINI("S", "A", "C:\\Nowhere\\WEEKLY.INI"), "");
    EXPECT_EQ(clsFiles(program).ReadINI("S", "A", "Q:\\WEEKLY.INI"), "");
    EXPECT_EQ(clsFiles(program).ReadINI("S", "A", ""), "");
}

TEST_F(ProfileFile, FolderEmptyAndBinaryFilesReadEmpty) {
    EXPECT_EQ(clsFiles(program).ReadINI("S", "K", "C:\\Vantrel"), "");
    machine.PutFile(kFile, "");
    EXPECT_EQ(Read("S", "K"), "");
    machine.PutFile(kFile, std::string("PK\x03\x04\0\0\xFF[\0]=\r", 12));
    EXPECT_EQ(Read("S", "K"), "");
}

TEST_F(ProfileFile, ValueOf300CharactersReadsItsFirst254) {
    const std::string value = std::string(253, 'a') + "b" + std::string(46, 'c');
    machine.PutFile(kFile, "[S]\r\nK=" + value + "\r\n");
    EXPECT_EQ(Read("S", "K"), std::string(253, 'a') + "b");
}

TEST_F(ProfileFile, TheLimitCountsBytesOfTheFile) {
    machine.PutFile(kFile, "[S]\r\nK=" + std::string(300, '\xE4') + "\r\n");
    std::string letters;
    for (int i = 0; i < 254; ++i) {
        letters += "\xC3\xA4";
    }
    EXPECT_EQ(Read("S", "K"), letters);
}

TEST_F(ProfileFile, LineWithoutEndAndCarriageReturnsOnlyRead) {
    machine.PutFile(kFile, "[S]\rA=1\rK=2");
    EXPECT_EQ(Read("S", "A"), "1");
    EXPECT_EQ(Read("S", "K"), "2");
}

TEST_F(ProfileFile, WritesInPlaceInTheCodePage) {
    machine.PutFile(kFile, "; kept\r\n\r\n[destination]\r\nBackupToDrive=C:\\\r\n\r\n[X]\r\n");
    Write("DESTINATION", "BackupToDrive", "D:\\M\xC3\xBCll\\");
    EXPECT_EQ(machine.Content(kFile),
              "; kept\r\n\r\n[destination]\r\nBackupToDrive=D:\\M\xFCll\\\r\n\r\n[X]\r\n");
    EXPECT_EQ(Read("DESTINATION", "BackupToDrive"), "D:\\M\xC3\xBCll\\");
}

TEST_F(ProfileFile, WriteMakesAMissingFile) {
    Write("S", "K", "v");
    EXPECT_EQ(machine.Content(kFile), "[S]\r\nK=v\r\n");
}

TEST_F(ProfileFile, WriteLeavesNoScratchFileBehind) {
    Write("S", "K", "v");
    Write("S", "K", "w");
    EXPECT_EQ(machine.Names("C:\\Vantrel"), std::vector<std::string>{"WEEKLY.INI"});
}

TEST_F(ProfileFile, WritingAnEmptyValueKeepsTheKey) {
    machine.PutFile(kFile, "[S]\r\nK=v\r\n");
    Write("S", "K", "");
    EXPECT_EQ(machine.Content(kFile), "[S]\r\nK=\r\n");
}

TEST_F(ProfileFile, ReadOnlyFileStaysAsItIsSilently) {
    machine.PutFile(kFile, "[S]\r\nK=v\r\n");
    machine.files().SetAttributes(kFile, platform::attribute::kReadOnly);
    Write("S", "K", "w");
    EXPECT_EQ(machine.Content(kFile), "[S]\r\nK=v\r\n");
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_EQ(machine.Names("C:\\Vantrel"), std::vector<std::string>{"WEEKLY.INI"});
}

TEST_F(ProfileFile, WriteToAFolderOrIntoAMissingFolderDoesNothing) {
    Write("S", "K", "v", "C:\\Vantrel");
    Write("S", "K", "v", "C:\\Nowhere\\WEEKLY.INI");
    Write("S", "K", "v", "Q:\\WEEKLY.INI");
    EXPECT_EQ(machine.Names("C:\\"), std::vector<std::string>{"Vantrel\\"});
    EXPECT_TRUE(machine.Names("C:\\Vantrel").empty());
}

TEST_F(ProfileFile, ValueThatTheCodePageCannotHoldLeavesTheFileAsItIs) {
    machine.PutFile(kFile, "[S]\r\nK=v\r\n");
    Write("S", "K", "C:\\\xD0\x96\\");  // a Cyrillic letter
    EXPECT_EQ(machine.Content(kFile), "[S]\r\nK=v\r\n");
}

TEST_F(ProfileFile, ValueWithALineEndLeavesTheFileAsItIs) {
    machine.PutFile(kFile, "[S]\r\nK=v\r\n");
    Write("S", "K", "v\r\n[T]");
    EXPECT_EQ(machine.Content(kFile), "[S]\r\nK=v\r\n");
}

TEST_F(ProfileFile, WritingKeepsBinaryRubbishAround) {
    const std::string rubbish("\x00\x1A\xFF\r[S]\rK=v\r\x00\xFE", 14);
    machine.PutFile(kFile, rubbish);
    Write("S", "K", "w");
    std::string expected = rubbish;
    expected[10] = 'w';
    EXPECT_EQ(machine.Content(kFile), expected);
}

TEST_F(ProfileFile, HiddenFileStaysHidden) {
    machine.PutFile(kFile, "[S]\r\nK=v\r\n");
    machine.files().SetAttributes(kFile, platform::attribute::kHidden);
    Write("S", "K", "w");
    EXPECT_EQ(machine.Content(kFile), "[S]\r\nK=w\r\n");
    EXPECT_TRUE(machine.files().Find(kFile)->IsHiddenOrSystem());
}

}  // namespace
}  // namespace vantrel
