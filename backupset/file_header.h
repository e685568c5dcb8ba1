// The five comment lines at the top of every file that the program makes: set files and the
// protected-folder list. Their widths and blanks are part of the formats.
#pragma once

#include <string>
#include <vector>

namespace vantrel {

// Without line ends. All lines but the third, which ends with the version, have 28 characters.
std::vector<std::string> FileHeader();

}  // namespace vantrel
