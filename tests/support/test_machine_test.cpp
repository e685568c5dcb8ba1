#include "tests/support/test_machine.h"

#include "common/error.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

namespace drive_type = platform::drive_type;

TEST(TestMachineItself, StartsWithAnEmptyApplicationFolderAndDriveCOnly) {
    TestMachine machine;
    EXPECT_THAT(machine.Names("C:\\"), ElementsAre("Vantrel\\"));
    EXPECT_THAT(machine.Names("C:\\Vantrel"), ElementsAre());
    EXPECT_EQ(machine.machine().drives.Type("C:\\"), drive_type::kFixed);
    EXPECT_EQ(machine.machine().drives.Type("D:\\"), drive_type::kNoRoot);
    EXPECT_FALSE(machine.Exists("D:\\"));
}

TEST(TestMachineItself, DiskIsTakenOutAndPutBack) {
    TestMachine machine;
    machine.AddDrive('A', drive_type::kRemovable, "FLOPPY");
    machine.PutFile("A:\\a.txt", "bytes");
    machine.SetReady('A', false);
    EXPECT_FALSE(machine.Exists("A:\\a.txt"));
    EXPECT_FALSE(machine.Exists("A:\\"));
    EXPECT_EQ(machine.drives.Type("A:\\"), drive_type::kRemovable);
    EXPECT_EQ(machine.drives.Label("A:\\"), "");
    EXPECT_EQ(machine.drives.Space("A:\\").bytes_per_sector, 0u);
    EXPECT_EQ(machine.drives.FreeBytes("A:\\"), 0u);
    EXPECT_EQ(ErrorOf([&] { machine.Content("A:\\a.txt"); }), error_number::kDiskNotReady);
    machine.SetReady('A', true);
    EXPECT_EQ(machine.Content("A:\\a.txt"), "bytes");
    EXPECT_EQ(machine.drives.Label("a:\\"), "FLOPPY");
}

TEST(TestMachineItself, ClockStandsStillUntilToldOtherwise) {
    TestMachine machine;
    const auto start = machine.clock.Now();
    EXPECT_EQ(start.year, 2026);
    EXPECT_EQ(start.month, 11);
    EXPECT_EQ(start.day, 15);
    EXPECT_EQ(start.hour, 13);
    EXPECT_EQ(start.minute, 5);
    EXPECT_EQ(start.second, 9);
    EXPECT_EQ(machine.clock.Now().second, 9);
    machine.clock.Set(2024, 2, 28, 23, 59, 59);
    machine.clock.Sleep(std::chrono::seconds(1));
    EXPECT_EQ(machine.clock.Now().day, 29);
    EXPECT_EQ(machine.clock.Now().hour, 0);
}

TEST(TestMachineItself, WaitsAreRemembered) {
    TestMachine machine;
    std::mutex mutex;
    std::condition_variable signal;
    std::unique_lock lock(mutex);
    const auto before = machine.clock.UtcNow();
    machine.clock.Wait(signal, lock, std::chrono::milliseconds(100));
    EXPECT_THAT(machine.clock.Waits(), ElementsAre(std::chrono::milliseconds(100)));
    EXPECT_EQ(machine.clock.UtcNow() - before, 1'000'000u);  // ticks in 100 ms
}

TEST(TestMachineItself, HostPathFindsTheSpellingOnDisk) {
    TestMachine machine;
    machine.PutFile("C:\\Sub\\File", "bytes");
    EXPECT_EQ(machine.HostPath("c:\\SUB\\FILE"), machine.HostPath("C:\\Sub\\File"));
    EXPECT_TRUE(machine.HostPath("C:\\not\\yet").ends_with("/C/not/yet"));
}

}  // namespace
}  // namespace vantrel::test
