// The per-user settings store: HKEY_CURRENT_USER\Software\<product>\<section>, one text value a
// key.
#pragma once

#include "platform/machine.h"

namespace vantrel::platform {

class Win32Settings final : public Settings {
  public:
    std::optional<std::string> Read(const std::string& section, const std::string& key) override;
    // Raises 70 when the store may not be written, 57 when it fails.
    void Write(const std::string& section, const std::string& key,
               const std::string& value) override;
};

}  // namespace vantrel::platform
