// Files and folders of the system. Retries calls that fail because another program holds the file,
// except to open for reading; see platform/retry.h.
#pragma once

#include <memory>
#include <optional>

#include "platform/file_system.h"
#include "platform/win32/disk_path.h"
#include "platform/win32/handles.h"
#include "platform/win32/system_error.h"

namespace vantrel::platform {

// Any thread may call it.
std::unique_ptr<FileSystem> NewWin32FileSystem(Pause pause = ::Sleep);

// An open file.
class Win32File final : public File {
  public:
    // As FileSystem::Open. Retries while the file is locked, for kWrite and kAppend.
    static std::unique_ptr<File> Open(const DiskPath& path, OpenMode mode, const Pause& pause);

    explicit Win32File(FileHandle handle) : handle_(std::move(handle)) {}

    std::size_t Read(void* buffer, std::size_t count) override;
    void Write(const void* data, std::size_t count) override;
    void Seek(std::uint64_t position) override;
    std::uint64_t Size() override;
    void Truncate(std::uint64_t size) override;
    void SetTimes(const FileTimes& times) override;
    void Flush() override;
    void Close() override;

  private:
    FileHandle handle_;
    // Set when the file is closed: a later write would move the time of modification.
    std::optional<FileTimes> times_;
};

// Sets those of the times that a file system can hold; false as SetFileTime.
bool ApplyTimes(HANDLE file, const FileTimes& times);

}  // namespace vantrel::platform
