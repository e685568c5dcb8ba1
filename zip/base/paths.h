// Cutting and joining Windows paths.
#pragma once

#include <string>
#include <string_view>

namespace vantrel::zip {

std::string JoinPath(std::string_view folder, std::string_view name);
// The folder that holds `path`; of a drive root, a share root or a bare name "".
std::string ParentOf(std::string_view path);
// The part that has no parent: "C:\", "\\server\share\".
std::string RootOf(std::string_view path);
// The last component; of a drive root "".
std::string LeafOf(std::string_view path);
// Whether `name` is a date-and-time stamp, "YYYYMMDD_HHNNSS".
bool IsStamp(std::string_view name);

}  // namespace vantrel::zip
