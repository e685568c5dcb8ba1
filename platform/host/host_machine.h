// The complete machine over a POSIX host. Host tests, fuzzers and developer tools run on it.
#pragma once

#include <map>
#include <memory>
#include <utility>

#include "platform/host/host_code_page.h"
#include "platform/host/host_drives.h"
#include "platform/host/host_services.h"
#include "platform/machine.h"

namespace vantrel::platform {

class HostMachine {
  public:
    // Without a map, Z: is the host's root.
    explicit HostMachine(std::map<char, HostDrive> drives = {{'Z', {.folder = "/"}}},
                         HostProgram program = {})
        : drive_map_(std::move(drives)), process_(std::move(program)) {}
    HostMachine(const HostMachine&) = delete;
    HostMachine& operator=(const HostMachine&) = delete;

    Machine& machine() { return machine_; }
    HostDriveMap& drive_map() { return drive_map_; }

  private:
    HostDriveMap drive_map_;
    HostProcess process_;
    std::unique_ptr<FileSystem> files_ = NewHostFileSystem(drive_map_);
    HostDrives drives_{drive_map_};
    HostClock clock_;
    HostSettings settings_;
    HostCodePage code_page_;
    HostShell shell_;
    HostMailSession mail_session_;
    HostMailMessages mail_messages_;
    Machine machine_{process_,   *files_, drives_,       clock_,        settings_,
                     code_page_, shell_,  mail_session_, mail_messages_};
};

}  // namespace vantrel::platform
