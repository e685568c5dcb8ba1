#include "zip/deflate/sampler.h"

#include <algorithm>
#include <array>

namespace vantrel::zip {

namespace {

// Whether some bytes are so much more frequent than others that no compressor needs to be asked:
// the sum of the squares of their counts is twice what it is on the average in noise.
bool LooksUneven(const std::uint8_t* data, std::size_t size) {
    std::array<std::uint64_t, 256> counts{};
    for (std::size_t i = 0; i < size; ++i) {
        ++counts[data[i]];
    }
    std::uint64_t squares = 0;
    for (const std::uint64_t count : counts) {
        squares += count * count;
    }
    return squares > 2 * (size + size * size / counts.size());
}

}  // namespace

bool Sampler::GainsNothing(const std::uint8_t* sample, std::size_t size) {
    constexpr std::size_t kGlance = 4096;
    if (LooksUneven(sample, std::min(size, kGlance))) {
        return false;
    }
    packed_.Resize(size);
    // Less than one part in 1024 is not worth its time; the quickest level finds nearly all that
    // the others would find in data that is compressed already.
    return compressor_->Compress(sample, size, packed_.data(), size - size / 1024) == 0;
}

bool Sampler::LooksIncompressible(const std::uint8_t* data, std::size_t size) {
    // Below this the samples would cost as much as they save, and would be too short to tell.
    constexpr std::size_t kSmallest = 4 * kSampleSize;
    // At 128 KB the archive of compressed files was larger than that of `zip -9`; at 64 KB it took
    // a fifth longer.
    constexpr std::size_t kSpacing = 96 * 1024;
    if (size < kSmallest) {
        return false;
    }
    return SamplesGainNothing(size, 2 + size / kSpacing,
                              [data](std::uint64_t offset) { return data + offset; });
}

}  // namespace vantrel::zip
