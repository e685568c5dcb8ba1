#include "zip/disks/archive_file.h"

#include <algorithm>
#include <utility>

#include "zip/base/retry.h"
#include "zip/disks/disk_prompt.h"

namespace vantrel::zip {

namespace {

// Bytes of one write. Large, because every write costs a round trip to the disk or the network.
constexpr std::size_t kWriteSize = std::size_t{1} << 20;

constexpr const char* kCannotWrite = "The archive cannot be written";

}  // namespace

ArchiveFile::ArchiveFile(const platform::Machine& machine, RunContext& channel,
                         const std::string& archive)
    : files_(machine.files),
      channel_(channel),
      target_(machine, channel, archive),
      path_(target_.Temporary()) {}

void ArchiveFile::Open() {
    target_.RemoveLeftovers();
    target_.MakeFolders();
    file_ = RetryOrAsk(channel_, DescribeFailure("The archive cannot be created", path_),
                       [this] { return files_.Open(path_, platform::OpenMode::kCreateNew); });
    created_ = true;
}

void ArchiveFile::Write(std::string_view bytes, std::span<UnsplitRecord> records) {
    for (UnsplitRecord& record : records) {
        record.place = {0, Position() + record.at};
    }
    buffer_.Reserve(kWriteSize);
    while (!bytes.empty()) {
        const std::size_t part = std::min(bytes.size(), kWriteSize - buffer_.size());
        buffer_.Append(bytes.substr(0, part));
        bytes.remove_prefix(part);
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

// What is still needed is estimated from what was written for the files done so far.
ComponentMessage ArchiveFile::DescribeWrite(const Error& error, std::size_t bytes) const {
    if (error.number() != error_number::kDiskFull) {
        return DescribeFailure(kCannotWrite, path_)(error);
    }
    const double share = channel_.ShareDone();
    const double rest = share > 0 ? static_cast<double>(flushed_) * (1 - share) / share : 0;
    const std::uint64_t needed = bytes + static_cast<std::uint64_t>(rest);
    return Failure(error.number(), target_.Archive(),
                   FullDriveText(target_.Archive(), needed, target_.FreeBytes()));
}

void ArchiveFile::WriteAt(std::uint64_t offset, std::string_view bytes) {
    const auto describe = [&](const Error& error) { return DescribeWrite(error, bytes.size()); };
    RetryOrAsk(channel_, describe, [&] {
        if (!position_known_ || file_position_ != offset) {
            position_known_ = false;
            file_->Seek(offset);
        }
        position_known_ = false;  // a failed write may be partial
        file_->Write(bytes.data(), bytes.size());
        file_position_ = offset + bytes.size();
        position_known_ = true;
    });
}

void ArchiveFile::Patch(const RecordLocation& place, std::string_view bytes) {
    const std::uint64_t offset = place.offset;
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

void ArchiveFile::TruncateTo(const RecordLocation& place) {
    const std::uint64_t offset = place.offset;
    if (offset >= flushed_) {
        buffer_.Resize(static_cast<std::size_t>(offset - flushed_));
        return;
    }
    RetryOrAsk(channel_, DescribeFailure(kCannotWrite, path_), [&] {
        position_known_ = false;
        file_->Truncate(offset);
    });
    buffer_.Clear();
    flushed_ = offset;
}

void ArchiveFile::Finish() {
    WriteBuffer();
    const auto describe = [this](const Error& error) { return DescribeWrite(error, 0); };
    RetryOrAsk(channel_, describe, [this] { file_->Flush(); });
    RetryOrAsk(channel_, DescribeFailure("The archive cannot be closed", path_),
               [this] { CloseChecked(); });
}

// A file can be closed only once; after a failed close its size shows whether anything was lost.
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

void ArchiveFile::Abandon() {
    file_.reset();
    target_.Abandon(created_);
}

}  // namespace vantrel::zip
