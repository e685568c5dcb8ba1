// Where an entry may be written: its stored name made into a path below the destination. Pure
// functions, without a look at any disk.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantrel::zip {

struct SafeName {
    // Below the destination, "\" between components; "" when the name is refused.
    std::string path;
    // Why it is refused, for the user; "" when it is not.
    std::string refusal;
    // What had to be changed, each once.
    std::vector<std::string> changes;
};

// Both kinds of slash separate components; one at the end is dropped, and so is "./" at the start
// (a name of nothing else is the destination itself: no path, no refusal). A name that leads out of
// the destination, that is empty, or that means a drive or a device is refused; leading slashes go;
// characters that no Windows name may hold become "_", reserved names get one before them.
SafeName MakeSafeName(std::string_view stored);

// "docs\a.txt" with 2 becomes "docs\a (2).txt".
std::string NumberedPath(const std::string& path, int number);

// Whether the system takes no path as long as this one.
bool IsTooLongPath(std::string_view path);

}  // namespace vantrel::zip
