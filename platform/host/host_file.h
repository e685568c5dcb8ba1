// An open file of the host.
#pragma once

#include <memory>
#include <optional>

#include "platform/file_system.h"
#include "platform/host/host_handles.h"
#include "platform/host/host_path.h"
#include "platform/host/host_sharing.h"

namespace vantrel::platform {

class HostFile : public File {
  public:
    // Raises as FileSystem::Open does.
    static std::unique_ptr<File> Open(HostPlace& place, OpenMode mode);
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
