// The fastest compressor with a cache of one chunk, which halves the time for gigabytes of equal
// chunks.
#pragma once

#include <algorithm>
#include <memory>
#include <string>

#include "zip/deflate/deflate.h"

namespace vantrel::test {

class RememberingCompressor : public zip::RawCompressor {
  public:
    std::size_t Compress(const std::uint8_t* in, std::size_t size, std::uint8_t* out,
                         std::size_t capacity) override {
        const std::string_view chunk(reinterpret_cast<const char*>(in), size);
        if (chunk != chunk_ || packed_.size() > capacity) {
            chunk_ = chunk;
            packed_.resize(Bound(size));
            packed_.resize(compressor_->Compress(in, size, Bytes(), packed_.size()));
            if (packed_.size() > capacity) {
                return 0;
            }
        }
        std::copy(packed_.begin(), packed_.end(), out);
        return packed_.size();
    }
    std::size_t Bound(std::size_t size) override { return compressor_->Bound(size); }

  private:
    std::uint8_t* Bytes() { return reinterpret_cast<std::uint8_t*>(packed_.data()); }

    std::unique_ptr<zip::RawCompressor> compressor_ = zip::MakeCompressor(1);
    std::string chunk_;
    std::string packed_;
};

}  // namespace vantrel::test
