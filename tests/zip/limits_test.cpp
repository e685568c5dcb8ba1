// Numbers, dates and names at the edges of the format, written and read again.
#include "tests/zip/writer_fixture.h"
#include "zip/reader/archive_extractor.h"

namespace vantrel::test {
namespace {

constexpr std::uint64_t kFourGigabytes = std::uint64_t{1} << 32;

class Limits : public WriterTest {
  protected:
    Limits() { options.level = 1; }

    ReadResult Directory() const {
        const auto read = [this](std::uint64_t offset, std::size_t count) {
            return files.Content(options.archive, offset, count);
        };
        return ReadArchive(read, files.Info(options.archive).size, false);
    }
    void Restore(const std::string& mask = "*.*") {
        Recorder restoring;
        const zip::ExtractOptions extract{options.archive, "C:\\Out", mask, 2};
        const auto restored = zip::ExtractArchive(Machine(), extract, restoring);
        EXPECT_EQ(restored.outcome, RunOutcome::kComplete);
        EXPECT_EQ(restored.failed, 0);
        EXPECT_EQ(restoring.Texts(zip::MessageKind::kWarning), Strings{});
    }
};

// The second file's header begins exactly at, one before and one behind the limit.
class OffsetAtFourGigabytes : public Limits, public ::testing::WithParamInterface<int> {};

TEST_P(OffsetAtFourGigabytes, IsWrittenAndReadAgain) {
    const std::uint64_t wanted =
        kFourGigabytes + static_cast<std::uint64_t>(std::int64_t{GetParam()});
    options.level = 0;
    constexpr std::uint64_t kHeader = 30 + 1 + 9;  // with a name of one letter and the Unix time
    files.PutZeros("C:\\Data\\a", wanted - 2 * kHeader - 1'000'000'000);
    files.PutZeros("C:\\Data\\b", 1'000'000'000);
    files.Put("C:\\Data\\c", "behind it");
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const ReadResult archive = Directory();
    EXPECT_EQ(archive.At("c").offset, wanted);
    EXPECT_EQ(archive.At("c").central_fields.count(1), wanted >= 0xFFFFFFFF ? 1u : 0u);
    Restore("c");
    EXPECT_EQ(files.Content("C:\\Out\\c"), "behind it");
}

INSTANTIATE_TEST_SUITE_P(Around, OffsetAtFourGigabytes, ::testing::Values(-1, 0, 1));

TEST_F(Limits, DatesBefore1980AndAfter2107AreRestored) {
    constexpr platform::Ticks k1975 = 118000000000000000ull;
    constexpr platform::Ticks k2200 = 189000000000000000ull;
    for (const platform::Ticks time : {platform::Ticks{1}, k1975, k2200}) {
        const std::string path = "C:\\Data\\" + std::to_string(time);
        files.Put(path, "x");
        files.Change(path, [&](platform::FileInfo& info) { info.times = {time, time, time}; });
    }
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Directory().At("1").dos_time, (1u << 21 | 1u << 16)) << "1980-01-01";
    Restore();
    for (const platform::Ticks time : {platform::Ticks{1}, k1975, k2200}) {
        EXPECT_EQ(files.Info("C:\\Out\\" + std::to_string(time)).times.modified, time);
    }
}

TEST_F(Limits, PathOf32000Characters) {
    std::string path = "C:\\Data";
    while (path.size() < 32'000 - 201) {
        path += "\\" + std::string(200, 'd');
    }
    path += "\\file.txt";
    files.Put(path, "deep down");
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(result.skipped, 0);
    EXPECT_EQ(Directory().entries.at(0).name.size(), path.size() - 8);
    Restore();
    EXPECT_EQ(files.Content("C:\\Out" + path.substr(7)), "deep down");
}

TEST_F(Limits, FilesThatGrowUnderCompressionAreStoredWhateverTheirSize) {
    for (const std::size_t size : {1u, 2u, 100u, 5000u, 70'000u, 1'500'000u}) {
        files.Put("C:\\Data\\" + std::to_string(size), Noise(size, size));
    }
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    for (const ReadEntry& entry : Archive().entries) {
        EXPECT_EQ(entry.method, 0) << entry.name;
        EXPECT_EQ(entry.packed_size, entry.size) << entry.name;
    }
    Restore();
}

}  // namespace
}  // namespace vantrel::test
