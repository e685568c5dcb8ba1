// The data of an entry: located after its local header, decompressed, and checked by size and
// CRC-32. An object belongs to one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "zip/base/bytes.h"
#include "zip/records/record_parser.h"

struct libdeflate_decompressor;

namespace vantrel::zip {

// An entry of up to this many bytes, packed and unpacked ones together, is held in memory
// completely; larger ones stream, which takes twice the time. The maximum that one thread holds.
constexpr std::uint64_t kMaxHeld = std::uint64_t{32} << 20;

// Why an entry's data cannot be read at all, by its flags and method ("it is encrypted"); "" when
// it may be readable.
std::string UnreadableBecause(const StoredEntry& entry);

class EntryData {
  public:
    explicit EntryData(ByteSource& source);
    EntryData(const EntryData&) = delete;
    EntryData& operator=(const EntryData&) = delete;

    // Reads these bytes of the archive with one call, for the entries that lie in them.
    void Prefetch(std::uint64_t offset, std::size_t count);

    // From now on the sink of Read also gets the data before the point where an entry is damaged.
    void PassDamaged() { passes_damaged_ = true; }

    using Sink = std::function<void(const std::uint8_t* data, std::size_t count)>;

    // Passes all data of the entry to `sink`, in order; what `sink` throws is passed on. Raises 57
    // with a description for the user when data, size or CRC are not as the directory states, 52
    // for an entry that UnreadableBecause refuses;
    // stored or deflated data of up to kMaxHeld bytes has been checked before `sink` gets it.
    // Returns how the local header disagrees with the directory, "" when it does not.
    std::string Read(const StoredEntry& entry, const Sink& sink);

  private:
    struct FreeDecompressor {
        void operator()(libdeflate_decompressor* decompressor) const;
    };
    struct DataLocation {
        std::uint64_t offset = 0;
        std::string disagreement;
    };

    const std::uint8_t* View(std::uint64_t offset, std::size_t count, std::size_t unpacked = 0);
    void ReserveHeld(std::size_t count);
    DataLocation FindData(const StoredEntry& entry);
    void ReadUnsplit(const StoredEntry& entry, std::uint64_t data_at, const Sink& sink);
    void Stream(const StoredEntry& entry, std::uint64_t data_at, const Sink& sink);

    ByteSource& source_;
    std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor_;
    Buffer window_;  // of the archive, from window_at_ on
    std::uint64_t window_at_ = 0;
    Buffer held_;      // unpacked bytes, then packed ones that are not in the window
    Buffer unpacked_;  // of one step of a stream
    bool passes_damaged_ = false;
};

}  // namespace vantrel::zip
