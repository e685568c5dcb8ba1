// Reading a directory, and searching the archive where that is damaged: as a part of another run,
// and as a run of its own.
#pragma once

#include <memory>
#include <string>

#include "platform/machine.h"
#include "zip/base/component_events.h"
#include "zip/base/run_context.h"
#include "zip/disks/archive_reader.h"
#include "zip/reader/archive_search.h"
#include "zip/records/directory_reader.h"

namespace vantrel::zip {

// The directory of the archive at `path`, and what a search finds if it is damaged; so is one with
// a sector that cannot be read, or with a disk that is missing. Raises what the file system raises
// otherwise.
Directory ReadDamagedDirectory(const platform::Machine& machine, const std::string& path,
                               const AskForDisk& ask, const SearchProgress& progress);

struct SearchResult {
    RunOutcome outcome = RunOutcome::kFailed;
    std::shared_ptr<const Directory> directory;  // null unless the search is complete
};

// Searches the archive at `path`, of which `damaged` was read, with progress. An archive that
// cannot be opened is a question. Blocks until the end of the run; throws only what `events`
// throws.
SearchResult FindEntries(const platform::Machine& machine, const std::string& path,
                         const Directory& damaged, RunEvents& events);

}  // namespace vantrel::zip
