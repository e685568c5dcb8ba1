// Makes one zip archive of a folder. The engine of the zip component and of the `vzip` tool.
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
    int level = 9;          // 0 stores everything as it is, 1 is fast, 9 is small
    bool spanning = false;  // go on on the next disk when one is full
    int threads = 0;        // 0: one for each processor
    // Exchanges the compressor, for tests of what happens when it is wrong.
    std::function<std::unique_ptr<RawCompressor>()> make_compressor;
};

struct WriterResult {
    RunOutcome outcome = RunOutcome::kFailed;
    std::uint64_t entries = 0;
    std::int32_t skipped = 0;  // files and folders that matched but are not in the archive
};

// Writes the archive under a temporary name beside its place, and puts it there in one step at the
// very end. Unless the outcome is kComplete, an earlier archive is untouched and nothing new is
// left. Runs on background threads; the caller's thread only raises `events`, and throws only what
// they throw. Memory does not grow with the size of the files, and by about 50 bytes for each of
// them.
WriterResult WriteArchive(const platform::Machine& machine, const WriterOptions& options,
                          RunEvents& events);

}  // namespace vantrel::zip
