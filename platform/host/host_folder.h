// A folder of the host: creating several files in it, and listing it.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/file_system.h"
#include "platform/host/host_path.h"

namespace vantrel::platform {

// On a drive of exact names (HostDrive::exact_names) it is opened for its second file, because most
// folders have fewer than three files, for which opening costs more than it saves.
class HostFolder : public Folder {
  public:
    // `by_path` creates the files that cannot be created in the open folder, or raises the error.
    HostFolder(const HostDriveMap& drives, std::string path, std::unique_ptr<Folder> by_path)
        : drives_(drives), path_(std::move(path)), by_path_(std::move(by_path)) {}

    std::unique_ptr<File> Create(const std::string& name) override;

  private:
    void Open();

    const HostDriveMap& drives_;
    const std::string path_;
    std::unique_ptr<Folder> by_path_;
    int asked_ = 0;  // files asked for, counted up to 2
    HostFd folder_;
};

// One pass over the folder, one status question an entry and, where the file system can keep
// extended attributes at all, one for those. Raises as FileSystem::List does.
void ListHostFolder(HostPlace& place, const std::function<bool(const FileInfo&)>& each);

}  // namespace vantrel::platform
