// Words that the restore room uses in more than one place.
#pragma once

#include <string>

#include "forms/program.h"

namespace vantrel {

// Why the user has to choose the folder by hand, and a call for care.
std::string LocationWarning(const forms::Program& program);

}  // namespace vantrel
