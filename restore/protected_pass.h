// The pass before a restore: every protected folder that the restore would write into is renamed to
// a numbered name, so that nothing in it can be overwritten.
#pragma once

#include <string>
#include <vector>

#include "forms/program.h"

namespace vantrel {

// `entries` are the archive's entry names ("/" between levels), `destination` the folder to restore
// into. Renames each protected folder found anywhere in an entry's target path (a plain substring
// search without regard to case, not a test on path boundaries) and logs it. Traps nothing: a
// missing list (53) and a failing rename reach the caller.
void RenameProtectedFolders(forms::Program& program, const std::vector<std::string>& entries,
                            const std::string& destination);

}  // namespace vantrel
