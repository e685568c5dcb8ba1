// The whole seam over a POSIX host: what host tests, fuzzers and developer tools run on.
#pragma once

#include <map>

#include "platform/host/host_clock.h"
#include "platform/host/host_code_page.h"
#include "platform/host/host_drive_map.h"
#include "platform/host/host_drives.h"
#include "platform/host/host_file_system.h"
#include "platform/host/host_mail.h"
#include "platform/host/host_process.h"
#include "platform/host/host_settings.h"
#include "platform/host/host_shell.h"
#include "platform/machine.h"

namespace vantrel::platform {

class HostMachine {
  public:
    // Without a map, Z: is the host's root.
    explicit HostMachine(std::map<char, HostDrive> drives = {{'Z', {.folder = "/"}}},
                         HostProgram program = {});
    HostMachine(const HostMachine&) = delete;
    HostMachine& operator=(const HostMachine&) = delete;

    Machine& machine() { return machine_; }
    HostDriveMap& drive_map() { return drive_map_; }

  private:
    HostDriveMap drive_map_;
    HostProcess process_;
    HostFileSystem files_{drive_map_};
    HostDrives drives_{drive_map_};
    HostClock clock_;
    HostSettings settings_;
    HostCodePage code_page_;
    HostShell shell_;
    HostMailSession mail_session_;
    HostMailMessages mail_messages_;
    Machine machine_{process_,   files_, drives_,       clock_,        settings_,
                     code_page_, shell_, mail_session_, mail_messages_};
};

}  // namespace vantrel::platform
