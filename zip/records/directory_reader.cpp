#include "zip/records/directory_reader.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "common/display_text.h"
#include "zip/records/buffered_range.h"

namespace vantrel::zip {

namespace {

// Where the directory lies, counted from the first byte of the file; of a spanned archive, in
// offsets that hold their disk.
struct DirectoryLocation {
    std::uint64_t start = 0;
    std::uint64_t end = 0;      // just past the last record
    std::uint64_t entries = 0;  // as stated
    bool exact_count = false;   // false: `entries` holds only the lowest 16 bits
    // Added to the offsets of entries: the length of what precedes the archive.
    std::uint64_t prefix = 0;
    bool found = false;  // there is a directory at `start`, or none is needed
    bool spanned = false;
    std::uint32_t last_disk = 0;  // the number of the disk that was searched, from 0
};

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

// Offsets of a spanned archive need no correction, and nothing may follow its end record.
DirectoryLocation LocateInSet(ByteSource& source, const Stated& stated, bool ends_with_file) {
    DirectoryLocation location;
    location.entries = stated.entries;
    location.exact_count = stated.zip64;
    location.spanned = true;
    location.last_disk = stated.disk;
    location.start = OffsetOnDisk(stated.start_disk, stated.offset);
    location.end = location.start + stated.size;
    const bool here = stated.start_disk == stated.disk;
    location.found = ends_with_file && stated.start_disk <= stated.disk &&
                     stated.disk < kMaxDisks &&
                     (!here || HasSignatureAt(source, stated.offset, kCentralSignature));
    return location;
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
            (stated.size == 0 ? stated.entries == 0
                              : HasSignatureAt(source, location.start, kCentralSignature));
        location.prefix = location.found ? location.start - stated.offset : 0;
    }
    if (!location.found && stated.offset < stated.records_at &&
        HasSignatureAt(source, stated.offset, kCentralSignature)) {
        location.start = stated.offset;
        location.end = stated.offset + std::min(stated.size, stated.records_at - stated.offset);
        location.found = true;
    }
    return location;
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

void Consider(ByteSource& source, std::uint64_t size, std::uint64_t at, std::string_view record,
              Best& best) {
    const bool ends_with_file = at + end_record::kFixedSize +
                                    GetNumber<std::uint16_t>(record, end_record::kCommentLength) ==
                                size;
    const Stated stated = ReadEnd(source, record, at);
    const DirectoryLocation location =
        stated.disk == 0 ? Locate(source, stated) : LocateInSet(source, stated, ends_with_file);
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
            Consider(source, size, from + at,
                     std::string_view(tail).substr(at, end_record::kFixedSize), best);
        }
    }
    return best;
}

// Looks for the end record (APPNOTE 4.3.16) from the end of the file backwards: within the longest
// comment, then within kMaxJunk bytes that do not belong to the archive.
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

// Entries for which memory is reserved at once: the length of a spanned directory is only stated.
constexpr std::uint64_t kMaxReserved = 1 << 17;

class DirectoryReader {
  public:
    DirectoryReader(ByteSource& source, const DirectoryLocation& location,
                    platform::CodePage& code_page, platform::Clock& clock)
        : location_(location),
          code_page_(code_page),
          clock_(clock),
          bytes_(source, location.start, location.end) {}

    void Read(Directory& directory) {
        directory.entries.reserve(static_cast<std::size_t>(std::min(
            {location_.entries, (location_.end - location_.start) / central_record::kFixedSize,
             kMaxReserved})));
        while (ReadOne(directory)) {
        }
        if (directory.trouble.empty() && !CountFits(directory.entries.size())) {
            directory.trouble =
                Stopped(directory, "it states " + std::to_string(location_.entries));
        }
    }

  private:
    bool CountFits(std::uint64_t count) const {
        return location_.exact_count ? count == location_.entries
                                     : (count & kSaturated16) == location_.entries;
    }

    // False at the end of the directory, or where it is damaged.
    bool ReadOne(Directory& directory) {
        const std::string_view fixed = bytes_.Peek(central_record::kFixedSize);
        if (!HasSignature(fixed, kCentralSignature)) {
            return false;
        }
        if (fixed.size() < central_record::kFixedSize) {
            return Stop(directory, "the next record is cut off");
        }
        const std::size_t length = CentralRecordLength(fixed);
        const std::string_view record = bytes_.Peek(length);
        if (record.size() < length) {
            return Stop(directory, "the next record is cut off");
        }
        CentralRecord parsed = ParseCentralRecord(record, code_page_, clock_);
        if (directory.disks.IsSpanned()) {
            AddDisk(directory, parsed);
            // A disk number outside the set becomes an offset past the end.
            parsed.entry.offset = parsed.disk < directory.disks.disks
                                      ? OffsetOnDisk(parsed.disk, parsed.entry.offset)
                                      : ~std::uint64_t{0};
        }
        bytes_.Skip(length);
        parsed.entry.offset += location_.prefix;
        directory.entries.push_back(std::move(parsed.entry));
        return true;
    }

    static void AddDisk(Directory& directory, const CentralRecord& parsed) {
        if (directory.entries.empty()) {
            directory.disks.ReadList(parsed.disk_list);
        }
        const DiskRecord first{parsed.entry.offset, parsed.entry.RawName(), parsed.dos_time, false};
        directory.disks.records.try_emplace(parsed.disk, first);
    }

    static bool Stop(Directory& directory, const std::string& why) {
        directory.trouble = Stopped(directory, why);
        return false;
    }
    static std::string Stopped(const Directory& directory, const std::string& why) {
        const std::size_t count = directory.entries.size();
        std::string text = "The archive's directory is damaged: it ends after ";
        text += Counted(count, "entry", "entries");
        if (count > 0) {
            text += ", the last one " + EscapeControls(directory.entries.back().name);
        }
        return text + "; " + why + ".";
    }

    const DirectoryLocation& location_;
    platform::CodePage& code_page_;
    platform::Clock& clock_;
    BufferedRange bytes_;
};

// What is known of the disks before the first record is read: those of the directory itself.
void DescribeDisks(ByteSource& source, const DirectoryLocation& location, Directory& directory) {
    directory.disks.disks = location.last_disk + 1;
    directory.disks.ListLast(directory.archive_size, source.Bytes(0, kDiskHead));
    const std::uint32_t first = DiskOfOffset(location.start);
    directory.disks.records[first] = {location.start - OffsetOnDisk(first, 0), "", 0, true};
    directory.disks.directory_disk = first;
}

}  // namespace

Directory ReadDirectory(ByteSource& source, DiskChanger* changer, platform::CodePage& code_page,
                        platform::Clock& clock) {
    Directory directory;
    auto location = FindDirectory(source);
    while ((!location || !location->found) && changer != nullptr && changer->ChangeToLastDisk()) {
        location = FindDirectory(source);
    }
    directory.archive_size = source.Size();
    if (!location) {
        directory.trouble = "This is no zip archive, or its end is missing.";
        return directory;
    }
    if (location->spanned) {
        DescribeDisks(source, *location, directory);
        if (changer == nullptr || !changer->OpenAsSpanned(directory.disks)) {
            directory.disks.disks = 1;
            directory.trouble = "This is the last part of an archive on several disks.";
            return directory;
        }
    }
    if (!location->found) {
        directory.trouble = "The archive's directory is not where its end record says.";
        return directory;
    }
    directory.start = location->start;
    DirectoryReader(source, *location, code_page, clock).Read(directory);
    return directory;
}

}  // namespace vantrel::zip
