// Whether the data behind a local header is intact, found without the directory. An object belongs
// to one thread.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "zip/reader/entry_data.h"
#include "zip/reader/record_scanner.h"
#include "zip/records/record_parser.h"

namespace vantrel::zip {

struct ProbeResult {
    std::string why;        // the data cannot be restored, for the user; "" when it is intact
    std::uint64_t end = 0;  // past the data and its descriptor; damaged: as stated, 0 if unknown

    bool IsIntact() const { return why.empty(); }
};

// What a descriptor states of an entry's data, or what was measured.
struct DataNumbers {
    std::uint32_t crc = 0;
    std::uint64_t packed_size = 0;
    std::uint64_t size = 0;
    bool operator==(const DataNumbers&) const = default;
};

class EntryProbe {
  public:
    // `check_stop` is called often, and may throw.
    EntryProbe(ByteSource& source, HeldMemory& memory, std::function<void()> check_stop);

    // Decompresses the data of `record` and compares it with the numbers of the header, or of the
    // descriptor that follows. Sizes that are unknown, or that one number contradicts, are found:
    // compressed data ends by itself, and stored data ends where a descriptor states its length.
    // The result stands in `record` when the data is intact. `lands`: a record follows the data as
    // the header states it; otherwise nothing is read once checks that failed have read the archive
    // 8 times.
    ProbeResult Check(LocalRecord& record, bool lands);

  private:
    bool IsAffordable(std::uint64_t at);
    bool CheckAsStated(LocalRecord& record);
    void CheckStored(LocalRecord& record);
    void CheckStream(LocalRecord& record);
    bool FindStoredEnd(LocalRecord& record);
    bool FindBareDescriptor(LocalRecord& record);
    void MeasureStored(std::uint64_t at, std::uint64_t count, DataNumbers& data);
    DataNumbers MeasureStream(const LocalRecord& record);
    std::uint64_t DescriptorLength(std::uint64_t at, const DataNumbers& data);
    void Take(LocalRecord& record, const DataNumbers& data);

    ByteSource& source_;
    std::function<void()> check_stop_;
    EntryData data_;
    RecordScanner scanner_;  // of the ends of stored data
    Buffer packed_;
    Buffer scratch_;
    std::uint64_t cost_ = 0;         // of the current check
    std::uint64_t failed_cost_ = 0;  // of all that failed; decompressed bytes count a sixteenth
    std::uint64_t end_ = 0;          // of the current entry
};

}  // namespace vantrel::zip
