// Finding the end of an archive's directory. May be given any bytes.
#pragma once

#include <cstdint>
#include <optional>

#include "zip/base/byte_source.h"

namespace vantrel::zip {

// Where the directory lies, counted from the first byte of the file; of several disks, in offsets
// that hold their disk (byte_source.h).
struct DirectoryPlace {
    std::uint64_t start = 0;
    std::uint64_t end = 0;      // just behind the last record
    std::uint64_t entries = 0;  // as stated
    bool exact_count = false;   // false: `entries` holds only the lowest 16 bits
    // Added to the offsets of entries: the length of what was put before the archive.
    std::uint64_t prefix = 0;
    bool found = false;  // there is a directory at `start`, or none is needed
    bool several_disks = false;
    std::uint32_t last_disk = 0;  // the number of the disk that was searched, from 0
};

// Looks for the end record (APPNOTE 4.3.16) from the end of the file backwards: within the longest
// comment, then within a mebibyte of what does not belong to the archive. Nothing when there is
// none.
std::optional<DirectoryPlace> FindDirectory(ByteSource& source);

}  // namespace vantrel::zip
