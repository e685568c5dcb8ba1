// Drives as scripts/wine-test arranges them.
#include "platform/win32/system_error.h"
#include "tests/platform/win32_support.h"

namespace vantrel::test {
namespace {

using namespace platform::drive_type;

class Win32Drives : public Win32Test {
  protected:
    static std::string Drive(const char* name) { return Arranged(name); }
    static std::string Root(const char* name) { return Arranged(name) + "\\"; }
    platform::Drives& drives() { return machine().drives; }
};

TEST_F(Win32Drives, TypesAreTheSystems) {
    EXPECT_EQ(drives().Type(Root("VANTREL_WORK_DRIVE")), kFixed);
    EXPECT_EQ(drives().Type(Root("VANTREL_FLOPPY_DRIVE")), kRemovable);
    EXPECT_EQ(drives().Type(Root("VANTREL_EMPTY_DRIVE")), kRemovable);
    EXPECT_EQ(drives().Type(Root("VANTREL_CDROM_DRIVE")), kCdRom);
    EXPECT_EQ(drives().Type(Root("VANTREL_NETWORK_DRIVE")), kRemote);
    EXPECT_EQ(drives().Type("q:\\"), kNoRoot);
    EXPECT_EQ(drives().Type(""), kNoRoot);
    EXPECT_EQ(drives().Type("\\\\s"), kNoRoot);
}

TEST_F(Win32Drives, FullDiskIs61AndTakesWhatFits) {
    const std::string path = Drive("VANTREL_FULL_DISK") + "\\full.bin";
    const std::string block(64 * 1024, 'x');
    const auto file = files().Open(path, platform::OpenMode::kCreateNew);
    int written = 0;
    const int number = ErrorOf([&] {
        for (; written < 1000; ++written) {
            file->Write(block.data(), block.size());
        }
    });
    EXPECT_EQ(number, error_number::kDiskFull);
    EXPECT_GT(written, 0);
    EXPECT_EQ(drives().FreeBytes(Root("VANTREL_FULL_DISK")), 0u);
    EXPECT_EQ(drives().Space(Root("VANTREL_FULL_DISK")).free_clusters, 0u);
    file->Close();
    files().RemoveFile(path);
    EXPECT_GT(drives().FreeBytes(Root("VANTREL_FULL_DISK")), 64u * 1024);
}

TEST_F(Win32Drives, FullDiskLeavesTheOldFileAtReplace) {
    const std::string disk = Drive("VANTREL_FULL_DISK");
    platform::WriteWholeFile(files(), disk + "\\data", "old");
    EXPECT_EQ(ErrorOf([&] {
                  platform::ReplaceWholeFile(files(), disk + "\\data", std::string(2 << 20, 'n'));
              }),
              error_number::kDiskFull);
    EXPECT_EQ(Content(disk + "\\data"), "old");
    EXPECT_EQ(Names(disk), std::vector<std::string>{"data"});
    files().RemoveFile(disk + "\\data");
}

TEST_F(Win32Drives, DriveWithoutDiskIs71AndHoldsNothing) {
    const std::string drive = Drive("VANTREL_EMPTY_DRIVE");
    const int not_ready = error_number::kDiskNotReady;
    EXPECT_FALSE(files().Find(drive + "\\"));
    EXPECT_FALSE(files().Find(drive + "\\a"));
    EXPECT_EQ(ErrorOf([&] { Names(drive + "\\"); }), not_ready);
    EXPECT_EQ(ErrorOf([&] { platform::WriteWholeFile(files(), drive + "\\a", ""); }), not_ready);
    EXPECT_EQ(ErrorOf([&] { Content(drive + "\\a"); }), not_ready);
    EXPECT_EQ(ErrorOf([&] { files().MakeFolder(drive + "\\a"); }), not_ready);
    EXPECT_EQ(drives().FreeBytes(drive + "\\"), 0u);
    EXPECT_EQ(drives().Space(drive + "\\").total_clusters, 0u);
    EXPECT_EQ(drives().Label(drive + "\\"), "");
}

TEST_F(Win32Drives, MissingDriveIs68AndHoldsNothing) {
    EXPECT_FALSE(files().Find("Q:\\"));
    EXPECT_FALSE(files().Find("Q:\\a\\b"));
    EXPECT_EQ(ErrorOf([&] { Names("Q:\\"); }), error_number::kDeviceUnavailable);
    EXPECT_EQ(ErrorOf([&] { Content("Q:\\a"); }), error_number::kDeviceUnavailable);
    EXPECT_EQ(ErrorOf([&] { files().MakeFolder("Q:\\a"); }), error_number::kDeviceUnavailable);
    EXPECT_EQ(drives().FreeBytes("Q:\\a"), 0u);
}

TEST_F(Win32Drives, LabelIsTheVolumes) {
    EXPECT_EQ(drives().Label(Root("VANTREL_OTHER_DRIVE")), Arranged("VANTREL_OTHER_LABEL"));
}

TEST_F(Win32Drives, RootIsAFolderWithoutAName) {
    for (const std::string& root : {Root("VANTREL_WORK_DRIVE"), Drive("VANTREL_WORK_DRIVE")}) {
        const auto info = files().Find(root);
        ASSERT_TRUE(info);
        EXPECT_TRUE(info->IsFolder());
        EXPECT_EQ(info->name, "");
        EXPECT_EQ(info->size, 0u);
    }
}

TEST_F(Win32Drives, EmptyRootListsNothing) {
    EXPECT_EQ(Names(Root("VANTREL_FLOPPY_DRIVE")), std::vector<std::string>{});
}

TEST_F(Win32Drives, NothingIsRenamedOrReplacedAcrossDrives) {
    const std::string path = Put("here", "text");
    const std::string there = Drive("VANTREL_OTHER_DRIVE") + "\\there";
    EXPECT_EQ(ErrorOf([&] { files().Rename(path, there); }), error_number::kAcrossDrives);
    EXPECT_EQ(ErrorOf([&] { files().Replace(path, there); }), error_number::kAcrossDrives);
    EXPECT_EQ(ErrorOf([&] { files().Rename(folder(), there); }), error_number::kAcrossDrives);
    EXPECT_FALSE(files().Find(there));
    EXPECT_EQ(Content(path), "text");
}

TEST_F(Win32Drives, SpaceNeverShowsTwoGigabytes) {
    const auto space = drives().Space(Root("VANTREL_WORK_DRIVE"));
    const auto bytes =
        std::uint64_t{space.sectors_per_cluster} * space.bytes_per_sector * space.free_clusters;
    EXPECT_GT(bytes, 0u);
    EXPECT_LT(bytes, std::uint64_t{1} << 31);
    EXPECT_EQ(drives().Space("q:\\").bytes_per_sector, 0u);
}

TEST_F(Win32Drives, FreeBytesOfAFolderStillToBeMadeAreItsParents) {
    EXPECT_GT(drives().FreeBytes(In("not\\made\\yet")), 0u);
    EXPECT_LE(drives().FreeBytes(Drive("VANTREL_FULL_DISK") + "\\not\\made\\yet"), 1u << 20);
}

TEST_F(Win32Drives, LinkedFolderIsALinkAndAPlainOneIsNot) {
    const std::string linked = Arranged("VANTREL_LINKED");
    EXPECT_TRUE(files().Find(linked + "\\to folder")->is_link);
    EXPECT_FALSE(files().Find(linked + "\\folder")->is_link);
    EXPECT_FALSE(files().Find(linked + "\\file")->is_link);
    files().List(linked, [](const platform::FileInfo& info) {
        EXPECT_EQ(info.is_link, info.name == "to folder") << info.name;
        return true;
    });
    EXPECT_TRUE(files().SameFile(linked + "\\to folder", linked + "\\folder"));
    EXPECT_TRUE(files().SameFile(linked + "\\to file", linked + "\\file"));
}

TEST_F(Win32Drives, FilesOnTwoDrivesAreNeverTheSame) {
    const std::string other = Drive("VANTREL_OTHER_DRIVE") + "\\a";
    platform::WriteWholeFile(files(), other, "text");
    EXPECT_FALSE(files().SameFile(Put("a"), other));
    EXPECT_FALSE(files().SameFile(Root("VANTREL_FULL_DISK"), Root("VANTREL_WORK_DRIVE")));
    files().RemoveFile(other);
}

TEST(Win32ErrorNumbers, FollowOneTable) {
    using namespace error_number;
    using platform::ErrorNumber;
    using platform::FileOperation;
    EXPECT_EQ(ErrorNumber(ERROR_NOT_READY, FileOperation::kFile), kDiskNotReady);
    EXPECT_EQ(ErrorNumber(ERROR_WRITE_PROTECT, FileOperation::kFile), kPermissionDenied);
    EXPECT_EQ(ErrorNumber(ERROR_HANDLE_DISK_FULL, FileOperation::kFile), kDiskFull);
    EXPECT_EQ(ErrorNumber(ERROR_FILENAME_EXCED_RANGE, FileOperation::kFile), kBadFileName);
    EXPECT_EQ(ErrorNumber(ERROR_NOT_SAME_DEVICE, FileOperation::kFile), kAcrossDrives);
    EXPECT_EQ(ErrorNumber(ERROR_CRC, FileOperation::kFile), kDeviceIo);
    EXPECT_EQ(ErrorNumber(ERROR_INVALID_PARAMETER, FileOperation::kFile), kDeviceIo);
    EXPECT_EQ(ErrorNumber(ERROR_INVALID_PARAMETER, FileOperation::kFolder), kPathFileAccess);
    EXPECT_EQ(ErrorNumber(ERROR_ACCESS_DENIED, FileOperation::kFolder), kPathFileAccess);
    EXPECT_EQ(ErrorNumber(ERROR_ALREADY_EXISTS, FileOperation::kFolder), kPathFileAccess);
    EXPECT_EQ(ErrorNumber(ERROR_ACCESS_DENIED, FileOperation::kList), kPathFileAccess);
    EXPECT_EQ(ErrorNumber(ERROR_DIRECTORY, FileOperation::kList), kPathNotFound);
}

}  // namespace
}  // namespace vantrel::test
