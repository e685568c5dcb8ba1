// Cuts the list of files into jobs and reads big files, piece by piece, in order. Workers call it.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "zip/base/retry.h"
#include "zip/deflate/deflate.h"
#include "zip/deflate/sampler.h"
#include "zip/writer/archive_sink.h"
#include "zip/writer/jobs.h"

namespace vantrel::zip {

class WorkSource {
  public:
    WorkSource(SourceReader& reader, SourceList& list, ArchiveSink& sink, int level);
    ~WorkSource();

    // Fills `job` with the next job; false when there is none. Waits while too many packed jobs
    // wait for their turn to be written.
    bool Next(Job& job);

    // Takes a file back, to be stored after all others as a big file: because it has grown above
    // kChunkSize, or (`again`) because it did not shrink and must be stored uncompressed.
    void StoreLater(SourceItem item, bool again);

  private:
    struct Late {
        SourceItem item;
        bool again = false;
    };
    struct BigFile;

    bool NextItem(SourceItem& item, bool& late, bool& again);
    bool RefillLate();
    void FillBatch(Job& job, SourceItem item);
    void StartBigFile(Job& job, SourceItem item, bool again);
    void FillPiece(Job& job);
    void ReadPiece(BigFile& big, Piece& piece, Job& job);
    bool ReadOn(BigFile& big, Job& job);
    void OpenBigFile(BigFile& big);
    bool LooksIncompressible(platform::File& file, std::uint64_t size);

    SourceReader& reader_;
    SourceList& list_;
    ArchiveSink& sink_;
    const int level_;

    std::mutex mutex_;  // guards what follows
    std::uint64_t next_sequence_ = 0;
    std::unique_ptr<BigFile> big_;
    std::optional<SourceItem> read_ahead_;
    std::vector<Late> late_;  // being handed out, the next one last
    Sampler sampler_;

    std::mutex later_mutex_;
    std::vector<Late> later_;
};

}  // namespace vantrel::zip
