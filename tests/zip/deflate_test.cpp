#include "zip/deflate/deflate.h"

#include <gtest/gtest.h>

#include <random>

#include "common/error.h"
#include "tests/zip/archive_reader.h"
#include "tests/zip/writer_fixture.h"

namespace vantrel::zip {
namespace {

const std::uint8_t* Bytes(const std::string& text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

// Compresses `data` in chunks and joins them, each with at most `history` bytes of history.
std::string Joined(int level, const std::string& data, std::size_t chunk,
                   std::size_t history = kHistory) {
    Deflater deflater(MakeCompressor(level));
    Buffer out;
    std::size_t at = 0;
    do {
        const std::size_t count = std::min(chunk, data.size() - at);
        deflater.CompressChunk(Bytes(data) + at, count, at + count == data.size(), out,
                               std::min(at, history));
        at += count;
    } while (at < data.size());
    return std::string(out.View());
}

// Runs, words, noise, or a mixture.
std::string RandomData(std::mt19937& random, std::size_t size) {
    switch (random() % 4) {
        case 0:
            return std::string(size, static_cast<char>(random()));
        case 1:
            return test::Prose(size, random());
        case 2:
            return test::Noise(size, random());
        default: {
            std::string mixed = test::Prose(size, random());
            const std::string noise = test::Noise(size / 3, random());
            return mixed.replace(size / 3, noise.size(), noise);
        }
    }
}

TEST(Deflater, JoinedChunksAreOneStreamForRandomDataLevelsAndSizes) {
    std::mt19937 random(20261115);
    for (int round = 0; round < 600; ++round) {
        const std::size_t size = random() % (1u << (random() % 18));
        const std::size_t chunk = 1 + random() % (size + 1);
        const std::string data = RandomData(random, size);
        const int level = round % 2 == 0 ? kTunedLevel : 1 + static_cast<int>(random() % 9);
        const std::size_t history = random() % (kHistory + 1);
        // Limits the number of chunks.
        const std::size_t step = std::max<std::size_t>(chunk, size / 50 + 1);
        ASSERT_EQ(test::InflateAll(Joined(level, data, step, history)), data)
            << "level " << level << " size " << size << " chunk " << step << " history " << history;
    }
}

// Only the tuned level uses the history.
#ifndef VANTREL_SYSTEM_LIBDEFLATE
TEST(Deflater, MatchesReferToTheHistory) {
    const std::string noise = test::Noise(20'000);
    const std::string twice = noise + noise;
    const std::string alone = Joined(kTunedLevel, twice, noise.size(), 0);
    const std::string after = Joined(kTunedLevel, twice, noise.size());
    EXPECT_GT(alone.size(), twice.size());
    EXPECT_LT(after.size(), noise.size() + 500);
    EXPECT_EQ(test::InflateAll(after), twice);
}

TEST(Deflater, MatchesReferToNoMoreThanTheHistory) {
    const std::string noise = test::Noise(3000);
    const std::string twice = noise + noise;
    const std::string half = Joined(kTunedLevel, twice, noise.size(), noise.size() / 2);
    EXPECT_GT(half.size(), noise.size() + noise.size() / 2);
    EXPECT_LT(half.size(), noise.size() + noise.size() / 2 + 200);
    EXPECT_EQ(test::InflateAll(half), twice);
}

TEST(Deflater, MatchesReferToStoredChunks) {
    const std::string noise = test::Noise(20'000);
    const std::string twice = noise + noise;
    Deflater deflater(MakeCompressor(kTunedLevel));
    Buffer out;
    StoreChunk(Bytes(noise), noise.size(), false, out);
    deflater.CompressChunk(Bytes(twice) + noise.size(), noise.size(), true, out, noise.size());
    EXPECT_LT(out.size(), noise.size() + 500);
    EXPECT_EQ(test::InflateAll(std::string(out.View())), twice);
}
#endif

TEST(Deflater, JoinsChunksOfOneByte) {
    const std::string data = test::Prose(300);
    EXPECT_EQ(test::InflateAll(Joined(9, data, 1)), data);
}

TEST(Deflater, JoinsFullChunks) {
    const std::string data = test::Prose(2 * kChunkSize + 77) + test::Noise(kChunkSize + 5);
    EXPECT_EQ(test::InflateAll(Joined(9, data, kChunkSize)), data);
}

TEST(Deflater, EmptyLastChunkEndsTheStream) {
    Deflater deflater(MakeCompressor(9));
    const std::string data = test::Prose(1000);
    Buffer out;
    deflater.CompressChunk(Bytes(data), data.size(), false, out);
    deflater.CompressChunk(nullptr, 0, true, out);
    EXPECT_EQ(test::InflateAll(std::string(out.View())), data);
}

TEST(StoreChunk, JoinsWithCompressedChunks) {
    for (const std::size_t size : {1U, 65535U, 65536U, 200000U}) {
        const std::string prose = test::Prose(1000);
        const std::string noise = test::Noise(size);
        Deflater deflater(MakeCompressor(9));
        Buffer out;
        deflater.CompressChunk(Bytes(prose), prose.size(), false, out);
        StoreChunk(Bytes(noise), noise.size(), false, out);
        deflater.CompressChunk(Bytes(prose), prose.size(), false, out);
        StoreChunk(Bytes(noise), noise.size(), true, out);
        EXPECT_EQ(test::InflateAll(std::string(out.View())), prose + noise + prose + noise);
    }
}

TEST(StoreChunk, CostsFiveBytesABlock) {
    const std::string noise = test::Noise(65536);
    Buffer out;
    StoreChunk(Bytes(noise), noise.size(), true, out);
    EXPECT_EQ(out.size(), noise.size() + 10);
}

TEST(StoreChunk, NoDataIsAnEmptyBlock) {
    Buffer out;
    StoreChunk(nullptr, 0, true, out);
    EXPECT_EQ(std::string(out.View()), std::string("\x01\0\0\xFF\xFF", 5));
    EXPECT_EQ(test::InflateAll(std::string(out.View())), "");
}

TEST(Deflater, OnlyTheLastChunkIsFinal) {
    Deflater deflater(MakeCompressor(9));
    const std::string data = test::Prose(1000);
    Buffer out;
    deflater.CompressChunk(Bytes(data), data.size(), false, out);
    EXPECT_THROW(test::InflateAll(std::string(out.View())), std::runtime_error);
}

TEST(Deflater, CompressShrinksOrReturnsFalse) {
    Deflater deflater(MakeCompressor(9));
    const std::string prose = test::Prose(50000);
    Buffer out;
    ASSERT_TRUE(deflater.Compress(Bytes(prose), prose.size(), out));
    EXPECT_LT(out.size(), prose.size());
    EXPECT_EQ(test::InflateAll(std::string(out.View())), prose);
    const std::string noise = test::Noise(50000);
    const std::size_t before = out.size();
    EXPECT_FALSE(deflater.Compress(Bytes(noise), noise.size(), out));
    EXPECT_EQ(out.size(), before);
    EXPECT_FALSE(deflater.Compress(nullptr, 0, out));
}

// Compresses correctly, then damages one byte.
class DamagingCompressor : public RawCompressor {
  public:
    explicit DamagingCompressor(std::size_t byte) : byte_(byte) {}
    std::size_t Compress(const std::uint8_t* in, std::size_t size, std::uint8_t* out,
                         std::size_t capacity) override {
        const std::size_t count = compressor_->Compress(in, size, out, capacity);
        out[byte_ % count] ^= 0x10;
        return count;
    }
    std::size_t Bound(std::size_t size) override { return compressor_->Bound(size); }

  private:
    std::unique_ptr<RawCompressor> compressor_ = MakeCompressor(6);
    std::size_t byte_;
};

TEST(Deflater, ADamagedByteIsNeverAccepted) {
    const std::string data = test::Prose(2000);
    for (std::size_t byte = 0; byte < 400; ++byte) {
        Deflater deflater(std::make_unique<DamagingCompressor>(byte));
        Buffer out;
        out.Append("kept");
        // A damaged bit may by chance decompress to the same bytes; then accepting it is correct.
        try {
            deflater.CompressChunk(Bytes(data), data.size(), true, out);
            EXPECT_EQ(test::InflateAll(std::string(out.View().substr(4))), data) << byte;
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), error_number::kDeviceIo);
            EXPECT_EQ(out.View(), "kept");
        }
    }
}

TEST(Deflater, DamageInTheMiddleIsAnError) {
    const std::string data = test::Prose(2000);
    Deflater deflater(std::make_unique<DamagingCompressor>(200));
    Buffer out;
    EXPECT_THROW(deflater.CompressChunk(Bytes(data), data.size(), true, out), Error);
    EXPECT_THROW(deflater.Compress(Bytes(data), data.size(), out), Error);
    EXPECT_TRUE(out.empty());
}

// Appends a byte to a correct stream.
class TrailingCompressor : public RawCompressor {
  public:
    std::size_t Compress(const std::uint8_t* in, std::size_t size, std::uint8_t* out,
                         std::size_t capacity) override {
        const std::size_t count = compressor_->Compress(in, size, out, capacity - 1);
        out[count] = 0;
        return count + 1;
    }
    std::size_t Bound(std::size_t size) override { return compressor_->Bound(size) + 1; }

  private:
    std::unique_ptr<RawCompressor> compressor_ = MakeCompressor(6);
};

TEST(Deflater, UnusedInputIsAnError) {
    const std::string data = test::Prose(2000);
    Deflater deflater(std::make_unique<TrailingCompressor>());
    Buffer out;
    EXPECT_THROW(deflater.CompressChunk(Bytes(data), data.size(), true, out), Error);
    EXPECT_THROW(deflater.Compress(Bytes(data), data.size(), out), Error);
}

// Three chunks that are joined: compressed, stored, compressed.
struct ThreeChunks {
    ThreeChunks() {
        Deflater deflater(MakeCompressor(kTunedLevel));
        Buffer out;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::uint8_t* const in = Bytes(data) + i * kSize;
            if (i == 1) {
                StoreChunk(in, kSize, false, out);
            } else {
                deflater.CompressChunk(in, kSize, i == 2, out, i * kSize);
            }
            ends[i] = out.size();
        }
        packed = out.View();
    }
    // The length that is found where chunk `i` begins.
    std::size_t Match(std::size_t i, const std::string& in_packed) const {
        Deflater deflater(MakeCompressor(kTunedLevel));
        const std::size_t begin = i == 0 ? 0 : ends[i - 1];
        return deflater.MatchChunk(Bytes(data) + i * kSize, kSize, i == 2, Bytes(in_packed) + begin,
                                   in_packed.size() - begin, i * kSize);
    }
    static constexpr std::size_t kSize = 3000;
    std::string data = test::Prose(kSize) + test::Noise(kSize) + test::Prose(kSize, 2);
    std::string packed;
    std::size_t ends[3] = {};
};

TEST(MatchChunk, FindsTheEndOfEachChunk) {
    const ThreeChunks chunks;
    EXPECT_EQ(chunks.Match(0, chunks.packed), chunks.ends[0]);
    EXPECT_EQ(chunks.Match(1, chunks.packed), chunks.ends[1] - chunks.ends[0]);
    EXPECT_EQ(chunks.Match(2, chunks.packed), chunks.ends[2] - chunks.ends[1]);
}

TEST(MatchChunk, FindsTheEndForRandomDataLevelsAndSizes) {
    std::mt19937 random(20261122);
    for (int round = 0; round < 300; ++round) {
        const std::size_t size = 1 + random() % (1u << (1 + random() % 16));
        const std::string data = RandomData(random, size);
        const std::size_t history = random() % (std::min(size - 1, kHistory) + 1);
        Deflater deflater(MakeCompressor(1 + static_cast<int>(random() % 7)));
        Buffer out;
        const bool last = round % 2 == 0;
        deflater.CompressChunk(Bytes(data) + history, size - history, last, out, history);
        const std::size_t length = out.size();
        out.Append(last ? "" : "more data");
        EXPECT_EQ(deflater.MatchChunk(Bytes(data) + history, size - history, last, out.data(),
                                      out.size(), history),
                  length)
            << "size " << size << " history " << history;
    }
}

TEST(MatchChunk, AcceptsNoBitThatBreaksTheStream) {
    const ThreeChunks chunks;
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t at = i == 0 ? 0 : chunks.ends[i - 1]; at < chunks.ends[i]; at += 7) {
            std::string damaged = chunks.packed;
            damaged[at] = static_cast<char>(damaged[at] ^ (1 << (at % 8)));
            // Some bits of a stream have no meaning.
            if (chunks.Match(i, damaged) != 0) {
                EXPECT_EQ(test::InflateAll(damaged), chunks.data) << at;
            }
        }
    }
}

TEST(MatchChunk, RefusesAFinalBlockBeforeTheLastChunk) {
    const ThreeChunks chunks;
    std::string final_one = chunks.packed;
    final_one[0] = static_cast<char>(final_one[0] | 1);
    final_one[chunks.ends[0]] = static_cast<char>(final_one[chunks.ends[0]] | 1);
    EXPECT_EQ(chunks.Match(0, final_one) + chunks.Match(1, final_one), 0u);
}

TEST(MatchChunk, RefusesDataBehindTheLastChunkAndCutChunks) {
    const ThreeChunks chunks;
    EXPECT_EQ(chunks.Match(2, chunks.packed + '\0'), 0u);
    EXPECT_EQ(chunks.Match(2, chunks.packed.substr(0, chunks.packed.size() - 1)), 0u);
    EXPECT_EQ(chunks.Match(0, chunks.packed.substr(0, chunks.ends[0] / 2)), 0u);
    EXPECT_EQ(chunks.Match(0, ""), 0u);
}

TEST(MatchChunk, RefusesOtherData) {
    ThreeChunks chunks;
    chunks.data[2 * ThreeChunks::kSize - 1] ^= 1;
    EXPECT_EQ(chunks.Match(1, chunks.packed), 0u);
    EXPECT_EQ(chunks.Match(0, chunks.packed), chunks.ends[0]);
}

TEST(MatchChunk, RefusesBitsInThePadding) {
    const ThreeChunks chunks;
    std::string padded = chunks.packed;
    const auto last = static_cast<unsigned char>(padded.back());
    ASSERT_LT(last, 0x80) << "the stream ends with padding";
    padded.back() = static_cast<char>(last | 0x80);
    EXPECT_EQ(chunks.Match(2, padded), 0u);
}

TEST(Matches, AcceptsOnlyTheCompleteStreamOfTheSameBytes) {
    Deflater deflater(MakeCompressor(kTunedLevel));
    const std::string data = test::Prose(5000);
    Buffer out;
    ASSERT_TRUE(deflater.Compress(Bytes(data), data.size(), out));
    EXPECT_TRUE(deflater.Matches(Bytes(data), data.size(), out.data(), out.size()));
    EXPECT_FALSE(deflater.Matches(Bytes(data), data.size() - 1, out.data(), out.size()));
    EXPECT_FALSE(deflater.Matches(Bytes(data), data.size(), out.data(), out.size() - 1));
    EXPECT_FALSE(deflater.Matches(Bytes(data), data.size(), nullptr, 0));
    std::string other = data;
    other.back() ^= 1;
    EXPECT_FALSE(deflater.Matches(Bytes(other), other.size(), out.data(), out.size()));
    out.Append("x");
    EXPECT_FALSE(deflater.Matches(Bytes(data), data.size(), out.data(), out.size()));
}

TEST(Sampler, RecognizesRandomData) {
    Sampler sampler;
    for (const std::size_t size : {std::size_t{65536}, std::size_t{100000}, kChunkSize}) {
        const std::string noise = test::Noise(size);
        const std::string prose = test::Prose(size);
        EXPECT_TRUE(sampler.LooksIncompressible(Bytes(noise), size)) << size;
        EXPECT_FALSE(sampler.LooksIncompressible(Bytes(prose), size)) << size;
    }
}

TEST(Sampler, OneSampleThatShrinksIsEnough) {
    Sampler sampler;
    std::string data = test::Noise(kChunkSize);
    data.replace(data.size() - 4096, 4096, std::string(4096, 'a'));
    EXPECT_FALSE(sampler.LooksIncompressible(Bytes(data), data.size()));
}

TEST(Sampler, SmallDataIsNotSampled) {
    Sampler sampler;
    const std::string noise = test::Noise(65535);
    EXPECT_FALSE(sampler.LooksIncompressible(Bytes(noise), noise.size()));
    EXPECT_FALSE(sampler.LooksIncompressible(nullptr, 0));
}

TEST(Sampler, OnePartInAThousandIsWorthCompressing) {
    Sampler sampler;
    std::string data = test::Noise(Sampler::kSampleSize);
    EXPECT_TRUE(sampler.GainsNothing(Bytes(data), data.size()));
    data.replace(data.size() - 200, 200, std::string(200, 'a'));
    EXPECT_FALSE(sampler.GainsNothing(Bytes(data), data.size()));
}

TEST(Sampler, RepetitionOfEvenBytesIsFound) {
    Sampler sampler;
    std::string data = test::Noise(Sampler::kSampleSize);
    data.replace(8192, 4096, data.substr(0, 4096));
    EXPECT_FALSE(sampler.GainsNothing(Bytes(data), data.size()));
}

TEST(Crc, OfTwoRangesCombines) {
    const std::string data = test::Prose(5000);
    const std::uint32_t first = Crc32(Bytes(data), 1234);
    const std::uint32_t second = Crc32(Bytes(data) + 1234, data.size() - 1234);
    EXPECT_EQ(CombineCrc32(first, second, data.size() - 1234), Crc32(Bytes(data), data.size()));
    EXPECT_EQ(Crc32(nullptr, 0), 0u);
    const std::string digits = "123456789";
    EXPECT_EQ(Crc32(Bytes(digits), digits.size()), 0xCBF43926u);
}

}  // namespace
}  // namespace vantrel::zip
