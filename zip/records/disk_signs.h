// How the disks of a set are told from others, as far as the set's directory says it. Labels and
// dates of disks say nothing: disks are copied.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace vantrel::zip {

// Extra field of the first central record of a set that we have written: for each disk before the
// one on which the directory starts, its size (8 bytes) and the CRC-32 of its first kDiskHead bytes
// (4 bytes). No other program knows the number, so all pass over it.
constexpr std::uint16_t kDiskListField = 0x4456;
constexpr std::size_t kDiskListItem = 12;
constexpr std::size_t kDiskListLimit = 5000;  // disks; the field's length has 16 bits
constexpr std::size_t kDiskHead = 4096;

// Bytes that stand somewhere on a disk.
struct DiskSign {
    std::uint64_t offset = 0;
    std::string name;            // of the entry whose local header stands there
    std::uint32_t dos_time = 0;  // of that entry
    bool central = false;        // a central record stands there instead
};

struct DiskSigns {
    std::uint32_t disks = 1;           // 1: no set
    std::uint32_t directory_disk = 0;  // where the directory starts; it goes on to the last
    std::map<std::uint32_t, DiskSign> signs;

    struct Listed {
        std::uint64_t size = 0;
        std::uint32_t head_crc = 0;
        bool operator==(const Listed&) const = default;
    };
    std::map<std::uint32_t, Listed> listed;

    bool IsSet() const { return disks > 1; }
    // What kDiskListField says, and the last disk, which is seen first.
    void ReadList(std::string_view field);
    void ListLast(std::uint64_t size, std::string_view head);
    // Whether Fits can tell the disk from all others of the set.
    bool Knows(std::uint32_t disk) const;
    // Whether this file may be the one of disk `disk`, counted from 0. Moves the file's position.
    bool Fits(platform::File& file, std::uint32_t disk) const;
    // CRC-32 of a file's first kDiskHead bytes. Moves its position.
    static std::uint32_t HeadCrc(platform::File& file);

  private:
    bool SignFits(platform::File& file, const DiskSign& sign) const;
};

}  // namespace vantrel::zip
