// The pass before a restore: each protected folder that the restore would write into is renamed to
// a numbered name, so that nothing in it is overwritten. Window thread only.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "forms/program.h"

namespace vantrel {

// The entries of a restore and the folders that it writes into.
struct RestoreTargets {
    // The archive's entry names, "/" between levels.
    std::vector<std::string> entries{};
    // Returns the folders below the destination that the component creates or writes into. They
    // differ from the stored names: "./Mine/a.txt" goes into "Mine", "Mi:ne/a.txt" into "Mi_ne".
    // Called only when a folder is protected.
    std::function<std::vector<std::string>()> folders{};
};

// Renames each protected folder whose path occurs anywhere in the path of a target folder, and logs
// it. The comparison is a plain substring search without regard to case, not a test on path
// boundaries. Target folders are those of the stored names and those that the component writes
// into. Raises 53 for a missing list, 62 for a damaged one, and the error of a failed rename.
void RenameProtectedFolders(forms::Program& program, const RestoreTargets& targets,
                            const std::string& destination);

}  // namespace vantrel
