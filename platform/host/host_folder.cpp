#include "platform/host/host_folder.h"

#include <fcntl.h>

#include "platform/host/host_file.h"
#include "platform/host/host_path.h"

namespace vantrel::platform {

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
