// Texts about unsuitable disks.
#include "zip/disks/disk_prompt.h"

#include <gtest/gtest.h>

namespace vantrel::test {
namespace {

std::string WhyNotWritten(int number) { return zip::ErrorNote(Error(number, "", "Some reason")); }
std::string WhyNotRead(int number) { return zip::ReadErrorNote(Error(number, "", "Some reason")); }

TEST(DiskPrompt, DriveWithoutADisk) {
    for (const int number : {error_number::kDeviceUnavailable, error_number::kDiskNotReady}) {
        EXPECT_EQ(WhyNotWritten(number), "There is no disk in the drive.");
        EXPECT_EQ(WhyNotRead(number), "There is no disk in the drive.");
    }
}

TEST(DiskPrompt, DiskThatCannotBeWritten) {
    EXPECT_EQ(WhyNotWritten(error_number::kDiskFull), "The disk in the drive is full.");
    EXPECT_EQ(WhyNotWritten(error_number::kPermissionDenied),
              "The disk in the drive is write-protected.");
    EXPECT_EQ(WhyNotWritten(error_number::kPathFileAccess),
              "The disk in the drive is write-protected, or a folder cannot be made on it.");
}

TEST(DiskPrompt, AnyOtherErrorIsShownWithItsDescription) {
    EXPECT_EQ(WhyNotWritten(error_number::kDeviceIo),
              "The disk in the drive cannot be used (Some reason).");
    EXPECT_EQ(WhyNotRead(error_number::kDeviceIo),
              "The disk in the drive cannot be read (Some reason).");
}

TEST(DiskPrompt, FullDriveIsNamedWithTheSpaceThatIsNeeded) {
    EXPECT_EQ(zip::FullDriveText("E:\\B\\DAILY.zip", 450'000'000, 1024),
              "The disk in drive E: is full: E:\\B\\DAILY.zip needs about 429 MB more (1.0 KB "
              "free).");
    EXPECT_EQ(zip::FullDriveText("\\\\NAS\\B\\DAILY.zip", 1, 0),
              "The disk in drive \\\\NAS\\B is full: \\\\NAS\\B\\DAILY.zip needs about 1 byte more "
              "(0 bytes free).");
}

TEST(DiskPrompt, FullDriveWithFreeSpaceHasALimitOfItsFileSystem) {
    EXPECT_EQ(zip::FullDriveText("F:\\DAILY.zip", 1 << 20, 5'000'000'000),
              "The file system of drive F: takes no larger file: F:\\DAILY.zip (4.7 GB free).");
}

TEST(DiskPrompt, OneFreeByteIsCountedInTheSingular) {
    EXPECT_EQ(zip::FreeSpaceNote(1), "The disk in the drive has 1 byte free.");
    EXPECT_EQ(zip::FullNote(1), "The disk in the drive is full: it has 1 byte free.");
    EXPECT_EQ(zip::FullNote(0), "The disk in the drive is full: it has 0 bytes free.");
}

}  // namespace
}  // namespace vantrel::test
