#include "restore/protected_pass.h"

#include "common/error.h"
#include "protect/clsCfg.h"
#include "tests/support/error_of.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {
namespace {

class ProtectedPass : public ProgramFixture {
  protected:
    void Protect(const std::string& lines) {
        clsCfg cfg(program);
        cfg.Create_CFG(cfg.ListPath());
        platform::AppendToFile(machine.files(), cfg.ListPath(), lines);
    }
    // Makes C:\DATA_001 and so on.
    void TakeNames(int last) {
        for (int i = 1; i <= last; ++i) {
            char name[32];
            std::snprintf(name, sizeof name, "C:\\DATA_%03d", i);
            machine.MakeFolders(name);
        }
    }
    void ProtectDataFolder() {
        Protect("C:\\DATA\r\n");
        machine.MakeFolders("C:\\Data");
    }
    void Pass(const std::vector<std::string>& entries, const std::string& destination) {
        RenameProtectedFolders(program, {.entries = entries}, destination);
    }
};

TEST_F(ProtectedPass, EmptyListRenamesNothingAndLogsNothing) {
    Protect("");
    machine.MakeFolders("C:\\Data");
    Pass({"Data/x.txt"}, "C:\\");
    EXPECT_TRUE(machine.Exists("C:\\Data"));
    EXPECT_THAT(LogRecords(), IsEmpty());
}

TEST_F(ProtectedPass, FolderThatAnEntryGoesIntoIsRenamedAndLogged) {
    Protect("C:\\DATA\r\n");
    machine.PutFile("C:\\Data\\keep.txt", "newer work");
    Pass({"Data/x.txt", "Data/y.txt"}, "C:\\");
    EXPECT_EQ(machine.Content("C:\\DATA_001\\keep.txt"), "newer work");
    EXPECT_FALSE(machine.Exists("C:\\Data"));
    EXPECT_THAT(LogRecords(), ElementsAre("Restore process about to Overwrite C:\\DATA",
                                          "C:\\DATA renamed to C:\\DATA_001"));
}

TEST_F(ProtectedPass, SecondRecordIsUndated) {
    ProtectDataFolder();
    Pass({"Data/x.txt"}, "C:\\");
    EXPECT_THAT(
        machine.Content("C:\\Vantrel\\Vantrel.Log"),
        ::testing::HasSubstr("\r\n                    C:\\DATA renamed to C:\\DATA_001\r\n"));
}

TEST_F(ProtectedPass, SubstringMatchesWithoutRegardToFolderBoundaries) {
    ProtectDataFolder();
    Pass({"database/x.txt"}, "c:\\");
    EXPECT_TRUE(machine.Exists("C:\\DATA_001"));
}

TEST_F(ProtectedPass, TopLevelEntryRenamesAProtectedDestination) {
    Protect("C:\\RESTORE\r\n");
    machine.MakeFolders("C:\\Restore");
    Pass({"top.txt"}, "C:\\Restore");
    EXPECT_TRUE(machine.Exists("C:\\RESTORE_001"));
}

TEST_F(ProtectedPass, DestinationWithBackslashGetsNoSecondOne) {
    Protect("C:\\RESTORE\\SUB\r\n");
    machine.MakeFolders("C:\\Restore\\Sub");
    Pass({"Sub/x.txt"}, "C:\\Restore\\");
    EXPECT_TRUE(machine.Exists("C:\\Restore\\Sub_001"));
}

TEST_F(ProtectedPass, FirstFreeNumberIsTaken) {
    ProtectDataFolder();
    machine.MakeFolders("C:\\Data_001");
    Pass({"Data/x.txt"}, "C:\\");
    EXPECT_TRUE(machine.Exists("C:\\DATA_002"));
}

TEST_F(ProtectedPass, NumbersGoUpTo999) {
    ProtectDataFolder();
    TakeNames(998);
    Pass({"Data/x.txt"}, "C:\\");
    EXPECT_FALSE(machine.Exists("C:\\Data"));
    EXPECT_TRUE(machine.Exists("C:\\DATA_999"));
}

TEST_F(ProtectedPass, WithAll999NamesTakenTheFolderStaysAndNothingIsLogged) {
    ProtectDataFolder();
    TakeNames(999);
    Pass({"Data/x.txt"}, "C:\\");
    EXPECT_TRUE(machine.Exists("C:\\Data"));
    EXPECT_THAT(LogRecords(), IsEmpty());
}

TEST_F(ProtectedPass, ProtectedFolderThatDoesNotExistIsNeverRenamed) {
    Protect("C:\\GONE\r\n");
    Pass({"gone/x.txt"}, "C:\\");
    EXPECT_THAT(LogRecords(), IsEmpty());
}

TEST_F(ProtectedPass, EachFolderIsRenamedOnceHoweverManyEntries) {
    ProtectDataFolder();
    Pass({"Data/x.txt", "Data/Sub/y.txt", "Data/z.txt"}, "C:\\");
    EXPECT_FALSE(machine.Exists("C:\\DATA_002"));
    EXPECT_EQ(LogRecords().size(), 2u);
}

// A program uses the folder. It must not be overwritten, so there is no restore.
TEST_F(ProtectedPass, RenameThatFailsIsNotTrapped) {
    ProtectDataFolder();
    FaultyFileSystem faulty(machine.files());
    faulty.plan.Inject({.kind = Call::kRename, .number = error_number::kPathFileAccess});
    platform::Machine in_use = WithFiles(machine.machine(), faulty);
    forms::Program other{in_use, desktop, program.globals};
    EXPECT_EQ(ErrorOf([&] { RenameProtectedFolders(other, {.entries = {"Data/a.txt"}}, "C:"); }),
              error_number::kPathFileAccess);
    EXPECT_THAT(LogRecords(), IsEmpty());
    EXPECT_TRUE(machine.Exists("C:\\Data"));
}

// The folder is there, though the first look at it fails: it must not be overwritten.
TEST_F(ProtectedPass, FolderThatCouldNotBeLookedAtIsLookedForAgain) {
    Protect("C:\\DATA\r\n");
    machine.PutFile("C:\\Data\\keep.txt", "newer work");
    FaultyFileSystem faulty(machine.files());
    faulty.plan.Inject(
        {.kind = Call::kFind, .number = error_number::kPermissionDenied, .path_part = "C:\\DATA"});
    platform::Machine busy = WithFiles(machine.machine(), faulty);
    forms::Program other{busy, desktop, program.globals};
    RenameProtectedFolders(other, {.entries = {"Data/a.txt"}}, "C:");
    EXPECT_EQ(faulty.plan.Fired(), 1);
    EXPECT_EQ(machine.Content("C:\\DATA_001\\keep.txt"), "newer work");
}

TEST_F(ProtectedPass, MissingListIsNotTrapped) {
    EXPECT_EQ(ErrorOf([&] { Pass({"x.txt"}, "C:\\"); }), error_number::kFileNotFound);
}

}  // namespace
}  // namespace vantrel::test
