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

// Compresses `data` in parts of `chunk` bytes and joins them. Each may refer to so many bytes
// before.
std::string Joined(int level, const std::string& data, std::size_t chunk,
                   std::size_t history = kHistory) {
    Deflater deflater(MakeCompressor(level));
    Buffer out;
    std::size_t at = 0;
    do {
        const std::size_t count = std::min(chunk, data.size() - at);
        deflater.Part(Bytes(data) + at, count, at + count == data.size(), out,
                      std::min(at, history));
        at += count;
    } while (at < data.size());
    return std::string(out.View());
}

// Data of a random kind: runs, words, noise, or a mixture.
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

TEST(Deflater, JoinedPartsAreOneStreamForRandomDataLevelsAndChunkSizes) {
    std::mt19937 random(20261115);
    for (int round = 0; round < 600; ++round) {
        const std::size_t size = random() % (1u << (random() % 18));
        const std::size_t chunk = 1 + random() % (size + 1);
        const std::string data = RandomData(random, size);
        const int level = round % 2 == 0 ? kTunedLevel : 1 + static_cast<int>(random() % 9);
        const std::size_t history = random() % (kHistory + 1);
        // Very short chunks make very many parts.
        const std::size_t step = std::max<std::size_t>(chunk, size / 50 + 1);
        ASSERT_EQ(test::InflateAll(Joined(level, data, step, history)), data)
            << "level " << level << " size " << size << " chunk " << step << " history " << history;
    }
}

// Only the tuned level uses the history.
#ifndef VANTREL_SYSTEM_LIBDEFLATE
TEST(Deflater, APartRefersToWhatStandsBeforeIt) {
    const std::string noise = test::Noise(20'000);
    const std::string twice = noise + noise;
    const std::string alone = Joined(kTunedLevel, twice, noise.size(), 0);
    const std::string after = Joined(kTunedLevel, twice, noise.size());
    EXPECT_GT(alone.size(), twice.size());
    EXPECT_LT(after.size(), noise.size() + 500);
    EXPECT_EQ(test::InflateAll(after), twice);
}

TEST(Deflater, APartRefersToNoMoreThanItIsTold) {
    const std::string noise = test::Noise(3000);
    const std::string twice = noise + noise;
    const std::string half = Joined(kTunedLevel, twice, noise.size(), noise.size() / 2);
    EXPECT_GT(half.size(), noise.size() + noise.size() / 2);
    EXPECT_LT(half.size(), noise.size() + noise.size() / 2 + 200);
    EXPECT_EQ(test::InflateAll(half), twice);
}

TEST(Deflater, APartAfterStoredOnesRefersToThem) {
    const std::string noise = test::Noise(20'000);
    const std::string twice = noise + noise;
    Deflater deflater(MakeCompressor(kTunedLevel));
    Buffer out;
    StorePart(Bytes(noise), noise.size(), false, out);
    deflater.Part(Bytes(twice) + noise.size(), noise.size(), true, out, noise.size());
    EXPECT_LT(out.size(), noise.size() + 500);
    EXPECT_EQ(test::InflateAll(std::string(out.View())), twice);
}
#endif

TEST(Deflater, JoinsPartsOfOneByte) {
    const std::string data = test::Prose(300);
    EXPECT_EQ(test::InflateAll(Joined(9, data, 1)), data);
}

TEST(Deflater, JoinsFullChunks) {
    const std::string data = test::Prose(2 * kChunkSize + 77) + test::Noise(kChunkSize + 5);
    EXPECT_EQ(test::InflateAll(Joined(9, data, kChunkSize)), data);
}

TEST(Deflater, EmptyLastPartEndsTheStream) {
    Deflater deflater(MakeCompressor(9));
    const std::string data = test::Prose(1000);
    Buffer out;
    deflater.Part(Bytes(data), data.size(), false, out);
    deflater.Part(nullptr, 0, true, out);
    EXPECT_EQ(test::InflateAll(std::string(out.View())), data);
}

TEST(StorePart, JoinsWithCompressedParts) {
    for (const std::size_t size : {1U, 65535U, 65536U, 200000U}) {
        const std::string prose = test::Prose(1000);
        const std::string noise = test::Noise(size);
        Deflater deflater(MakeCompressor(9));
        Buffer out;
        deflater.Part(Bytes(prose), prose.size(), false, out);
        StorePart(Bytes(noise), noise.size(), false, out);
        deflater.Part(Bytes(prose), prose.size(), false, out);
        StorePart(Bytes(noise), noise.size(), true, out);
        EXPECT_EQ(test::InflateAll(std::string(out.View())), prose + noise + prose + noise);
    }
}

TEST(StorePart, CostsFiveBytesABlock) {
    const std::string noise = test::Noise(65536);
    Buffer out;
    StorePart(Bytes(noise), noise.size(), true, out);
    EXPECT_EQ(out.size(), noise.size() + 10);
}

TEST(StorePart, NothingIsAnEmptyBlock) {
    Buffer out;
    StorePart(nullptr, 0, true, out);
    EXPECT_EQ(std::string(out.View()), std::string("\x01\0\0\xFF\xFF", 5));
    EXPECT_EQ(test::InflateAll(std::string(out.View())), "");
}

TEST(Deflater, OnlyTheLastPartIsFinal) {
    Deflater deflater(MakeCompressor(9));
    const std::string data = test::Prose(1000);
    Buffer out;
    deflater.Part(Bytes(data), data.size(), false, out);
    EXPECT_THROW(test::InflateAll(std::string(out.View())), std::runtime_error);
}

TEST(Deflater, WholeShrinksOrSaysNo) {
    Deflater deflater(MakeCompressor(9));
    const std::string prose = test::Prose(50000);
    Buffer out;
    ASSERT_TRUE(deflater.Whole(Bytes(prose), prose.size(), out));
    EXPECT_LT(out.size(), prose.size());
    EXPECT_EQ(test::InflateAll(std::string(out.View())), prose);
    const std::string noise = test::Noise(50000);
    const std::size_t before = out.size();
    EXPECT_FALSE(deflater.Whole(Bytes(noise), noise.size(), out));
    EXPECT_EQ(out.size(), before);
    EXPECT_FALSE(deflater.Whole(nullptr, 0, out));
}

// Compresses rightly, then damages one byte.
class DamagingCompressor : public RawCompressor {
  public:
    explicit DamagingCompressor(std::size_t byte) : byte_(byte) {}
    std::size_t Compress(const std::uint8_t* in, std::size_t size, std::uint8_t* out,
                         std::size_t room) override {
        const std::size_t count = right_->Compress(in, size, out, room);
        out[byte_ % count] ^= 0x10;
        return count;
    }
    std::size_t Bound(std::size_t size) override { return right_->Bound(size); }

  private:
    std::unique_ptr<RawCompressor> right_ = MakeCompressor(6);
    std::size_t byte_;
};

TEST(Deflater, ADamagedByteNeverPassesTheProof) {
    const std::string data = test::Prose(2000);
    for (std::size_t byte = 0; byte < 400; ++byte) {
        Deflater deflater(std::make_unique<DamagingCompressor>(byte));
        Buffer out;
        out.Append("kept");
        // A damaged bit may by chance mean the same bytes; then the proof is right to pass it.
        try {
            deflater.Part(Bytes(data), data.size(), true, out);
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
    EXPECT_THROW(deflater.Part(Bytes(data), data.size(), true, out), Error);
    EXPECT_THROW(deflater.Whole(Bytes(data), data.size(), out), Error);
    EXPECT_TRUE(out.empty());
}

// Gives a right stream with something behind it.
class TrailingCompressor : public RawCompressor {
  public:
    std::size_t Compress(const std::uint8_t* in, std::size_t size, std::uint8_t* out,
                         std::size_t room) override {
        const std::size_t count = right_->Compress(in, size, out, room - 1);
        out[count] = 0;
        return count + 1;
    }
    std::size_t Bound(std::size_t size) override { return right_->Bound(size) + 1; }

  private:
    std::unique_ptr<RawCompressor> right_ = MakeCompressor(6);
};

TEST(Deflater, UnusedInputIsAnError) {
    const std::string data = test::Prose(2000);
    Deflater deflater(std::make_unique<TrailingCompressor>());
    Buffer out;
    EXPECT_THROW(deflater.Part(Bytes(data), data.size(), true, out), Error);
    EXPECT_THROW(deflater.Whole(Bytes(data), data.size(), out), Error);
}

TEST(Crc, OfPartsCombinesToTheWhole) {
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
