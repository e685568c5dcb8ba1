// Directories without an archive.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "zip/records/directory_reader.h"

namespace vantrel::test {

// That of an archive of stored files, `size` bytes each.
inline zip::Directory DirectoryOf(const std::vector<std::string>& names, std::uint64_t size = 10) {
    zip::Directory directory;
    for (const std::string& name : names) {
        zip::StoredEntry entry;
        entry.name = name;
        entry.size = entry.packed_size = size;
        entry.offset = directory.start;
        directory.start += zip::local_header::kFixedSize + name.size() + size;
        directory.entries.Append(entry);
    }
    return directory;
}

}  // namespace vantrel::test
