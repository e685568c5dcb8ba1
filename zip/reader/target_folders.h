// Where an extraction will write, told before it does: for callers who have to make room first.
#pragma once

#include <string>
#include <vector>

#include "platform/machine.h"

namespace vantrel::zip {

struct EntryName {
    std::string name;  // as stored
    bool is_folder = false;
};

// The folders that extracting `entries` into `destination` makes or writes into, by the rules of
// the extraction itself: names made safe, "_" behind a folder's name that meets another one's short
// alias on the disk. Paths below the destination ("" is that itself), each once, in the order of
// the entries. An entry whose name is refused has none. Changes nothing and raises nothing: of a
// folder that may not be looked at the name is taken as it is.
std::vector<std::string> TargetFolders(const platform::Machine& machine,
                                       const std::vector<EntryName>& entries,
                                       const std::string& destination);

}  // namespace vantrel::zip
