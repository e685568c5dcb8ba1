// Finds the entries of an archive whose directory is damaged or lost, by reading the archive from
// its beginning to its end.
#pragma once

#include <cstdint>
#include <functional>

#include "platform/machine.h"
#include "zip/base/bytes.h"
#include "zip/records/directory_reader.h"

namespace vantrel::zip {

// Whether the archive has to be searched: the directory was not read to its end, or its entries
// contradict each other: they overlap, or a size cannot be. Without access to the archive.
bool NeedsSearch(const Directory& directory);

// Called often with the bytes that were searched so far; may throw, to stop.
using SearchProgress = std::function<void(std::uint64_t done)>;

// Bounds for archives that are made to waste memory.
struct SearchLimits {
    std::uint64_t headers = std::uint64_t{1} << 22;      // local headers that are checked
    std::size_t lost = std::size_t{1} << 20;             // lost entries that are named
    std::uint64_t name_bytes = std::uint64_t{32} << 20;  // of their names
    std::size_t directories = std::size_t{1} << 16;
    int same_name = 64;  // local headers of one name that a central record is compared with
};

// Replaces the entries of `directory` by those of `source` that the local headers and what is left
// of the directory describe together, each checked by size and CRC-32; the others are `lost`. An
// archive that is stored inside the archive is one entry. Reads the archive once; a damaged entry
// is read up to its stated end and its data then searched, until the archive has been read 8 times
// more (an archive that is made to waste time). Memory follows the records found: about 300 bytes
// and the name for each within `limits`. Raises what `source` raises.
void SearchArchive(ByteSource& source, platform::CodePage& code_page, platform::Clock& clock,
                   const SearchProgress& progress, Directory& directory,
                   const SearchLimits& limits = {});

}  // namespace vantrel::zip
