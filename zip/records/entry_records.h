// The records of an archive as bytes; record_parser.h is the opposite direction. docs/zip-format.md
// shows them as tables. Pure functions.
#pragma once

#include <cstdint>
#include <string>

#include "platform/machine.h"
#include "zip/records/format.h"

namespace vantrel::zip {

// The location of a record: its disk, counted from 0, and its offset from the start of that disk.
struct RecordLocation {
    std::uint32_t disk = 0;
    std::uint64_t offset = 0;

    bool operator==(const RecordLocation&) const = default;
};

// One stored file or folder.
struct Entry {
    std::string name;  // UTF-8, "/" between components; a folder's name ends in "/"
    std::uint32_t attributes = 0;
    platform::FileTimes times;
    platform::LocalTime modified_local;  // times.modified in the user's time zone
    Method method = Method::kStored;
    std::uint32_t crc = 0;
    std::uint64_t size = 0;
    std::uint64_t packed_size = 0;
    RecordLocation location;  // of the local header
    // The local header has the 64-bit sizes field. Decided when space for the header is reserved,
    // that is, from the size which the file had when it was opened.
    bool zip64_sizes = false;
    // CRC and sizes follow the data (4.3.9), because the header cannot be written again.
    bool descriptor = false;
};

// Appends the local file header (APPNOTE 4.3.7) of an entry whose sizes and CRC are final, or are
// left to a descriptor. Its length depends only on the name, the times and `zip64_sizes`.
void AppendLocalHeader(std::string& out, const Entry& entry);
// Appends the data descriptor (4.3.9), with its signature.
void AppendDescriptor(std::string& out, const Entry& entry);

// Appends the central directory record (APPNOTE 4.3.12).
void AppendCentralRecord(std::string& out, const Entry& entry);

// Adds an extra field to a central record; none when `body` is empty or does not fit.
void AddExtraField(std::string& record, std::uint16_t id, const std::string& body);

// The numbers in the end records.
struct DirectoryEnd {
    std::uint64_t entries = 0;
    std::uint64_t size = 0;          // bytes of all central records
    std::uint64_t offset = 0;        // of the first central record, on its disk
    std::uint64_t end64_offset = 0;  // where the records appended here begin, on their disk
    // Of an archive on several disks, numbered from 0.
    std::uint32_t disk = 0;                    // the one of the records appended here, the last
    std::uint32_t directory_disk = 0;          // the one of the first central record
    std::uint64_t entries_on_other_disks = 0;  // central records that are not on the last disk
};

// Appends the end record (APPNOTE 4.3.16), with the Zip64 end record and its locator
// (4.3.14, 4.3.15) before it when a number does not fit.
void AppendDirectoryEnd(std::string& out, const DirectoryEnd& end);

// Whether the sizes of a file need the 64-bit field.
constexpr bool NeedsWideSizes(std::uint64_t size, std::uint64_t packed_size) {
    return size >= kSaturated32 || packed_size >= kSaturated32;
}

// DOS date (high half) and time of APPNOTE 4.4.6: local time, rounded down to 2 seconds; times
// outside 1980 to 2107 become the first or last one that fits.
std::uint32_t DosDateTime(const platform::LocalTime& local);

}  // namespace vantrel::zip
