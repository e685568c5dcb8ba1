// Tells data that is compressed already from data that is not, before time is spent on it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "zip/base/bytes.h"
#include "zip/deflate/deflate.h"

namespace vantrel::zip {

// Asks samples at the quickest level. An object belongs to one thread.
class Sampler {
  public:
    static constexpr std::size_t kSampleSize = 16 * 1024;  // bytes

    Sampler() : compressor_(MakeCompressor(1)) {}

    // Whether this sample gains less than one part in 1024.
    bool GainsNothing(const std::uint8_t* sample, std::size_t size);
    // Whether samples from all over the data, each of them, gain nothing. Less than four samples'
    // worth of data is never worth asking for: false.
    bool LooksIncompressible(const std::uint8_t* data, std::size_t size);
    // The same for `count` samples, two or more, of `size` bytes, which are more than one sample.
    // `read` gives the kSampleSize bytes at an offset, or null when they are not to be had: false.
    template <typename Read>
    bool SamplesGainNothing(std::uint64_t size, std::uint64_t count, Read&& read) {
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::uint8_t* const sample = read((size - kSampleSize) / (count - 1) * i);
            if (sample == nullptr || !GainsNothing(sample, kSampleSize)) {
                return false;
            }
        }
        return true;
    }

  private:
    std::unique_ptr<RawCompressor> compressor_;
    Buffer packed_;
};

}  // namespace vantrel::zip
