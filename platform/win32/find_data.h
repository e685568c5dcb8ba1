// Reading folders: from the system's find data to FileInfo.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>

#include "platform/file_system.h"
#include "platform/win32/disk_path.h"

namespace vantrel::platform {

Ticks ToTicks(const FILETIME& time);

// One entry of a folder, and the same for what stands under `path`; see FileSystem.
std::optional<FileInfo> FindOne(const DiskPath& path);
void ListFolder(const DiskPath& folder, const std::function<bool(const FileInfo&)>& each);

}  // namespace vantrel::platform
