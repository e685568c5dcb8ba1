// Reading around what cannot be read, for a search: an unreadable sector and a missing disk are
// read as zeros, and what lies behind them is read as usual. Objects belong to one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/machine.h"
#include "zip/base/bytes.h"
#include "zip/disks/archive_reader.h"
#include "zip/records/disk_identity.h"

namespace vantrel::zip {

class SectorReader : public ByteSource {
  public:
    // Both are borrowed.
    SectorReader(ByteSource& source, platform::Clock& clock) : source_(source), clock_(clock) {}

    std::uint64_t Size() override { return source_.Size(); }
    // Error 57 of the source is retried sector by sector, 4 times in 0.3 s; other errors are
    // raised. No sector is tried again later.
    std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count) override;
    std::string WhyUnreadable(std::uint64_t begin, std::uint64_t end) const override;
    std::uint64_t Available(std::uint64_t offset) const override {
        return source_.Available(offset);
    }
    std::uint64_t PositionOf(std::uint32_t disk, std::uint64_t offset) const override {
        return source_.PositionOf(disk, offset);
    }
    std::uint64_t AddressOf(std::uint64_t position) const override {
        return source_.AddressOf(position);
    }

  private:
    bool IsKnown(std::uint64_t begin, std::uint64_t end) const;
    std::size_t ReadRange(std::uint64_t offset, char* out, std::size_t count);
    std::size_t ReadSector(std::uint64_t offset, char* out, std::size_t count);

    ByteSource& source_;
    platform::Clock& clock_;
    std::map<std::uint64_t, std::uint64_t> unreadable_;  // begin to end, apart from each other
};

// The disks of a set, one behind the other from disk 1 on. Each is asked for when it is reached.
class DiskSequence : public ByteSource {
  public:
    // `known` has the number of disks and the last one; without a number the set ends before two
    // missing disks in succession.
    DiskSequence(platform::FileSystem& files, std::string path, AskForDisk ask,
                 const DiskIdentity& known);

    std::uint64_t Size() override { return is_complete_ ? End() : kUnknownSize; }
    // Bytes that a disk cannot read raise 57.
    std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count) override;
    std::string WhyUnreadable(std::uint64_t begin, std::uint64_t end) const override;
    std::uint64_t Available(std::uint64_t offset) const override;
    std::uint64_t PositionOf(std::uint32_t disk, std::uint64_t offset) const override;
    std::uint64_t AddressOf(std::uint64_t position) const override;

    // Identifies the disks that were read.
    DiskIdentity Identity() const;

  private:
    struct Disk {
        std::uint64_t begin = 0;
        std::uint64_t end = 0;  // of a missing disk, as if it were as large as the one before
        bool is_missing = false;
    };
    std::uint64_t End() const { return disks_.empty() ? 0 : disks_.back().end; }
    bool Append();
    std::uint32_t DiskAt(std::uint64_t offset) const;
    std::size_t ReadOnDisk(std::uint32_t number, std::uint64_t offset, char* out,
                           std::size_t count);

    DiskIdentity identity_;
    DiskSet set_;
    std::vector<Disk> disks_;
    bool is_complete_ = false;
};

}  // namespace vantrel::zip
