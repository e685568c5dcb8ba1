#include "zip/base/paths.h"

#include <algorithm>

#include "common/error.h"

namespace vantrel::zip {

namespace {

// Length of the part that has no parent: "C:\", "\\server\share\", "\".
std::size_t RootLength(std::string_view path) {
    if (path.starts_with("\\\\")) {
        const std::size_t share = path.find('\\', 2);
        const std::size_t end =
            share == std::string_view::npos ? share : path.find('\\', share + 1);
        return end == std::string_view::npos ? path.size() : end + 1;
    }
    if (path.starts_with('\\')) {
        return 1;
    }
    return path.size() >= 3 && path[1] == ':' && path[2] == '\\' ? 3 : 0;
}

}  // namespace

std::string JoinPath(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty() && path.back() != '\\' && !name.empty()) {
        path += '\\';
    }
    path += name;
    return path;
}

std::string ParentOf(std::string_view path) {
    const std::size_t root = RootLength(path);
    while (path.size() > root && path.back() == '\\') {
        path.remove_suffix(1);
    }
    if (path.size() <= root) {
        return "";
    }
    const std::size_t slash = path.rfind('\\');
    if (slash == std::string_view::npos) {
        return "";
    }
    return std::string(path.substr(0, std::max(slash, root)));
}

std::string RootOf(std::string_view path) { return std::string(path.substr(0, RootLength(path))); }

std::string LeafOf(std::string_view path) {
    const std::size_t root = RootLength(path);
    while (path.size() > root && path.back() == '\\') {
        path.remove_suffix(1);
    }
    const std::size_t slash = path.rfind('\\');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

CutPath Cut(std::string_view path) {
    const std::size_t slash = path.rfind('\\');
    return slash == path.npos ? CutPath{"", path}
                              : CutPath{path.substr(0, slash), path.substr(slash + 1)};
}

std::string WithDrive(std::string path, std::string_view application_folder) {
    const bool lacks_drive = path.starts_with('\\') && !path.starts_with("\\\\");
    if (lacks_drive && application_folder.size() >= 2 && application_folder[1] == ':') {
        path.insert(0, application_folder.substr(0, 2));
    }
    return path;
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
    for (; !folder.empty() && !MayExist(files, folder); folder = ParentOf(folder)) {
        missing.push_back(folder);
    }
    std::reverse(missing.begin(), missing.end());
    return missing;
}

}  // namespace vantrel::zip
