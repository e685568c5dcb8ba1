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

// The directory of the archive that `source` reads. A sector that cannot be read is damage. Raises
// what `source` raises otherwise.
Directory ReadDamagedDirectory(const platform::Machine& machine, ArchiveReader& source,
                               const SearchProgress& progress);

struct SearchResult {
    RunOutcome outcome = RunOutcome::kFailed;
    std::shared_ptr<const Directory> directory;  // null unless the search is complete
};

// Searches the archive at `path`, with progress. An archive that cannot be opened is a question.
// Blocks until the end of the run; throws only what `events` throws.
SearchResult FindEntries(const platform::Machine& machine, const std::string& path,
                         RunEvents& events);

}  // namespace vantrel::zip
