// Archives with the same mark must hold the same compressed bytes for the same data. This is the
// one test that looks at compressed bytes: it fails when they change and the mark does not.
#include "tests/zip/writer_fixture.h"
#include "zip/deflate/deflate.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;

// CRC-32 of the archives of the files below at levels 1 to 9, of the stated generation. When the
// test fails because the compressed bytes have changed on purpose, raise kCompressorGeneration and
// put the new number and the checksums here.
struct {
    int generation = 1;
    const char* library = "libdeflate 1.14, tuned level";
    std::vector<std::uint32_t> checksums{3687096671, 2725166548, 2185614343, 2399942591, 353242551,
                                         2790389970, 2790389970, 3565700455, 3565700455};
} const kExpected;

class CompressorMark : public WriterTest {
  protected:
    CompressorMark() {
        // Small files, files in between and chunks; words, noise, runs, numbers, and mixtures.
        for (const std::size_t size : {2u, 30u, 500u, 2048u, 2049u, 70'000u}) {
            Add("words", Prose(size, size));
            Add("noise", Noise(size, size));
            Add("run", std::string(size, 'r'));
            Add("numbers", Numbers(size));
            Add("mixed", Prose(size / 2) + Noise(size / 4) + Numbers(size / 4));
        }
        Add("chunks", Prose(kChunkSize) + Numbers(kChunkSize) + Prose(300'000, 2));
        Add("partly stored", Prose(500'000) + Noise(2 * kChunkSize) + Numbers(kChunkSize));
        Add("hardly compressible", Thinned(2 * kChunkSize + 17));
    }
    void Add(const std::string& name, const std::string& content) {
        files.Put("C:\\Data\\" + name + " " + std::to_string(content.size()), content);
    }
    // Records of numbers that rise, as tables and programs have them.
    static std::string Numbers(std::size_t size) {
        std::string bytes;
        for (std::uint32_t i = 0; bytes.size() < size; ++i) {
            zip::Put32(bytes, i * 2654435761u % 977);
            zip::Put32(bytes, i * 12);
        }
        bytes.resize(size);
        return bytes;
    }
    // Bytes of seven bits.
    static std::string Thinned(std::size_t size) {
        std::string bytes = Noise(size);
        for (char& byte : bytes) {
            byte = static_cast<char>(byte & 0x7F);
        }
        return bytes;
    }
};

// The checksums are those of the pinned library with the tuned level.
#ifndef VANTREL_SYSTEM_LIBDEFLATE
TEST_F(CompressorMark, IsRaisedWithEveryChangeOfTheCompressedBytes) {
    ASSERT_EQ(zip::CompressorDescription(), kExpected.library);
    std::vector<std::uint32_t> checksums;
    for (options.level = 1; options.level <= 9; ++options.level) {
        ASSERT_EQ(Run(), zip::RunOutcome::kComplete);
        const std::string archive = files.Content(options.archive);
        checksums.push_back(
            zip::Crc32(std::string_view(archive).substr(0, Archive().directory_offset)));
    }
    EXPECT_EQ(checksums, kExpected.checksums) << "raise kCompressorGeneration";
    EXPECT_EQ(zip::kCompressorGeneration, kExpected.generation);
}
#endif

}  // namespace
}  // namespace vantrel::test
