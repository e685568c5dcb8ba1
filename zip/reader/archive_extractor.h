// Restores the entries of one zip archive into a folder. The engine of the unzip component and of
// the `vzip` tool.
//
// An extraction goes through these steps, all on background threads; the caller's thread only
// raises events and shows questions (run_context.h):
//
//  1. The directory is read (records/directory_reader.h), with questions for the disks of a spanned
//     archive (disks/archive_reader.h). A damaged one may be completed by a search.
//  2. One thread plans (extraction_plan.h): safe names, refusals, the order of the data. Planning
//     needs no disk. Where the free space may not suffice, or the directory is not in the order of
//     the data, the complete plan is made first and compared with the free space.
//  3. Meanwhile up to 32 threads restore what is planned (extract_worker.h). Each takes files of
//  one
//     folder from a queue (file_queue.h), because file creation is serialized per folder, reads and
//     checks their data (entry_data.h), makes folders (target_folders.h) and writes the files
//     (target_file.h). A spanned archive is read by one thread.
//  4. Folders get their times and attributes, and the last event is raised.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/machine.h"
#include "zip/base/component_events.h"
#include "zip/reader/target_folders.h"
#include "zip/records/directory_reader.h"

namespace vantrel::zip {

struct ExtractOptions {
    std::string archive;       // full path
    std::string destination;   // folder; made when it is missing
    std::string mask = "*.*";  // which files, by their own names; "*.*" is every entry
    int threads = 0;           // at most 32; 0: one for each processor
    // An archive with a damaged directory is searched (archive_search.h); unsearched, the entries
    // before the damage are restored, and the run fails.
    bool search = false;
    // A file whose data agrees with its local header and not with the directory is restored.
    bool use_local_headers = false;
    // The result of an earlier search, instead of the archive's directory.
    std::shared_ptr<const Directory> searched{};
    // Entries that were listed: an archive with others is not restored, but a question.
    const EntryList* listed = nullptr;
    // What can be read of a damaged file is written, under its name with ".damaged".
    bool keep_broken = false;
    // Every file is read and checked, and nothing is written; `destination` means nothing.
    bool verify_only = false;
};

struct ExtractResult {
    RunOutcome outcome = RunOutcome::kFailed;
    std::uint64_t entries = 0;  // restored
    std::int32_t failed = 0;    // selected entries that were not restored
    bool directory_damaged = false;
};

// Existing files are replaced, each only after the data for it has been checked; nothing is written
// outside of the destination. A failure of one entry is a warning that names it, and the rest is
// restored. An archive that cannot be read and a destination that is full or gone are questions; a
// sector of it that cannot be read costs the file in which it lies.
// Blocks until the end of the run; throws only what `events` throws.
ExtractResult ExtractArchive(const platform::Machine& machine, const ExtractOptions& options,
                             RunEvents& events);

}  // namespace vantrel::zip
