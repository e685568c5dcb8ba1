// Drives of the system. Never shows a system dialog: the machine switches those off.
#pragma once

#include "platform/machine.h"

namespace vantrel::platform {

class Win32Drives final : public Drives {
  public:
    int Type(const std::string& root) override;
    DiskSpace Space(const std::string& root) override;
    std::uint64_t FreeBytes(const std::string& folder) override;
    std::string Label(const std::string& root) override;
};

}  // namespace vantrel::platform
