// The commands of `vzip`, which runs the archive engine of the product. Each returns the exit code,
// reports warnings and errors on standard error, and throws std::invalid_argument for arguments
// that it does not accept.
#pragma once

#include <string>
#include <vector>

#include "platform/machine.h"

namespace vantrel::tools {

// Exit codes of `vzip`, the same as those of an unattended backup.
constexpr int kExitComplete = 0;
constexpr int kExitSomeSkipped = 1;
constexpr int kExitFailed = 2;

// An absolute path as the platform interface spells it, for a path of this computer ("/home/x",
// "a.zip", "D:\Data").
std::string PlatformPath(const std::string& path);

// `arguments` are the words after the command's name. With `--disks` the archive may be on several
// disks, which `create`, `extract` and `verify` ask for on the terminal.
//
// `vzip create ARCHIVE FOLDER`: makes or replaces an archive of a folder. Reuses compressed data of
// the archive that it replaces, with `--earlier PATH` of another one, with `--fresh` of none.
int CreateArchive(const platform::Machine& machine, const std::vector<std::string>& arguments);
// `vzip list ARCHIVE`: prints size and name of each entry, control characters escaped. An archive
// with a damaged directory is searched, here and below.
int ListArchive(const platform::Machine& machine, const std::vector<std::string>& arguments);
// `vzip extract ARCHIVE FOLDER`: restores all entries below a folder.
int ExtractFiles(const platform::Machine& machine, const std::vector<std::string>& arguments);
// `vzip verify ARCHIVE`: reads and checks all entries, and writes nothing.
int VerifyFiles(const platform::Machine& machine, const std::vector<std::string>& arguments);

// `vzip --version`: prints the program's version and the built-in compressor, one line each.
int ShowVersion();

}  // namespace vantrel::tools
