// Makes one zip archive of a folder: the engine of the zip component and of the `vzip` tool.
//
// How a backup flows:
//
//   ScanSource        lists the source folder: a SourceList of files and empty folders, in order
//   JobProducer       cuts the list into jobs: batches of small files, chunks of big ones
//   Packer            turns a job into archive bytes: reads, compresses, verifies
//   EarlierData       finds compressed data in an earlier archive that is equal (then only copied)
//   ArchiveSink       writes the packed jobs in order, and the central directory at the end
//   ArchiveOutput     one file or several disks (zip/disks)
//
// Threads: the caller's thread only raises events (RunContext). One background thread of the run
// scans, with a helper that lists folders ahead (FolderQueue), then starts the worker threads,
// waits for them and finishes the archive. Each worker repeats one loop: get a job from the
// producer, pack it with its own Packer, deliver it to the sink. The sink limits the number of jobs
// in progress, so memory does not grow with the sizes of the files, but by about 50 bytes for each
// of them.
//
// Calls go one way: the producer asks the sink for a free slot and for deferred files; a packed job
// carries everything else. Files that must be stored again (DeferredFile) come last.
//
// The archive does not depend on the number of threads: jobs are cut from the list under one lock
// and numbered, a packed job depends on nothing but its job and the files, the sink writes in the
// order of the numbers, and deferred files are taken, sorted, when all jobs before them are
// written.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/machine.h"
#include "zip/base/run_context.h"
#include "zip/deflate/deflate.h"
#include "zip/writer/source_scan.h"

namespace vantrel::zip {

struct WriterOptions {
    std::string archive;  // full path of the archive to make or replace
    SourceSpec source;
    int level = 9;          // 0 stores everything uncompressed, 1 is fast, 9 is small
    bool spanning = false;  // continue on the next disk when one is full
    int threads = 0;        // worker threads, at most 12; 0: one for each processor
    // Full path of an archive whose compressed data is reused where it is proved equal; "": none.
    // The result is the same, only faster, or slower by little.
    std::string earlier;
    // Replaces the compressor, for tests of a faulty one.
    std::function<std::unique_ptr<RawCompressor>()> make_compressor;
};

struct WriterResult {
    RunOutcome outcome = RunOutcome::kFailed;
    std::uint64_t entries = 0;
    std::int32_t skipped = 0;        // files and folders that matched but are not in the archive
    std::uint64_t reused_bytes = 0;  // of the files' data
};

// Writes the archive under a temporary name beside its final one and renames it at the very end.
// Unless the outcome is kComplete, an earlier archive is unchanged and nothing new remains. Blocks
// until the run is over; throws only what `events` throw.
WriterResult WriteArchive(const platform::Machine& machine, const WriterOptions& options,
                          RunEvents& events);

}  // namespace vantrel::zip
