#include "platform/host/host_machine.h"
#include "tests/platform/machine_under_test.h"
#include "tests/support/test_machine.h"
#include "tests/zip/disk_box.h"

namespace vantrel::test {

namespace {

// The work drive and another one, and a floppy drive that is empty until a test asks for a full
// disk. Services other than files and drives are the host's.
class MemoryUnderTest : public MachineUnderTest {
  public:
    MemoryUnderTest() { files_.PutFolder("E:\\"); }

    platform::Machine& machine() override { return machine_; }
    std::string WorkDrive() const override { return "C:"; }
    std::string OtherDrive() const override { return "E:"; }
    std::string OtherLabel() const override { return ""; }
    std::string EmptyDrive() const override { return "A:"; }
    std::string MissingDrive() const override { return "Q:"; }
    std::string FullDrive() const override {
        if (box_.Inserted() < 0) {
            box_.usual_size = 1'000'000;
            box_.Insert(0);
        }
        return EmptyDrive();
    }
    platform::Ticks FileClock() const override { return MemoryFileSystem::kFileTime; }

  private:
    MemoryFileSystem files_;
    mutable DiskBox box_{files_};
    platform::HostMachine host_{{}};
    platform::Machine machine_ = With({.files = &files_, .drives = &box_}, host_.machine());
};

}  // namespace

std::unique_ptr<MachineUnderTest> NewMachineUnderTest() {
    return std::make_unique<MemoryUnderTest>();
}

}  // namespace vantrel::test
