#include "zip/records/directory_reader.h"

#include <algorithm>
#include <string_view>

#include "common/display_text.h"
#include "common/error.h"
#include "zip/records/buffered_range.h"
#include "zip/records/directory_location.h"

namespace vantrel::zip {

namespace {

class DirectoryReader {
  public:
    DirectoryReader(ByteSource& source, const DirectoryLocation& location,
                    platform::CodePage& code_page, platform::Clock& clock)
        : location_(location),
          code_page_(code_page),
          clock_(clock),
          bytes_(source, location.start, location.end) {}

    void Read(Directory& directory) {
        try {
            while (ReadOne(directory)) {
            }
        } catch (const Error& error) {
            // All other failures to read a disk are questions.
            if (!directory.disks.IsSpanned() || error.number() != error_number::kDiskNotReady) {
                throw;
            }
            Stop(directory, error.description());
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
        if (!HasSignature(bytes_.Peek(kSignatureSize), kCentralSignature)) {
            return false;
        }
        const std::string_view record =
            PeekCentralRecord([this](std::size_t count) { return bytes_.Peek(count); });
        if (record.empty()) {
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
        bytes_.Skip(record.size());
        parsed.entry.offset += location_.prefix;
        directory.entries.Append(parsed.entry);
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
    while ((!location || !location->found) && changer != nullptr) {
        const auto last = changer->ChangeToLastDisk();
        if (last == DiskChanger::LastDisk::kMissing) {
            directory.disks.disks = 0;
            directory.trouble = "The archive is incomplete: its last disk is missing.";
            return directory;
        }
        if (last == DiskChanger::LastDisk::kNone) {
            break;
        }
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
