// Settings that last as long as the process. Safe from any thread.
#pragma once

#include <map>
#include <mutex>
#include <utility>

#include "platform/machine.h"

namespace vantrel::platform {

class HostSettings : public Settings {
  public:
    std::optional<std::string> Read(const std::string& section, const std::string& key) override;
    void Write(const std::string& section, const std::string& key,
               const std::string& value) override;

  private:
    std::mutex mutex_;
    std::map<std::pair<std::string, std::string>, std::string> values_;
};

}  // namespace vantrel::platform
