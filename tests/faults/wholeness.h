// What must be whole whatever goes wrong. Each check says in words what is lost, "" for nothing.
#pragma once

#include <string>
#include <vector>

#include "tests/faults/computer.h"

namespace vantrel::test {

// The file holds one of these texts. A missing file is the text "".
std::string OneOf(Computer& computer, const std::string& path,
                  const std::vector<std::string>& texts);

// Every record that was there is there, as it was, and what has come are records: at most one of
// them cut for each write that the fault has cut.
std::string LogWhole(Computer& computer, const std::string& earlier);

// The archive is the earlier one to the byte, or a whole one of files of `source` with their
// content. `files` is how many are in it, -1 for the earlier one.
std::string ArchiveWhole(Computer& computer, const std::string& path, const std::string& earlier,
                         const Tree& source, int& files);

// Sets, list and sources other than those that the work is about are as they were.
std::string Untouched(Computer& computer, const std::vector<std::string>& paths);

// Whether a box, the log or the exit code has reported that something was not done. A process that
// died has claimed nothing, nor has a computer whose power failed.
bool IsReported(Computer& computer, const std::string& earlier_log);

// The first that is not empty.
std::string FirstOf(const std::vector<std::string>& losses);

}  // namespace vantrel::test
