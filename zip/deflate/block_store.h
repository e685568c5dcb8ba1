// A long list of small records that is written once and read once, in order, and kept compressed in
// memory meanwhile: the files to store, and the central directory. A million entries then take
// about 50 MB instead of 250. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>

namespace vantrel::zip {

class BlockStore {
  public:
    BlockStore();
    ~BlockStore();
    BlockStore(BlockStore&&) noexcept;
    BlockStore& operator=(BlockStore&&) noexcept;

    void Append(std::string_view record);
    // Gives the first record that was not taken yet and forgets it; false when none is left. No
    // Append afterwards. Raises 57 when the memory does not hold what was put there.
    bool Take(std::string& record);

    std::uint64_t Count() const { return count_; }

  private:
    struct Block {
        std::string packed;
        std::size_t raw_size = 0;
        std::uint32_t crc = 0;
    };
    struct Codec;

    void PackTail();
    bool OpenNextBlock();

    std::unique_ptr<Codec> codec_;
    std::deque<Block> blocks_;
    std::string tail_;     // records not packed yet
    std::string current_;  // the block that is being read
    std::size_t current_position_ = 0;
    std::uint64_t count_ = 0;
};

}  // namespace vantrel::zip
