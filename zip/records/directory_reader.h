// The central directory of an archive as a list. Bytes may be any: what is damaged is said, and
// nothing is guessed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/machine.h"
#include "zip/base/byte_source.h"
#include "zip/records/disk_signs.h"
#include "zip/records/stored_entry.h"

namespace vantrel::zip {

struct Directory {
    std::vector<StoredEntry> entries;  // in the archive's order
    std::uint64_t start = 0;           // of the directory; no entry's data reaches beyond it
    std::uint64_t archive_size = 0;    // of several disks, the last one's
    DiskSigns disks;                   // offsets hold their disk when it is a set
    // Empty when the directory was read to its end; otherwise where and why it stops, for the user.
    std::string trouble;

    bool IsComplete() const { return trouble.empty(); }
};

// Reads the directory. Memory follows the bytes that are really there, not the numbers that an
// archive states. Raises only when `source` does.
Directory ReadDirectory(ByteSource& source, platform::CodePage& code_page, platform::Clock& clock);

}  // namespace vantrel::zip
