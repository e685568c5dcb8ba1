#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

#include <filesystem>
#include <stdexcept>

#include "platform/host/host_machine.h"
#include "tests/platform/machine_under_test.h"

namespace vantrel::test {

namespace {

namespace fs = std::filesystem;

class HostUnderTest : public MachineUnderTest {
  public:
    HostUnderTest() {
        ::setenv("TZ", "America/New_York", 1);
        ::tzset();
        if (::mkdtemp(folder_.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        AddDrive('C', {.folder = folder_ + "/c"});
        AddDrive('E', {.folder = folder_ + "/e", .label = OtherLabel()});
        AddDrive(
            'H',
            {.folder = folder_ + "/h", .type = platform::drive_type::kRemovable, .ready = false});
    }
    ~HostUnderTest() override {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    platform::Machine& machine() override { return host_.machine(); }
    std::string WorkDrive() const override { return "C:"; }
    std::string OtherDrive() const override { return "E:"; }
    std::string OtherLabel() const override { return "BACKUPS"; }
    std::string EmptyDrive() const override { return "H:"; }
    std::string MissingDrive() const override { return "Q:"; }
    std::string FullDrive() const override {
        const char* const full = ::getenv("VANTREL_FULL_DISK");
        EXPECT_NE(full, nullptr) << "VANTREL_FULL_DISK is not set; run through "
                                    "scripts/with-full-disk";
        if (full != nullptr) {
            host_.drive_map().Set('F', {.folder = full});
        }
        return "F:";
    }

  private:
    void AddDrive(char letter, const platform::HostDrive& drive) {
        fs::create_directory(drive.folder);
        host_.drive_map().Set(letter, drive);
    }

    std::string folder_ = (fs::temp_directory_path() / "vantrel-XXXXXX").string();
    mutable platform::HostMachine host_{{}};
};

}  // namespace

std::unique_ptr<MachineUnderTest> NewMachineUnderTest() {
    return std::make_unique<HostUnderTest>();
}

}  // namespace vantrel::test
