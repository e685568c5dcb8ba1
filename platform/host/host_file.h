// An open file of the host, and the table of open files. The host has no sharing modes;
// the table enforces those of the open modes, within this process.
#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>

#include "platform/file_system.h"
#include "platform/host/host_path.h"

namespace vantrel::platform {

// The entry of an open file in the table. Safe from any thread.
class HostShare {
  public:
    // Raises 70 when `mode` conflicts with a mode in which the file is open.
    HostShare(dev_t device, ino_t number, OpenMode mode);
    ~HostShare();
    HostShare(const HostShare&) = delete;
    HostShare& operator=(const HostShare&) = delete;

    // Raises 70 when the file is open in a mode that excludes renaming and removing.
    static void CheckMovable(dev_t device, ino_t number);

  private:
    dev_t device_;
    ino_t number_;
    OpenMode mode_;
};

class HostFile : public File {
  public:
    // Raises as FileSystem::Open does.
    static std::unique_ptr<File> Open(HostLocation& location, OpenMode mode);
    // A new file in an open folder of a drive of exact names; nullptr when it cannot be made.
    static std::unique_ptr<File> TryCreate(int folder, const char* name);

    HostFile(HostFd fd, std::unique_ptr<HostShare> share)
        : share_(std::move(share)), fd_(std::move(fd)) {}

    std::size_t Read(void* buffer, std::size_t count) override;
    void Write(const void* data, std::size_t count) override;
    void Seek(std::uint64_t position) override;
    std::uint64_t Size() override;
    void Truncate(std::uint64_t size) override;
    void SetTimes(const FileTimes& times) override { times_ = times; }
    void Flush() override;
    void Close() override;

  private:
    std::unique_ptr<HostShare> share_;
    HostFd fd_;
    std::optional<FileTimes> times_;  // set on closing, after the last write
};

}  // namespace vantrel::platform
