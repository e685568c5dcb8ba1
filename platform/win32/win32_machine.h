// The real machine. Made once, at the entry point, before anything else; lives as long as the
// program. Hides every service, so that who includes this sees nothing of the system's headers.
#pragma once

#include <memory>

#include "platform/machine.h"

namespace vantrel::platform {

class Win32Machine {
  public:
    // Switches off the system's own dialogs for drives that are not ready, and decides whether
    // there is a previous instance.
    Win32Machine();
    ~Win32Machine();
    Win32Machine(const Win32Machine&) = delete;
    Win32Machine& operator=(const Win32Machine&) = delete;

    Machine& machine();

    // Copies of the program that start from now on do not find this process as a previous instance.
    void ReleaseInstance();

  private:
    struct Services;
    std::unique_ptr<Services> services_;
};

}  // namespace vantrel::platform
