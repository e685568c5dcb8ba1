// The real machine. Created once, at the entry point, before anything else; lives as long as the
// program. The services are hidden, so that this header includes none of the system's.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/machine.h"

namespace vantrel::platform {

class Win32Machine {
  public:
    // Disables the system's dialogs for drives that are not ready, and determines whether there is
    // a previous instance.
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

// For programs of a console: the words of the command line in UTF-8, the program's name first
// (those of main() are in the ANSI code page). What is printed from now on counts as UTF-8, too.
std::vector<std::string> CommandLineWords();

}  // namespace vantrel::platform
