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

class EntryProbe {
  public:
    // `size` is that of the archive. `check_stop` is called often, and may throw.
    EntryProbe(ByteSource& source, HeldMemory& memory, std::uint64_t size,
               std::function<void()> check_stop);

    // Decompresses the data of `record` and compares it with the numbers of the header, or of the
    // descriptor that follows. Sizes that are unknown, or that one number contradicts, are found:
    // compressed data ends by itself, and stored data ends where a descriptor states its length.
    // The result stands in `record` when the data is intact. `lands`: a record follows the data as
    // the header states it.
    ProbeResult Check(LocalRecord& record, bool lands);

    // What all checks that failed have cost so far, in bytes; decompressed ones count a sixteenth.
    std::uint64_t FailedCost() const { return failed_cost_; }

  private:
    struct Measured {
        std::uint64_t packed_size = 0;
        std::uint64_t size = 0;
        std::uint32_t crc = 0;
    };

    bool CheckAsStated(LocalRecord& record);
    void CheckStored(LocalRecord& record);
    void CheckStream(LocalRecord& record);
    bool FindStoredEnd(LocalRecord& record);
    bool FindBareDescriptor(LocalRecord& record);
    void MeasureStored(std::uint64_t at, std::uint64_t count, Measured& data);
    Measured MeasureStream(const LocalRecord& record);
    std::uint64_t DescriptorLength(std::uint64_t at, const Measured& data);
    void Take(LocalRecord& record, const Measured& data);

    ByteSource& source_;
    const std::uint64_t size_;
    std::function<void()> check_stop_;
    EntryData data_;
    RecordScanner scanner_;  // of the ends of stored data
    Buffer packed_;
    Buffer scratch_;
    std::uint64_t cost_ = 0;  // of the current check
    std::uint64_t failed_cost_ = 0;
    std::uint64_t end_ = 0;  // of the current entry
};

}  // namespace vantrel::zip
