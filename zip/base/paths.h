// Cutting and joining Windows paths.
#pragma once

#include <string>
#include <string_view>

namespace vantrel::zip {

std::string JoinPath(std::string_view folder, std::string_view name);
// The folder that holds `path`; of a drive root, a share root or a bare name "".
std::string ParentOf(std::string_view path);
// The part that has no parent: "C:\", "\\server\share\", "\".
std::string RootOf(std::string_view path);
// The last component; of a drive root "".
std::string LeafOf(std::string_view path);
// A path below some folder, which has no root, in two: "a\b\c.txt" is "a\b" and "c.txt". Copies
// nothing.
struct CutPath {
    std::string_view folder;  // "" where there is none
    std::string_view leaf;
};
CutPath Cut(std::string_view path);
// `path` with the drive of `application_folder` before it, when it begins with exactly one
// backslash ("\Data") and that folder is on a drive; otherwise `path` unchanged.
std::string WithDrive(std::string path, std::string_view application_folder);

}  // namespace vantrel::zip
