// Which backup sets there are.
#pragma once

#include <string>
#include <vector>

#include "forms/program.h"

namespace vantrel {

// Names of the set files in the application folder, in the system's order: plain files, neither
// hidden nor system, whose extension is exactly "ini" without regard to case (the system's own
// search would also find longer extensions by their short names). Raises when the folder cannot be
// listed.
std::vector<std::string> SetFileNames(forms::Program& program);

}  // namespace vantrel
