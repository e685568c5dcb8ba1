// The pass before a restore: every protected folder that the restore would write into is renamed to
// a numbered name, so that nothing in it can be overwritten.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "forms/program.h"

namespace vantrel {

// Where a restore goes.
struct RestoreTargets {
    // The archive's entry names, "/" between levels.
    std::vector<std::string> entries{};
    // Tells the folders that the component will make or write into, below the destination. Stored
    // names alone do not: "./Mine/a.txt" goes into "Mine", and "Mi:ne/a.txt" into "Mi_ne". Asked
    // only when something is protected.
    std::function<std::vector<std::string>()> folders{};
};

// Renames each protected folder found anywhere in the path of a folder that a name means or the
// component writes into below `destination` (a plain substring search without regard to case, not a
// test on path boundaries) and logs it. Traps nothing: a missing list (53) and a failing rename
// reach the caller.
void RenameProtectedFolders(forms::Program& program, const RestoreTargets& targets,
                            const std::string& destination);

}  // namespace vantrel
