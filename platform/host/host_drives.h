// Drive questions, answered from the drive map and the host's file systems.
#pragma once

#include "platform/host/host_drive_map.h"
#include "platform/machine.h"

namespace vantrel::platform {

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

}  // namespace vantrel::platform
