#include "zip/reader/archive_source.h"

#include <utility>

#include "zip/base/little_endian.h"
#include "zip/base/paths.h"
#include "zip/disks/disk_prompt.h"
#include "zip/records/entry_records.h"

namespace vantrel::zip {

platform::File& ArchiveSource::Opened() {
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
auto ArchiveSource::Try(Step step) {
    const auto once = [&] {
        try {
            return step(Opened());
        } catch (const Error&) {
            file_.reset();  // a disk that comes back needs a new handle
            throw;
        }
    };
    return channel_ == nullptr
               ? once()
               : UntilItWorks(*channel_, Cannot("The archive cannot be read", path_), once);
}

void ArchiveSource::AskOn(RunChannel& channel, const Directory& directory) {
    channel_ = &channel;
    expected_size_ = directory.archive_size;
    if (directory.disks.IsSet()) {
        ask_ = [&channel](const StepFailure& failure) { channel.RetryOrStop(failure); };
        ReadSet(directory.disks);
    }
}

void ArchiveSource::AskForDisks(platform::Drives& drives, AskForDisk ask) {
    ask_ = std::move(ask);
    removable_ = drives.Type(RootOf(path_)) == platform::drive_type::kRemovable;
}

bool ArchiveSource::ReadSet(const DiskSigns& signs) {
    if (!ask_) {
        return false;
    }
    file_.reset();
    set_ = std::make_unique<DiskSet>(files_, path_, signs, ask_);
    return true;
}

bool ArchiveSource::MayBeOneOfSeveral() {
    const std::string start = Bytes(0, 4);
    return removable_ ||
           (start.size() == 4 && GetNumber<std::uint32_t>(start, 0) == kSpannedMarker);
}

bool ArchiveSource::ChangeToLastDisk() {
    if (!ask_ || !MayBeOneOfSeveral()) {
        return false;
    }
    std::string note = NotLastNote();
    for (;;) {
        file_.reset();  // so that the disk can be taken out
        ask_({error_number::kDiskNotReady, path_, PromptToRead(0, 0, path_, note), {}});
        try {
            Opened();
            return true;
        } catch (const Error& error) {
            const int number = error.number();
            const bool missing =
                number == error_number::kFileNotFound || number == error_number::kPathNotFound;
            note = missing ? MissingNote(path_) : ReadErrorNote(error);
        }
    }
}

std::uint64_t ArchiveSource::Size() {
    return Try([](platform::File& file) { return file.Size(); });
}

std::size_t ArchiveSource::ReadAhead(std::uint64_t offset, void* out, std::size_t count) {
    return set_ ? set_->ReadAhead(offset, out, count) : ReadAt(offset, out, count);
}

std::size_t ArchiveSource::ReadAt(std::uint64_t offset, void* out, std::size_t count) {
    if (set_) {
        return set_->ReadAt(offset, out, count);
    }
    return Try([&](platform::File& file) {
        if (position_ != offset) {
            file.Seek(offset);
            position_ = offset;
        }
        const std::size_t got = file.Read(out, count);
        position_ += got;
        return got;
    });
}

}  // namespace vantrel::zip
