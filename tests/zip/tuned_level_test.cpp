// The tuned level: its output decompresses to the input, and fits into the library's bound.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

#include "tests/zip/archive_reader.h"
#include "tests/zip/writer_fixture.h"
#include "zip/deflate/deflate.h"

namespace vantrel::zip {
namespace {

// Limits in bytes, as in zip/deflate/libdeflate/tuned_state.inc.
constexpr std::size_t kSmall = 2048;
constexpr std::size_t kUnit = 4096;
constexpr std::size_t kWindow = std::size_t{1} << 20;

class TunedLevel : public ::testing::Test {
  protected:
    // Compresses into `capacity` bytes, followed by guard bytes. Returns "" when it does not fit.
    std::string Compressed(const std::string& data, std::size_t capacity, std::size_t history = 0) {
        constexpr std::size_t kGuard = 64;
        std::string out(capacity + kGuard, '\x5A');
        const std::size_t size = compressor_->CompressAfter(
            history, reinterpret_cast<const std::uint8_t*>(data.data()) + history,
            data.size() - history, reinterpret_cast<std::uint8_t*>(out.data()), capacity);
        EXPECT_LE(size, capacity);
        EXPECT_EQ(out.substr(capacity), std::string(kGuard, '\x5A')) << "capacity " << capacity;
        return out.substr(0, size);
    }
    // Returns the compressed size. The library's bound must always suffice.
    std::size_t RoundTrip(const std::string& data) {
        const std::string packed = Compressed(data, compressor_->Bound(data.size()));
        EXPECT_FALSE(packed.empty()) << "size " << data.size();
        EXPECT_TRUE(packed.empty() || test::InflateAll(packed) == data) << "size " << data.size();
        return packed.size();
    }
    // The compressed size of `data` without its first `history` bytes, which are the history.
    std::size_t RoundTripAfter(std::size_t history, const std::string& data) {
        const std::size_t bound = compressor_->Bound(data.size() - history);
        const std::string packed = Compressed(data, bound, history);
        EXPECT_FALSE(packed.empty()) << "history " << history << " size " << data.size();
        EXPECT_TRUE(packed.empty() ||
                    test::InflateAfter(data.substr(0, history), packed) == data.substr(history))
            << "history " << history << " size " << data.size();
        return packed.size();
    }

    std::unique_ptr<RawCompressor> compressor_ = MakeCompressor(kTunedLevel);
};

// Random bytes of `letters` different values.
std::string Letters(std::size_t size, std::uint64_t letters, std::uint64_t seed = 1) {
    std::mt19937_64 random(seed);
    std::string data(size, 'a');
    for (char& letter : data) {
        letter = static_cast<char>('a' + random() % letters);
    }
    return data;
}

// The ruler sequence: every prefix is repeated, each time a little longer: abacabadabacaba...
std::string Ruler(std::size_t size) {
    std::string data(size, 'a');
    for (std::size_t i = 0; i < size; ++i) {
        for (std::size_t rest = i + 1; rest % 2 == 0; rest /= 2) {
            ++data[i];
        }
    }
    return data;
}

TEST_F(TunedLevel, ShortInputs) {
    for (std::size_t size = 0; size <= 300; ++size) {
        RoundTrip(std::string(size, 'x'));
        RoundTrip(test::Prose(size));
        RoundTrip(test::Noise(size));
        RoundTrip(Letters(size, 2));
    }
}

TEST_F(TunedLevel, SizesAroundUnitsAndWindows) {
    for (const std::size_t middle : {kSmall, kUnit, kUnit + 258, 2 * kUnit, std::size_t{5000},
                                     std::size_t{300'000}, kWindow, 2 * kWindow}) {
        for (std::size_t size = middle - 2; size <= middle + 2; ++size) {
            RoundTrip(test::Prose(size));
            RoundTrip(test::Noise(size));
        }
    }
}

TEST_F(TunedLevel, EqualBytesNeedFewBytes) {
    for (const std::size_t size :
         {kSmall, kUnit - 1, kUnit, kUnit + 1, 3 * kUnit + 259, kWindow + 1}) {
        EXPECT_LT(RoundTrip(std::string(size, '\0')), 30 + size / 500);
    }
}

// The format allows 32,768; the library's chains end one before.
TEST_F(TunedLevel, MatchesAtTheMaximumDistance) {
    const std::string phrase = test::Noise(2000);
    for (std::size_t distance = 32'768 - 2; distance <= 32'768 + 2; ++distance) {
        const std::string data =
            phrase + test::Noise(distance - phrase.size(), 2) + phrase + test::Noise(5000, 3);
        const std::size_t saved = data.size() + 50 - RoundTrip(data);
        EXPECT_EQ(saved > phrase.size() / 2, distance < 32'768) << distance;
    }
}

TEST_F(TunedLevel, HistoriesAndInputsOfAllSizes) {
    for (const std::size_t history : {std::size_t{1}, std::size_t{4}, std::size_t{5}, kSmall,
                                      kUnit + 1, kHistory - 1, kHistory}) {
        for (const std::size_t size :
             {std::size_t{0}, std::size_t{1}, std::size_t{27}, std::size_t{28}, kSmall, kUnit,
              kUnit + 1, kHistory, kWindow}) {
            RoundTripAfter(history, test::Prose(history + size));
            RoundTripAfter(history, test::Noise(history + size));
            RoundTripAfter(history, Letters(history + size, 3));
        }
    }
}

TEST_F(TunedLevel, MatchesAtTheMaximumDistanceIntoTheHistory) {
    const std::string phrase = test::Noise(2000);
    const std::string rest = test::Noise(5000, 3);
    for (std::size_t distance = 32'768 - 2; distance <= 32'768; ++distance) {
        const std::string between = test::Noise(distance - phrase.size(), 2);
        const std::string data = phrase + between + phrase + rest;
        const std::size_t saved = phrase.size() + rest.size() + 50 - RoundTripAfter(distance, data);
        EXPECT_EQ(saved > phrase.size() / 2, distance < 32'768) << distance;
    }
}

// The compressor keeps state between inputs; the history must not be part of it.
TEST_F(TunedLevel, AHistoryIsUsedForOneInputOnly) {
    const std::string data = test::Prose(3 * kUnit);
    const std::string alone = Compressed(data, compressor_->Bound(data.size()));
    RoundTripAfter(kUnit, test::Prose(2 * kUnit));
    EXPECT_EQ(Compressed(data, compressor_->Bound(data.size())), alone);
}

TEST_F(TunedLevel, MatchesAcrossUnitsAndWindows) {
    const std::string phrase = test::Noise(258);
    for (const std::size_t seam : {kUnit, 2 * kUnit, kWindow}) {
        for (std::size_t before = 0; before <= phrase.size(); before += 43) {
            std::string data = test::Noise(seam - before, 7);
            data.replace(seam - before - phrase.size() - 9, phrase.size(), phrase);
            data += phrase;
            data += test::Prose(kUnit);
            RoundTrip(data);
        }
    }
}

// A better match at each next position, across the end of a unit: the parser must stop at the
// limit.
TEST_F(TunedLevel, EverBetterMatchesAcrossTheEndOfAUnit) {
    constexpr std::size_t kChain = 180;
    const std::string chain = test::Noise(2 * kChain + 4, 11);
    std::string pieces;
    for (std::size_t i = 0; i < kChain; ++i) {
        pieces += chain.substr(i, 4 + i);
        pieces += static_cast<char>(chain[2 * i + 4] + 1);  // no longer match
    }
    for (std::size_t gap = 0; gap < kUnit; gap += kChain / 4) {
        RoundTrip(pieces + test::Noise(gap, 12) + chain + test::Noise(2 * kUnit, 13));
    }
}

TEST_F(TunedLevel, MoreMatchesThanTheCandidateArrayHolds) {
    for (const unsigned letters : {2U, 3U, 4U}) {
        RoundTrip(Letters(2 * kWindow, letters));
    }
    RoundTrip(Ruler(kWindow + kUnit));
}

TEST_F(TunedLevel, BlocksOfAllKindsSideBySide) {
    std::mt19937 random(20261121);
    for (int round = 0; round < 40; ++round) {
        std::string data;
        for (int part = 0; part < 12; ++part) {
            const std::size_t size = random() % (1u << (random() % 17));
            switch (random() % 5) {
                case 0:
                    data += std::string(size, static_cast<char>(random()));
                    break;
                case 1:
                    data += test::Prose(size, random());
                    break;
                case 2:
                    data += test::Noise(size, random());
                    break;
                case 3:
                    data += Letters(size, 2 + random() % 60, random());
                    break;
                default:
                    data += data.substr(data.size() - std::min(data.size(), size));
            }
        }
        RoundTrip(data);
    }
}

// Bytes of similar frequencies: with smoothing they would become larger than stored.
TEST_F(TunedLevel, SmallNoiseIsNeverLargerThanStored) {
    for (std::size_t seed = 1; seed <= 300; ++seed) {
        const std::size_t size = 30 + seed * 13;
        EXPECT_LE(RoundTrip(test::Noise(size, seed)), size + 5);
    }
}

TEST_F(TunedLevel, ReturnsZeroWhenTheCapacityIsTooSmall) {
    for (const std::string& data :
         {test::Prose(1000), test::Noise(600), Letters(1500, 250), std::string(3000, 'x'),
          test::Prose(2 * kUnit), test::Noise(kUnit + 900) + test::Prose(kUnit)}) {
        const std::size_t needed = RoundTrip(data);
        const std::size_t step = 1 + needed / 400;
        for (std::size_t capacity = 0; capacity < needed; capacity += step) {
            EXPECT_TRUE(Compressed(data, capacity).empty()) << capacity << " of " << needed;
        }
        // Close to the exact size the library may give up; any output must be correct.
        for (std::size_t capacity = needed; capacity <= needed + 16; ++capacity) {
            const std::string packed = Compressed(data, capacity);
            EXPECT_TRUE(packed.empty() || test::InflateAll(packed) == data);
        }
    }
}

// Earlier inputs must not influence the output.
TEST_F(TunedLevel, EqualInputsGiveEqualOutputs) {
    const std::string long_one = test::Prose(3 * kUnit);
    const std::string short_one = test::Prose(kSmall);
    const std::string first_long = Compressed(long_one, compressor_->Bound(long_one.size()));
    const std::string first_short = Compressed(short_one, compressor_->Bound(short_one.size()));
    RoundTrip(Letters(kWindow, 3));
    EXPECT_EQ(Compressed(long_one, compressor_->Bound(long_one.size())), first_long);
    EXPECT_EQ(Compressed(short_one, compressor_->Bound(short_one.size())), first_short);
}

}  // namespace
}  // namespace vantrel::zip
