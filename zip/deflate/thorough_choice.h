// Tells for which data the most thorough compression pays: a cheap look at a sample, then a trial
// with it. Its answer depends on the data alone. An object belongs to one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "zip/base/bytes.h"
#include "zip/deflate/deflate.h"

namespace vantrel::zip {

class ThoroughChoice {
  public:
    // The compressor to take for this data: `usual`, or the thorough one, which is made when it is
    // needed first and takes 10 MB.
    RawCompressor& For(const std::uint8_t* data, std::size_t size, RawCompressor& usual);

  private:
    bool Pays(const std::uint8_t* sample);

    std::unique_ptr<RawCompressor> plain_;
    std::unique_ptr<RawCompressor> thorough_;
    Buffer packed_;
};

}  // namespace vantrel::zip
