// Where an entry may be written: its stored name converted to a path below the destination. Names
// come from untrusted archives. Pure functions, which access no disk and accept any bytes.
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
    // The changes, each once, for the user.
    std::vector<std::string> changes;
};

// Both kinds of slash separate components; one at the end is dropped, and so is "./" at the start
// (a name of nothing else is the destination itself: no path, no refusal).
//
//   refused:  "" and names with "..", "." or empty components, also with trailing dots and spaces;
//             NUL; drives ("C:x"); network and device paths; components over 255 UTF-16 units
//   changed:  one leading slash is dropped; control characters and < > : " | ? * become "_", and so
//             does each trailing dot or space of a component; reserved names such as CON get "_"
//             before them
//
// Without this an archive could write outside of the destination, or into an alternate stream.
SafeName MakeSafeName(std::string_view stored);

// "docs\a.txt" with 2 becomes "docs\a (2).txt".
std::string NumberedPath(const std::string& path, int number);

// Whether the path is longer than Windows accepts.
bool IsTooLongPath(std::string_view path);

}  // namespace vantrel::zip
