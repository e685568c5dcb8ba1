#include "zip/records/directory_reader.h"

#include <algorithm>
#include <string_view>

#include "common/display_text.h"
#include "zip/base/little_endian.h"
#include "zip/records/central_record.h"
#include "zip/records/end_record.h"
#include "zip/records/entry_records.h"

namespace vantrel::zip {

namespace {

// Entries to make room for at once. Of a set of disks nobody knows how long they really are.
constexpr std::uint64_t kMostReserved = 1 << 17;
constexpr std::size_t kPortion = 256 * 1024;  // read at a time; holds the longest record

// The part of the archive between two offsets, in order.
class Stretch {
  public:
    Stretch(ByteSource& source, std::uint64_t start, std::uint64_t end)
        : source_(source), next_(start), end_(end) {}

    // The next `count` bytes, fewer at the end; valid until the next call.
    std::string_view Peek(std::size_t count) {
        if (buffer_.size() - position_ < count) {
            Refill();
        }
        return std::string_view(buffer_).substr(position_, count);
    }
    void Skip(std::size_t count) { position_ += count; }

  private:
    void Refill() {
        buffer_.erase(0, position_);
        position_ = 0;
        const auto wanted = static_cast<std::size_t>(
            std::min<std::uint64_t>(end_ - next_, kPortion - buffer_.size()));
        const std::size_t kept = buffer_.size();
        buffer_.resize(kept + wanted);
        buffer_.resize(kept + source_.ReadAt(next_, buffer_.data() + kept, wanted));
        next_ += wanted;
    }

    ByteSource& source_;
    std::uint64_t next_;
    std::uint64_t end_;
    std::string buffer_;
    std::size_t position_ = 0;
};

class DirectoryReader {
  public:
    DirectoryReader(ByteSource& source, const DirectoryPlace& place, platform::CodePage& code_page,
                    platform::Clock& clock)
        : place_(place),
          code_page_(code_page),
          clock_(clock),
          bytes_(source, place.start, place.end) {}

    void Read(Directory& directory) {
        directory.entries.reserve(static_cast<std::size_t>(
            std::min({place_.entries, (place_.end - place_.start) / kCentralSize, kMostReserved})));
        while (ReadOne(directory)) {
        }
        if (directory.trouble.empty() && !CountFits(directory.entries.size())) {
            directory.trouble = Stopped(directory, "it states " + std::to_string(place_.entries));
        }
    }

  private:
    bool CountFits(std::uint64_t count) const {
        return place_.exact_count ? count == place_.entries
                                  : (count & kSaturated16) == place_.entries;
    }

    // False at the end of the directory, or where it is damaged.
    bool ReadOne(Directory& directory) {
        const std::string_view fixed = bytes_.Peek(kCentralSize);
        if (fixed.size() < 4 || GetNumber<std::uint32_t>(fixed, 0) != kCentralSignature) {
            return false;
        }
        if (fixed.size() < kCentralSize) {
            return Stop(directory, "the next record is cut off");
        }
        const std::size_t length = CentralRecordLength(fixed);
        const std::string_view record = bytes_.Peek(length);
        if (record.size() < length) {
            return Stop(directory, "the next record is cut off");
        }
        CentralRecord parsed = ParseCentralRecord(record, code_page_, clock_);
        if (directory.disks.IsSet()) {
            NoteDisk(directory, parsed, record);
            // One on a disk that there is not lies behind everything.
            parsed.entry.offset = parsed.disk < directory.disks.disks
                                      ? OffsetOnDisk(parsed.disk, parsed.entry.offset)
                                      : ~std::uint64_t{0};
        }
        bytes_.Skip(length);
        parsed.entry.offset += place_.prefix;
        directory.entries.push_back(std::move(parsed.entry));
        return true;
    }

    static void NoteDisk(Directory& directory, const CentralRecord& parsed,
                         std::string_view record) {
        if (directory.entries.empty()) {
            directory.disks.ReadList(parsed.disk_list);
        }
        const DiskSign sign{parsed.entry.offset, parsed.entry.RawName(),
                            GetNumber<std::uint32_t>(record, 12), false};
        directory.disks.signs.try_emplace(parsed.disk, sign);
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

    const DirectoryPlace& place_;
    platform::CodePage& code_page_;
    platform::Clock& clock_;
    Stretch bytes_;
};

}  // namespace

namespace {

// What is known of the disks before the first record is read: those of the directory itself.
void Describe(ByteSource& source, const DirectoryPlace& place, Directory& directory) {
    directory.disks.disks = place.last_disk + 1;
    directory.disks.ListLast(directory.archive_size, source.Bytes(0, kDiskHead));
    const std::uint32_t first = DiskOfOffset(place.start);
    directory.disks.signs[first] = {place.start - OffsetOnDisk(first, 0), "", 0, true};
    directory.disks.directory_disk = first;
}

}  // namespace

Directory ReadDirectory(ByteSource& source, platform::CodePage& code_page, platform::Clock& clock) {
    Directory directory;
    auto place = FindDirectory(source);
    while ((!place || !place->found) && source.ChangeToLastDisk()) {
        place = FindDirectory(source);
    }
    directory.archive_size = source.Size();
    if (!place) {
        directory.trouble = "This is no zip archive, or its end is missing.";
        return directory;
    }
    if (place->several_disks) {
        Describe(source, *place, directory);
        if (!source.ReadSet(directory.disks)) {
            directory.disks.disks = 1;
            directory.trouble = "This is the last part of an archive on several disks.";
            return directory;
        }
    }
    if (!place->found) {
        directory.trouble = "The archive's directory is not where its end record says.";
        return directory;
    }
    directory.start = place->start;
    DirectoryReader(source, *place, code_page, clock).Read(directory);
    return directory;
}

}  // namespace vantrel::zip
