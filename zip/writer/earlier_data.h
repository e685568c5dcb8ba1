// Reuse of the data of an earlier archive: what it holds is decompressed and compared with the data
// to store, byte by byte, and only then copied. That is the check that newly compressed data gets;
// only the compression is saved.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <string_view>

#include "zip/deflate/deflate.h"
#include "zip/writer/earlier_archive.h"
#include "zip/writer/jobs.h"

namespace vantrel::zip {

// A file's data as it stands in an archive.
struct PackedData {
    Method method = Method::kStored;
    std::string_view bytes;
};

// Each worker thread has its own.
class EarlierData {
  public:
    // Both are borrowed.
    EarlierData(EarlierArchive& archive, Deflater& deflater)
        : archive_(archive), deflater_(deflater) {}

    // The earlier archive's data of a file of at most kChunkSize bytes, when it is proved equal to
    // `in`, whose CRC-32 is `crc`. Size and CRC decide before anything is read. Valid until the
    // next call.
    std::optional<PackedData> FindEqual(const Buffer& in, std::uint32_t crc);

    // Appends the earlier archive's data of the chunk in `job` to `out` and returns true when it is
    // proved equal. `check`: as in ChunkIndexItem. Chunks of one file may be looked for at the same
    // time; `stop` ends the wait of one for another.
    bool AppendEqualChunk(const Job& job, std::uint32_t check, const std::stop_token& stop,
                          Buffer& out);

  private:
    const std::uint8_t* View(std::uint64_t offset, std::size_t count, std::size_t wanted = 0);
    std::optional<std::uint64_t> CopyEqual(const Job& job, const EarlierChunks::Location& location,
                                           Buffer& out);
    std::string_view ViewData(const UnsplitData& data);

    EarlierArchive& archive_;
    Deflater& deflater_;
    Buffer window_;  // of the archive, from window_at_ on
    std::uint64_t window_at_ = 0;
};

}  // namespace vantrel::zip
