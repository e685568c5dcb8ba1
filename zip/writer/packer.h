// The part of a backup run that uses the processor: turns a job into the bytes of the archive.
#pragma once

#include <memory>
#include <string>

#include "zip/base/retry.h"
#include "zip/base/run_context.h"
#include "zip/deflate/deflate.h"
#include "zip/writer/earlier_data.h"
#include "zip/writer/jobs.h"

namespace vantrel::zip {

// Reads the small files of a batch, compresses and verifies data, and lays out local headers and
// data as they will stand in the archive. The result depends on the job and the files alone. Each
// worker thread has its own Packer with its own compressor and buffers.
class Packer {
  public:
    // `deflater` is null when everything is to be stored uncompressed. `earlier` is borrowed.
    Packer(SourceFolder& reader, RunContext& channel, std::unique_ptr<Deflater> deflater,
           EarlierArchive& earlier);

    // Returns the packed job. `recycled` becomes its `bytes`; the content is dropped. A file that
    // cannot be read is skipped with a warning; one that has grown above kChunkSize is deferred.
    // Data that fails its verification is a question. The data of the job is lost. Throws
    // RunStopped.
    PackedJob Pack(Job& job, Buffer recycled);

  private:
    void PackBatch(Job& job, PackedJob& packed);
    void PackChunk(const Job& job, PackedJob& packed);
    void AppendChunk(const Job& job, PackedJob& packed);
    PackedEntry CompressItem(const SourceItem& item, Buffer& bytes);
    void PackFile(const SourceItem& item, PackedEntry& result, Buffer& bytes);
    bool ReadFile(PackedEntry& result);
    void AppendEntry(PackedEntry& result, Buffer& bytes);
    Method AppendData(PackedEntry& result, Buffer& bytes);
    Entry MakeEntry(const SourceItem& item);

    SourceFolder& reader_;
    RunContext& channel_;
    std::unique_ptr<Deflater> deflater_;
    std::unique_ptr<EarlierData> earlier_;  // null when nothing is compressed
    Sampler sampler_;

    Buffer input_;  // the file in progress
    std::string header_;
};

}  // namespace vantrel::zip
