#include "zip/records/compact_directory.h"

#include <algorithm>
#include <tuple>

#include "zip/records/buffered_range.h"
#include "zip/records/record_parser.h"

namespace vantrel::zip {

namespace {

constexpr const char* kForeign = "it is damaged, or was not made by this program";
constexpr const char* kSpanned = "it is on several disks";
constexpr const char* kTooMany = "it has too many entries";
constexpr const char* kOtherCompressor = "another version or another level compressed it";

// FNV-1a, 64 bits. Equal hashes of two names cost time only: the record has the name.
std::uint64_t NameHash(std::string_view name) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : name) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    }
    return hash;
}

// What the Zip64 end record before the end record states; false when it is not directly there.
bool FindEnd64Numbers(ByteSource& source, std::uint64_t& records_at, std::uint64_t& entries,
                      std::uint64_t& start) {
    using namespace end64_record;
    constexpr std::size_t kBoth = kFixedSize + end64_locator::kFixedSize;
    if (records_at < kBoth) {
        return false;
    }
    records_at -= kBoth;
    const std::string both = source.Bytes(records_at, kBoth);
    if (both.size() < kBoth || !HasSignature(both, kEnd64Signature) ||
        !HasSignature(std::string_view(both).substr(kFixedSize), kLocatorSignature)) {
        return false;
    }
    entries = GetNumber<std::uint64_t>(both, kEntries);
    start = GetNumber<std::uint64_t>(both, kDirectoryOffset);
    return true;
}

}  // namespace

std::string CompressorMark(std::uint16_t generation, int level, std::string_view library) {
    std::string mark;
    Put16(mark, generation);
    mark.push_back(static_cast<char>(level));
    Put32(mark, Crc32(library));
    return mark;
}

std::string CompactDirectory::Read(ByteSource& source, const std::string& mark,
                                   std::uint64_t chunk_size) {
    chunk_size_ = chunk_size;
    std::string problem = Locate(source);
    if (problem.empty()) {
        problem = ReadRecords(source, mark);
    }
    return problem;
}

// The end record is always last, and directly behind the directory.
std::string CompactDirectory::Locate(ByteSource& source) {
    using namespace end_record;
    const std::uint64_t size = source.Size();
    const std::string record = size < kFixedSize ? "" : source.Bytes(size - kFixedSize, kFixedSize);
    if (record.size() < kFixedSize || !HasSignature(record, kEndSignature) ||
        GetNumber<std::uint16_t>(record, kCommentLength) != 0) {
        return kForeign;
    }
    if (GetNumber<std::uint16_t>(record, kDisk) != 0) {
        return kSpanned;
    }
    end_ = size - kFixedSize;
    entries_ = GetNumber<std::uint16_t>(record, kEntries);
    start_ = GetNumber<std::uint32_t>(record, kDirectoryOffset);
    const bool wide = entries_ == kSaturated16 || start_ == kSaturated32 ||
                      GetNumber<std::uint32_t>(record, kDirectorySize) == kSaturated32;
    if (wide && !FindEnd64Numbers(source, end_, entries_, start_)) {
        return kForeign;
    }
    if (entries_ > kMaxEntries) {
        return kTooMany;
    }
    const bool exists = start_ < end_ && entries_ <= (end_ - start_) / central_record::kFixedSize;
    return exists ? "" : kForeign;
}

std::string CompactDirectory::ReadRecords(ByteSource& source, const std::string& mark) {
    items_.reserve(static_cast<std::size_t>(entries_));
    BufferedRange bytes(source, start_, end_);
    std::uint64_t at = start_;
    for (std::uint64_t i = 0; i < entries_; ++i) {
        const std::string_view record =
            PeekCentralRecord([&](std::size_t count) { return bytes.Peek(count); });
        if (record.empty() || !Add(record, at)) {
            return kForeign;
        }
        if (i == 0 && ParseCentralNumbers(record).compressor != mark) {
            return kOtherCompressor;
        }
        bytes.Skip(record.size());
        at += record.size();
    }
    std::sort(items_.begin(), items_.end(), Precedes);
    return at == end_ ? "" : kForeign;
}

// False when this program does not write such a record.
bool CompactDirectory::Add(std::string_view record, std::uint64_t at) {
    const CentralRecord parsed = ParseCentralNumbers(record);
    const StoredEntry& entry = parsed.entry;
    const bool known = entry.method == Method::kStored || entry.method == Method::kDeflated;
    if ((entry.flags & ~flag::kUtf8) != 0 || !known || parsed.disk != 0) {
        return false;
    }
    Item item;
    if (!parsed.chunk_index.empty()) {
        const std::uint64_t hash = NameHash(parsed.raw_name);
        item.offset = at;
        item.size = static_cast<std::uint32_t>(hash >> 32);
        item.crc = static_cast<std::uint32_t>(hash);
        item.chunked = true;
        items_.push_back(item);
    } else if (entry.size > 0 && entry.size <= chunk_size_ && entry.packed_size <= entry.size) {
        item.offset = entry.offset;
        item.size = static_cast<std::uint32_t>(entry.size);
        item.crc = entry.crc;
        item.packed_size = static_cast<std::uint32_t>(entry.packed_size);
        item.method = static_cast<std::uint16_t>(entry.method);
        items_.push_back(item);
    }
    return true;
}

bool CompactDirectory::Precedes(const Item& one, const Item& other) {
    return std::tie(one.chunked, one.size, one.crc, one.offset) <
           std::tie(other.chunked, other.size, other.crc, other.offset);
}

// `wanted` has offset 0.
const CompactDirectory::Item* CompactDirectory::Find(const Item& wanted) const {
    const auto found = std::lower_bound(items_.begin(), items_.end(), wanted, Precedes);
    const bool equal = found != items_.end() && found->chunked == wanted.chunked &&
                       found->size == wanted.size && found->crc == wanted.crc;
    return equal ? &*found : nullptr;
}

std::optional<UnsplitData> CompactDirectory::FindUnsplit(std::uint64_t size,
                                                         std::uint32_t crc) const {
    if (size > chunk_size_) {
        return std::nullopt;
    }
    Item wanted;
    wanted.size = static_cast<std::uint32_t>(size);
    wanted.crc = crc;
    const Item* const item = Find(wanted);
    if (item == nullptr) {
        return std::nullopt;
    }
    return UnsplitData{item->offset, item->packed_size, static_cast<Method>(item->method)};
}

std::optional<ChunkedData> CompactDirectory::FindChunked(const std::string& name,
                                                         ByteSource& source) const {
    const std::uint64_t hash = NameHash(name);
    Item wanted;
    wanted.size = static_cast<std::uint32_t>(hash >> 32);
    wanted.crc = static_cast<std::uint32_t>(hash);
    wanted.chunked = true;
    const Item* const item = Find(wanted);
    if (item == nullptr) {
        return std::nullopt;
    }
    std::string bytes;
    const auto peek = [&](std::size_t count) -> std::string_view {
        return bytes = source.Bytes(item->offset, count);
    };
    const std::string_view record = PeekCentralRecord(peek);
    if (record.empty()) {
        return std::nullopt;
    }
    const CentralRecord parsed = ParseCentralNumbers(record);
    const StoredEntry& entry = parsed.entry;
    const std::uint64_t chunks = entry.size / chunk_size_ + (entry.size % chunk_size_ == 0 ? 0 : 1);
    auto index = ParseChunkIndex(parsed.chunk_index, chunks, entry.packed_size);
    if (parsed.raw_name != name || entry.method != Method::kDeflated || !index) {
        return std::nullopt;
    }
    return ChunkedData{entry.offset, entry.size, entry.packed_size, std::move(*index)};
}

}  // namespace vantrel::zip
