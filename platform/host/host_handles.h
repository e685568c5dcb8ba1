// Owners of what the host's calls hand out.
#pragma once

#include <dirent.h>
#include <unistd.h>

#include <memory>
#include <utility>

namespace vantrel::platform {

// A file descriptor; closes it when it goes.
class HostFd {
  public:
    HostFd() = default;
    explicit HostFd(int fd) : fd_(fd) {}
    HostFd(HostFd&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    HostFd& operator=(HostFd&& other) noexcept {
        if (this != &other) {
            Close();
            fd_ = std::exchange(other.fd_, -1);
        }
        return *this;
    }
    ~HostFd() { Close(); }

    bool IsValid() const { return fd_ >= 0; }
    int Get() const { return fd_; }
    int Release() { return std::exchange(fd_, -1); }
    // Whether everything went well; true when nothing was open.
    bool Close() { return !IsValid() || ::close(Release()) == 0; }

  private:
    int fd_ = -1;
};

struct CloseDir {
    void operator()(DIR* dir) const { ::closedir(dir); }
};
using HostDir = std::unique_ptr<DIR, CloseDir>;

}  // namespace vantrel::platform
