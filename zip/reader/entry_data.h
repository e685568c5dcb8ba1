// The data of an entry: found behind its local header, decompressed, checked. An object belongs to
// one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "zip/base/buffer.h"
#include "zip/base/byte_source.h"
#include "zip/records/stored_entry.h"

namespace vantrel::zip {

// Up to this many bytes, packed and unpacked ones together, an entry is held in memory as a whole;
// larger ones stream, which takes twice the time. This is what a thread holds at most.
constexpr std::uint64_t kLargestHeld = std::uint64_t{32} << 20;

// Why an entry's data cannot be read at all, by its flags and method ("it is encrypted"); "" when
// it can be tried.
std::string UnreadableBecause(const StoredEntry& entry);

class EntryData {
  public:
    explicit EntryData(ByteSource& source);
    ~EntryData();
    EntryData(const EntryData&) = delete;
    EntryData& operator=(const EntryData&) = delete;

    // Reads these bytes of the archive at once, for the entries that lie in them.
    void Prefetch(std::uint64_t offset, std::size_t count);

    using Sink = std::function<void(const std::uint8_t* data, std::size_t count)>;

    // Hands all data of the entry to `sink`, in order; what `sink` throws comes out. Raises 57 with
    // words for the user when data, size or CRC are not as the directory states; stored or deflated
    // data of an entry that is held as a whole has been checked before `sink` sees it. Returns how
    // the local header disagrees with the directory, "" when it does not.
    std::string Read(const StoredEntry& entry, const Sink& sink);

  private:
    struct Inflaters;

    const std::uint8_t* View(std::uint64_t offset, std::size_t count, std::size_t unpacked = 0);
    void MakeRoom(std::size_t count);
    std::uint64_t FindData(const StoredEntry& entry, std::string& disagreement);
    void ReadWhole(const StoredEntry& entry, std::uint64_t data_at, const Sink& sink);
    void StreamStored(const StoredEntry& entry, std::uint64_t data_at, const Sink& sink);
    void StreamDeflated(const StoredEntry& entry, std::uint64_t data_at, const Sink& sink);
    void StreamDeflated64(const StoredEntry& entry, std::uint64_t data_at, const Sink& sink);

    ByteSource& source_;
    std::unique_ptr<Inflaters> inflaters_;
    Buffer window_;  // of the archive, from window_at_ on
    std::uint64_t window_at_ = 0;
    Buffer held_;  // unpacked bytes, and behind them packed ones that are not in the window
};

}  // namespace vantrel::zip
