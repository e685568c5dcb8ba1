// `vzip create`: makes an archive of a folder, with the engine of the product.
#pragma once

#include <string>
#include <vector>

#include "platform/machine.h"

namespace vantrel::tools {

// Exit codes of `vzip`, the same as those of an unattended backup.
constexpr int kExitComplete = 0;
constexpr int kExitSomeSkipped = 1;
constexpr int kExitFailed = 2;

// What follows "create" on the command line. Returns the exit code.
int CreateArchive(const platform::Machine& machine, const std::vector<std::string>& arguments);

// A path of this computer ("/home/x", "a.zip", "D:\Data"), absolute, the way the seam spells it.
std::string SeamPath(const std::string& path);

}  // namespace vantrel::tools
