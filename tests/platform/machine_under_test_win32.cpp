#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/win32/win32_machine.h"
#include "tests/platform/machine_under_test.h"

namespace vantrel::test {

namespace {

std::string Given(const char* name) {
    const char* const value = std::getenv(name);
    EXPECT_NE(value, nullptr) << name << " is not set; run through scripts/wine-test";
    return value == nullptr ? "" : value;
}

class Win32UnderTest : public MachineUnderTest {
  public:
    platform::Machine& machine() override { return real_.machine(); }
    std::string WorkDrive() const override { return Given("VANTREL_WORK_DRIVE"); }
    std::string OtherDrive() const override { return Given("VANTREL_OTHER_DRIVE"); }
    std::string OtherLabel() const override { return Given("VANTREL_OTHER_LABEL"); }
    std::string EmptyDrive() const override { return Given("VANTREL_EMPTY_DRIVE"); }
    std::string MissingDrive() const override { return "Q:"; }
    std::string FullDrive() const override { return Given("VANTREL_FULL_DISK"); }

  private:
    platform::Win32Machine real_;
};

}  // namespace

std::unique_ptr<MachineUnderTest> NewMachineUnderTest() {
    return std::make_unique<Win32UnderTest>();
}

}  // namespace vantrel::test
