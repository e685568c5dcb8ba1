#include "zip/records/end_record.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "zip/base/little_endian.h"
#include "zip/records/entry_records.h"

namespace vantrel::zip {

namespace {

constexpr std::size_t kEndSize = 22;      // end record without its comment
constexpr std::size_t kEnd64Size = 56;    // Zip64 end record without extensible data
constexpr std::size_t kLocatorSize = 20;  // stands directly before the end record
constexpr std::size_t kLongestComment = 0xFFFF;
// How far from the end of the file an end record is looked for when the comment's length does not
// reach it: transfers pad files, signers append to them.
constexpr std::size_t kLongestJunk = std::size_t{1} << 20;

// What an end record says, and the Zip64 one before it.
struct Stated {
    std::uint64_t entries = 0;
    std::uint64_t size = 0;
    std::uint64_t offset = 0;
    std::uint64_t records_at = 0;  // where the first of the end records stands
    bool zip64 = false;
    std::uint32_t disk = 0;        // of the end record itself
    std::uint32_t start_disk = 0;  // of the directory's start
};

bool HasSignature(ByteSource& source, std::uint64_t offset, std::uint32_t signature) {
    const std::string bytes = source.Bytes(offset, 4);
    return bytes.size() == 4 && GetNumber<std::uint32_t>(bytes, 0) == signature;
}

// The Zip64 end record that the locator before `end_at` leads to.
std::optional<std::uint64_t> FindEnd64(ByteSource& source, std::uint64_t end_at) {
    if (end_at < kLocatorSize) {
        return std::nullopt;
    }
    const std::string locator = source.Bytes(end_at - kLocatorSize, kLocatorSize);
    if (locator.size() < kLocatorSize ||
        GetNumber<std::uint32_t>(locator, 0) != kLocatorSignature) {
        return std::nullopt;
    }
    const auto stated = GetNumber<std::uint64_t>(locator, 8);
    const std::uint64_t locator_at = end_at - kLocatorSize;
    if (locator_at >= kEnd64Size && stated <= locator_at - kEnd64Size &&
        HasSignature(source, stated, kEnd64Signature)) {
        return stated;
    }
    // Something was put before the archive, so that the stated place is wrong.
    if (locator_at >= kEnd64Size &&
        HasSignature(source, locator_at - kEnd64Size, kEnd64Signature)) {
        return locator_at - kEnd64Size;
    }
    return std::nullopt;
}

void ReadEnd64(ByteSource& source, std::uint64_t end_at, Stated& stated) {
    const auto at = FindEnd64(source, end_at);
    if (!at) {
        return;
    }
    const std::string record = source.Bytes(*at, kEnd64Size);
    stated.zip64 = true;
    stated.records_at = *at;
    stated.disk = GetNumber<std::uint32_t>(record, 16);
    stated.start_disk = GetNumber<std::uint32_t>(record, 20);
    stated.entries = GetNumber<std::uint64_t>(record, 32);
    stated.size = GetNumber<std::uint64_t>(record, 40);
    stated.offset = GetNumber<std::uint64_t>(record, 48);
}

Stated ReadEnd(ByteSource& source, std::string_view record, std::uint64_t end_at) {
    Stated stated;
    stated.records_at = end_at;
    stated.disk = GetNumber<std::uint16_t>(record, 4);
    stated.start_disk = GetNumber<std::uint16_t>(record, 6);
    stated.entries = GetNumber<std::uint16_t>(record, 10);
    stated.size = GetNumber<std::uint32_t>(record, 12);
    stated.offset = GetNumber<std::uint32_t>(record, 16);
    ReadEnd64(source, end_at, stated);
    if (!stated.zip64 && stated.disk == kSaturated16) {
        stated.disk = 0;  // some writers mark it although there is one disk only
    }
    return stated;
}

// On the last of several disks offsets need no correction, and only there the end is the file's.
DirectoryPlace LocateInSet(ByteSource& source, const Stated& stated, bool ends_with_file) {
    DirectoryPlace place;
    place.entries = stated.entries;
    place.exact_count = stated.zip64;
    place.several_disks = true;
    place.last_disk = stated.disk;
    place.start = OffsetOnDisk(stated.start_disk, stated.offset);
    place.end = place.start + stated.size;
    const bool here = stated.start_disk == stated.disk;
    place.found = ends_with_file && stated.start_disk <= stated.disk && stated.disk < kMostDisks &&
                  (!here || HasSignature(source, stated.offset, kCentralSignature));
    return place;
}

DirectoryPlace Locate(ByteSource& source, const Stated& stated) {
    DirectoryPlace place;
    place.entries = stated.entries;
    place.exact_count = stated.zip64;
    if (stated.size <= stated.records_at) {
        place.start = stated.records_at - stated.size;
        place.end = stated.records_at;
        place.found = stated.offset <= place.start &&
                      (stated.size == 0 ? stated.entries == 0
                                        : HasSignature(source, place.start, kCentralSignature));
        place.prefix = place.found ? place.start - stated.offset : 0;
    }
    if (!place.found && stated.offset < stated.records_at &&
        HasSignature(source, stated.offset, kCentralSignature)) {
        place.start = stated.offset;
        place.end = stated.offset + std::min(stated.size, stated.records_at - stated.offset);
        place.found = true;
    }
    return place;
}

// How good a candidate is. One inside the comment of another, or inside an archive that is itself
// stored, is worse than the one whose comment ends where the file ends and whose offsets need no
// correction; of equals the first holds, for the later one stands in its comment.
int Rank(const DirectoryPlace& place, bool ends_with_file) {
    return (place.found ? 4 : 0) + (ends_with_file ? 2 : 0) + (place.prefix == 0 ? 1 : 0);
}

struct Best {
    std::optional<DirectoryPlace> place;
    int rank = -1;
};

void Consider(ByteSource& source, std::uint64_t size, std::uint64_t at, std::string_view record,
              Best& best) {
    const bool ends_with_file = at + kEndSize + GetNumber<std::uint16_t>(record, 20) == size;
    const Stated stated = ReadEnd(source, record, at);
    const DirectoryPlace place =
        stated.disk == 0 ? Locate(source, stated) : LocateInSet(source, stated, ends_with_file);
    const int rank = Rank(place, ends_with_file);
    // Candidates come from the end backwards.
    const int needed = ends_with_file ? best.rank : best.rank + 1;
    if (rank >= needed) {
        best.rank = rank;
        best.place = place;
    }
}

Best Search(ByteSource& source, std::size_t reach) {
    const std::uint64_t size = source.Size();
    const std::uint64_t from = size - std::min<std::uint64_t>(size, reach);
    const std::string tail = source.Bytes(from, static_cast<std::size_t>(size - from));
    static constexpr std::string_view kSignature("PK\5\6", 4);
    Best best;
    for (std::size_t at = tail.rfind(kSignature); at != std::string::npos;
         at = at == 0 ? std::string::npos : tail.rfind(kSignature, at - 1)) {
        if (tail.size() - at >= kEndSize) {
            Consider(source, size, from + at, std::string_view(tail).substr(at, kEndSize), best);
        }
    }
    return best;
}

}  // namespace

std::optional<DirectoryPlace> FindDirectory(ByteSource& source) {
    Best best = Search(source, kEndSize + kLongestComment);
    if (!best.place || !best.place->found) {
        const Best wider = Search(source, kEndSize + kLongestJunk);
        if (wider.rank > best.rank) {
            best = wider;
        }
    }
    return best.place;
}

}  // namespace vantrel::zip
