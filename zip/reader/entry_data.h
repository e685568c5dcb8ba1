// The data of an entry: located after its local header, decompressed, and checked by size and
// CRC-32. An object belongs to one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "zip/base/bytes.h"
#include "zip/deflate/deflate.h"
#include "zip/records/record_parser.h"

namespace vantrel::zip {

// An entry of fewer bytes than these, packed and unpacked ones together, can be held in memory
// completely; others stream, which takes twice the time.
constexpr std::size_t kMaxHeld = std::size_t{28} << 20;

// The memory in which all threads of an extraction together hold entries. Buffers are kept for
// later entries, because touching fresh pages costs as much as holding an entry saves. May be used
// by several threads at once.
class HeldMemory {
  public:
    // Bytes, whatever the number of threads.
    static constexpr std::size_t kLimit = std::size_t{64} << 20;
    // Of these bytes, those that the list and the plan of many entries leave (kOfEachEntry).
    static constexpr std::size_t kLimitWithEntries = std::size_t{108} << 20;
    static constexpr std::size_t kOfEachEntry = 104;
    // What an EntryData has of its own, for small entries and for streams.
    static constexpr std::size_t kOfEachThread = std::size_t{1} << 20;

    // For an archive of so many entries.
    explicit HeldMemory(int threads, std::size_t entries = 0);

    struct GiveBack {
        HeldMemory* memory;
        void operator()(Buffer* buffer) const;
    };
    using Loan = std::unique_ptr<Buffer, GiveBack>;
    // A buffer with a capacity of `size` bytes, at most kMaxHeld; null while other threads hold too
    // much.
    Loan TryBorrow(std::size_t size);

  private:
    std::mutex mutex_;  // guards the members below
    std::size_t left_;  // bytes in no buffer
    std::vector<std::unique_ptr<Buffer>> free_;
};

// Why an entry's data cannot be read at all, by its flags and method ("it is encrypted"); "" when
// it may be readable.
std::string UnreadableBecause(const StoredEntry& entry);

class EntryData {
  public:
    // Both are borrowed.
    EntryData(ByteSource& source, HeldMemory& memory);
    EntryData(const EntryData&) = delete;
    EntryData& operator=(const EntryData&) = delete;

    // Reads these bytes of the archive with one call, for the entries that lie in them.
    void Prefetch(std::uint64_t offset, std::size_t count);

    // From now on the sink of Read also gets the data before the point where an entry is damaged.
    void PassDamaged() { passes_damaged_ = true; }

    using Sink = std::function<void(const std::uint8_t* data, std::size_t count)>;

    // Passes all data of the entry to `sink`, in order; what `sink` throws is passed on. Raises 57
    // with a description for the user when data, size or CRC are not as the directory states, 52
    // for an entry that UnreadableBecause refuses. An entry that is held in memory has been checked
    // before `sink` gets it.
    // Returns how the local header disagrees with the directory, "" when it does not.
    std::string Read(const StoredEntry& entry, const Sink& sink);

  private:
    struct DataLocation {
        std::uint64_t offset = 0;
        std::string disagreement;
    };

    const std::uint8_t* View(std::uint64_t offset, std::size_t count, std::uint8_t* space);
    DataLocation FindData(const StoredEntry& entry);
    bool TryHold(const StoredEntry& entry, std::uint64_t data_at, const Sink& sink);
    void ReadUnsplit(const StoredEntry& entry, std::uint64_t data_at, std::uint8_t* space,
                     const Sink& sink);
    void Stream(const StoredEntry& entry, std::uint64_t data_at, const Sink& sink);

    ByteSource& source_;
    HeldMemory& memory_;
    Decompressor decompressor_ = MakeDecompressor();
    Buffer window_;  // of the archive, from window_at_ on
    std::uint64_t window_at_ = 0;
    Buffer held_;      // a small entry, or the packed bytes of one step of a stream
    Buffer unpacked_;  // of one step of a stream
    bool passes_damaged_ = false;
};

}  // namespace vantrel::zip
