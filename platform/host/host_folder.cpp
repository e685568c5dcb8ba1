#include "platform/host/host_folder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <string_view>

#include "platform/host/host_file.h"
#include "platform/host/host_info.h"
#include "platform/host/host_path.h"

namespace vantrel::platform {

namespace {

HostFd OpenForListing(HostPlace& place) {
    const auto open = [&] {
        return HostFd(::openat(place.Folder(), place.Name(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    };
    HostFd fd = open();
    if (!fd.IsValid() && (errno == ENOENT || errno == ENOTDIR) && place.Respell()) fd = open();
    if (!fd.IsValid()) RaiseHostError(errno, FileOperation::kList);
    return fd;
}

bool IsDots(std::string_view name) { return name == "." || name == ".."; }

}  // namespace

void ListHostFolder(HostPlace& place, const std::function<bool(const FileInfo&)>& each) {
    HostFd fd = OpenForListing(place);
    const HostDir dir(::fdopendir(fd.Get()));
    if (!dir) RaiseHostError(errno, FileOperation::kList);
    const int folder = fd.Release();
    const std::string prefix = place.Path() + "/";
    bool has_stored_attributes = true;
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(dir.get());
        if (entry == nullptr && errno != 0) RaiseHostError(errno, FileOperation::kList);
        if (entry == nullptr) return;
        if (IsDots(entry->d_name)) continue;
        struct statx status;
        // An entry that is gone by now is one that the listing came too late for.
        if (::statx(folder, entry->d_name, AT_SYMLINK_NOFOLLOW, kHostMask, &status) != 0) continue;
        FileInfo info = InfoFromStatus(entry->d_name, status);
        if (has_stored_attributes) {
            has_stored_attributes = AddStoredAttributes(prefix + info.name, info);
        }
        if (!each(info)) return;
    }
}

std::unique_ptr<File> HostFolder::Create(const std::string& name) {
    if (asked_ < 2 && ++asked_ == 2) Open();
    if (folder_.IsValid() && IsHostName(name)) {
        if (auto file = HostFile::TryCreate(folder_.Get(), name.c_str())) return file;
    }
    return by_path_->Create(name);
}

void HostFolder::Open() {
    const HostPlace place(drives_, HostPath(path_));
    if (!place.ExactNames()) return;
    folder_ = HostFd(::openat(place.Folder(), place.Name(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace vantrel::platform
