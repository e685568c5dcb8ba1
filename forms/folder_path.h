// How the lists spell, compare and look for folders. Only OnApplicationDrive, IsFolder and
// SubFolders ask the machine.
#pragma once

#include <string>
#include <vector>

#include "platform/machine.h"

namespace vantrel::forms {

// Whether the text begins with a drive's letter and a colon.
bool HasDrive(const std::string& path);

// The folder that `text` means, spelled as a folder list spells it: "c:" and "c: [LABEL]" are the
// drive's root "C:\"; the drive letter is a capital; "\" stands at the end only at a drive's root;
// a network path is taken as it is. "" when it is neither a full path on a drive nor a network
// path.
std::string FolderPath(const std::string& text);

// `path` on the application's drive when it begins with exactly one "\", otherwise as it is.
std::string OnApplicationDrive(platform::Machine& machine, const std::string& path);

// The folders that lead from the root ("C:\", "\\server\share") to `path`, both included. `path` is
// spelled as FolderPath returns it.
std::vector<std::string> FolderChain(const std::string& path);

// Whether a folder is there to be read; one that may not even be asked for is not. Never raises.
bool IsFolder(platform::FileSystem& files, const std::string& path);

// Names of the folders in `path` as a folder list shows them: sorted without regard to case,
// neither hidden nor system ones nor links. None when the folder is not there or may not be read.
std::vector<std::string> SubFolders(platform::Machine& machine, const std::string& path);

// `folder` and `name` joined by exactly one "\".
std::string JoinPath(const std::string& folder, const std::string& name);

// The last component; a root is its own name.
std::string FolderName(const std::string& path);

// Whether two paths are one value to a list: letter case and a last "\" make no difference.
bool SamePath(platform::CodePage& letters, const std::string& one, const std::string& other);

// Whether a file's name matches a mask of the classic kind: "*" and "?", letter case aside; "*.*"
// is every name, dotted or not.
bool MatchesMask(platform::CodePage& letters, const std::string& name, const std::string& mask);

}  // namespace vantrel::forms
