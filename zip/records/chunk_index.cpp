#include "zip/records/chunk_index.h"

#include <algorithm>

#include "zip/base/bytes.h"
#include "zip/records/format.h"

namespace vantrel::zip {

namespace {

// Bytes of a central record's other extra fields: times, Zip64 numbers, the compressor's mark.
constexpr std::size_t kOtherFields = 128;
// A file has less than 2^64 bytes, so no item covers more chunks.
constexpr int kMaxShift = 44;

}  // namespace

std::size_t MaxChunkIndexItems(std::size_t name_length) {
    // The complete record is limited as well (4.4.12), for readers that hold it in a buffer.
    const std::size_t taken =
        central_record::kFixedSize + name_length + kOtherFields + kFieldHeader + kChunkIndexHeader;
    constexpr auto kMaxRecord = static_cast<std::size_t>(kSaturated16);
    return taken < kMaxRecord ? (kMaxRecord - taken) / kChunkIndexItem : 0;
}

void ChunkIndexBuilder::Add(const ChunkIndexItem& chunk) {
    if (max_items_ == 0) {
        return;
    }
    if (chunks_ % index_.chunks_in_item == 0 && index_.items.size() == max_items_) {
        JoinNeighbours();
    }
    if (chunks_ % index_.chunks_in_item == 0) {
        index_.items.push_back(chunk);
    } else {
        index_.items.back().packed_size += chunk.packed_size;
    }
    ++chunks_;
}

void ChunkIndexBuilder::JoinNeighbours() {
    std::vector<ChunkIndexItem>& items = index_.items;
    for (std::size_t i = 0; i < items.size(); i += 2) {
        ChunkIndexItem joined = items[i];
        if (i + 1 < items.size()) {
            joined.packed_size += items[i + 1].packed_size;
        }
        items[i / 2] = joined;
    }
    items.resize((items.size() + 1) / 2);
    index_.chunks_in_item *= 2;
}

std::string ChunkIndexBuilder::Body() const {
    if (index_.items.empty()) {
        return "";
    }
    std::string body;
    int shift = 0;
    while (std::uint64_t{1} << shift < index_.chunks_in_item) {
        ++shift;
    }
    body.push_back(static_cast<char>(shift));
    for (const ChunkIndexItem& item : index_.items) {
        if (item.packed_size >= kSaturated32) {
            return "";
        }
        Put32(body, static_cast<std::uint32_t>(item.packed_size));
        Put32(body, item.check);
    }
    return body;
}

std::optional<ChunkIndex> ParseChunkIndex(std::string_view body, std::uint64_t chunks,
                                          std::uint64_t packed_size) {
    if (body.size() < kChunkIndexHeader || static_cast<unsigned char>(body[0]) > kMaxShift) {
        return std::nullopt;
    }
    ChunkIndex index;
    index.chunks_in_item = std::uint64_t{1} << static_cast<unsigned char>(body[0]);
    body.remove_prefix(kChunkIndexHeader);
    const std::uint64_t count =
        chunks / index.chunks_in_item + (chunks % index.chunks_in_item == 0 ? 0 : 1);
    if (count != body.size() / kChunkIndexItem || body.size() % kChunkIndexItem != 0) {
        return std::nullopt;
    }
    std::uint64_t sum = 0;
    for (; !body.empty(); body.remove_prefix(kChunkIndexItem)) {
        const auto size = GetNumber<std::uint32_t>(body, 0);
        index.items.push_back({size, GetNumber<std::uint32_t>(body, sizeof size)});
        sum += size;
    }
    return sum == packed_size ? std::optional(std::move(index)) : std::nullopt;
}

}  // namespace vantrel::zip
