// Earlier archives that are damaged or made to do harm: the new archive is right all the same.
#include <functional>

#include "tests/zip/earlier_samples.h"
#include "tests/zip/hostile_tables.h"
#include "tests/zip/writer_fixture.h"
#include "zip/records/format.h"

namespace vantrel::test {
namespace {

constexpr std::size_t kStep = 64;  // bytes from one damage to the next

class EarlierHostile : public ::testing::Test {
  protected:
    EarlierHostile() {
        PutEarlierSamples(files);
        good = BackUp("").archive;
        EXPECT_EQ(WrongIn(good, files), "");
    }
    SampleRun BackUp(const std::string& earlier) {
        return BackUpSamples(files, WithFiles(machine.machine(), files), earlier);
    }
    // Whatever the earlier archive is. Returns the bytes that were reused.
    std::uint64_t ExpectRight(const std::string& earlier, const std::string& what) {
        const SampleRun run = BackUp(earlier);
        EXPECT_EQ(run.result.outcome, zip::RunOutcome::kComplete) << what;
        EXPECT_EQ(run.result.skipped, 0) << what;
        EXPECT_EQ(WrongIn(run.archive, files), "") << what;
        EXPECT_EQ(run.lines.size(), 1u) << what;
        return run.result.reused_bytes;
    }
    std::uint64_t All() const {
        std::uint64_t all = 0;
        for (const auto& [name, content] : EarlierSamples()) {
            all += content.size();
        }
        return all;
    }

    TestMachine machine;
    MemoryFileSystem files;
    std::string good;  // the archive of a run without an earlier one
};

TEST_F(EarlierHostile, TheGoodArchiveIsReusedCompletely) {
    EXPECT_LT(good.size(), 12'000u) << "a larger one makes the sweeps slow";
    EXPECT_EQ(ExpectRight(good, "good"), All());
    EXPECT_TRUE(files.Content("C:\\New.zip") == good);
}

TEST_F(EarlierHostile, ABitThatIsFlippedAtEvery64thByteOfIt) {
    for (std::size_t at = 0; at < good.size(); at += kStep) {
        std::string damaged = good;
        damaged[at] = static_cast<char>(damaged[at] ^ (1 << (at / kStep % 8)));
        ExpectRight(damaged, "bit at " + std::to_string(at));
    }
}

TEST_F(EarlierHostile, TruncationAtEvery64thByteOfIt) {
    for (std::size_t size = 1; size < good.size(); size += kStep) {
        EXPECT_EQ(ExpectRight(good.substr(0, size), "size " + std::to_string(size)), 0u);
    }
}

TEST_F(EarlierHostile, ABitThatIsFlippedAtEvery64thByteOfTheFile) {
    const std::string content = files.Content("C:\\Data\\a.txt");
    for (std::size_t at = 0; at < content.size(); at += kStep) {
        std::string changed = content;
        changed[at] = static_cast<char>(changed[at] ^ 4);
        files.Put("C:\\Data\\a.txt", changed);
        EXPECT_EQ(ExpectRight(good, std::to_string(at)), All() - content.size());
    }
}

TEST_F(EarlierHostile, ABitThatIsFlippedInAFileOfTwoChunks) {
    const std::string content = files.Content("C:\\Data\\big");
    constexpr std::size_t kFewer = 1001 * kStep;
    for (std::size_t at = 0; at < content.size(); at += kFewer) {
        std::string changed = content;
        changed[at] = static_cast<char>(changed[at] ^ 4);
        files.Put("C:\\Data\\big", changed);
        EXPECT_LT(ExpectRight(good, std::to_string(at)), All());
    }
}

TEST_F(EarlierHostile, AFileThatIsTruncatedAtEvery64thByte) {
    const std::string content = files.Content("C:\\Data\\a.txt");
    for (std::size_t size = 0; size < content.size(); size += kStep) {
        files.Put("C:\\Data\\a.txt", content.substr(0, size));
        EXPECT_EQ(ExpectRight(good, std::to_string(size)), All() - content.size());
    }
}

// The table: what is done to the good archive, or an archive in its place.
struct Trick {
    const char* name;
    std::function<std::string(const std::string& good)> make;
    bool reuses_something;
};

std::size_t CentralOf(const std::string& bytes, const std::string& name) {
    const std::size_t directory = ReadArchive(bytes).directory_offset;
    return bytes.find(name, directory) - zip::central_record::kFixedSize;
}
std::size_t DataOf(const std::string& bytes, const std::string& name) {
    const std::size_t at = ReadArchive(bytes).At(name).offset;
    return at + zip::local_header::kFixedSize + name.size() +
           zip::GetNumber<std::uint16_t>(bytes, at + zip::local_header::kExtraLength);
}
// The index's first item.
std::size_t IndexOf(const std::string& bytes) {
    return bytes.find("VC", CentralOf(bytes, "big")) + zip::kFieldHeader + zip::kChunkIndexHeader;
}
BuiltEntry Marked(BuiltEntry entry) {
    entry.central_extra = ExtraField(zip::kCompressorField, SampleMark());
    return entry;
}
std::string SampleA() { return EarlierSamples().at("a.txt"); }

// a.txt as a stream that is followed by other bytes, all of them stated as its packed size.
std::string WithDataBehind(const std::string& more) {
    const std::string packed = RawDeflate(SampleA()) + more;
    std::string bytes = Built({Marked({.name = "a.txt",
                                       .content = packed,
                                       .size = static_cast<std::int64_t>(SampleA().size()),
                                       .crc = zip::Crc32(SampleA())})});
    return Over(bytes, bytes.find("PK\1\2") + zip::central_record::kMethod, Number16(8));
}

// A field of a central record of the good archive is overwritten.
Trick InCentral(const char* name, const char* entry, std::size_t field, const std::string& value,
                bool reuses_something) {
    const auto make = [=](const std::string& good) {
        return Over(good, CentralOf(good, entry) + field, value);
    };
    return {name, make, reuses_something};
}

const Trick kTricks[] = {
    InCentral("WrongChecksumInTheDirectory", "a.txt", zip::central_record::kCrc, "evil", true),
    {"OtherDataWithTheRightChecksum",
     [](const std::string&) {
         return Built({Marked({.name = "a.txt",
                               .content = std::string(SampleA().size(), 'e'),
                               .method = 8,
                               .crc = zip::Crc32(SampleA())})});
     },
     false},
    {"OtherStoredDataWithTheRightChecksum",
     [](const std::string&) {
         return Built({Marked({.name = "a.txt",
                               .content = std::string(SampleA().size(), 'e'),
                               .crc = zip::Crc32(SampleA())})});
     },
     false},
    {"DataBehindTheMatchingBytes", [](const std::string&) { return WithDataBehind("evil"); },
     false},
    {"OneByteBehindTheMatchingBytes",
     [](const std::string&) { return WithDataBehind(std::string(1, '\0')); }, false},
    // Data of another compressor is equal and therefore right, although a fresh run writes others.
    {"StreamOfAnotherCompressor", [](const std::string&) { return WithDataBehind(""); }, true},
    {"OverlappingEntries",
     [](const std::string&) {
         return Built({Marked({.name = "a.txt", .content = SampleA(), .method = 8}),
                       {.name = "b", .content = "", .size = 3000, .packed_size = 80, .offset = 0},
                       {.name = "c", .content = "", .size = 700, .packed_size = 600, .offset = 9}});
     },
     true},
    InCentral("HeadersBehindTheEnd", "a.txt", zip::central_record::kOffset, Number32(0x7FFFFFFF),
              true),
    {"HeaderThatIsNone", [](const std::string& good) { return Over(good, 0, "evil"); }, true},
    {"LocalNameOfHugeLength",
     [](const std::string& good) {
         return Over(good, zip::local_header::kNameLength, Number16(0xFFFF) + Number16(0xFFFF));
     },
     true},
    InCentral("PackedSizeBeyondTheData", "a.txt", zip::central_record::kPackedSize, Number32(2999),
              true),
    InCentral("PackedSizeOfZero", "a.txt", zip::central_record::kPackedSize, Number32(0), true),
    InCentral("EncryptedEntry", "a.txt", zip::central_record::kFlags, Number16(1), false),
    InCentral("UnknownMethod", "a.txt", zip::central_record::kMethod, Number16(9), false),
    InCentral("EntryOnAnotherDisk", "a.txt", zip::central_record::kDisk, Number16(3), false),
    {"FinalBlockInTheFirstChunk",
     [](const std::string& good) {
         const std::size_t at = DataOf(good, "big");
         return Over(good, at, std::string(1, static_cast<char>(good[at] | 1)));
     },
     true},
    {"ChunkThatEndsElsewhere",
     [](const std::string& good) {
         const std::size_t at = IndexOf(good);
         const auto first = zip::GetNumber<std::uint32_t>(good, at);
         const auto second = zip::GetNumber<std::uint32_t>(good, at + zip::kChunkIndexItem);
         return Over(Over(good, at, Number32(first + 3)), at + zip::kChunkIndexItem,
                     Number32(second - 3));
     },
     true},
    {"IndexOfOtherSum",
     [](const std::string& good) { return Over(good, IndexOf(good), Number32(7)); }, true},
    {"IndexOfHugeItems",
     [](const std::string& good) { return Over(good, IndexOf(good) - 1, "\x2C"); }, true},
    {"IndexOfImpossibleItems",
     [](const std::string& good) { return Over(good, IndexOf(good) - 1, "\xFF"); }, true},
    InCentral("ChunkedFileOfHugeSize", "big", zip::central_record::kSize, Number32(0xFFFFFFFE),
              true),
    {"ChunksBehindTheEnd",
     [](const std::string& good) {
         return Over(good, CentralOf(good, "big") + zip::central_record::kOffset,
                     Number32(static_cast<std::uint32_t>(good.size() - 40)));
     },
     true},
    {"NoMark",
     [](const std::string&) {
         return Built({{.name = "a.txt", .content = SampleA(), .method = 8}});
     },
     false},
    {"MarkInTheSecondRecord",
     [](const std::string&) {
         return Built({{.name = "0", .content = "x"},
                       Marked({.name = "a.txt", .content = SampleA(), .method = 8})});
     },
     false},
    {"MoreEntriesStated",
     [](const std::string& good) {
         return Over(good, good.size() - 14, Number16(9) + Number16(9));
     },
     false},
    {"FewerEntriesStated",
     [](const std::string& good) {
         return Over(good, good.size() - 14, Number16(3) + Number16(3));
     },
     false},
    InCentral("LengthsBehindTheDirectory", "z", zip::central_record::kNameLength,
              Number16(0xFFFF) + Number16(0xFFFF) + Number16(0xFFFF), false),
};

class EarlierTrick : public EarlierHostile, public ::testing::WithParamInterface<Trick> {};

TEST_P(EarlierTrick, LeavesTheNewArchiveRight) {
    const std::uint64_t reused = ExpectRight(GetParam().make(good), GetParam().name);
    EXPECT_EQ(reused > 0, GetParam().reuses_something);
}

INSTANTIATE_TEST_SUITE_P(Tricks, EarlierTrick, ::testing::ValuesIn(kTricks),
                         [](const auto& tested) { return tested.param.name; });

// A small file that claims many entries.
TEST_F(EarlierHostile, TenMillionEntriesTakeNoMemory) {
    BuiltArchive wide;
    wide.entries = {Marked({.name = "a.txt", .content = SampleA(), .method = 8})};
    wide.zip64 = true;
    const std::string bytes = wide.Bytes();
    EXPECT_GT(ExpectRight(bytes, "one entry"), 0u);
    const std::size_t end64 = bytes.rfind("PK\6\6");
    const auto claiming = [&](std::uint64_t entries) {
        return BackUp(Over(bytes, end64 + zip::end64_record::kEntries, Number64(entries))).lines;
    };
    const auto unused = [](const std::string& why) {
        return Strings{"The earlier archive is not reused: C:\\Earlier.zip (" + why +
                       "). Everything is compressed."};
    };
    EXPECT_EQ(claiming(10'000'000), unused("it has too many entries"));
    EXPECT_EQ(claiming(1'500'000), unused("it is damaged, or was not made by this program"));
}

}  // namespace
}  // namespace vantrel::test
