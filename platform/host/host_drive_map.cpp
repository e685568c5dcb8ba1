#include "platform/host/host_drive_map.h"

namespace vantrel::platform {

std::optional<HostDrive> HostDriveMap::Get(char letter) const {
    const std::lock_guard lock(mutex_);
    const auto found = drives_.find(letter);
    if (found == drives_.end()) return std::nullopt;
    return found->second;
}

void HostDriveMap::Set(char letter, HostDrive drive) {
    const std::lock_guard lock(mutex_);
    drives_[letter] = std::move(drive);
}

}  // namespace vantrel::platform
