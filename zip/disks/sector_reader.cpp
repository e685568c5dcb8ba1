#include "zip/disks/sector_reader.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "common/error.h"
#include "platform/retry.h"

namespace vantrel::zip {

namespace {

// The smallest unit that disks and discs report as unreadable.
constexpr std::uint64_t kSector = 512;

}  // namespace

std::string SectorReader::WhyUnreadable(std::uint64_t begin, std::uint64_t end) const {
    auto next = unreadable_.lower_bound(begin);
    const bool before = next != unreadable_.begin() && std::prev(next)->second > begin;
    return before || (next != unreadable_.end() && next->first < end)
               ? "the medium cannot be read there"
               : source_.WhyUnreadable(begin, end);
}

std::size_t SectorReader::ReadAt(std::uint64_t offset, void* out, std::size_t count) {
    return ReadRange(offset, static_cast<char*>(out), count);
}

std::size_t SectorReader::ReadRange(std::uint64_t offset, char* out, std::size_t count) {
    const std::uint64_t end = offset + count;
    const std::uint64_t middle = (offset + count / 2) / kSector * kSector;
    const bool divisible = middle > offset && middle < end;
    if (WhyUnreadable(offset, end).empty() || !divisible) {
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

// Reads bytes of one sector, or of two that begin and end a range.
std::size_t SectorReader::ReadSector(std::uint64_t offset, char* out, std::size_t count) {
    for (int tries_left = WhyUnreadable(offset, offset + count).empty() ? platform::kTriesWhenLocked
                                                                        : 0;
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
    auto& end = unreadable_[offset];
    end = std::max(end, offset + count);
    return count;
}

}  // namespace vantrel::zip
