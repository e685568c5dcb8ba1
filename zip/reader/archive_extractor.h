// Restores the entries of one zip archive into a folder. The engine of the unzip component and of
// the `vzip` tool.
#pragma once

#include <cstdint>
#include <string>

#include "platform/machine.h"
#include "zip/base/run_channel.h"

namespace vantrel::zip {

struct ExtractOptions {
    std::string archive;       // full path
    std::string destination;   // folder; made when it is missing
    std::string mask = "*.*";  // which files, by their own names; "*.*" is every entry
    int threads = 0;           // 0: one for each processor
};

struct ExtractResult {
    RunOutcome outcome = RunOutcome::kFailed;
    std::uint64_t entries = 0;  // restored
    std::int32_t failed = 0;    // selected entries that did not come back
};

// Existing files are replaced, each only when the data for it has been checked; nothing is written
// outside of the destination. What one entry fails with is a warning that names it, and the rest
// goes on. An archive that cannot be read and a destination that is full or gone are questions.
// Entries before the place where a directory is damaged are restored, and the run has failed. Runs
// on background threads; the caller's thread only raises `events`, and throws only what they throw.
ExtractResult ExtractArchive(const platform::Machine& machine, const ExtractOptions& options,
                             RunEvents& events);

}  // namespace vantrel::zip
