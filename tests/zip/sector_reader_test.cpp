// Media with sectors that cannot be read.
#include "zip/disks/sector_reader.h"

#include "tests/support/matchers.h"
#include "tests/zip/reader_fixture.h"

namespace vantrel::test {
namespace {

// Bytes of which some cannot be read, for ever or a number of times.
class BadSource : public StringSource {
  public:
    BadSource(std::string bytes, std::uint64_t begin, std::uint64_t end)
        : StringSource(std::move(bytes)), begin_(begin), end_(end) {}
    std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count) override {
        if (offset < end_ && begin_ < offset + count && failures > 0) {
            --failures;
            ++failed;
            RaiseError(error_number::kDeviceIo);
        }
        return StringSource::ReadAt(offset, out, count);
    }
    int failures = 1'000'000;
    int failed = 0;

  private:
    std::uint64_t begin_, end_;
};

TEST(SectorReader, UnreadableSectorIsZerosAndTheRestIsRead) {
    TestMachine machine;
    const std::string bytes = Noise(20'000);
    BadSource bad(bytes, 5'000, 5'001);
    zip::SectorReader reader(bad, machine.clock);
    std::string expected = bytes;
    expected.replace(4608, 512, std::string(512, '\0'));
    EXPECT_EQ(reader.Bytes(0, 30'000), expected);
    EXPECT_EQ(reader.WhyUnreadable(0, 4608), "");
    EXPECT_EQ(reader.WhyUnreadable(4000, 4609), "the medium cannot be read there");
    EXPECT_EQ(reader.WhyUnreadable(5119, 6000), "the medium cannot be read there");
    EXPECT_EQ(reader.WhyUnreadable(5120, 6000), "");
    const int tries = bad.failed;
    EXPECT_EQ(reader.Bytes(4700, 10), std::string(10, '\0'));
    EXPECT_EQ(reader.Bytes(4720, 10), std::string(10, '\0'));
    EXPECT_EQ(bad.failed, tries) << "an unreadable sector is not tried again";
}

TEST(SectorReader, BytesOfTheNextSectorAreRead) {
    TestMachine machine;
    const std::string bytes = Noise(6'000);
    BadSource bad(bytes, 5'000, 5'001);
    zip::SectorReader reader(bad, machine.clock);
    EXPECT_EQ(reader.Bytes(4608, 600), std::string(512, '\0') + bytes.substr(5120, 88));
}

TEST(SectorReader, SectorThatIsReadAtARetryIsNoLoss) {
    TestMachine machine;
    const std::string bytes = Noise(512);
    BadSource bad(bytes, 100, 101);
    bad.failures = 3;
    zip::SectorReader reader(bad, machine.clock);
    EXPECT_EQ(reader.Bytes(0, 512), bytes);
    EXPECT_EQ(reader.WhyUnreadable(0, 512), "");
}

TEST(SectorReader, OtherErrorsAreRaised) {
    class Gone : public StringSource {
      public:
        using StringSource::StringSource;
        std::size_t ReadAt(std::uint64_t, void*, std::size_t) override {
            RaiseError(error_number::kDiskNotReady);
        }
    };
    TestMachine machine;
    Gone gone("x");
    zip::SectorReader reader(gone, machine.clock);
    EXPECT_THROW(reader.Bytes(0, 5000), Error);
}

class BadMedium : public ReaderTest {
  protected:
    BadMedium() {
        for (int i = 0; i < 20; ++i) {
            archive.entries.push_back({.name = "f" + std::to_string(i), .content = Noise(1000, 7)});
        }
        bytes = archive.Bytes();
        options.search = true;
    }
    zip::RunOutcome RunWithBad(std::uint64_t begin, std::uint64_t end) {
        files.unreadable = [=, this](const std::string& path, std::uint64_t from,
                                     std::uint64_t to) {
            return path == options.archive && from < end && begin < to;
        };
        files.Put(options.archive, bytes);
        events.questions = &questions;
        Run();
        EXPECT_THAT(questions.asked, IsEmpty());
        return result.outcome;
    }

    BuiltArchive archive;
    std::string bytes;
};

TEST_F(BadMedium, UnreadableSectorCostsTheFileInWhichItLies) {
    const std::uint64_t at = bytes.find("f7") + 500;
    EXPECT_EQ(RunWithBad(at, at + 1), zip::RunOutcome::kComplete);
    EXPECT_EQ(result.entries, 19u);
    EXPECT_THAT(Warning(), "f7 is not restored: the medium cannot be read there.");
}

TEST_F(BadMedium, UnreadableDirectoryIsReplacedByASearch) {
    const std::uint64_t at = bytes.find("PK\1\2") + 600;
    EXPECT_EQ(RunWithBad(at, at + 1), zip::RunOutcome::kComplete);
    EXPECT_EQ(result.entries, 20u);
    EXPECT_TRUE(result.directory_damaged);
}

TEST_F(BadMedium, UnreadableBeginningInASearchCostsTheFirstFile) {
    bytes.resize(bytes.find("PK\1\2"));
    EXPECT_EQ(RunWithBad(0, 1), RunOutcome::kComplete);
    EXPECT_EQ(result.entries, 19u);
}

TEST_F(BadMedium, UnreadableSectorInASearchCostsTheFilesInWhichItLies) {
    bytes.resize(bytes.find("PK\1\2"));
    const std::uint64_t at = bytes.find("f7") + 500;
    EXPECT_EQ(RunWithBad(at, at + 1), zip::RunOutcome::kComplete);
    EXPECT_GE(result.entries, 18u);
    EXPECT_THAT(events.Texts(zip::MessageKind::kWarning),
                Contains("f7 is not restored: the medium cannot be read there."));
}

}  // namespace
}  // namespace vantrel::test
