// Questions about paths that writing and reading an archive both ask. Any thread may call them;
// they raise nothing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace vantrel::zip {

// What has this path; nothing also when that cannot be determined.
std::optional<platform::FileInfo> TryFind(platform::FileSystem& files, const std::string& path);
// Whether something has this path. True also when that cannot be determined: it exists then, but
// access to it is denied.
bool MayExist(platform::FileSystem& files, const std::string& path);
// `folder` and those of its parents that do not exist, the outermost first.
std::vector<std::string> MissingFolders(platform::FileSystem& files, std::string folder);

}  // namespace vantrel::zip
