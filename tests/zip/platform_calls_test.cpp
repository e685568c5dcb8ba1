// What the engine asks of the machine, counted where it is asked.
#include "tests/support/faulty_file_system.h"
#include "tests/zip/writer_fixture.h"
#include "zip/reader/archive_extractor.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;

class PlatformCalls : public WriterTest {
  protected:
    static constexpr int kFolders = 10;
    static constexpr int kFilesInEach = 50;
    static constexpr int kFiles = kFolders * kFilesInEach;

    PlatformCalls() {
        for (int folder = 0; folder < kFolders; ++folder) {
            for (int file = 0; file < kFilesInEach; ++file) {
                files.Put("C:\\Data\\" + std::to_string(folder) + "\\" + std::to_string(file),
                          Prose(1000, static_cast<std::uint64_t>(file)));
            }
        }
    }
    platform::Machine Recording() { return WithFiles(machine.machine(), faulty); }
    void BackUp() {
        ASSERT_EQ(zip::WriteArchive(Recording(), options, events).outcome, RunOutcome::kComplete);
    }
    int Of(Call kind, const std::string& path) const { return faulty.plan.Count(kind, path); }

    FaultyFileSystem faulty{files};
};

TEST_F(PlatformCalls, OfASmallFileAreOneOpenAndOneRead) {
    BackUp();
    const std::string source = "C:\\Data\\";
    EXPECT_EQ(Of(Call::kOpen, source), kFiles);
    EXPECT_EQ(Of(Call::kRead, source), kFiles);
    EXPECT_EQ(Of(Call::kAny, source), 2 * kFiles + kFolders) << "and one listing of each folder";
}

TEST_F(PlatformCalls, OfAFolderIsOneListing) {
    BackUp();
    EXPECT_EQ(Of(Call::kList, "C:\\Data"), kFolders + 1);
    EXPECT_EQ(Of(Call::kFind, "C:\\Data"), 0);
}

TEST_F(PlatformCalls, WritesOfTheArchiveAreLarge) {
    files.Put("C:\\Data\\noise", Noise(8 * kChunkSize));
    BackUp();
    const std::uint64_t size = files.Info(options.archive).size;
    // One for each mebibyte, and one for the header of the file of several chunks.
    EXPECT_LE(Of(Call::kWrite, "Weekly.zip"), static_cast<int>(size / kChunkSize) + 2);
    EXPECT_EQ(Of(Call::kReplace, "Weekly.zip"), 1);
    EXPECT_EQ(Of(Call::kRename, ""), 0);
}

}  // namespace
}  // namespace vantrel::test
