// The conformance suite knows every implementation of the seam by this class only. Each program
// links one of machine_under_test_host.cpp, machine_under_test_memory.cpp and
// machine_under_test_win32.cpp.
#pragma once

#include <memory>
#include <string>

#include "platform/machine.h"
#include "tests/platform/work_folder.h"

namespace vantrel::test {

class MachineUnderTest {
  public:
    virtual ~MachineUnderTest() = default;
    virtual platform::Machine& machine() = 0;

    // What has been arranged around it. Drives are a letter and a colon.
    virtual std::string WorkDrive() const = 0;     // fixed; tests work in folders of its root
    virtual std::string OtherDrive() const = 0;    // fixed, too
    virtual std::string OtherLabel() const = 0;    // the label of that one
    virtual std::string EmptyDrive() const = 0;    // removable, without a disk
    virtual std::string MissingDrive() const = 0;  // not there
    // Fixed, about 1 MB that really fill up. Fails the test when the disk is not set up.
    virtual std::string FullDrive() const = 0;
    // The time that new files get; UtcNow but for files in memory, whose time stands still.
    virtual platform::Ticks FileClock() const { return UtcNow(); }
};

// The time zone is New York's.
std::unique_ptr<MachineUnderTest> NewMachineUnderTest();

}  // namespace vantrel::test
