// `vzip list` and `vzip extract`: reading archives with the engine of the product.
#pragma once

#include <string>
#include <vector>

#include "platform/machine.h"

namespace vantrel::tools {

// What follows the command's name. Both return the exit code.
int ListArchive(const platform::Machine& machine, const std::vector<std::string>& arguments);
int ExtractFiles(const platform::Machine& machine, const std::vector<std::string>& arguments);

}  // namespace vantrel::tools
