// A strict reader of zip archives, in one file or spanned, whose logic is independent of the
// engine: only the numbers of the format are shared. Throws std::runtime_error for any deviation.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace vantrel::test {

struct ReadEntry {
    std::string name;
    std::uint16_t made_by = 0;
    std::uint16_t needed = 0;
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint32_t dos_time = 0;
    std::uint32_t crc = 0;
    std::uint64_t size = 0;
    std::uint64_t packed_size = 0;
    std::uint64_t offset = 0;
    std::uint32_t disk = 0;
    std::uint32_t attributes = 0;
    std::map<std::uint16_t, std::string> central_fields;
    std::map<std::uint16_t, std::string> local_fields;
    std::string content;  // empty when contents were not asked for
};

struct ReadResult {
    std::vector<ReadEntry> entries;
    bool zip64 = false;  // there is a Zip64 end record
    std::uint64_t directory_offset = 0;

    const ReadEntry& At(const std::string& name) const;
    std::vector<std::string> Names() const;
};

using ReadBytes = std::function<std::string(std::uint64_t offset, std::size_t count)>;

// Checks that entries follow each other without gap from the first byte to the directory, that
// local headers agree with the directory, and (with `contents`) that sizes and CRCs are right.
ReadResult ReadArchive(const ReadBytes& read, std::uint64_t size, bool contents = true);
ReadResult ReadArchive(const std::string& bytes);

// Inflates a raw deflate stream that must fill `packed` exactly, and may refer to `history`.
std::string InflateAfter(const std::string& history, const std::string& packed);
inline std::string InflateAll(const std::string& packed) { return InflateAfter("", packed); }

struct SetContents {
    std::map<std::string, std::string> files;  // by stored name
    std::vector<std::string> names;            // in the directory's order
    // First and last disk, from 0, of local header, data and descriptor.
    std::map<std::string, std::pair<int, int>> disks;
    std::uint32_t directory_disk = 0;
    int crossing = 0;  // files whose data lies on more than one disk
    int descriptors = 0;
    bool zip64 = false;
};

// Checks every record of a spanned archive: none is divided, each begins where the previous one
// ended or at the start of the next disk, disk numbers and counts are right, and all data has its
// CRC.
SetContents ReadSet(const std::vector<std::string>& disks);

}  // namespace vantrel::test
