// Rules that every implementation of the machine shares.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/machine.h"

namespace vantrel::platform {

// The part of a clock that does not depend on the time zone. Safe from any thread.
class SteadyClock : public Clock {
  public:
    std::chrono::milliseconds SteadyNow() override;
    void Sleep(std::chrono::milliseconds time) override;
    void Wait(std::condition_variable& signal, std::unique_lock<std::mutex>& lock,
              std::chrono::milliseconds time) override;
};

// The parameters of a command line: the text after the executable's name. The name ends at the
// first space or tab outside quotation marks. Spaces before the first other character separate it
// from the text and are dropped; of a text of spaces only exactly one is dropped (a shell appends
// one even without a parameter). Nothing else is trimmed, and quotation marks in the text stay.
std::string ParameterText(std::string_view whole_line);

// The answer of the classic disk-space call: free and total clusters are at most 2 GB minus one
// cluster, because callers multiply in signed 32-bit arithmetic. Sector and cluster sizes stay. All
// zero when a size is zero or a cluster has 2 GB or more.
DiskSpace ClassicDiskSpace(const DiskSpace& true_space);

// The number format for the texts of a region: decimal mark, mark between groups, and the sizes of
// the groups from the decimal mark on as Windows writes them: "3;0" repeats the last size, "3" does
// not, "3;2;0" is 12,34,567. The English format when `decimal` is "": the region is unknown.
NumberFormat MakeNumberFormat(const std::string& decimal, const std::string& group,
                              const std::string& sizes);

// The operation that has failed; the run-time number of a failure depends on it.
enum class FileOperation {
    kFile,    // opening, reading, writing, renaming, removing a file
    kFolder,  // making, renaming or removing a folder: an operation that is not allowed is 75
    kList,    // listing a folder: a name that is no folder is 76, a folder without access is 75
};

// The run-time number of a failure that has the number `of_a_file` when it concerns a file.
int NumberFor(FileOperation operation, int of_a_file);

}  // namespace vantrel::platform
