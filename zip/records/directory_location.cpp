#include "zip/records/directory_location.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "zip/records/disk_identity.h"
#include "zip/records/record_parser.h"

namespace vantrel::zip {

namespace {

// How far from the end of the file an end record is looked for when the comment's length does not
// reach it: transfers pad files, signers append to them.
constexpr std::size_t kMaxJunk = std::size_t{1} << 20;

// What an end record states, and the Zip64 one before it.
struct Stated {
    std::uint64_t entries = 0;
    std::uint64_t size = 0;
    std::uint64_t offset = 0;
    std::uint64_t records_at = 0;  // where the first of the end records begins
    bool zip64 = false;
    std::uint32_t disk = 0;        // of the end record itself
    std::uint32_t start_disk = 0;  // of the directory's start
};

bool HasSignatureAt(ByteSource& source, std::uint64_t offset, std::uint32_t signature) {
    return HasSignature(source.Bytes(offset, kSignatureSize), signature);
}

// The Zip64 end record that the locator before `end_at` leads to.
std::optional<std::uint64_t> FindEnd64(ByteSource& source, std::uint64_t end_at) {
    constexpr std::size_t kLocatorSize = end64_locator::kFixedSize;
    constexpr std::size_t kEnd64Size = end64_record::kFixedSize;
    if (end_at < kLocatorSize) {
        return std::nullopt;
    }
    const std::string locator = source.Bytes(end_at - kLocatorSize, kLocatorSize);
    if (locator.size() < kLocatorSize || !HasSignature(locator, kLocatorSignature)) {
        return std::nullopt;
    }
    const auto stated = GetNumber<std::uint64_t>(locator, end64_locator::kOffset);
    const std::uint64_t locator_at = end_at - kLocatorSize;
    if (locator_at >= kEnd64Size && stated <= locator_at - kEnd64Size &&
        HasSignatureAt(source, stated, kEnd64Signature)) {
        return stated;
    }
    // With other bytes before the archive the stated offset is wrong.
    if (locator_at >= kEnd64Size &&
        HasSignatureAt(source, locator_at - kEnd64Size, kEnd64Signature)) {
        return locator_at - kEnd64Size;
    }
    return std::nullopt;
}

void ReadEnd64(ByteSource& source, std::uint64_t end_at, Stated& stated) {
    const auto at = FindEnd64(source, end_at);
    if (!at) {
        return;
    }
    using namespace end64_record;
    const std::string record = source.Bytes(*at, kFixedSize);
    stated.zip64 = true;
    stated.records_at = *at;
    stated.disk = GetNumber<std::uint32_t>(record, kDisk);
    stated.start_disk = GetNumber<std::uint32_t>(record, kDirectoryDisk);
    stated.entries = GetNumber<std::uint64_t>(record, kEntries);
    stated.size = GetNumber<std::uint64_t>(record, kDirectorySize);
    stated.offset = GetNumber<std::uint64_t>(record, kDirectoryOffset);
}

Stated ReadEnd(ByteSource& source, std::string_view record, std::uint64_t end_at) {
    using namespace end_record;
    Stated stated;
    stated.records_at = end_at;
    stated.disk = GetNumber<std::uint16_t>(record, kDisk);
    stated.start_disk = GetNumber<std::uint16_t>(record, kDirectoryDisk);
    stated.entries = GetNumber<std::uint16_t>(record, kEntries);
    stated.size = GetNumber<std::uint32_t>(record, kDirectorySize);
    stated.offset = GetNumber<std::uint32_t>(record, kDirectoryOffset);
    ReadEnd64(source, end_at, stated);
    if (!stated.zip64 && stated.disk == kSaturated16) {
        stated.disk = 0;  // some writers mark it although there is one disk only
    }
    return stated;
}

// Offsets of a spanned archive need no correction, and nothing may follow its end record. That
// record proves the last disk, also when the directory on it is damaged from its first record on.
DirectoryLocation LocateInSet(const Stated& stated, bool ends_with_file) {
    DirectoryLocation location;
    location.entries = stated.entries;
    location.exact_count = stated.zip64;
    location.spanned = true;
    location.last_disk = stated.disk;
    location.start = OffsetOnDisk(stated.start_disk, stated.offset);
    location.end = location.start + stated.size;
    location.found = ends_with_file && stated.start_disk <= stated.disk && stated.disk < kMaxDisks;
    return location;
}

// Whether the first entry of the directory is where it states, counted from `prefix`.
bool LeadsToEntry(ByteSource& source, std::uint64_t directory, std::uint64_t prefix) {
    const std::string record = source.Bytes(directory, central_record::kFixedSize);
    if (record.size() < central_record::kFixedSize) {
        return false;
    }
    const auto offset = GetNumber<std::uint32_t>(record, central_record::kOffset);
    return offset == kSaturated32 || HasSignatureAt(source, prefix + offset, kLocalSignature);
}

// Whether the archive that begins at `prefix` is the data of a file that is stored in another
// archive: the local header of that file ends there.
bool IsStoredInAnother(ByteSource& source, std::uint64_t prefix) {
    constexpr std::uint64_t kMaxHeader = local_header::kFixedSize + 2 * kSaturated16;
    const std::uint64_t from = prefix - std::min(prefix, kMaxHeader);
    const std::string before = source.Bytes(from, static_cast<std::size_t>(prefix - from));
    std::string signature;
    Put32(signature, kLocalSignature);
    for (std::size_t at = before.rfind(signature); at != std::string::npos;
         at = at == 0 ? std::string::npos : before.rfind(signature, at - 1)) {
        const auto header = ParseLocalHeader(std::string_view(before).substr(at));
        if (header && from + at + header->Length() == prefix) {
            return true;
        }
    }
    return false;
}

DirectoryLocation Locate(ByteSource& source, const Stated& stated) {
    DirectoryLocation location;
    location.entries = stated.entries;
    location.exact_count = stated.zip64;
    if (stated.size <= stated.records_at) {
        location.start = stated.records_at - stated.size;
        location.end = stated.records_at;
        location.found =
            stated.offset <= location.start &&
            (stated.size == 0 ? stated.entries == 0 && !HasSignatureAt(source, 0, kLocalSignature)
                              : HasSignatureAt(source, location.start, kCentralSignature));
        location.prefix = location.found ? location.start - stated.offset : 0;
        // Bytes that were inserted into an archive move its directory, and not its entries.
        if (location.prefix > 0 && stated.entries > 0 &&
            (!LeadsToEntry(source, location.start, location.prefix) ||
             IsStoredInAnother(source, location.prefix))) {
            location.found = false;
            location.prefix = 0;
            return location;
        }
    }
    if (!location.found && stated.offset < stated.records_at &&
        HasSignatureAt(source, stated.offset, kCentralSignature)) {
        location.start = stated.offset;
        location.end = stated.offset + std::min(stated.size, stated.records_at - stated.offset);
        location.found = true;
    }
    return location;
}

// Whether the archive begins in this file although its end record states several disks: that number
// is damaged. The first disk of a set begins with a marker (APPNOTE 8.5.4), not with an entry.
bool IsOneFile(ByteSource& source, const Stated& stated) {
    const DirectoryLocation location = Locate(source, stated);
    const std::string record = source.Bytes(location.start, central_record::kFixedSize);
    return location.found && location.prefix == 0 && record.size() == central_record::kFixedSize &&
           GetNumber<std::uint16_t>(record, central_record::kDisk) == 0 &&
           GetNumber<std::uint32_t>(record, central_record::kOffset) == 0 &&
           HasSignatureAt(source, 0, kLocalSignature);
}

// How good a candidate is. One inside the comment of another, or inside an archive that is itself
// stored, is worse than the one whose comment ends where the file ends and whose offsets need no
// correction; of equals the first one wins, because the later one is in its comment.
int Rank(const DirectoryLocation& location, bool ends_with_file) {
    return (location.found ? 4 : 0) + (ends_with_file ? 2 : 0) + (location.prefix == 0 ? 1 : 0);
}

struct Best {
    std::optional<DirectoryLocation> location;
    int rank = -1;
};

// Whether other records of an archive are in these bytes behind an end record: it is then the one
// of an archive that is stored inside.
bool HasRecords(std::string_view bytes) {
    for (std::size_t at = bytes.find("PK"); at != std::string_view::npos;
         at = bytes.find("PK", at + 1)) {
        const std::string_view record = bytes.substr(at);
        if (HasSignature(record, kLocalSignature) || HasSignature(record, kCentralSignature)) {
            return true;
        }
    }
    return false;
}

// `tail` are the bytes from the end record to the end of the file.
void Consider(ByteSource& source, std::uint64_t size, std::uint64_t at, std::string_view tail,
              Best& best) {
    const std::string_view record = tail.substr(0, end_record::kFixedSize);
    const bool ends_with_file = at + end_record::kFixedSize +
                                    GetNumber<std::uint16_t>(record, end_record::kCommentLength) ==
                                size;
    const Stated stated = ReadEnd(source, record, at);
    DirectoryLocation location = stated.disk == 0 || IsOneFile(source, stated)
                                     ? Locate(source, stated)
                                     : LocateInSet(stated, ends_with_file);
    if (!ends_with_file && HasRecords(tail)) {
        location.found = false;
    }
    const int rank = Rank(location, ends_with_file);
    // Candidates come from the end backwards.
    const int needed = ends_with_file ? best.rank : best.rank + 1;
    if (rank >= needed) {
        best.rank = rank;
        best.location = location;
    }
}

Best Search(ByteSource& source, std::size_t reach) {
    const std::uint64_t size = source.Size();
    const std::uint64_t from = size - std::min<std::uint64_t>(size, reach);
    const std::string tail = source.Bytes(from, static_cast<std::size_t>(size - from));
    std::string signature;
    Put32(signature, kEndSignature);
    Best best;
    for (std::size_t at = tail.rfind(signature); at != std::string::npos;
         at = at == 0 ? std::string::npos : tail.rfind(signature, at - 1)) {
        if (tail.size() - at >= end_record::kFixedSize) {
            Consider(source, size, from + at, std::string_view(tail).substr(at), best);
        }
    }
    return best;
}

}  // namespace

std::optional<DirectoryLocation> FindDirectory(ByteSource& source) {
    Best best = Search(source, end_record::kFixedSize + kMaxComment);
    if (!best.location || !best.location->found) {
        const Best wider = Search(source, end_record::kFixedSize + kMaxJunk);
        if (wider.rank > best.rank) {
            best = wider;
        }
    }
    return best.location;
}

}  // namespace vantrel::zip
