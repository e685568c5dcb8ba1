#include "zip/disks/volume.h"

#include <algorithm>
#include <utility>

#include "zip/base/bytes.h"
#include "zip/base/retry.h"
#include "zip/records/format.h"

namespace vantrel::zip {

namespace {

constexpr const char* kCannotWrite = "The archive cannot be written";
constexpr std::size_t kReadSize = std::size_t{1} << 20;
// When a disk is full before its stated free space is used, its capacity is found by smaller and
// smaller writes, down to a sector.
constexpr std::size_t kSteps[] = {64 * 1024, 4096, 512};

}  // namespace

Volume::Volume(platform::FileSystem& files, RunContext& channel, std::string path)
    : files_(files),
      channel_(channel),
      path_(std::move(path)),
      file_(files.Open(path_, platform::OpenMode::kCreateNew)) {}

std::size_t Volume::Offer(std::string_view bytes) {
    return RetryOrAsk(channel_, DescribeFailure(kCannotWrite, path_), [&] {
        try {
            file_->Seek(state_.size);
            file_->Write(bytes.data(), bytes.size());
            return bytes.size();
        } catch (const Error& error) {
            if (error.number() != error_number::kDiskFull) {
                throw;
            }
        }
        return WriteWhatFits(bytes);
    });
}

std::size_t Volume::WriteWhatFits(std::string_view bytes) {
    std::size_t done = 0;
    file_->Truncate(state_.size);
    for (const std::size_t step : kSteps) {
        while (done < bytes.size()) {
            const std::string_view part = bytes.substr(done, step);
            try {
                file_->Write(part.data(), part.size());
                done += part.size();
            } catch (const Error& error) {
                if (error.number() != error_number::kDiskFull) {
                    throw;
                }
                file_->Truncate(state_.size + done);
                break;
            }
        }
    }
    return done;
}

void Volume::Keep(std::string_view offered, std::size_t count) {
    std::string_view kept = offered.substr(0, count);
    if (state_.head.size() < kDiskHead) {
        const std::size_t part = std::min(kDiskHead - state_.head.size(), kept.size());
        state_.head += kept.substr(0, part);
        kept.remove_prefix(part);
    }
    state_.rest_crc = CombineCrc32(state_.rest_crc, Crc32(kept), kept.size());
    state_.size += count;
    if (count < offered.size()) {
        Truncate(state_.size);
    }
}

void Volume::Truncate(std::uint64_t size) {
    RetryOrAsk(channel_, DescribeFailure(kCannotWrite, path_), [&] { file_->Truncate(size); });
}

void Volume::TruncateTo() {
    Truncate(mark_.size);
    state_ = mark_;
}

void Volume::PatchHead(std::string_view bytes) {
    RetryOrAsk(channel_, DescribeFailure(kCannotWrite, path_), [&] {
        file_->Seek(0);
        file_->Write(bytes.data(), bytes.size());
    });
    state_.head.replace(0, bytes.size(), bytes);
}

std::uint32_t Volume::HeadCrc() const { return Crc32(state_.head); }

void Volume::Close() {
    RetryOrAsk(channel_, DescribeFailure(kCannotWrite, path_), [this] { file_->Flush(); });
    // A loss at closing is found by ReadBack.
    const std::unique_ptr<platform::File> closing = std::move(file_);
    try {
        closing->Close();
    } catch (const Error&) {
    }
}

void Volume::ReadBack() {
    RetryOrAsk(channel_,
               DescribeFailure("What was written on this disk cannot be read back", path_),
               [this] { Compare(); });
}

void Volume::Compare() {
    const auto file = files_.Open(path_, platform::OpenMode::kRead);
    Buffer buffer;
    buffer.Resize(kReadSize);
    std::string head;
    std::uint32_t crc = 0;
    std::uint64_t size = 0;
    for (;;) {
        channel_.CheckStop();
        const std::size_t wanted = size == 0 ? kDiskHead : kReadSize;
        const std::size_t count = ReadFully(*file, buffer.data(), wanted);
        if (size == 0) {
            head = buffer.View().substr(0, count);
        } else {
            crc = CombineCrc32(crc, Crc32(buffer.data(), count), count);
        }
        size += count;
        if (count < wanted) {
            break;
        }
    }
    if (size != state_.size || head != state_.head || crc != state_.rest_crc) {
        RaiseError(error_number::kDeviceIo);
    }
}

}  // namespace vantrel::zip
