#include "tests/support/faulty_file.h"

#include <algorithm>

namespace vantrel::test {

std::size_t FaultyFile::Read(void* buffer, std::size_t count) {
    const bool is_short = Enter(Call::kRead).short_read && count > 1;
    const std::size_t wanted = is_short ? count / 2 : count;
    const std::size_t got = real_->Read(buffer, std::min(wanted, plan_.ReadLimit()));
    position_ += got;
    return got;
}

void FaultyFile::WriteThrough(const void* data, std::size_t count) {
    real_->Write(data, count);
    if (image_) {
        unflushed_->Wrote(*image_, position_, {static_cast<const char*>(data), count});
    }
    position_ += count;
}

void FaultyFile::Write(const void* data, std::size_t count) {
    const auto verdict = Enter(Call::kWrite);
    if (verdict.short_write) {
        WriteThrough(data, count / 2);
        RaiseError(verdict.number);
    }
    const std::size_t fits = plan_.TakeSpace(count);
    WriteThrough(data, fits);
    if (fits < count) {
        RaiseError(error_number::kDiskFull);
    }
}

void FaultyFile::Seek(std::uint64_t position) {
    Enter(Call::kSeek);
    real_->Seek(position);
    position_ = position;
}

std::uint64_t FaultyFile::Size() {
    Enter(Call::kSize);
    return real_->Size();
}

void FaultyFile::Truncate(std::uint64_t size) {
    Enter(Call::kTruncate);
    real_->Truncate(size);
    if (image_) {
        unflushed_->Truncated(*image_, size);
    }
    position_ = size;
}

void FaultyFile::SetTimes(const platform::FileTimes& times) {
    Enter(Call::kSetFileTimes);
    real_->SetTimes(times);
}

void FaultyFile::Flush() {
    Enter(Call::kFlush);
    real_->Flush();
    if (image_) {
        unflushed_->Flushed(*image_);
    }
}

void FaultyFile::Close() {
    Enter(Call::kClose);
    real_->Close();
}

}  // namespace vantrel::test
