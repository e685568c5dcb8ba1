// The index of the chunks of a file that was compressed in chunks: the extra field kChunkIndexField
// of its central record (docs/zip-format.md). With it a later run finds the compressed data of each
// chunk without decompressing those before it. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel::zip {

// One chunk, or several in direct succession.
struct ChunkIndexItem {
    std::uint64_t packed_size = 0;  // bytes of all of them
    // CRC-32 of the first chunk's data and the bytes before it that its matches may refer to.
    std::uint32_t check = 0;

    bool operator==(const ChunkIndexItem&) const = default;
};

struct ChunkIndex {
    std::uint64_t chunks_in_item = 1;  // a power of two; the last item may have fewer
    std::vector<ChunkIndexItem> items;
};

// Items for which a central record with a name of `name_length` bytes has space.
std::size_t MaxChunkIndexItems(std::size_t name_length);

// Collects the chunks of one file, in their order. When there are more than `max_items`, two
// neighbouring items become one, so that memory is limited.
class ChunkIndexBuilder {
  public:
    explicit ChunkIndexBuilder(std::size_t max_items) : max_items_(max_items) {}

    void Add(const ChunkIndexItem& chunk);
    // The body of the extra field; "" without chunks, or when a number does not fit.
    std::string Body() const;

  private:
    void JoinNeighbours();

    std::size_t max_items_;
    std::uint64_t chunks_ = 0;
    ChunkIndex index_;
};

// Nothing when `body` is no index, or not one of `chunks` chunks with `packed_size` bytes in all.
std::optional<ChunkIndex> ParseChunkIndex(std::string_view body, std::uint64_t chunks,
                                          std::uint64_t packed_size);

}  // namespace vantrel::zip
