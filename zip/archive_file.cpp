#include "zip/archive_file.h"

#include <algorithm>
#include <utility>

namespace vantrel::zip {

namespace {

// Bytes of one write. Large, because every write costs a trip to the disk or the network.
constexpr std::size_t kWriteSize = std::size_t{1} << 20;

}  // namespace

ArchiveFile::ArchiveFile(platform::FileSystem& files, RunChannel& channel, std::string path,
                         bool spanning)
    : files_(files), channel_(channel), path_(std::move(path)), spanning_(spanning) {}

StepFailure ArchiveFile::CannotWrite(const Error& error) const {
    const bool next_disk = spanning_ && error.number() == error_number::kDiskFull;
    return {error.number(), path_,
            Sentence(next_disk ? "The archive needs a second disk, and cannot be continued on one"
                               : "The archive cannot be written",
                     path_, error)};
}

void ArchiveFile::Create() {
    file_ = UntilItWorks(channel_, Cannot("The archive cannot be created", path_), [this] {
        channel_.CheckStop();
        return files_.Open(path_, platform::OpenMode::kCreateNew);
    });
    created_ = true;
}

void ArchiveFile::Append(const void* data, std::size_t count) {
    buffer_.Reserve(kWriteSize);
    const char* next = static_cast<const char*>(data);
    while (count > 0) {
        const std::size_t part = std::min(count, kWriteSize - buffer_.size());
        buffer_.Append(next, part);
        next += part;
        count -= part;
        if (buffer_.size() == kWriteSize) {
            WriteBuffer();
        }
    }
}

void ArchiveFile::WriteBuffer() {
    if (buffer_.empty()) {
        return;
    }
    WriteAt(flushed_, buffer_.View());
    flushed_ += buffer_.size();
    buffer_.Clear();
}

void ArchiveFile::WriteAt(std::uint64_t offset, std::string_view bytes) {
    UntilItWorks(
        channel_, [this](const Error& e) { return CannotWrite(e); },
        [&] {
            channel_.CheckStop();
            if (!position_known_ || file_position_ != offset) {
                position_known_ = false;
                file_->Seek(offset);
            }
            position_known_ = false;  // a write that fails may have written a part
            file_->Write(bytes.data(), bytes.size());
            file_position_ = offset + bytes.size();
            position_known_ = true;
        });
}

void ArchiveFile::Patch(std::uint64_t offset, std::string_view bytes) {
    const std::uint64_t end = offset + bytes.size();
    const auto in_file =
        static_cast<std::size_t>(std::min(end, std::max(flushed_, offset)) - offset);
    if (in_file > 0) {
        WriteAt(offset, bytes.substr(0, in_file));
    }
    if (in_file < bytes.size()) {
        std::copy(bytes.begin() + static_cast<std::ptrdiff_t>(in_file), bytes.end(),
                  buffer_.data() + (offset + in_file - flushed_));
    }
}

void ArchiveFile::CutBack(std::uint64_t offset) {
    if (offset >= flushed_) {
        buffer_.Resize(static_cast<std::size_t>(offset - flushed_));
        return;
    }
    UntilItWorks(
        channel_, [this](const Error& e) { return CannotWrite(e); },
        [&] {
            channel_.CheckStop();
            position_known_ = false;
            file_->Truncate(offset);
        });
    buffer_.Clear();
    flushed_ = offset;
}

void ArchiveFile::Finish() {
    WriteBuffer();
    UntilItWorks(
        channel_, [this](const Error& e) { return CannotWrite(e); },
        [this] {
            channel_.CheckStop();
            file_->Flush();
        });
    channel_.CheckStop();
    UntilItWorks(channel_, Cannot("The archive cannot be closed", path_),
                 [this] { CloseChecked(); });
}

// A file is closed once only; after a failed close its size tells whether anything was lost.
void ArchiveFile::CloseChecked() {
    if (file_) {
        const std::unique_ptr<platform::File> closing = std::move(file_);
        closing->Close();
        return;
    }
    const auto info = files_.Find(path_);
    if (!info || info->size != flushed_) {
        RaiseError(error_number::kDeviceIo);
    }
}

void ArchiveFile::Abandon() { file_.reset(); }

}  // namespace vantrel::zip
