// How the lists look for folders and compare their paths.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/machine.h"

namespace vantrel::forms {

// Whether a folder is there to be read; one that may not even be asked for is not. Never raises.
bool IsFolder(platform::FileSystem& files, const std::string& path);

// Names of the folders in `path` as a folder list shows them: sorted without regard to case,
// neither hidden nor system ones nor links. None when the folder is not there or may not be read.
//
// `keep_reading`, unless empty, is asked before each entry of the folder; when it answers false,
// the folders found so far are the result.
std::vector<std::string> SubFolders(platform::Machine& machine, const std::string& path,
                                    const std::function<bool()>& keep_reading = nullptr);

// Whether two paths are one value to a list: letter case and a last "\" make no difference.
bool SamePath(platform::CodePage& code_page, const std::string& one, const std::string& other);

}  // namespace vantrel::forms
