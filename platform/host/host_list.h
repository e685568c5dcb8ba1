// Reading a folder of the host.
#pragma once

#include <functional>

#include "platform/file_system.h"
#include "platform/host/host_path.h"

namespace vantrel::platform {

// One pass over the folder, one status question an entry and, where the file system can keep
// extended attributes at all, one for those. Raises as FileSystem::List does.
void ListHostFolder(HostPlace& place, const std::function<bool(const FileInfo&)>& each);

}  // namespace vantrel::platform
