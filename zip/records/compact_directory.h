// The directory of an archive that this program has written, read for a later run that reuses the
// compressed data: 24 bytes for each entry, without the names. Stricter than directory_reader.h: an
// archive that deviates from docs/zip-format.md is not used.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zip/base/bytes.h"
#include "zip/records/chunk_index.h"
#include "zip/records/format.h"

namespace vantrel::zip {

// Identifies the compressor behind an archive's data: the body of kCompressorField. Archives with
// the same mark hold the same compressed bytes for the same data.
std::string CompressorMark(std::uint16_t generation, int level, std::string_view library);

// An entry whose data was compressed at once, or stored.
struct UnsplitData {
    std::uint64_t header_at = 0;  // the local header
    std::uint32_t packed_size = 0;
    Method method = Method::kStored;
};

// An entry that was compressed in chunks.
struct ChunkedData {
    std::uint64_t header_at = 0;
    std::uint64_t size = 0;
    std::uint64_t packed_size = 0;
    ChunkIndex index;
};

// Read once; afterwards the const members may be called from any thread.
class CompactDirectory {
  public:
    // A directory of more entries is not read, which limits the memory.
    static constexpr std::uint64_t kMaxEntries = 1'500'000;

    // Reads the directory of the archive. Returns why it cannot be used, "" when it can: its mark
    // is `mark`, and every record is one that this program writes. Memory follows the bytes that
    // exist, not the numbers that the archive states. Raises what `source` raises.
    std::string Read(ByteSource& source, const std::string& mark, std::uint64_t chunk_size);

    // The first entry with data of this size and CRC-32, whatever its name.
    std::optional<UnsplitData> FindUnsplit(std::uint64_t size, std::uint32_t crc) const;
    // The entry of this name that was compressed in chunks; its record is read again from `source`,
    // which may have changed.
    std::optional<ChunkedData> FindChunked(const std::string& name, ByteSource& source) const;

    // Where the data of all entries ends.
    std::uint64_t Start() const { return start_; }

  private:
    // Of unsplit data: size, CRC-32, local header; of chunked data: a hash of the name in both
    // numbers, central record.
    struct Item {
        std::uint64_t offset = 0;
        std::uint32_t size = 0;
        std::uint32_t crc = 0;
        std::uint32_t packed_size = 0;
        std::uint16_t method = 0;
        bool chunked = false;
    };
    static_assert(sizeof(Item) <= 24);

    std::string Locate(ByteSource& source);
    std::string ReadRecords(ByteSource& source, const std::string& mark);
    bool Add(std::string_view record, std::uint64_t at);
    static bool Precedes(const Item& one, const Item& other);
    const Item* Find(const Item& wanted) const;

    std::uint64_t chunk_size_ = 0;
    std::uint64_t start_ = 0;
    std::uint64_t end_ = 0;
    std::uint64_t entries_ = 0;  // as stated
    std::vector<Item> items_;    // sorted
};

}  // namespace vantrel::zip
