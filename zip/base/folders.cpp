#include "zip/base/folders.h"

#include <algorithm>

#include "common/error.h"
#include "common/path.h"

namespace vantrel::zip {

std::optional<platform::FileInfo> TryFind(platform::FileSystem& files, const std::string& path) {
    try {
        return files.Find(path);
    } catch (const Error&) {
        return std::nullopt;
    }
}

bool MayExist(platform::FileSystem& files, const std::string& path) {
    try {
        return files.Find(path).has_value();
    } catch (const Error&) {
        return true;
    }
}

std::vector<std::string> MissingFolders(platform::FileSystem& files, std::string folder) {
    std::vector<std::string> missing;
    for (; !folder.empty() && !MayExist(files, folder); folder = path::Parent(folder)) {
        missing.push_back(folder);
    }
    std::reverse(missing.begin(), missing.end());
    return missing;
}

}  // namespace vantrel::zip
