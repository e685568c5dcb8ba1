// A long list of small records, kept compressed in memory: the files to store and the central
// directory. A million entries take about 50 MB instead of 250.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "zip/deflate/deflate.h"

namespace vantrel::zip {

// First in, first out: written completely, then read once. Records are collected in blocks, which
// are compressed at a quick level. Used by one thread at a time.
class RecordList {
  public:
    // `record` may be empty or longer than a block; less than 4 GiB. Not after the first Take.
    void Append(std::string_view record);
    // Removes and returns the first record; nothing when the list is empty. Raises 57 when a block
    // does not decompress to the bytes that were appended (a memory fault).
    std::optional<std::string> Take();

    // Records appended so far, taken ones included.
    std::uint64_t Count() const { return count_; }

  private:
    struct Block {
        std::string packed;
        std::size_t raw_size = 0;
        std::uint32_t crc = 0;
    };

    void PackTail();
    bool OpenNextBlock();

    // Both null as long as there is no block.
    std::unique_ptr<RawCompressor> compressor_;
    Decompressor decompressor_;
    std::deque<Block> blocks_;
    std::string tail_;     // appended records, not yet compressed
    std::string current_;  // the block that is being read
    std::size_t current_position_ = 0;
    std::uint64_t count_ = 0;
};

}  // namespace vantrel::zip
