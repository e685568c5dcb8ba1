#include "zip/writer/earlier_data.h"

#include <algorithm>
#include <cstring>

#include "zip/records/record_parser.h"

namespace vantrel::zip {

namespace {

// Bytes of one read: the files that follow are most likely unchanged as well, and lie behind.
constexpr std::size_t kReadAhead = 256 * 1024;
// Bytes of a local header for which the first read of an entry has space.
constexpr std::size_t kUsualHeader = 512;

}  // namespace

// The bytes of the archive from `offset` on, at least `count`; null when there are fewer. `wanted`
// is what will be needed most likely.
const std::uint8_t* EarlierData::View(std::uint64_t offset, std::size_t count, std::size_t wanted) {
    const auto in_window = [&] {
        return offset >= window_at_ && offset - window_at_ <= window_.size() &&
               window_.size() - (offset - window_at_) >= count;
    };
    if (!in_window()) {
        window_.Clear();
        window_.Resize(std::max({count, wanted, kReadAhead}));
        window_at_ = offset;
        window_.Resize(archive_.ReadAt(offset, window_.data(), window_.size()));
    }
    return in_window() ? window_.data() + (offset - window_at_) : nullptr;
}

std::string_view EarlierData::ViewData(const UnsplitData& data) {
    constexpr std::size_t kFixedSize = local_header::kFixedSize;
    const std::uint8_t* bytes =
        View(data.header_at, kFixedSize, kFixedSize + kUsualHeader + data.packed_size);
    if (bytes == nullptr) {
        return {};
    }
    const auto header = ParseLocalHeader({reinterpret_cast<const char*>(bytes), kFixedSize});
    if (!header) {
        return {};
    }
    bytes = View(data.header_at + header->Length(), data.packed_size);
    return bytes == nullptr
               ? std::string_view()
               : std::string_view(reinterpret_cast<const char*>(bytes), data.packed_size);
}

std::optional<PackedData> EarlierData::FindEqual(const Buffer& in, std::uint32_t crc) {
    const auto found = archive_.FindUnsplit(in.size(), crc);
    if (!found) {
        return std::nullopt;
    }
    const std::string_view packed = ViewData(*found);
    const bool equal = found->method == Method::kStored
                           ? packed == in.View()
                           : deflater_.Matches(in.data(), in.size(),
                                               reinterpret_cast<const std::uint8_t*>(packed.data()),
                                               packed.size());
    if (!equal) {
        archive_.AddFailure();
        return std::nullopt;
    }
    return PackedData{found->method, packed};
}

bool EarlierData::AppendEqualChunk(const Job& job, std::uint32_t check, const std::stop_token& stop,
                                   Buffer& out) {
    const Chunk& chunk = *job.chunk;
    const auto location = chunk.earlier->Find(chunk.number, chunk.last, check, stop);
    const auto end = location ? CopyEqual(job, *location, out) : std::nullopt;
    chunk.earlier->Settle(chunk.number, end);
    return end.has_value();
}

// Returns where the data ends in the earlier archive.
std::optional<std::uint64_t> EarlierData::CopyEqual(const Job& job,
                                                    const EarlierChunks::Location& location,
                                                    Buffer& out) {
    const auto max_size = static_cast<std::size_t>(location.max_size);
    const std::uint8_t* const packed = View(location.offset, max_size);
    const std::size_t size =
        packed == nullptr ? 0
                          : deflater_.MatchChunk(job.ChunkData(), job.ChunkSize(), job.chunk->last,
                                                 packed, max_size, job.history);
    if (size == 0 || (location.is_exact && size != max_size)) {
        if (location.is_checked) {
            archive_.AddFailure();
        }
        return std::nullopt;
    }
    out.Append(packed, size);
    return location.offset + size;
}

}  // namespace vantrel::zip
