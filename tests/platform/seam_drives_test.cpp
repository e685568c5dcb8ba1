// Drives, and what happens when one is full, on every machine.
#include <algorithm>

#include "tests/platform/seam_fixture.h"

namespace vantrel::test {
namespace {

using namespace error_number;
using platform::OpenMode;
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

class SeamFullDisk : public Seam {
  protected:
    ~SeamFullDisk() override {
        for (const std::string& name : {Filler(), In2("small"), In2("~Vantrel.new")}) {
            if (Exists(name)) {
                files().RemoveFile(name);
            }
        }
    }
    std::string In2(const std::string& name) { return under_test().FullDrive() + "\\" + name; }
    std::string Filler() { return In2("filler"); }
    // Writes until nothing fits any more.
    void Fill() {
        auto file = Open(Filler(), OpenMode::kWrite);
        const std::string block(4096, 'x');
        constexpr int kFarTooMany = 16 * 1024;  // 64 MB: not a small disk after all
        for (int i = 0; i < kFarTooMany; ++i) {
            const int error = ErrorOf([&] { file->Write(block.data(), block.size()); });
            if (error == 0) {
                continue;
            }
            EXPECT_EQ(error, kDiskFull);
            file->Close();
            return;
        }
        FAIL() << "the disk does not fill up";
    }
};

TEST_F(SeamFullDisk, WriteThatDoesNotFitIs61) {
    Fill();
    EXPECT_GT(files().Find(Filler())->size, 0u);
    EXPECT_EQ(machine().drives.FreeBytes(under_test().FullDrive() + "\\"), 0u);
}

TEST_F(SeamFullDisk, ReplacingAWholeFileFailsAndLeavesTheOldOne) {
    platform::WriteWholeFile(files(), In2("small"), "old");
    Fill();
    EXPECT_EQ(ErrorOf([&] {
                  platform::ReplaceWholeFile(files(), In2("small"), std::string(100'000, 'n'));
              }),
              kDiskFull);
    EXPECT_EQ(Content(In2("small")), "old");
    EXPECT_FALSE(Exists(In2("~Vantrel.new")));
}

TEST_F(SeamFullDisk, RoomComesBackWhenAFileGoes) {
    Fill();
    files().RemoveFile(Filler());
    platform::WriteWholeFile(files(), In2("small"), std::string(100'000, 'n'));
    EXPECT_EQ(files().Find(In2("small"))->size, 100'000u);
}

}  // namespace
}  // namespace vantrel::test
