// An archive of one file, written in order and in large writes; headers are patched in place. A
// write that fails is a question, and is repeated from the same offset.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "zip/base/bytes.h"
#include "zip/base/run_context.h"
#include "zip/disks/archive_output.h"
#include "zip/disks/archive_target.h"

namespace vantrel::zip {

class ArchiveFile : public ArchiveOutput {
  public:
    ArchiveFile(const platform::Machine& machine, RunContext& channel, const std::string& archive);

    void Open() override;
    bool CanPatch() const override { return true; }

    using ArchiveOutput::Write;
    void Write(std::string_view bytes, std::span<UnsplitRecord> records) override;
    RecordLocation Next() const override { return {0, Position()}; }
    std::uint64_t Size() const override { return Position(); }
    void Patch(const RecordLocation& place, std::string_view bytes) override;
    void TruncateTo(const RecordLocation& place) override;

    void Finish() override;
    void Commit() override { target_.Commit(); }
    void Abandon() override;

  private:
    std::uint64_t Position() const { return flushed_ + buffer_.size(); }
    void WriteBuffer();
    void WriteAt(std::uint64_t offset, std::string_view bytes);
    ComponentMessage DescribeWrite(const Error& error, std::size_t bytes) const;
    void CloseChecked();

    platform::FileSystem& files_;
    RunContext& channel_;
    ArchiveTarget target_;
    std::string path_;
    std::unique_ptr<platform::File> file_;
    bool created_ = false;
    Buffer buffer_;              // appended, not yet written
    std::uint64_t flushed_ = 0;  // bytes before the buffer
    std::uint64_t file_position_ = 0;
    bool position_known_ = true;
};

}  // namespace vantrel::zip
