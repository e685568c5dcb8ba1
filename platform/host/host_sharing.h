// Who has which file open, within this process: the host lets everybody open everything, and this
// table refuses what the open modes exclude. Safe from any thread.
#pragma once

#include <sys/types.h>

#include "platform/file_system.h"

namespace vantrel::platform {

// A file's place in the table for as long as it is open.
class HostShare {
  public:
    // Raises 70 when somebody who has the file open excludes `mode`, or the other way round.
    HostShare(dev_t device, ino_t number, OpenMode mode);
    ~HostShare();
    HostShare(const HostShare&) = delete;
    HostShare& operator=(const HostShare&) = delete;

    // Raises 70 when somebody has the file open who does not let others rename or remove it.
    static void CheckMovable(dev_t device, ino_t number);

  private:
    dev_t device_;
    ino_t number_;
    OpenMode mode_;
};

}  // namespace vantrel::platform
