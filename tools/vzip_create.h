// `vzip create`: makes an archive of a folder, with the engine of the product.
#pragma once

#include <string>
#include <vector>

#include "platform/machine.h"

namespace vantrel::tools {

// What follows "create" on the command line. Returns the exit code.
int CreateArchive(const platform::Machine& machine, const std::vector<std::string>& arguments);

}  // namespace vantrel::tools
