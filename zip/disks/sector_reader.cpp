#include "zip/disks/sector_reader.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "common/error.h"
#include "platform/retry.h"
#include "zip/disks/disk_prompt.h"

namespace vantrel::zip {

namespace {

// The smallest unit that disks and discs report as unreadable.
constexpr std::uint64_t kSector = 512;

}  // namespace

bool SectorReader::IsKnown(std::uint64_t begin, std::uint64_t end) const {
    auto next = unreadable_.lower_bound(begin);
    const bool before = next != unreadable_.begin() && std::prev(next)->second > begin;
    return before || (next != unreadable_.end() && next->first < end);
}

std::string SectorReader::WhyUnreadable(std::uint64_t begin, std::uint64_t end) const {
    return IsKnown(begin, end) ? "the medium cannot be read there"
                               : source_.WhyUnreadable(begin, end);
}

// Disk by disk, so that a failure on one does not cause another read of the one before.
std::size_t SectorReader::ReadAt(std::uint64_t offset, void* out, std::size_t count) {
    std::size_t total = 0;
    while (total < count) {
        const std::uint64_t at = offset + total;
        // One byte brings the disk into the drive.
        const std::size_t part =
            source_.Available(at) == 0 ? 1 : source_.OnThisDisk(at, count - total);
        const std::size_t got = ReadRange(at, static_cast<char*>(out) + total, part);
        total += got;
        if (got < part) {
            break;
        }
    }
    return total;
}

std::size_t SectorReader::ReadRange(std::uint64_t offset, char* out, std::size_t count) {
    const std::uint64_t end = offset + count;
    std::uint64_t middle = (offset + count / 2) / kSector * kSector;
    middle += middle <= offset ? kSector : 0;
    const bool divisible = middle < end;
    if (!IsKnown(offset, end) || !divisible) {
        try {
            return divisible ? source_.ReadAt(offset, out, count) : ReadSector(offset, out, count);
        } catch (const Error& error) {
            if (error.number() != error_number::kDeviceIo || !divisible) {
                throw;
            }
        }
    }
    const auto half = static_cast<std::size_t>(middle - offset);
    const std::size_t got = ReadRange(offset, out, half);
    return got < half ? got : half + ReadRange(middle, out + half, count - half);
}

// Reads bytes of one sector.
std::size_t SectorReader::ReadSector(std::uint64_t offset, char* out, std::size_t count) {
    for (int tries_left = IsKnown(offset, offset + count) ? 0 : platform::kTriesWhenLocked;
         tries_left > 0; --tries_left) {
        try {
            return source_.ReadAt(offset, out, count);
        } catch (const Error& error) {
            if (error.number() != error_number::kDeviceIo) {
                throw;
            }
        }
        if (tries_left > 1) {
            clock_.Sleep(platform::kPauseWhenLocked);
        }
    }
    const std::uint64_t size = source_.Size();
    count = static_cast<std::size_t>(std::min<std::uint64_t>(count, size - std::min(size, offset)));
    std::memset(out, 0, count);
    const auto next = unreadable_.upper_bound(offset);
    if (next == unreadable_.begin() || std::prev(next)->second < offset + count) {
        unreadable_[offset] = offset + count;
    }
    return count;
}

DiskSequence::DiskSequence(platform::FileSystem& files, std::string path, AskForDisk ask,
                           const DiskIdentity& known)
    : set_(files, std::move(path), identity_, std::move(ask), DiskSet::Unreadable::kRaise) {
    // Records of a damaged directory must not refuse the right disk.
    identity_.disks = known.disks;
    identity_.directory_disk = kMaxDisks;
    if (const auto last = known.listed.find(known.disks - 1); last != known.listed.end()) {
        identity_.listed.insert(*last);
    }
}

// Adds the next disk; false when there is none.
bool DiskSequence::Append() {
    const auto number = static_cast<std::uint32_t>(disks_.size());
    is_complete_ = is_complete_ || (identity_.disks > 0 && number == identity_.disks);
    if (is_complete_) {
        return false;
    }
    const std::uint64_t begin = End();
    try {
        disks_.push_back({begin, begin + set_.SizeOf(number), false});
        return true;
    } catch (const Error&) {
        if (!set_.IsMissing(number)) {
            throw;
        }
    }
    if (identity_.disks == 0 && number > 0 && disks_.back().is_missing) {
        disks_.pop_back();
        is_complete_ = true;
        return false;
    }
    disks_.push_back({begin, begin + (number == 0 ? 0 : begin - disks_.back().begin), true});
    return true;
}

// `offset` is on a disk that was appended, or behind all of them.
std::uint32_t DiskSequence::DiskAt(std::uint64_t offset) const {
    const auto at = std::find_if(disks_.begin(), disks_.end(),
                                 [offset](const Disk& disk) { return offset < disk.end; });
    return static_cast<std::uint32_t>(at - disks_.begin());
}

std::size_t DiskSequence::ReadAt(std::uint64_t offset, void* out, std::size_t count) {
    std::size_t total = 0;
    while (total < count) {
        const std::uint64_t next = offset + total;
        if (next >= End()) {
            if (!Append()) {
                break;
            }
            continue;
        }
        total += ReadOnDisk(DiskAt(next), next, static_cast<char*>(out) + total, count - total);
    }
    return total;
}

std::size_t DiskSequence::ReadOnDisk(std::uint32_t number, std::uint64_t offset, char* out,
                                     std::size_t count) {
    Disk& disk = disks_[number];
    count = static_cast<std::size_t>(std::min<std::uint64_t>(count, disk.end - offset));
    if (!disk.is_missing) {
        try {
            const std::size_t got = set_.ReadOnDisk({number, offset - disk.begin}, out, count);
            if (got > 0) {
                return got;
            }
        } catch (const Error&) {
            if (!set_.IsMissing(number)) {
                throw;
            }
        }
        disk.is_missing = true;
    }
    std::memset(out, 0, count);
    return count;
}

std::string DiskSequence::WhyUnreadable(std::uint64_t begin, std::uint64_t end) const {
    for (std::uint32_t i = 0; i < disks_.size(); ++i) {
        if (disks_[i].is_missing && disks_[i].begin < end && begin < disks_[i].end) {
            return MissingText(i);
        }
    }
    return "";
}

std::uint64_t DiskSequence::Available(std::uint64_t offset) const {
    const std::uint32_t number = DiskAt(offset);
    const bool here = number < disks_.size() && (disks_[number].is_missing || set_.IsOpen(number));
    return here ? disks_[number].end - offset : 0;
}

std::uint64_t DiskSequence::PositionOf(std::uint32_t disk, std::uint64_t offset) const {
    return disk < disks_.size() ? disks_[disk].begin + std::min(offset, kUnknownSize)
                                : kUnknownSize;
}

std::uint64_t DiskSequence::AddressOf(std::uint64_t position) const {
    if (disks_.empty()) {
        return position;
    }
    const auto last = static_cast<std::uint32_t>(disks_.size() - 1);
    const std::uint32_t number = std::min(DiskAt(position), last);
    return OffsetOnDisk(number, position - disks_[number].begin);
}

DiskIdentity DiskSequence::Identity() const {
    DiskIdentity read = identity_;
    read.disks = static_cast<std::uint32_t>(disks_.size());
    read.listed = set_.SeenFiles();
    return read;
}

}  // namespace vantrel::zip
