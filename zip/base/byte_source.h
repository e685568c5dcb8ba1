// Random access to the bytes of an archive, wherever they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vantrel::zip {

struct DiskSigns;

// Offsets in an archive on several disks hold the disk, counted from 0, in their upper bits. What
// lies behind the end of a disk is the start of the next one, so that bytes can be counted on from
// any place, although nobody knows the size of a disk that has not been put in yet. 2^44 bytes are
// more than any disk holds.
constexpr int kDiskShift = 44;
constexpr std::uint32_t kMostDisks = 1u << (64 - kDiskShift);
constexpr std::uint64_t OffsetOnDisk(std::uint32_t disk, std::uint64_t offset) {
    return (static_cast<std::uint64_t>(disk) << kDiskShift) + offset;
}
constexpr std::uint32_t DiskOfOffset(std::uint64_t offset) {
    return static_cast<std::uint32_t>(offset >> kDiskShift);
}

// Belongs to one thread at a time.
class ByteSource {
  public:
    virtual ~ByteSource() = default;
    // Bytes of the file; of several disks, of the last one.
    virtual std::uint64_t Size() = 0;
    // Reads up to `count` bytes from `offset` on; fewer only where the archive ends. Raises when
    // the medium fails.
    virtual std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count) = 0;
    // The same for bytes that may not be needed: fewer where a disk ends, too.
    virtual std::size_t ReadAhead(std::uint64_t offset, void* out, std::size_t count) {
        return ReadAt(offset, out, count);
    }

    // The archive does not end in this file. True when another disk was put in instead; throws when
    // that was refused; false when nobody can be asked.
    virtual bool ChangeToLastDisk() { return false; }
    // The file is the last disk of the set that `signs` describes and goes on describing; from now
    // on offsets hold their disk, and disks are asked for. False when nobody can be.
    virtual bool ReadSet(const DiskSigns& signs) {
        static_cast<void>(signs);
        return false;
    }

    // The bytes at `offset`: `count` of them, or as many as there are.
    std::string Bytes(std::uint64_t offset, std::size_t count) {
        std::string bytes(count, '\0');
        bytes.resize(ReadAt(offset, bytes.data(), count));
        return bytes;
    }
};

}  // namespace vantrel::zip
