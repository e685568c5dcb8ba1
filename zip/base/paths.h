// Windows paths as text, UTF-8 with backslashes, and the two questions about folders that both
// directions of the engine ask. Usable from any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace vantrel::zip {

// "C:\" and "a" are "C:\a", "C:\b" and "a" are "C:\b\a"; an empty part adds nothing.
std::string JoinPath(std::string_view folder, std::string_view name);
// The folder that holds `path`; "" for a drive root, a share root or a bare name.
std::string ParentOf(std::string_view path);
// The part that has no parent: "C:\", "\\server\share\", "\".
std::string RootOf(std::string_view path);
// The last component; "" for a drive root.
std::string LeafOf(std::string_view path);
// Splits a path without a root: "a\b\c.txt" is "a\b" and "c.txt". Copies nothing.
struct CutPath {
    std::string_view folder;  // "" when there is none
    std::string_view leaf;
};
CutPath Cut(std::string_view path);
// `path` with the drive of `application_folder` before it, when it begins with exactly one
// backslash ("\Data") and that folder is on a drive; otherwise `path` unchanged.
std::string WithDrive(std::string path, std::string_view application_folder);

// Whether something has this path. True also when that cannot be determined: it exists then, but
// access to it is denied.
bool MayExist(platform::FileSystem& files, const std::string& path);
// `folder` and those of its parents that do not exist, the outermost first. Raises nothing.
std::vector<std::string> MissingFolders(platform::FileSystem& files, std::string folder);

}  // namespace vantrel::zip
