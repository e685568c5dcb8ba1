// Zip64 exactly when needed, at the real limits.
#include "tests/zip/remembering_compressor.h"
#include "tests/zip/writer_fixture.h"

namespace vantrel::test {
namespace {

constexpr std::uint64_t kFourGigabytes = std::uint64_t{1} << 32;

class Zip64 : public WriterTest {
  protected:
    ReadResult Big() const {
        const auto read = [this](std::uint64_t offset, std::size_t count) {
            return files.Content(options.archive, offset, count);
        };
        return ReadArchive(read, files.Info(options.archive).size, false);
    }
    void Store(std::uint64_t size) {
        files.PutZeros("C:\\Data\\big", size);
        files.Put("C:\\Data\\later", "x");
        options.level = 0;
        ASSERT_EQ(Run(), RunOutcome::kComplete);
    }
};

TEST_F(Zip64, NotForTwoBytesBelowFourGigabytes) {
    // The archive itself stays below the limit only without the second file.
    files.PutZeros("C:\\Data\\big", kFourGigabytes - 2);
    options.make_compressor = [] { return std::make_unique<RememberingCompressor>(); };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const ReadResult archive = Big();
    EXPECT_EQ(archive.entries[0].size, kFourGigabytes - 2);
    EXPECT_EQ(archive.entries[0].needed, 20);
    EXPECT_EQ(archive.entries[0].central_fields.count(1), 0u);
    EXPECT_EQ(archive.entries[0].local_fields.count(1), 0u);
    EXPECT_FALSE(archive.zip64);
}

TEST_F(Zip64, FourGigabytesMinusOne) {
    Store(kFourGigabytes - 1);
    const ReadResult archive = Big();
    EXPECT_EQ(archive.At("big").size, kFourGigabytes - 1);
    EXPECT_EQ(archive.At("big").central_fields.at(1).size(), 16u);
    EXPECT_EQ(archive.At("big").local_fields.at(1).size(), 16u);
    EXPECT_EQ(archive.At("later").central_fields.at(1).size(), 8u) << "offset";
    EXPECT_EQ(archive.At("later").local_fields.count(1), 0u);
    EXPECT_TRUE(archive.zip64);
}

TEST_F(Zip64, FourGigabytesPlusOne) {
    Store(kFourGigabytes + 1);
    const ReadResult archive = Big();
    EXPECT_EQ(archive.At("big").size, kFourGigabytes + 1);
    EXPECT_EQ(archive.At("big").packed_size, kFourGigabytes + 1);
    EXPECT_GT(archive.At("later").offset, kFourGigabytes);
    EXPECT_TRUE(archive.zip64);
}

TEST_F(Zip64, BigFileThatPacksSmallNeedsItForOneSizeOnly) {
    files.PutZeros("C:\\Data\\big", kFourGigabytes);
    files.Put("C:\\Data\\later", "x");
    options.make_compressor = [] { return std::make_unique<RememberingCompressor>(); };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const ReadResult archive = Big();
    EXPECT_EQ(archive.At("big").size, kFourGigabytes);
    EXPECT_LT(archive.At("big").packed_size, kFourGigabytes / 100);
    EXPECT_EQ(archive.At("big").central_fields.at(1).size(), 8u);
    EXPECT_EQ(archive.At("later").central_fields.count(1), 0u);
    EXPECT_FALSE(archive.zip64);
}

class Zip64Entries : public Zip64, public ::testing::WithParamInterface<int> {};

TEST_P(Zip64Entries, EndRecordFrom65535On) {
    for (int i = 0; i < GetParam(); ++i) {
        files.Put("C:\\Data\\" + std::to_string(i), "");
    }
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const ReadResult archive = Archive();
    EXPECT_EQ(archive.entries.size(), static_cast<std::size_t>(GetParam()));
    EXPECT_EQ(archive.zip64, GetParam() >= 65535);
}

INSTANTIATE_TEST_SUITE_P(Counts, Zip64Entries, ::testing::Values(65534, 65535, 65536));

}  // namespace
}  // namespace vantrel::test
