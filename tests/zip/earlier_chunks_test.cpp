// Large files: which of their chunks the second backup compresses again.
#include <set>

#include "common/file_name.h"
#include "tests/zip/earlier_fixture.h"
#include "zip/base/bytes.h"
#include "zip/records/chunk_index.h"
#include "zip/records/format.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;
using zip::kHistory;

class EarlierChunksTest : public EarlierTest {
  protected:
    // A file of `chunks` chunks and a bit more.
    void PutBig(std::size_t chunks, const std::string& path = "C:\\Data\\big") {
        files.Put(path, Prose(chunks * kChunkSize + 5000));
    }
    void ChangeByte(std::size_t offset, const std::string& path = "C:\\Data\\big") {
        std::string content = files.Content(path);
        content[offset] ^= 1;
        files.Put(path, content);
    }
};

TEST_F(EarlierChunksTest, UnchangedChunksAreNotCompressedAgain) {
    PutBig(5);
    RunFirst();
    RunSecond();
    EXPECT_EQ(compressed, 0);
    EXPECT_EQ(result.reused_bytes, 5 * kChunkSize + 5000);
}

TEST_F(EarlierChunksTest, AChangedChunkIsCompressedAgain) {
    PutBig(5);
    RunFirst();
    ChangeByte(2 * kChunkSize + 100);
    RunSecond();
    EXPECT_EQ(compressed, 1);
}

TEST_F(EarlierChunksTest, AChangeWithin32KBBeforeAChunkCompressesThatOneToo) {
    PutBig(5);
    RunFirst();
    ChangeByte(3 * kChunkSize - kHistory);
    RunSecond();
    EXPECT_EQ(compressed, 2);
    ChangeByte(3 * kChunkSize - kHistory);
    ChangeByte(3 * kChunkSize - kHistory - 1);
    RunSecond();
    EXPECT_EQ(compressed, 1);
}

TEST_F(EarlierChunksTest, AnAppendedFileKeepsAllChunksButTheLast) {
    PutBig(4);
    RunFirst();
    files.Append("C:\\Data\\big", Prose(2 * kChunkSize, 3));
    RunSecond();
    EXPECT_EQ(compressed, 3) << "the one that grew and two new ones";
}

TEST_F(EarlierChunksTest, ALastChunkThatIsNoLongerTheLastIsCompressedAgain) {
    files.Put("C:\\Data\\big", Prose(3 * kChunkSize));
    RunFirst();
    files.Append("C:\\Data\\big", "x");
    RunSecond();
    EXPECT_EQ(compressed, 2);
    files.Put("C:\\Data\\big", Prose(2 * kChunkSize));
    RunSecond();
    EXPECT_EQ(compressed, 1);
}

TEST_F(EarlierChunksTest, ChunksThatWereStoredAreFoundAgain) {
    files.Put("C:\\Data\\big", Prose(kChunkSize) + Noise(2 * kChunkSize) + Prose(kChunkSize, 2) +
                                   Noise(kChunkSize, 2));
    RunFirst();
    RunSecond();
    EXPECT_EQ(compressed, 0);
    EXPECT_EQ(result.reused_bytes, 5 * kChunkSize);
}

TEST_F(EarlierChunksTest, ANewNameIsCompressedAgain) {
    PutBig(2);
    RunFirst();
    files.Remove("C:\\Data\\big");
    PutBig(2, "C:\\Data\\other");
    RunSecond();
    EXPECT_EQ(compressed, 3);
}

TEST_F(EarlierChunksTest, AFileThatShrankBelowAChunkIsCompressedAsASmallOne) {
    PutBig(2);
    RunFirst();
    files.Put("C:\\Data\\big", Prose(kChunkSize));
    RunSecond();
    EXPECT_EQ(compressed, 1);
    files.Put(kEarlier, files.Content(options.archive));
    PutBig(2);
    RunSecond();
    EXPECT_EQ(compressed, 3);
}

TEST_F(EarlierChunksTest, NamesOutsideAsciiAreFound) {
    PutBig(2, "C:\\Data\\Sub\\\xC3\xA4\xE2\x82\xAC");
    RunFirst();
    RunSecond();
    EXPECT_EQ(compressed, 0);
}

// A name, in many folders, that leaves space for few items in the central record.
class LongNameTest : public EarlierChunksTest {
  protected:
    static constexpr std::size_t kItems = 3;

    LongNameTest() {
        std::size_t length = 65535;
        while (zip::MaxChunkIndexItems(length) < kItems) {
            --length;
        }
        std::string name(length, 'n');
        for (std::size_t i = kMaxFileNameLength; i + 1 < length; i += kMaxFileNameLength + 1) {
            name[i] = '\\';
        }
        path = "C:\\Data\\" + name;
    }
    std::string path;
};

TEST_F(LongNameTest, OneItemCoversSeveralChunks) {
    for (const std::size_t chunks : {2u, 3u, 5u, 6u, 11u}) {
        PutBig(chunks, path);
        RunFirst();
        const std::string index = ReadArchive(files.Content(kEarlier))
                                      .entries[0]
                                      .central_fields.at(zip::kChunkIndexField);
        EXPECT_LE(index.size(), 1 + kItems * 8) << chunks;
        EXPECT_EQ(index[0], chunks < 3 ? 0 : chunks < 6 ? 1 : 2) << chunks;
        RunSecond();
        EXPECT_EQ(compressed, 0) << chunks;
    }
}

TEST_F(LongNameTest, AChangeCompressesTheRestOfItsItem) {
    PutBig(11, path);
    RunFirst();
    ChangeByte(5 * kChunkSize + 9, path);
    for (const int threads : {1, 4}) {
        options.threads = threads;
        RunSecond();
        EXPECT_EQ(compressed, 3) << "chunks 5, 6 and 7 of the item with 4 to 7";
    }
}

TEST_F(LongNameTest, ManyThreadsCompareChunksOfOneItem) {
    PutBig(24, path);
    RunFirst();
    options.threads = 8;
    RunSecond();
    EXPECT_EQ(compressed, 0);
}

TEST_F(LongNameTest, CancelEndsTheWaitForAnotherChunk) {
    PutBig(11, path);
    RunFirst();
    options.earlier = kEarlier;
    events.cancel_at = 2;
    EXPECT_EQ(Run(), zip::RunOutcome::kCancelled);
}

TEST(ChunkIndexTest, IsWrittenAndReadAgainWithAnyNumberOfChunks) {
    for (std::uint64_t chunks = 1; chunks < 70; ++chunks) {
        zip::ChunkIndexBuilder builder(5);
        std::uint64_t sum = 0;
        for (std::uint64_t i = 0; i < chunks; ++i) {
            builder.Add({100 + i, static_cast<std::uint32_t>(i)});
            sum += 100 + i;
        }
        const auto index = zip::ParseChunkIndex(builder.Body(), chunks, sum);
        ASSERT_TRUE(index) << chunks;
        EXPECT_LE(index->items.size(), 5u);
        std::uint64_t first = 0;
        for (const zip::ChunkIndexItem& item : index->items) {
            EXPECT_EQ(item.check, first) << "of the first chunk in the item";
            std::uint64_t size = 0;
            for (std::uint64_t i = 0; i < index->chunks_in_item && first < chunks; ++i) {
                size += 100 + first++;
            }
            EXPECT_EQ(item.packed_size, size);
        }
        EXPECT_FALSE(zip::ParseChunkIndex(builder.Body(), chunks, sum + 1));
        EXPECT_FALSE(zip::ParseChunkIndex(builder.Body(), 2 * chunks + 70, sum));
        EXPECT_FALSE(zip::ParseChunkIndex(builder.Body() + 'x', chunks, sum));
    }
}

TEST(ChunkIndexTest, IsLeftOutWhereItDoesNotFit) {
    zip::ChunkIndexBuilder none(0);
    none.Add({1, 1});
    EXPECT_EQ(none.Body(), "");
    EXPECT_EQ(zip::ChunkIndexBuilder(5).Body(), "");
    zip::ChunkIndexBuilder wide(1);
    wide.Add({0xFFFFFFFF, 1});
    EXPECT_EQ(wide.Body(), "");
    EXPECT_EQ(zip::MaxChunkIndexItems(65535), 0u);
    EXPECT_GT(zip::MaxChunkIndexItems(100), 8000u) << "files of about 8 GB have one item a chunk";
    EXPECT_FALSE(zip::ParseChunkIndex("", 1, 1));
    EXPECT_FALSE(zip::ParseChunkIndex("\x7F", 1, 1));
}

}  // namespace
}  // namespace vantrel::test
