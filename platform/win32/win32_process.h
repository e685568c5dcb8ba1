// The running program and its command line.
#pragma once

#include "platform/machine.h"

namespace vantrel::platform {

class Win32Process final : public Process {
  public:
    // The first one that a program makes decides about the previous instance, for all of them.
    Win32Process();
    std::string ApplicationFolder() override;
    std::string ExecutableBaseName() override;
    std::string CommandLine() override;
    std::string WindowsFolder() override;
    bool PreviousInstance() override;
    // Copies that start from now on do not find this process. Its own answer about a previous
    // instance stays.
    static void ReleaseInstance();
    int Processors() override;
    [[noreturn]] void End(int exit_code) override;
};

}  // namespace vantrel::platform
