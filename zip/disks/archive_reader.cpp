#include "zip/disks/archive_reader.h"

#include <algorithm>

#include "common/path.h"
#include "zip/base/retry.h"
#include "zip/disks/disk_prompt.h"

namespace vantrel::zip {

AskForDisk AskWith(RunContext& channel) {
    return
        [&channel](const ComponentMessage& failure) { return channel.AskForDiskOrStop(failure); };
}

// The position of an offset that may be past the end of its disk.
DiskSet::Position DiskSet::Find(std::uint64_t offset) {
    Position at{DiskOfOffset(offset), offset - OffsetOnDisk(DiskOfOffset(offset), 0)};
    while (at.disk + 1 < identity_.disks) {
        if (at.disk >= sizes_.size() || sizes_[at.disk] == 0) {
            RequireDisk(at.disk);
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
    if (at.disk >= identity_.disks) {
        return 0;
    }
    return ReadOnDisk(at, static_cast<char*>(out), count);
}

// Only the disk that is open has a size that counts.
std::uint64_t DiskSet::Available(std::uint64_t offset) const {
    const std::uint32_t disk = DiskOfOffset(offset);
    const std::uint64_t on_disk = offset - OffsetOnDisk(disk, 0);
    const bool is_inside = IsOpen(disk) && on_disk < sizes_[disk];
    return is_inside ? sizes_[disk] - on_disk : kUnknownSize;
}

std::size_t DiskSet::ReadOnDisk(Position at, char* out, std::size_t count) {
    for (;;) {
        RequireDisk(at.disk);
        const auto read = [&] {
            file_->Seek(at.offset);
            return file_->Read(out, count);
        };
        try {
            return clock_ == nullptr ? read() : platform::RetryReading(*clock_, read);
        } catch (const Error& error) {
            if (unreadable_ == Unreadable::kRaise && error.number() == error_number::kDeviceIo) {
                throw;
            }
            file_.reset();
            Ask(error.number(), at.disk, ReadErrorNote(error));
        }
    }
}

void DiskSet::RequireDisk(std::uint32_t disk) {
    if (IsOpen(disk)) {
        return;
    }
    if (IsMissing(disk)) {
        RaiseMissing(disk);
    }
    for (;;) {
        file_.reset();  // so that the disk can be taken out
        const std::string why = OpenDisk(disk);
        if (why.empty()) {
            disk_ = disk;
            sizes_.resize(std::max<std::size_t>(sizes_.size(), disk + std::size_t{1}));
            sizes_[disk] = file_->Size();
            return;
        }
        file_.reset();
        Ask(error_number::kDiskNotReady, disk, why);
    }
}

std::uint64_t DiskSet::SizeOf(std::uint32_t disk) {
    RequireDisk(disk);
    return sizes_[disk];
}

std::map<std::uint32_t, DiskIdentity::Listed> DiskSet::SeenFiles() const {
    std::map<std::uint32_t, DiskIdentity::Listed> files;
    for (const auto& [disk, seen] : seen_) {
        files[disk] = seen.file;
    }
    return files;
}

void DiskSet::RaiseMissing(std::uint32_t disk) const {
    const bool asks = unreadable_ == Unreadable::kAsk;
    throw Error(asks ? error_number::kDiskNotReady : error_number::kDeviceIo, "",
                MissingText(disk));
}

void DiskSet::Ask(int code, std::uint32_t disk, const std::string& note) {
    ComponentMessage question =
        Failure(code, path_,
                PromptForDisk(disk + 1, identity_.disks, path_,
                              identity_.disks == 0 ? note + UnknownNumberNote() : note));
    question.disk = disk + 1;
    if (!ask_(question)) {
        missing_.insert(disk);
        RaiseMissing(disk);
    }
}

// Opens the archive's file on the disk in the drive; returns why that is not disk `disk`, "" if it
// is.
std::string DiskSet::OpenDisk(std::uint32_t disk) {
    try {
        if (!files_.Find(path::Root(path_))) {
            return NoDiskNote();
        }
        const auto info = files_.Find(path_);
        if (!info) {
            return MissingNote(path_);
        }
        file_ = files_.Open(path_, platform::OpenMode::kRead);
        return IsExpected(*info, disk) ? "" : OtherDiskNote();
    } catch (const Error& error) {
        return ReadErrorNote(error);
    }
}

bool DiskSet::IsExpected(const platform::FileInfo& info, std::uint32_t disk) {
    Seen here{{info.size, 0}, info.times.modified};
    for (int tries_left = platform::kTriesWhenLocked; tries_left > 0; --tries_left) {
        try {
            if (!identity_.Matches(*file_, disk)) {
                return false;
            }
            here.file.head_crc = DiskIdentity::HeadCrc(*file_);
            break;
        } catch (const Error& error) {
            // A disk with an unreadable sector where it would be identified may have intact files.
            if (unreadable_ == Unreadable::kAsk || error.number() != error_number::kDeviceIo) {
                throw;
            }
        }
    }
    if (!identity_.CanVerify(disk) && WasSeen(here, disk)) {
        return false;
    }
    seen_[disk] = here;
    return true;
}

// A disk that cannot be verified must at least not be one that was in the drive before, most likely
// because it was not changed.
bool DiskSet::WasSeen(const Seen& here, std::uint32_t disk) const {
    const auto is_here = [&](const auto& other) {
        return other.first != disk && other.second == here;
    };
    const auto is_listed = [&](const auto& other) { return other.second == here.file; };
    return std::any_of(seen_.begin(), seen_.end(), is_here) ||
           std::any_of(identity_.listed.begin(), identity_.listed.end(), is_listed);
}

platform::File& ArchiveReader::Opened() {
    if (!file_) {
        file_ = files_.Open(path_, platform::OpenMode::kRead);
        position_ = 0;
        if (channel_ != nullptr && file_->Size() != expected_size_) {
            throw Error(error_number::kDeviceIo, "", "It is another archive than before");
        }
    }
    return *file_;
}

template <typename Step>
auto ArchiveReader::Try(Step step) {
    const auto once = [&] {
        try {
            return step(Opened());
        } catch (const Error&) {
            file_.reset();  // a disk that is inserted again needs a new handle
            throw;
        }
    };
    if (channel_ == nullptr) {
        return once();
    }
    const auto describe = DescribeFailure("The archive cannot be read", path_);
    return RetryOrAsk(*channel_, describe, once);
}

void ArchiveReader::AskOn(RunContext& channel, const Directory& directory, platform::Clock& clock) {
    channel_ = &channel;
    clock_ = &clock;
    expected_size_ = directory.archive_size;
    if (directory.disks.IsSpanned()) {
        ask_ = AskWith(channel);
        OpenAsSpanned(directory.disks);
    }
}

void ArchiveReader::AskForDisks(platform::Drives& drives, AskForDisk ask) {
    ask_ = std::move(ask);
    removable_ = drives.Type(path::Root(path_)) == platform::drive_type::kRemovable;
}

bool ArchiveReader::OpenAsSpanned(const DiskIdentity& disks) {
    if (!ask_) {
        return false;
    }
    file_.reset();
    const auto unreadable =
        clock_ == nullptr ? DiskSet::Unreadable::kAsk : DiskSet::Unreadable::kRaise;
    set_ = std::make_unique<DiskSet>(files_, path_, disks, ask_, unreadable, clock_);
    return true;
}

// The signature that the file begins with; "" when the medium cannot be read there.
std::string ArchiveReader::Start() {
    try {
        return Bytes(0, kSignatureSize);
    } catch (const Error& error) {
        if (error.number() != error_number::kDeviceIo) {
            throw;
        }
        return "";
    }
}

DiskChanger::LastDisk ArchiveReader::ChangeToLastDisk() {
    const std::string start = Start();
    if (!ask_ || (!removable_ && !HasSignature(start, kSpannedMarker))) {
        return LastDisk::kNone;
    }
    std::string note = NotLastNote();
    for (;;) {
        file_.reset();  // so that the disk can be taken out
        ComponentMessage question =
            Failure(error_number::kDiskNotReady, path_, PromptForDisk(0, 0, path_, note));
        question.disk = kLastDisk;
        if (!ask_(question)) {
            // An archive in one file begins like this, and a disk of a set hardly ever.
            return HasSignature(start, kLocalSignature) ? LastDisk::kNone : LastDisk::kMissing;
        }
        try {
            Opened();
            return LastDisk::kInserted;
        } catch (const Error& error) {
            const int number = error.number();
            const bool missing =
                number == error_number::kFileNotFound || number == error_number::kPathNotFound;
            note = missing ? MissingNote(path_) : ReadErrorNote(error);
        }
    }
}

std::uint64_t ArchiveReader::Size() {
    return set_ ? kUnknownSize : Try([](platform::File& file) { return file.Size(); });
}

std::size_t ArchiveReader::ReadAhead(std::uint64_t offset, void* out, std::size_t count) {
    return set_ ? set_->ReadAhead(offset, out, count) : ReadAt(offset, out, count);
}

std::size_t ArchiveReader::ReadAt(std::uint64_t offset, void* out, std::size_t count) {
    if (set_) {
        return set_->ReadAt(offset, out, count);
    }
    if (clock_ == nullptr) {
        return ReadOnce(offset, out, count);
    }
    return platform::RetryReading(*clock_, [&] { return ReadOnce(offset, out, count); });
}

std::size_t ArchiveReader::ReadOnce(std::uint64_t offset, void* out, std::size_t count) {
    bool unreadable = false;
    const std::size_t got = Try([&](platform::File& file) {
        if (position_ != offset) {
            file.Seek(offset);
            position_ = offset;
        }
        try {
            const std::size_t read = file.Read(out, count);
            position_ += read;
            return read;
        } catch (const Error& error) {
            if (clock_ == nullptr || error.number() != error_number::kDeviceIo) {
                throw;
            }
            unreadable = true;  // no question
            return std::size_t{0};
        }
    });
    if (unreadable) {
        file_.reset();
        throw Error(error_number::kDeviceIo, "", "the medium cannot be read there");
    }
    return got;
}

}  // namespace vantrel::zip
