// Where the central directory of an archive is, as its end record states it.
#pragma once

#include <cstdint>
#include <optional>

#include "zip/base/bytes.h"

namespace vantrel::zip {

// Where the directory lies, counted from the first byte of the file; of a spanned archive, in
// offsets that hold their disk.
struct DirectoryLocation {
    std::uint64_t start = 0;
    std::uint64_t end = 0;      // just past the last record
    std::uint64_t entries = 0;  // as stated
    bool exact_count = false;   // false: `entries` holds only the lowest 16 bits
    // Added to the offsets of entries: the length of what precedes the archive.
    std::uint64_t prefix = 0;
    bool found = false;  // there is a directory at `start`, or none is needed
    bool spanned = false;
    std::uint32_t last_disk = 0;  // the number of the disk that was searched, from 0
};

// Looks for the end record (APPNOTE 4.3.16) from the end of the file backwards: within the longest
// comment, then within 1 MiB that does not belong to the archive. An archive that is stored inside
// the archive has an end record of its own, which is none here. Nothing when there is no end
// record. Raises only when `source` does.
std::optional<DirectoryLocation> FindDirectory(ByteSource& source);

}  // namespace vantrel::zip
