// What a worker thread does with a job: read the small files, compress, prove, and lay out headers
// and data as they will stand in the archive.
#pragma once

#include <memory>

#include "zip/base/retry.h"
#include "zip/base/run_context.h"
#include "zip/deflate/deflate.h"
#include "zip/deflate/sampler.h"
#include "zip/writer/jobs.h"
#include "zip/writer/work_source.h"

namespace vantrel::zip {

class Packer {
  public:
    // `deflater` is null when everything is to be stored as it is.
    Packer(SourceReader& reader, WorkSource& source, RunChannel& channel,
           std::unique_ptr<Deflater> deflater);

    // `room` becomes the bytes of the result; what it holds is dropped.
    PackedJob Pack(Job& job, Buffer room);

  private:
    void PackBatch(Job& job, PackedJob& packed);
    void PackPiece(Job& job, PackedJob& packed);
    void PackItem(const SourceItem& item, PackedJob& packed);
    void PackFile(const SourceItem& item, PackedItem& result, Buffer& bytes);
    bool ReadFile(PackedItem& result);
    void AppendFile(PackedItem& result, Buffer& bytes);
    Entry MakeEntry(const SourceItem& item);

    SourceReader& reader_;
    WorkSource& source_;
    RunChannel& channel_;
    std::unique_ptr<Deflater> deflater_;
    Sampler sampler_;
    Buffer input_;
    Buffer output_;
    std::string header_;
};

}  // namespace vantrel::zip
