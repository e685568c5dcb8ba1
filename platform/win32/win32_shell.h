// The shell of the user's desktop.
#pragma once

#include "platform/machine.h"

namespace vantrel::platform {

class Win32Shell final : public Shell {
  public:
    std::string ProgramFor(const std::string& file) override;
    int Open(const std::string& target, ShellVerb verb) override;
};

}  // namespace vantrel::platform
