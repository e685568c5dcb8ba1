#include "common/error.h"
#include "system/clsDrives.h"
#include "tests/support/program_fixture.h"

namespace vantrel {
namespace {

using namespace platform;

class Drives : public test::ProgramFixture {
  protected:
    std::string Show(int type) { return clsDrives(program).ShowDrives(type); }
    double Free(const DiskSpace& space) {
        machine.drives.drives['C'].space = space;
        return clsDrives(program).FreeSpace("C");
    }
    void ExpectOverflow(const DiskSpace& space) {
        try {
            const double free = Free(space);
            ADD_FAILURE() << free << " bytes, no error";
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), error_number::kOverflow);
            EXPECT_EQ(error.description(), "Overflow");
        }
    }
};

TEST_F(Drives, NoDriveOfTheTypeIsNil) { EXPECT_EQ(Show(drive_type::kRemovable), "Nil"); }

TEST_F(Drives, TypesZeroAndOneAreAlwaysNil) {
    machine.AddDrive('D', drive_type::kUnknown);
    EXPECT_EQ(Show(drive_type::kUnknown), "Nil");
    EXPECT_EQ(Show(drive_type::kNoRoot), "Nil");
    EXPECT_EQ(Show(7), "Nil");
    EXPECT_EQ(Show(-1), "Nil");
}

TEST_F(Drives, DrivesAreListedInCapitalsInLetterOrderWithABlankAtTheEnd) {
    machine.AddDrive('D', drive_type::kFixed);
    EXPECT_EQ(Show(drive_type::kFixed), "C: D: ");
    machine.AddDrive('B', drive_type::kRemovable);
    machine.AddDrive('A', drive_type::kRemovable);
    machine.AddDrive('Z', drive_type::kRemote);
    machine.AddDrive('R', drive_type::kCdRom);
    machine.AddDrive('S', drive_type::kRamDisk);
    EXPECT_EQ(Show(drive_type::kRemovable), "A: B: ");
    EXPECT_EQ(Show(drive_type::kRemote), "Z: ");
    EXPECT_EQ(Show(drive_type::kCdRom), "R: ");
    EXPECT_EQ(Show(drive_type::kRamDisk), "S: ");
}

TEST_F(Drives, DriveWithoutDiskIsListed) {
    machine.AddDrive('A', drive_type::kRemovable, "", false);
    EXPECT_EQ(Show(drive_type::kRemovable), "A: ");
    EXPECT_TRUE(desktop.boxes.empty());
}

// Answers for the letters up to one, then fails.
class FailingDrives : public test::TestDrives {
  public:
    explicit FailingDrives(char fails_from) : fails_from_(fails_from) {}
    int Type(const std::string& root) override {
        roots.push_back(root);
        if (root[0] >= fails_from_) {
            RaiseError(error_number::kDeviceIo);
        }
        return drive_type::kFixed;
    }
    std::vector<std::string> roots;

  private:
    char fails_from_;
};

TEST_F(Drives, InterruptedScanAnswersWhatItHas) {
    FailingDrives failing('c');
    Machine broken = test::With({.drives = &failing}, machine.machine());
    forms::Program there{broken, desktop};
    EXPECT_EQ(clsDrives(there).ShowDrives(drive_type::kFixed), "A: B: ");
    EXPECT_EQ(failing.roots, (std::vector<std::string>{"a:\\", "b:\\", "c:\\"}));
    EXPECT_EQ(clsDrives(there).ShowDrives(drive_type::kCdRom), "Nil");
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Drives, VerifyTrapsNothing) {
    FailingDrives failing('a');
    Machine broken = test::With({.drives = &failing}, machine.machine());
    forms::Program there{broken, desktop};
    EXPECT_THROW(clsDrives(there).VerifyDriveType("c:\\", drive_type::kFixed), Error);
}

TEST_F(Drives, VerifyPassesTheRootOnUnchanged) {
    FailingDrives all('~');
    Machine recording = test::With({.drives = &all}, machine.machine());
    forms::Program there{recording, desktop};
    EXPECT_TRUE(clsDrives(there).VerifyDriveType("\\\\s", drive_type::kFixed));
    EXPECT_EQ(all.roots, std::vector<std::string>{"\\\\s"});
}

TEST_F(Drives, VerifyComparesTheType) {
    EXPECT_TRUE(clsDrives(program).VerifyDriveType("C:\\", drive_type::kFixed));
    EXPECT_FALSE(clsDrives(program).VerifyDriveType("C:\\", drive_type::kRemovable));
}

TEST_F(Drives, MissingRootIsOfTypeOneOnly) {
    for (int type = 0; type <= 6; ++type) {
        EXPECT_EQ(clsDrives(program).VerifyDriveType("Q:\\", type), type == drive_type::kNoRoot);
    }
}

TEST_F(Drives, FreeSpaceIsTheProduct) {
    EXPECT_EQ(Free({8, 512, 100000, 200000}), 409600000.0);
    EXPECT_EQ(Free({1, 512, 2847, 2847}), 1457664.0);
}

TEST_F(Drives, FreeSpaceThatFitsComesBackExactly) {
    EXPECT_EQ(Free({1, 1, 2147483647, 2147483647}), 2147483647.0);
    EXPECT_EQ(Free({64, 512, 65535, 65535}), 2147450880.0);
}

TEST_F(Drives, TwoGigabytesOverflow) {
    ExpectOverflow({1, 512, 4194304, 4194304});        // 2,147,483,648
    ExpectOverflow({64, 512, 65536, 65536});           // the same, larger clusters
    ExpectOverflow({65536, 0, 65536, 65536});          // the first product alone
    ExpectOverflow({1, 1, 2147483648u, 2147483648u});  // a count that does not fit
    ExpectOverflow({4294967295u, 4294967295u, 4294967295u, 4294967295u});
}

TEST_F(Drives, FreeSpaceOfADriveThatCannotTellIsZero) {
    EXPECT_EQ(Free({0, 0, 0, 0}), 0.0);
    EXPECT_EQ(clsDrives(program).FreeSpace("Q"), 0.0);
    EXPECT_EQ(clsDrives(program).FreeSpace(""), 0.0);
    EXPECT_EQ(Free({8, 512, 0, 200000}), 0.0);
}

TEST_F(Drives, FreeSpaceAsksForTheRootOfTheLetter) {
    clsDrives(program).FreeSpace("c");
    EXPECT_EQ(machine.drives.space_questions, std::vector<std::string>{"c:\\"});
}

}  // namespace
}  // namespace vantrel
