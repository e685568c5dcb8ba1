#include "zip/deflate/sampler.h"

#include <gtest/gtest.h>

#include "tests/zip/writer_fixture.h"

namespace vantrel::zip {
namespace {

const std::uint8_t* Bytes(const std::string& text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

TEST(Sampler, KnowsDataThatIsCompressedAlready) {
    Sampler sampler;
    for (const std::size_t size : {std::size_t{65536}, std::size_t{100000}, kChunkSize}) {
        const std::string noise = test::Noise(size);
        const std::string prose = test::Prose(size);
        EXPECT_TRUE(sampler.LooksIncompressible(Bytes(noise), size)) << size;
        EXPECT_FALSE(sampler.LooksIncompressible(Bytes(prose), size)) << size;
    }
}

TEST(Sampler, OneSampleThatShrinksIsEnoughToCompress) {
    Sampler sampler;
    std::string data = test::Noise(kChunkSize);
    data.replace(data.size() - 4096, 4096, std::string(4096, 'a'));
    EXPECT_FALSE(sampler.LooksIncompressible(Bytes(data), data.size()));
}

TEST(Sampler, SmallDataIsAlwaysTried) {
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

TEST(Sampler, WhatLooksEvenButRepeatsIsFound) {
    Sampler sampler;
    std::string data = test::Noise(Sampler::kSampleSize);
    data.replace(8192, 4096, data.substr(0, 4096));
    EXPECT_FALSE(sampler.GainsNothing(Bytes(data), data.size()));
}

}  // namespace
}  // namespace vantrel::zip
