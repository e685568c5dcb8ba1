// FileSystem over folders of the host; see host_path.h for names and host_info.h for attributes.
#pragma once

#include "platform/file_system.h"
#include "platform/host/host_drives.h"

namespace vantrel::platform {

class HostFileSystem : public FileSystem {
  public:
    explicit HostFileSystem(const HostDriveMap& drives) : drives_(drives) {}

    std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override;
    std::unique_ptr<Folder> OpenFolder(const std::string& path) override;
    std::optional<FileInfo> Find(const std::string& path) override;
    void List(const std::string& folder, const std::function<bool(const FileInfo&)>& each) override;
    void MakeFolder(const std::string& path) override;
    void Rename(const std::string& from, const std::string& to) override;
    void Replace(const std::string& from, const std::string& to) override;
    void RemoveFile(const std::string& path) override;
    void RemoveFolder(const std::string& path) override;
    void SetAttributes(const std::string& path, std::uint32_t attributes) override;
    void SetTimes(const std::string& path, const FileTimes& times) override;
    bool SameFile(const std::string& one, const std::string& other) override;

  private:
    const HostDriveMap& drives_;
};

}  // namespace vantrel::platform
