// Archives made to do harm, one for each trick with names, links, sizes and structures, and what
// must come of each. The table of a test, and what the fuzzers start from.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "zip/base/component_events.h"
#include "zip/base/run_context.h"

namespace vantrel::test {

struct HostileArchive {
    std::string trick;  // letters only: part of a test's name
    std::string bytes;
    // What is in the destination afterwards beside what stood there (kBait): paths below it,
    // sorted, folders end in "\".
    std::vector<std::string> restored{};
    int failed = 0;    // entries that are not restored
    int reported = 0;  // warnings; what is refused is reported, what is changed too
    zip::RunOutcome outcome = zip::RunOutcome::kComplete;
    // Files of the destination that stood there and have been replaced.
    std::vector<std::string> replaced{};
};

std::vector<HostileArchive> HostileArchives();

// How a failed test names it.
inline void PrintTo(const HostileArchive& archive, std::ostream* out) { *out << archive.trick; }

// What stands in the destination before: a folder, a file, a read-only file, and a link to a folder
// outside that holds a file "inner". Their names are for the archives to collide with.
struct Bait {
    static constexpr const char* kFolder = "folder";
    static constexpr const char* kFile = "file";
    static constexpr const char* kReadOnly = "readonly";
    static constexpr const char* kLink = "link";
};

}  // namespace vantrel::test
