// The archive being written: one file, filled from front to back in large writes. A write that
// fails is a question, and is tried again from where it failed. One thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "zip/buffer.h"
#include "zip/run_channel.h"

namespace vantrel::zip {

class ArchiveFile {
  public:
    // `spanning`: the user wants the archive to go on on further disks, which cannot be done; a
    // full disk then says so.
    ArchiveFile(platform::FileSystem& files, RunChannel& channel, std::string path, bool spanning);

    // Creates the file, which must not exist.
    void Create();
    bool Created() const { return created_; }

    // Bytes appended so far, also the offset of the next one.
    std::uint64_t Position() const { return flushed_ + buffer_.size(); }
    void Append(const void* data, std::size_t count);
    void Append(std::string_view bytes) { Append(bytes.data(), bytes.size()); }
    // Overwrites bytes that were appended before.
    void Patch(std::uint64_t offset, std::string_view bytes);
    // Forgets everything from `offset` on.
    void CutBack(std::uint64_t offset);

    // Writes what is left, returns when all of it is on the medium, and closes the file.
    void Finish();
    // Closes the file whatever state it is in.
    void Abandon();

  private:
    void WriteBuffer();
    void WriteAt(std::uint64_t offset, std::string_view bytes);
    void CloseChecked();
    StepFailure CannotWrite(const Error& error) const;

    platform::FileSystem& files_;
    RunChannel& channel_;
    std::string path_;
    bool spanning_;
    std::unique_ptr<platform::File> file_;
    bool created_ = false;
    Buffer buffer_;              // appended, not yet written
    std::uint64_t flushed_ = 0;  // bytes before the buffer
    std::uint64_t file_position_ = 0;
    bool position_known_ = true;
};

}  // namespace vantrel::zip
