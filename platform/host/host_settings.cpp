#include "platform/host/host_settings.h"

namespace vantrel::platform {

std::optional<std::string> HostSettings::Read(const std::string& section, const std::string& key) {
    const std::lock_guard lock(mutex_);
    const auto found = values_.find({section, key});
    if (found == values_.end()) return std::nullopt;
    return found->second;
}

void HostSettings::Write(const std::string& section, const std::string& key,
                         const std::string& value) {
    const std::lock_guard lock(mutex_);
    values_[{section, key}] = value;
}

}  // namespace vantrel::platform
