// Content of archives, without failures.
#include "zip/writer/archive_writer.h"

#include <mutex>
#include <set>
#include <thread>

#include "tests/zip/writer_fixture.h"
#include "zip/base/bytes.h"
#include "zip/disks/archive_target.h"
#include "zip/records/entry_records.h"

namespace vantrel::test {
namespace {

using platform::FileInfo;
using zip::kChunkSize;

class ArchiveWriter : public WriterTest {
  protected:
    void ExpectArchived(const std::string& archive, const Strings& names) {
        options.archive = archive;
        ASSERT_EQ(Run(), RunOutcome::kComplete);
        EXPECT_EQ(Archive().Names(), names) << archive;
    }
};

TEST_F(ArchiveWriter, NamesAreRelativeToTheSourceWithSlashes) {
    files.Put("C:\\Data\\a.txt", "first");
    files.Put("C:\\Data\\Docs\\Deep\\b.txt", Prose(5000));
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const ReadResult archive = Archive();
    EXPECT_EQ(archive.Names(), (Strings{"a.txt", "Docs/Deep/b.txt"}));
    EXPECT_EQ(archive.At("a.txt").content, "first");
    EXPECT_EQ(archive.At("Docs/Deep/b.txt").content, Prose(5000));
    EXPECT_EQ(result.entries, 2u);
    EXPECT_EQ(result.skipped, 0);
}

TEST_F(ArchiveWriter, OrderIsSortedWithAFoldersFilesBeforeItsSubFolders) {
    for (const char* name : {"z.txt", "B\\1", "a\\2", "B\\A\\3", "m.txt", "a\\1"}) {
        files.Put(std::string("C:\\Data\\") + name, "x");
    }
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Archive().Names(), (Strings{"m.txt", "z.txt", "B/1", "B/A/3", "a/1", "a/2"}));
}

TEST_F(ArchiveWriter, BigFilesAreJoinedFromChunks) {
    const std::string big = Prose(3 * kChunkSize + 12345);
    const std::string exact = Prose(2 * kChunkSize, 7);
    const std::string one_more = Prose(kChunkSize + 1, 8);
    files.Put("C:\\Data\\big", big);
    files.Put("C:\\Data\\exact", exact);
    files.Put("C:\\Data\\one_more", one_more);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const ReadResult archive = Archive();
    for (const char* name : {"big", "exact", "one_more"}) {
        EXPECT_EQ(archive.At(name).method, 8) << name;
        EXPECT_EQ(archive.At(name).flags & 8, 0) << "no descriptor on a fixed disk";
    }
    EXPECT_EQ(archive.At("big").content, big);
    EXPECT_EQ(archive.At("exact").content, exact);
    EXPECT_EQ(archive.At("one_more").content, one_more);
}

// Only the tuned level uses the history.
#ifndef VANTREL_SYSTEM_LIBDEFLATE
TEST_F(ArchiveWriter, AChunkRefersToTheEndOfTheOneBefore) {
    const std::string noise = Noise(zip::kHistory - 1);
    const std::string before = Prose(kChunkSize - noise.size());
    const std::string big = before + noise + noise + Prose(kChunkSize, 2);
    files.Put("C:\\Data\\big", big);
    files.Put("C:\\Data\\once", before + noise + Prose(kChunkSize, 2));
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const ReadResult archive = Archive();
    EXPECT_EQ(archive.At("big").content, big);
    EXPECT_LT(archive.At("big").packed_size, archive.At("once").packed_size + noise.size() / 10);
}
#endif

TEST_F(ArchiveWriter, OutputIsTheSameForAnyNumberOfThreads) {
    for (int i = 0; i < 700; ++i) {
        files.Put("C:\\Data\\small\\" + std::to_string(i), Prose(static_cast<std::size_t>(i) * 7));
    }
    files.Put("C:\\Data\\a big", Prose(5 * kChunkSize));
    files.Put("C:\\Data\\small\\500 big", Noise(2 * kChunkSize) + Prose(kChunkSize));
    options.threads = 1;
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const std::string alone = files.Content(options.archive);
    const std::vector<std::string> texts = events.Texts(MessageKind::kInformation);
    for (const int threads : {2, 5, 16, 32}) {
        events.messages.clear();
        options.threads = threads;
        ASSERT_EQ(Run(), RunOutcome::kComplete);
        EXPECT_TRUE(files.Content(options.archive) == alone) << threads;
        EXPECT_EQ(events.Texts(MessageKind::kInformation), texts) << threads;
    }
}

TEST_F(ArchiveWriter, OneProcessorUsesOneThreadForTheFiles) {
    for (int i = 0; i < 700; ++i) {
        files.Put("C:\\Data\\" + std::to_string(i), Prose(3000));
    }
    options.threads = 0;
    machine.process.processors = 1;
    std::mutex mutex;
    std::set<std::thread::id> threads;
    files.before = [&](const std::string& call, const std::string& path) {
        const std::lock_guard lock(mutex);
        if (call == "Read" && path.starts_with("C:\\Data")) {
            threads.insert(std::this_thread::get_id());
        }
    };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(threads.size(), 1u);
}

TEST_F(ArchiveWriter, NoMessagesPerFileWhenNotWanted) {
    events.wants_each_file = false;
    files.Put("C:\\Data\\a.txt", "first");
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Archive().Names(), Strings{"a.txt"});
    EXPECT_TRUE(events.messages.empty());
}

TEST_F(ArchiveWriter, DataThatDoesNotShrinkIsStored) {
    files.Put("C:\\Data\\noise", Noise(30000));
    files.Put("C:\\Data\\one", "1");
    files.Put("C:\\Data\\empty", "");
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const ReadResult archive = Archive();
    for (const char* name : {"noise", "one", "empty"}) {
        EXPECT_EQ(archive.At(name).method, 0) << name;
        EXPECT_EQ(archive.At(name).packed_size, archive.At(name).size) << name;
    }
    EXPECT_EQ(archive.At("noise").content, Noise(30000));
}

TEST_F(ArchiveWriter, SamplesRecognizeAnIncompressibleBigFile) {
    files.Put("C:\\Data\\noise", Noise(3 * kChunkSize + 5));
    std::atomic<int> compressed{0};
    struct Counting : zip::RawCompressor {
        explicit Counting(std::atomic<int>& counter) : count(counter) {}
        std::size_t Compress(const std::uint8_t* in, std::size_t size, std::uint8_t* out,
                             std::size_t room) override {
            ++count;
            return right->Compress(in, size, out, room);
        }
        std::size_t Bound(std::size_t size) override { return right->Bound(size); }
        std::atomic<int>& count;
        std::unique_ptr<zip::RawCompressor> right = zip::MakeCompressor(9);
    };
    options.make_compressor = [&] { return std::make_unique<Counting>(compressed); };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Archive().At("noise").method, 0);
    EXPECT_EQ(Archive().At("noise").content, Noise(3 * kChunkSize + 5));
    EXPECT_EQ(compressed, 0);
}

// Makes valid streams that are always larger than the data: stored blocks.
class WastefulCompressor : public zip::RawCompressor {
  public:
    std::size_t Compress(const std::uint8_t* in, std::size_t size, std::uint8_t* out,
                         std::size_t) override {
        std::size_t at = 0;
        std::size_t used = 0;
        do {
            const std::size_t part = std::min<std::size_t>(size - used, 60000);
            const auto length = static_cast<std::uint16_t>(part);
            const auto complement = static_cast<std::uint16_t>(~length);
            for (const int byte : {used + part == size ? 1 : 0, length & 0xFF, length >> 8,
                                   complement & 0xFF, complement >> 8}) {
                out[at++] = static_cast<std::uint8_t>(byte);
            }
            std::copy(in + used, in + used + part, out + at);
            at += part;
            used += part;
        } while (used < size);
        return at;
    }
    std::size_t Bound(std::size_t size) override { return size + size / 1000 + 100; }
};

TEST_F(ArchiveWriter, BigFileThatDidNotShrinkIsStored) {
    files.Put("C:\\Data\\a", Prose(2 * kChunkSize));
    files.Put("C:\\Data\\b", "");
    options.make_compressor = [] { return std::make_unique<WastefulCompressor>(); };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const ReadResult archive = Archive();
    EXPECT_EQ(archive.At("a").method, 0);
    EXPECT_TRUE(archive.At("a").content == Prose(2 * kChunkSize));
    EXPECT_EQ(archive.Names(), (Strings{"b", "a"})) << "stored again after all others";
    EXPECT_EQ(events.messages.size(), 2u) << "one message per file";
}

TEST_F(ArchiveWriter, FilesStoredAgainAreSortedForAnyNumberOfThreads) {
    files.Put("C:\\Data\\b", Prose(2 * kChunkSize));
    files.Put("C:\\Data\\Sub\\a", Prose(2 * kChunkSize));
    options.make_compressor = [] { return std::make_unique<WastefulCompressor>(); };
    for (const int threads : {1, 4}) {
        options.threads = threads;
        ASSERT_EQ(Run(), RunOutcome::kComplete);
        EXPECT_EQ(Archive().Names(), (Strings{"Sub/a", "b"})) << threads;
    }
}

TEST_F(ArchiveWriter, LevelZeroStoresEverything) {
    files.Put("C:\\Data\\small", Prose(5000));
    files.Put("C:\\Data\\big", Prose(2 * kChunkSize));
    options.level = 0;
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Archive().At("small").method, 0);
    EXPECT_EQ(Archive().At("big").method, 0);
    EXPECT_EQ(Archive().At("big").content, Prose(2 * kChunkSize));
}

TEST_F(ArchiveWriter, HigherLevelsAreSmaller) {
    files.Put("C:\\Data\\a", Prose(900000));
    std::uint64_t before = ~std::uint64_t{0};
    for (const int level : {0, 1, 9}) {
        options.level = level;
        ASSERT_EQ(Run(), RunOutcome::kComplete);
        EXPECT_LT(files.Info(options.archive).size, before) << level;
        before = files.Info(options.archive).size;
    }
}

TEST_F(ArchiveWriter, KeepsTimesAndAttributes) {
    files.Put("C:\\Data\\a", "x");
    files.PutFolder("C:\\Data\\empty");
    const platform::FileTimes times{134392215090000007ull, 134392215090000008ull,
                                    134392215090000009ull};
    const auto change = [&](FileInfo& info) {
        info.times = times;
        info.attributes |= platform::attribute::kHidden | platform::attribute::kReadOnly;
    };
    files.Change("C:\\Data\\a", change);
    files.Change("C:\\Data\\empty", change);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    for (const char* name : {"a", "empty/"}) {
        const ReadEntry entry = Archive().At(name);
        const std::string ntfs = entry.central_fields.at(0x000A);
        EXPECT_EQ(zip::GetNumber<std::uint64_t>(ntfs, 8), times.modified);
        EXPECT_EQ(zip::GetNumber<std::uint64_t>(ntfs, 16), times.accessed);
        EXPECT_EQ(zip::GetNumber<std::uint64_t>(ntfs, 24), times.created);
        EXPECT_EQ(entry.dos_time, zip::DosDateTime({2026, 11, 15, 13, 5, 9}));
        EXPECT_EQ(entry.attributes, name[0] == 'a' ? 0x23u : 0x13u);
    }
}

TEST_F(ArchiveWriter, NamesOutsideAsciiAreUtf8) {
    files.Put("C:\\Data\\\xC3\xA4\xE2\x82\xAC\\\xE6\x97\xA5.txt", "x");
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Archive().Names(), (Strings{"\xC3\xA4\xE2\x82\xAC/\xE6\x97\xA5.txt"}));
    EXPECT_EQ(Archive().entries[0].flags, 0x0800);
}

TEST_F(ArchiveWriter, CreatesMissingFoldersOfTheArchivePath) {
    files.Put("C:\\Data\\a", "x");
    ExpectArchived("C:\\Backup\\20261115_130509\\Deeper\\Weekly.zip", {"a"});
}

TEST_F(ArchiveWriter, ReplacesTheEarlierArchiveInOneStepAtTheEnd) {
    files.Put("C:\\Data\\a", "x");
    files.Put(options.archive, "earlier");
    Strings calls;
    files.before = [&](const std::string& call, const std::string& path) {
        if (path.starts_with("C:\\Backup")) {
            calls.push_back(call);
            EXPECT_EQ(files.Content(options.archive), "earlier") << call;
        }
    };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    files.before = nullptr;
    ASSERT_GE(calls.size(), 3u);
    EXPECT_EQ(Strings(calls.end() - 3, calls.end()), (Strings{"Flush", "Close", "Replace"}));
    EXPECT_EQ(Archive().Names(), (Strings{"a"}));
    EXPECT_EQ(files.Everything(), (Strings{"C:\\", "C:\\Backup\\", "C:\\Backup\\Weekly.zip",
                                           "C:\\Data\\", "C:\\Data\\a"}));
}

TEST_F(ArchiveWriter, WritesAreLargeAndSequential) {
    for (int i = 0; i < 300; ++i) {
        files.Put("C:\\Data\\" + std::to_string(i), Noise(20000, static_cast<std::uint64_t>(i)));
    }
    std::atomic<int> writes{0};
    std::atomic<int> seeks{0};
    files.before = [&](const std::string& call, const std::string& path) {
        writes += call == "Write" ? 1 : 0;
        seeks += call == "Seek" && path.ends_with(zip::kTemporarySuffix) ? 1 : 0;
    };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    files.before = nullptr;
    EXPECT_EQ(writes, 6) << "6 MB in writes of 1 MB";
    EXPECT_EQ(seeks, 0);
}

TEST_F(ArchiveWriter, OwnFilesAreNotPartOfTheBackup) {
    files.Put("C:\\Data\\a", "x");
    options.archive = "C:\\Data\\Out\\Weekly.zip";
    files.Put(options.archive, "earlier");
    ExpectArchived(options.archive, {"a"});
    ExpectArchived(options.archive, {"a"});
}

TEST_F(ArchiveWriter, OwnFilesAreRecognizedInAnySpelling) {
    files.Put("C:\\Data\\a", "x");
    files.Alias("S:", "C:\\Data");
    for (const char* spelling :
         {"S:\\Weekly.zip", "c:\\DATA\\WEEKLY.ZIP", "C:\\Data\\Weekly.zip"}) {
        ExpectArchived(spelling, {"a"});
    }
    options.source.folder = "S:\\";
    ExpectArchived(options.archive, {"a"});
}

TEST_F(ArchiveWriter, AnotherArchiveIsAnOrdinaryFile) {
    files.Put("C:\\Data\\Monthly.zip", "other");
    ExpectArchived("C:\\Data\\Weekly.zip", {"Monthly.zip"});
}

TEST_F(ArchiveWriter, ANewFolderForTheArchiveIsNotPartOfTheBackup) {
    files.Put("C:\\Data\\a", "x");
    ExpectArchived("C:\\Data\\Backups\\20261115_130509\\Weekly.zip", {"a"});
}

TEST_F(ArchiveWriter, EachEntryIsReportedOnceInOrder) {
    files.Put("C:\\Data\\a", "x");
    files.PutFolder("C:\\Data\\empty");
    files.Put("C:\\Data\\big", Prose(2 * kChunkSize));
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(events.Texts(MessageKind::kInformation),
              (Strings{"Adding C:\\Data\\a", "Adding C:\\Data\\big", "Adding C:\\Data\\empty"}));
    EXPECT_EQ(events.messages[1].path, "C:\\Data\\big");
    EXPECT_EQ(events.messages[1].entry, 2);
    EXPECT_EQ(events.messages[1].total, 3);
    EXPECT_EQ(events.messages[1].code, 0);
}

TEST_F(ArchiveWriter, TensOfThousandsOfMessagesArriveInOrder) {
    for (int i = 10000; i < 40000; ++i) {
        files.Put("C:\\Data\\" + std::to_string(i), "");
    }
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    ASSERT_EQ(events.messages.size(), 30000u);
    for (int i = 10000; i < 40000; ++i) {
        ASSERT_EQ(events.messages[static_cast<std::size_t>(i - 10000)].path,
                  "C:\\Data\\" + std::to_string(i));
    }
}

}  // namespace
}  // namespace vantrel::test
