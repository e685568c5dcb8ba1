#include "zip/deflate/thorough_choice.h"

#include <algorithm>

namespace vantrel::zip {

namespace {

// The library's own level from which on it looks for the best way to say a piece of data instead of
// the first good one. Four to eight times the time of the usual level, and on the average 2 % less.
constexpr int kThoroughLevel = 10;

// What the trial compares it with: one that takes the first good way. The usual level would not do,
// because so little data as a sample is compressed by it with all the care that there is.
constexpr int kPlainLevel = 6;

// Measured on 1 GB in 69,000 files: where a fifth of the bytes are digits (character tables, fonts'
// maps, lists of code points) and a trial on 4 KB saves 11 %, the archive becomes 0.08 % smaller
// for 1 % of the time. Where it saves 7 %, the time is 8 % more for 0.05 % less. Asking more data
// costs more than it finds.
constexpr std::size_t kSampleSize = 4096;
constexpr std::size_t kSmallest = 2 * kSampleSize;
constexpr std::size_t kDigits = kSampleSize / 5;
constexpr std::size_t kPercentThatPays = 89;

bool IsDigit(std::uint8_t byte) { return byte >= '0' && byte <= '9'; }

}  // namespace

RawCompressor& ThoroughChoice::For(const std::uint8_t* data, std::size_t size,
                                   RawCompressor& usual) {
    if (size < kSmallest) {
        return usual;
    }
    const std::uint8_t* const sample = data + (size - kSampleSize) / 2;
    const auto digits =
        static_cast<std::size_t>(std::count_if(sample, sample + kSampleSize, IsDigit));
    return digits >= kDigits && Pays(sample) ? *thorough_ : usual;
}

bool ThoroughChoice::Pays(const std::uint8_t* sample) {
    if (!thorough_) {
        plain_ = MakeCompressor(kPlainLevel);
        thorough_ = MakeCompressor(kThoroughLevel);
    }
    packed_.Resize(std::max(plain_->Bound(kSampleSize), thorough_->Bound(kSampleSize)));
    const std::size_t by_plain =
        plain_->Compress(sample, kSampleSize, packed_.data(), packed_.size());
    const std::size_t by_thorough =
        thorough_->Compress(sample, kSampleSize, packed_.data(), packed_.size());
    return by_thorough * 100 <= by_plain * kPercentThatPays;
}

}  // namespace vantrel::zip
