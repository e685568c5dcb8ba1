// How a spanned archive (APPNOTE 8) is addressed, and how one of its disks is recognised by what
// the directory states about it. Labels and dates of disks identify nothing: disks are copied.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "zip/records/format.h"

namespace vantrel::zip {

// Offsets in a spanned archive hold the disk, counted from 0, in their upper bits. An offset past
// the end of a disk continues on the next one, so that offsets can be added to, although the size
// of a disk is not known before it is inserted. No disk holds 2^44 bytes.
constexpr int kDiskShift = 44;
constexpr std::uint32_t kMaxDisks = 1u << (64 - kDiskShift);
constexpr std::uint64_t OffsetOnDisk(std::uint32_t disk, std::uint64_t offset) {
    return (static_cast<std::uint64_t>(disk) << kDiskShift) + offset;
}
constexpr std::uint32_t DiskOfOffset(std::uint64_t offset) {
    return static_cast<std::uint32_t>(offset >> kDiskShift);
}

// The first record on a disk that the directory knows of.
struct DiskRecord {
    std::uint64_t offset = 0;
    std::string name;            // of the entry whose local header this is
    std::uint32_t dos_time = 0;  // of that entry
    bool central = false;        // a central record instead
};

struct DiskIdentity {
    std::uint32_t disks = 1;           // 1: not spanned; 0: their number is unknown
    std::uint32_t directory_disk = 0;  // where the directory starts; it ends on the last disk
    std::map<std::uint32_t, DiskRecord> records;

    struct Listed {
        std::uint64_t size = 0;
        std::uint32_t head_crc = 0;
        bool operator==(const Listed&) const = default;
    };
    std::map<std::uint32_t, Listed> listed;  // exact, for the disks that kDiskListField covers

    bool IsSpanned() const { return disks > 1; }
    // Adds the body of kDiskListField.
    void ReadList(std::string_view field);
    // Adds the last disk, which is read first.
    void ListLast(std::uint64_t size, std::string_view head);
    // Whether Matches is exact enough to exclude all other disks of the set.
    bool CanVerify(std::uint32_t disk) const;
    // Whether `file` may be the one on disk `disk`, counted from 0. Moves the file's position.
    bool Matches(platform::File& file, std::uint32_t disk) const;
    // CRC-32 of a file's first kDiskHead bytes. Moves its position.
    static std::uint32_t HeadCrc(platform::File& file);
};

// Asks for the disks of an archive while its directory is read.
class DiskChanger {
  public:
    virtual ~DiskChanger() = default;
    enum class LastDisk { kNone, kInserted, kMissing };
    // For a file that an archive does not end in. kInserted: another disk is in the drive now.
    // kMissing: the last disk of a set cannot be had. kNone: this is no set, or no disk can be
    // asked for.
    virtual LastDisk ChangeToLastDisk() = 0;
    // The file is the last disk of the set that `disks` describes, now and in the future. From now
    // on offsets hold their disk, and disks are asked for. False when no disk can be asked for.
    virtual bool OpenAsSpanned(const DiskIdentity& disks) = 0;
};

}  // namespace vantrel::zip
