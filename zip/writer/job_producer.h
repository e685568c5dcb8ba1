// The front end of the packing threads: cuts the list of files into jobs, and reads big files chunk
// by chunk.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "zip/base/retry.h"
#include "zip/deflate/deflate.h"
#include "zip/writer/archive_sink.h"
#include "zip/writer/earlier_archive.h"
#include "zip/writer/jobs.h"

namespace vantrel::zip {

// Hands out jobs in the archive's order. All worker threads call Next; one mutex makes the list,
// the big file and the numbering one sequence, so that the jobs do not depend on which thread asks.
//
// Listed files of at most kChunkSize bytes become batches; larger files are read here, because
// their chunks have to be read in order. When the list is exhausted, the files that the sink has
// deferred follow as big files.
class JobProducer {
  public:
    // Takes the records of `list`. `level` 0 stores everything uncompressed. `earlier`: where
    // chunks of big files may be found again.
    JobProducer(SourceFolder& reader, SourceList& list, ArchiveSink& sink, EarlierArchive& earlier,
                int level);
    ~JobProducer();

    // Returns the next job, or nothing when everything has been handed out and written. `recycled`
    // becomes the job's data buffer; its content is dropped. Blocks while as many jobs as the sink
    // allows are in progress, and, at the end of the list, until all jobs are written: only then
    // are all deferred files known. An unreadable file is a job too (Chunk::unreadable). Throws
    // RunStopped.
    std::optional<Job> Next(Buffer recycled);

  private:
    struct BigFile;

    std::optional<SourceItem> NextListed();
    std::optional<DeferredFile> NextDeferred();
    void FillBatch(Job& job, SourceItem item);
    void StartBigFile(SourceItem item, bool store_only);
    void FillChunk(Job& job);
    void ReadChunk(BigFile& big, Chunk& chunk, Job& job);
    bool ReadNextBytes(BigFile& big, Job& job);
    void OpenBigFile(BigFile& big);
    bool LooksIncompressible(platform::File& file, std::uint64_t size);

    SourceFolder& reader_;
    SourceList& list_;
    ArchiveSink& sink_;
    EarlierArchive& earlier_;
    const int level_;

    std::mutex mutex_;  // guards all members below
    std::uint64_t next_sequence_ = 0;
    std::unique_ptr<BigFile> big_;          // the big file in progress
    std::optional<SourceItem> read_ahead_;  // taken from the list, not yet part of a job
    std::vector<DeferredFile> deferred_;    // in reverse order: the next one is last
    Sampler sampler_;
};

}  // namespace vantrel::zip
