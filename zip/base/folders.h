// Two questions about folders that writing and reading an archive both ask. Any thread may call
// them.
#pragma once

#include <string>
#include <vector>

#include "platform/file_system.h"

namespace vantrel::zip {

// Whether something has this path. True also when that cannot be determined: it exists then, but
// access to it is denied.
bool MayExist(platform::FileSystem& files, const std::string& path);
// `folder` and those of its parents that do not exist, the outermost first. Raises nothing.
std::vector<std::string> MissingFolders(platform::FileSystem& files, std::string folder);

}  // namespace vantrel::zip
