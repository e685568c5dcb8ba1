// From Windows paths to the host's. Names are taken as they are spelled when that exists, else
// found without regard to case; nothing is remembered from one call to the next.
#pragma once

#include <dirent.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/host/host_drives.h"

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

// Whether this is a single name, and one that Windows allows.
bool IsHostName(std::string_view name);

// "C:\Folder\Name" taken apart. "/" counts as "\"; "." and ".." are resolved; "\\?\" is dropped.
struct HostPath {
    // Raises 52 for a malformed path or name (characters below a space, any of < > : " | ? *, more
    // than 255 UTF-16 units), 76 for a network path.
    explicit HostPath(std::string_view path);

    char letter = 0;    // capital
    std::string below;  // the names below the drive's root, "/" between them

    bool IsRoot() const { return below.empty(); }
    // The last name; "" of a root.
    std::string Leaf() const { return below.substr(LeafStart()); }
    void SetLeaf(const std::string& name) { below.replace(LeafStart(), below.npos, name); }
    // Takes the last name away; a root stays one.
    void GoUp();

  private:
    std::size_t LeafStart() const { return below.rfind('/') + 1; }
    void AddName(std::string_view name);
};

// The location of an existing or new file on the host: a name in an open folder. For paths that the
// host takes unsplit, the folder is the current one and the name is absolute.
class HostLocation {
  public:
    // The drive's root (68 or 71 when it is not available) and names below it, spelled as given.
    HostLocation(const HostDriveMap& drives, HostPath path);

    int Folder() const { return folder_.IsValid() ? folder_.Get() : kCurrentFolder; }
    const char* Name() const { return name_.c_str(); }
    // A path that leads there while this object lives.
    std::string Path() const;
    // The last name, spelled as on disk after Respell.
    std::string Leaf() const { return path_.Leaf(); }
    bool IsRoot() const { return path_.IsRoot(); }

    // Whether names are found as they are spelled only (HostDrive::exact_names).
    bool ExactNames() const { return exact_names_; }

    // Replaces each name that does not exist as spelled by its spelling on disk, found without
    // regard to case. Returns false when the last name is not there in any spelling (it then
    // stays as given); the place is then where it would be made. Raises 76 for a missing folder.
    bool Respell();
    // Takes another spelling of the last name. Raises 76 for a missing folder.
    void SpellLeaf(const std::string& name);

  private:
    static constexpr int kCurrentFolder = -100;  // AT_FDCWD
    // Points at the names as they are spelled now; false when a folder on the way is not there.
    bool Go();
    void Append(std::string_view names);
    // Respell where names stand as they are spelled.
    bool IsThere() const;
    std::string root_;
    bool exact_names_ = false;
    HostPath path_;
    HostFd folder_;
    std::string name_;
};

}  // namespace vantrel::platform
