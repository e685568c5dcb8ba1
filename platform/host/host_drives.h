// The host folder of each drive letter, and from that map and the host's file systems: answers
// about drives, and files in Windows' terms. The map may change while others use it (a disk is
// taken out). Safe from any thread.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/machine.h"

namespace vantrel::platform {

struct HostDrive {
    std::string folder;  // host path of the drive's root
    int type = drive_type::kFixed;
    std::string label{};
    bool ready = true;  // false: a drive without a disk
    // Names are found as they are spelled only, as the host's own programs find them. Saves
    // searching a folder for another spelling of each missing name, and the table of open files.
    bool exact_names = false;
};

class HostDriveMap {
  public:
    HostDriveMap() = default;
    explicit HostDriveMap(std::map<char, HostDrive> drives) : drives_(std::move(drives)) {}

    // `letter` is a capital.
    std::optional<HostDrive> Get(char letter) const;
    void Set(char letter, HostDrive drive);

  private:
    mutable std::mutex mutex_;
    std::map<char, HostDrive> drives_;
};

class HostDrives : public Drives {
  public:
    explicit HostDrives(const HostDriveMap& drives) : drives_(drives) {}

    int Type(const std::string& root) override;
    DiskSpace Space(const std::string& root) override;
    std::uint64_t FreeBytes(const std::string& folder) override;
    std::string Label(const std::string& root) override;

  private:
    const HostDriveMap& drives_;
};

// Must not outlive the map.
std::unique_ptr<FileSystem> NewHostFileSystem(const HostDriveMap& drives);

}  // namespace vantrel::platform
