// Archives that continue on the next disk.
#include "tests/zip/remembering_compressor.h"
#include "tests/zip/spanning_fixture.h"
#include "zip/disks/archive_target.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;

class SpanningWrite : public SpanningTest {
  protected:
    void PutAllKinds() {
        files.Put("C:\\Data\\a.txt", "first");
        files.Put("C:\\Data\\empty", "");
        files.Put("C:\\Data\\noise", Noise(3000));
        files.Put("C:\\Data\\Sub\\prose", Prose(9000));
        files.PutZeros("C:\\Data\\Sub\\zeros", 2 * kChunkSize + 77);
        files.Put("C:\\Data\\last", "z");
    }
    // The only disk of a run that needs one.
    std::string OneDisk() {
        NewBox(DiskBox::kHuge);
        EXPECT_EQ(Run(), RunOutcome::kComplete);
        EXPECT_TRUE(changer.asked.empty());
        const auto volumes = Volumes();
        EXPECT_EQ(volumes.size(), 1u);
        return volumes.at(0);
    }
};

TEST_F(SpanningWrite, OneDiskThatSufficesBearsTheOtherMarkerAndIsAPlainArchive) {
    PutAllKinds();
    const std::string disk = OneDisk();
    EXPECT_EQ(disk.substr(0, 4), "PK00");
    EXPECT_EQ(disk.substr(4, 4), "PK\3\4");
    EXPECT_EQ(box.disks[0].files.size(), 1u) << "no temporary file is left";
}

TEST_F(SpanningWrite, ThreeDisksHoldEverything) {
    PutAllKinds();
    files.Put("C:\\Data\\big", Noise(3 * kChunkSize));
    NewBox(3 * kChunkSize / 2);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const auto volumes = Volumes();
    ASSERT_EQ(volumes.size(), 3u);
    const SetContents set = ReadSet(volumes);
    ExpectSource(set);
    EXPECT_GE(set.crossing, 1);
    EXPECT_EQ(set.descriptors, 2);
    EXPECT_EQ(changer.asked.size(), 2u);
    EXPECT_EQ(result.entries, 7u);
    EXPECT_EQ(events.overall.back(), 100);
}

TEST_F(SpanningWrite, PromptNamesDiskDriveAndFreeSpace) {
    files.Put("C:\\Data\\noise", Noise(3000));
    NewBox(2000);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(changer.asked, Strings{Prompt("disk 2", "The disk in the drive has 0 bytes free.")});
}

TEST_F(SpanningWrite, FirstDiskEndingAtAnyByteOfEveryRecord) {
    PutAllKinds();
    files.Remove("C:\\Data\\noise");
    const std::string whole = OneDisk();
    std::vector<std::size_t> boundaries;
    for (std::size_t at = whole.find("PK"); at != std::string::npos;
         at = whole.find("PK", at + 1)) {
        boundaries.push_back(at);
    }
    ASSERT_GT(boundaries.size(), 12u) << "marker, headers, descriptor, directory, end";
    std::set<std::size_t> sizes;
    for (const std::size_t boundary : boundaries) {
        for (std::size_t around = boundary; around < boundary + 5; ++around) {
            sizes.insert(std::max<std::size_t>(around, 7) - 2);
        }
    }
    sizes.insert(whole.size() - 1);
    for (const std::size_t size : sizes) {
        if (size >= whole.size()) {
            continue;
        }
        NewBox(DiskBox::kHuge);
        box.Eject();
        box.disks[0].size = size;
        box.Insert(0);
        ASSERT_EQ(Run(), RunOutcome::kComplete) << size;
        const auto volumes = Volumes();
        ASSERT_EQ(volumes.size(), 2u) << size;
        EXPECT_LE(volumes[0].size(), size);
        ExpectSource(ReadSet(volumes));
    }
}

TEST_F(SpanningWrite, DisksOfEverySizeDownToTheLargestRecord) {
    files.Put("C:\\Data\\a.txt", "first");
    files.Put("C:\\Data\\empty", "");
    files.Put("C:\\Data\\noise", Noise(400));
    files.PutZeros("C:\\Data\\zeros", kChunkSize + 7);
    std::size_t most = 0;
    for (std::uint64_t size = 120; size < 700; size += 3) {
        NewBox(size);
        ASSERT_EQ(Run(), RunOutcome::kComplete) << size;
        const auto volumes = Volumes();
        most = std::max(most, volumes.size());
        ExpectSource(ReadSet(volumes));
    }
    EXPECT_GT(most, 15u);
}

TEST_F(SpanningWrite, DiskThatIsSmallerThanStated) {
    PutAllKinds();
    for (const std::uint64_t size : {4u, 5u, 60u, 515u, 700u, 1500u, 4096u, 4999u, 6000u}) {
        NewBox(DiskBox::kHuge);
        box.Eject();
        box.disks[0].size = size;
        box.disks[0].promises = 1'000'000;
        box.Insert(0);
        ASSERT_EQ(Run(), RunOutcome::kComplete) << size;
        const auto volumes = Volumes();
        ASSERT_EQ(volumes.size(), 2u) << size;
        EXPECT_LE(volumes[0].size(), size);
        if (size >= 3000) {
            EXPECT_GT(volumes[0].size() + 600, size) << "its room is used, to about a sector";
        }
        ExpectSource(ReadSet(volumes));
    }
}

TEST_F(SpanningWrite, LastDiskThatIsSmallerThanStatedMovesTheEndRecordToTheNext) {
    files.Put("C:\\Data\\a.txt", "first");
    const std::string whole = OneDisk();
    for (std::size_t missing = 1; missing <= 22; ++missing) {
        NewBox(DiskBox::kHuge);
        box.Eject();
        box.disks[0].size = whole.size() - missing;
        box.disks[0].promises = 1'000'000;
        box.Insert(0);
        ASSERT_EQ(Run(), RunOutcome::kComplete);
        ExpectSource(ReadSet(Volumes()));
    }
}

TEST_F(SpanningWrite, DiskThatStatesFreeSpaceAndAcceptsNothingIsNotCounted) {
    files.Put("C:\\Data\\noise", Noise(3000));
    NewBox(2000);
    box.disks.push_back({.size = 0, .promises = 5000});
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(changer.asked.size(), 2u);
    EXPECT_NE(changer.asked[1].find("insert disk 2"), std::string::npos);
    EXPECT_TRUE(box.disks[1].files.empty());
    ExpectSource(ReadSet(Volumes()));
}

TEST_F(SpanningWrite, EntriesOnOtherDisksAreCounted) {
    for (int i = 0; i < 300; ++i) {
        files.Put("C:\\Data\\" + std::to_string(i), "x");
    }
    NewBox(5000);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const auto volumes = Volumes();
    const SetContents set = ReadSet(volumes);
    EXPECT_LT(set.directory_disk + 2, volumes.size()) << "the directory lies on several disks";
    ExpectSource(set);
}

TEST_F(SpanningWrite, Zip64EndRecordStaysWithItsLocatorAndTheEndRecord) {
    for (int i = 0; i < 65540; ++i) {
        files.Put("C:\\Data\\" + std::to_string(i), "");
    }
    options.threads = 2;
    const std::string whole = OneDisk();
    for (const std::size_t missing : {22u, 98u}) {
        NewBox(DiskBox::kHuge);
        box.Eject();
        box.disks[0].size = whole.size() - missing;
        box.Insert(0);
        ASSERT_EQ(Run(), RunOutcome::kComplete);
        const auto volumes = Volumes();
        ASSERT_EQ(volumes.size(), 2u);
        EXPECT_EQ(volumes[1].size(), 98u);
        const SetContents set = ReadSet(volumes);
        EXPECT_TRUE(set.zip64);
        EXPECT_EQ(set.names.size(), 65540u);
    }
}

TEST_F(SpanningWrite, LargeFileHasWideSizesInHeaderAndDescriptor) {
    // As large as Zip64 begins, and packed into little.
    files.PutZeros("C:\\Data\\big", (std::uint64_t{1} << 32) + 1);
    NewBox(2'000'000);
    options.threads = 2;
    options.make_compressor = [] { return std::make_unique<RememberingCompressor>(); };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const auto volumes = Volumes();
    ASSERT_GT(volumes.size(), 1u);
    EXPECT_EQ(volumes[0].substr(4 + 4, 2), std::string("\x2D\0", 2)) << "version 4.5";
    const std::size_t descriptor = volumes.back().find("PK\7\x8");
    ASSERT_NE(descriptor, std::string::npos);
    EXPECT_EQ(volumes.back().substr(descriptor + 16, 8), std::string("\1\0\0\0\1\0\0\0", 8));
    EXPECT_EQ(volumes.back().substr(descriptor + 24, 4), "PK\1\2");
}

TEST_F(SpanningWrite, FileThatGrowsUnderCompressionStaysDeflated) {
    // The first sample shrinks, and stands for the complete file.
    std::string bytes = Noise(2 * kChunkSize);
    std::fill_n(bytes.begin(), 4000, 'a');
    bytes += Noise(3 * kChunkSize, 2);
    files.Put("C:\\Data\\noise", bytes);
    NewBox(kChunkSize);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const SetContents set = ReadSet(Volumes());
    ExpectSource(set);
    EXPECT_EQ(set.descriptors, 1);
}

TEST_F(SpanningWrite, FileThatCannotBeReadOnIsLeftOut) {
    files.Put("C:\\Data\\a", Noise(3 * kChunkSize));
    files.Put("C:\\Data\\b", "after it");
    for (const std::uint64_t size : {kChunkSize / 2, 8 * kChunkSize}) {
        NewBox(size);
        FailCalls(files, {.name = "Read", .path = "C:\\Data\\a", .first = 6},
                  error_number::kDeviceIo);
        ASSERT_EQ(Run(), RunOutcome::kComplete);
        files.before = nullptr;
        EXPECT_EQ(result.skipped, 1);
        EXPECT_EQ(result.entries, 1u);
        box.Eject();
    }
    const auto volumes = Volumes();
    ASSERT_EQ(volumes.size(), 1u);
    EXPECT_LT(volumes[0].size(), 1000u) << "cut back while it was on one disk";
}

}  // namespace
}  // namespace vantrel::test
