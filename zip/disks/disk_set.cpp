#include "zip/disks/disk_set.h"

#include <algorithm>
#include <utility>

#include "zip/base/byte_source.h"
#include "zip/base/paths.h"
#include "zip/disks/disk_prompt.h"

namespace vantrel::zip {

DiskSet::DiskSet(platform::FileSystem& files, std::string path, const DiskSigns& signs,
                 AskForDisk ask)
    : files_(files), path_(std::move(path)), signs_(signs), ask_(std::move(ask)) {}

// Where an offset leads that may lie behind the end of its disk.
DiskSet::Position DiskSet::Find(std::uint64_t offset) {
    Position at{DiskOfOffset(offset), offset - OffsetOnDisk(DiskOfOffset(offset), 0)};
    while (at.disk + 1 < signs_.disks) {
        if (at.disk >= sizes_.size() || sizes_[at.disk] == 0) {
            Need(at.disk);
        }
        if (at.offset < sizes_[at.disk]) {
            break;
        }
        at.offset -= sizes_[at.disk];
        ++at.disk;
    }
    return at;
}

std::size_t DiskSet::ReadAt(std::uint64_t offset, void* out, std::size_t count) {
    std::size_t total = 0;
    while (total < count) {
        const std::size_t got =
            ReadAhead(offset + total, static_cast<char*>(out) + total, count - total);
        if (got == 0) {
            break;
        }
        total += got;
    }
    return total;
}

std::size_t DiskSet::ReadAhead(std::uint64_t offset, void* out, std::size_t count) {
    const Position at = Find(offset);
    if (at.disk >= signs_.disks) {
        return 0;
    }
    return ReadHere(at, static_cast<char*>(out), count);
}

std::size_t DiskSet::ReadHere(Position at, char* out, std::size_t count) {
    for (;;) {
        Need(at.disk);
        try {
            file_->Seek(at.offset);
            return file_->Read(out, count);
        } catch (const Error& error) {
            file_.reset();
            ask_({error.number(),
                  path_,
                  PromptToRead(at.disk + 1, signs_.disks, path_, ReadErrorNote(error)),
                  {}});
        }
    }
}

void DiskSet::Need(std::uint32_t disk) {
    if (file_ && disk_ == disk) {
        return;
    }
    for (;;) {
        file_.reset();  // so that the disk can be taken out
        const std::string why = WhyNot(disk);
        if (why.empty()) {
            disk_ = disk;
            sizes_.resize(std::max<std::size_t>(sizes_.size(), disk + std::size_t{1}));
            sizes_[disk] = file_->Size();
            return;
        }
        file_.reset();
        ask_({error_number::kDiskNotReady,
              path_,
              PromptToRead(disk + 1, signs_.disks, path_, why),
              {}});
    }
}

// Opens the archive's file on the disk in the drive, or says why that is not disk `disk`.
std::string DiskSet::WhyNot(std::uint32_t disk) {
    try {
        if (!files_.Find(RootOf(path_))) {
            return NoDiskNote();
        }
        const auto info = files_.Find(path_);
        if (!info) {
            return MissingNote(path_);
        }
        file_ = files_.Open(path_, platform::OpenMode::kRead);
        return signs_.Fits(*file_, disk) && !IsAnother(*info, disk) ? "" : OtherDiskNote();
    } catch (const Error& error) {
        return ReadErrorNote(error);
    }
}

// A disk that bears no sign of its own must at least not be one that was in the drive before, most
// likely because nobody has changed it.
bool DiskSet::IsAnother(const platform::FileInfo& info, std::uint32_t disk) {
    const Seen here{{info.size, DiskSigns::HeadCrc(*file_)}, info.times.modified};
    if (!signs_.Knows(disk)) {
        const auto is_here = [&](const auto& other) {
            return other.first != disk && other.second == here;
        };
        const auto is_listed = [&](const auto& other) { return other.second == here.file; };
        if (std::any_of(seen_.begin(), seen_.end(), is_here) ||
            std::any_of(signs_.listed.begin(), signs_.listed.end(), is_listed)) {
            return true;
        }
    }
    seen_[disk] = here;
    return false;
}

}  // namespace vantrel::zip
