// Drives on every machine.
#include "tests/platform/seam_fixture.h"

namespace vantrel::test {
namespace {

namespace drive_type = platform::drive_type;

class SeamDrives : public Seam {
  protected:
    platform::Drives& drives() { return machine().drives; }
};

TEST_F(SeamDrives, TypesAreTheSystemsCodes) {
    EXPECT_EQ(drives().Type(under_test().WorkDrive() + "\\"), drive_type::kFixed);
    EXPECT_EQ(drives().Type(under_test().EmptyDrive() + "\\"), drive_type::kRemovable);
    EXPECT_EQ(drives().Type(under_test().MissingDrive() + "\\"), drive_type::kNoRoot);
}

TEST_F(SeamDrives, SpaceNeverShowsMoreThanTwoGigabytesMinusOneCluster) {
    const auto space = drives().Space(under_test().WorkDrive() + "\\");
    const std::uint64_t cluster = std::uint64_t{space.sectors_per_cluster} * space.bytes_per_sector;
    EXPECT_GT(cluster, 0u);
    EXPECT_GT(space.free_clusters, 0u);
    EXPECT_LE(cluster * space.free_clusters, (std::uint64_t{1} << 31) - cluster);
    EXPECT_LE(space.free_clusters, space.total_clusters);
}

TEST_F(SeamDrives, FailingSpaceQuestionIsAllZero) {
    for (const std::string& drive : {under_test().MissingDrive(), under_test().EmptyDrive()}) {
        const auto space = drives().Space(drive + "\\");
        EXPECT_EQ(space.sectors_per_cluster, 0u);
        EXPECT_EQ(space.bytes_per_sector, 0u);
        EXPECT_EQ(space.free_clusters, 0u);
        EXPECT_EQ(space.total_clusters, 0u);
    }
}

TEST_F(SeamDrives, FreeBytesOfAFolderStillToBeMadeAreItsParents) {
    EXPECT_GT(drives().FreeBytes(folder()), 0u);
    EXPECT_GT(drives().FreeBytes(In("not\\yet")), 0u);
}

TEST_F(SeamDrives, FreeBytesAreZeroWhereTheyCannotBeTold) {
    EXPECT_EQ(drives().FreeBytes(under_test().MissingDrive() + "\\"), 0u);
    EXPECT_EQ(drives().FreeBytes(under_test().EmptyDrive() + "\\"), 0u);
    EXPECT_EQ(drives().FreeBytes(""), 0u);
}

TEST_F(SeamDrives, LabelIsTheVolumes) {
    EXPECT_EQ(drives().Label(under_test().OtherDrive() + "\\"), under_test().OtherLabel());
    EXPECT_EQ(drives().Label(under_test().EmptyDrive() + "\\"), "");
    EXPECT_EQ(drives().Label(under_test().MissingDrive() + "\\"), "");
}

}  // namespace
}  // namespace vantrel::test
