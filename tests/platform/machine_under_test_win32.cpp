#include "platform/win32/win32_machine.h"
#include "tests/platform/win32_support.h"

namespace vantrel::test {

namespace {

class Win32UnderTest : public MachineUnderTest {
  public:
    platform::Machine& machine() override { return real_.machine(); }
    std::string WorkDrive() const override { return Arranged("VANTREL_WORK_DRIVE"); }
    std::string OtherDrive() const override { return Arranged("VANTREL_OTHER_DRIVE"); }
    std::string OtherLabel() const override { return Arranged("VANTREL_OTHER_LABEL"); }
    std::string EmptyDrive() const override { return Arranged("VANTREL_EMPTY_DRIVE"); }
    std::string MissingDrive() const override { return "Q:"; }
    std::string FullDrive() const override { return Arranged("VANTREL_FULL_DISK"); }

  private:
    platform::Win32Machine real_;
};

}  // namespace

std::unique_ptr<MachineUnderTest> NewMachineUnderTest() {
    return std::make_unique<Win32UnderTest>();
}

}  // namespace vantrel::test
