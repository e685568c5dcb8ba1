// A desktop shell on a host that has none: nothing opens anything.
#pragma once

#include "platform/machine.h"

namespace vantrel::platform {

class HostShell : public Shell {
  public:
    std::string ProgramFor(const std::string&) override { return ""; }
    int Open(const std::string&, ShellVerb) override { return kNoAssociation; }

  private:
    static constexpr int kNoAssociation = 31;  // what Windows' shell answers then
};

}  // namespace vantrel::platform
