// Sequential reading of the archive between two offsets, for records whose length their beginning
// states. Used by one thread.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "zip/base/bytes.h"

namespace vantrel::zip {

class BufferedRange {
  public:
    BufferedRange(ByteSource& source, std::uint64_t start, std::uint64_t end)
        : source_(source), next_(start), end_(end) {}

    // The next `count` bytes, fewer at the end; valid until the next call.
    std::string_view Peek(std::size_t count) {
        if (buffer_.size() - position_ < count) {
            Refill();
        }
        return std::string_view(buffer_).substr(position_, count);
    }
    void Skip(std::size_t count) { position_ += count; }

  private:
    static constexpr std::size_t kReadSize = 256 * 1024;  // holds the longest record

    void Refill() {
        buffer_.erase(0, position_);
        position_ = 0;
        const auto wanted = static_cast<std::size_t>(
            std::min<std::uint64_t>(end_ - next_, kReadSize - buffer_.size()));
        const std::size_t kept = buffer_.size();
        buffer_.resize(kept + wanted);
        buffer_.resize(kept + source_.ReadAt(next_, buffer_.data() + kept, wanted));
        next_ += wanted;
    }

    ByteSource& source_;
    std::uint64_t next_;
    std::uint64_t end_;
    std::string buffer_;
    std::size_t position_ = 0;
};

}  // namespace vantrel::zip
