#include "zip/reader/entry_data.h"

#include <libdeflate.h>

#include <algorithm>
#include <bit>
#include <map>
#include <string_view>

#include "common/error.h"
#include "zip/reader/entry_stream.h"

namespace vantrel::zip {

namespace {

// Bytes of an entry, packed and unpacked ones together, for which each thread has memory of its
// own.
constexpr std::size_t kSmall = std::size_t{1} << 19;
static_assert(kSmall >= kStreamChunk);

[[noreturn]] void Damaged(const std::string& why) { throw Error(error_number::kDeviceIo, "", why); }

std::string MethodName(std::uint16_t number) {
    // APPNOTE 4.4.5.
    static const std::map<int, const char*> kNames = {
        {1, "Shrunk"},         {2, "Reduced 1"}, {3, "Reduced 2"},
        {4, "Reduced 3"},      {5, "Reduced 4"}, {6, "Imploded"},
        {7, "Tokenized"},      {9, "Deflate64"}, {10, "DCL Imploded"},
        {12, "BZIP2"},         {14, "LZMA"},     {16, "CMPSC"},
        {18, "TERSE"},         {19, "LZ77"},     {20, "Zstandard"},
        {93, "Zstandard"},     {94, "MP3"},      {95, "XZ"},
        {96, "JPEG"},          {97, "WavPack"},  {98, "PPMd"},
        {99, "AES encryption"}};
    const auto found = kNames.find(number);
    return found == kNames.end() ? "unknown" : found->second;
}

// How the numbers of a local header differ from the directory; sizes may be in a descriptor or in a
// Zip64 field instead.
std::string NumbersThatDiffer(const LocalHeader& header, const StoredEntry& entry) {
    if (header.method != entry.method) {
        return "method";
    }
    const auto agrees = [](std::uint32_t local, std::uint64_t central) {
        return local == central || local == kSaturated32;
    };
    const bool in_descriptor = (header.flags & flag::kDescriptor) != 0;
    const bool same = header.crc == entry.crc && agrees(header.packed_size, entry.packed_size) &&
                      agrees(header.size, entry.size);
    return in_descriptor || same ? "" : "size or checksum";
}

// Counts and checks the data that a sink gets.
class CheckedSink {
  public:
    CheckedSink(const StoredEntry& entry, const EntryData::Sink& sink)
        : entry_(entry), sink_(sink) {}

    void Put(const std::uint8_t* data, std::size_t count) {
        if (count > entry_.size - done_) {
            Damaged("it holds more data than stated");
        }
        crc_ = libdeflate_crc32(crc_, data, count);
        done_ += count;
        if (count > 0) {
            sink_(data, count);
        }
    }
    void Finish() const {
        if (done_ != entry_.size) {
            Damaged("it holds less data than stated");
        }
        if (crc_ != entry_.crc) {
            Damaged("its checksum is wrong");
        }
    }

  private:
    const StoredEntry& entry_;
    const EntryData::Sink& sink_;
    std::uint32_t crc_ = 0;
    std::uint64_t done_ = 0;
};

}  // namespace

std::string UnreadableBecause(const StoredEntry& entry) {
    if ((entry.flags & (flag::kStrongEncryption | flag::kMaskedHeader)) != 0) {
        return "it is encrypted (strong encryption)";
    }
    if ((entry.flags & flag::kEncrypted) != 0) {
        return entry.method == Method::kAes ? "it is encrypted (AES)"
                                            : "it is encrypted (ZipCrypto)";
    }
    if ((entry.flags & flag::kPatch) != 0) {
        return "it is a patch of another file";
    }
    const bool known = entry.method == Method::kStored || entry.method == Method::kDeflated ||
                       entry.method == Method::kDeflated64;
    if (!known) {
        const auto number = static_cast<std::uint16_t>(entry.method);
        return "its compression method " + std::to_string(number) + " (" + MethodName(number) +
               ") is not supported";
    }
    return "";
}

HeldMemory::HeldMemory(int threads, std::size_t entries) {
    const std::size_t taken =
        entries < kLimitWithEntries / kOfEachEntry ? entries * kOfEachEntry : kLimitWithEntries;
    const std::size_t limit = std::min(kLimit, kLimitWithEntries - taken);
    left_ = limit - std::min(limit, static_cast<std::size_t>(threads) * kOfEachThread);
    free_.reserve(kLimit / kOfEachThread);  // of all buffers; giving back cannot fail
}

// Capacities are powers of two, so that a later entry is likely to find one of its size.
HeldMemory::Loan HeldMemory::TryBorrow(std::size_t size) {
    size = std::min(std::bit_ceil(size), kMaxHeld);
    const std::lock_guard lock(mutex_);
    auto found = std::find_if(free_.begin(), free_.end(),
                              [size](const auto& one) { return one->capacity() == size; });
    if (found == free_.end()) {
        for (; left_ < size && !free_.empty(); free_.pop_back()) {
            left_ += free_.back()->capacity();
        }
        if (left_ < size) {
            return {nullptr, {this}};
        }
        found = free_.insert(free_.end(), std::make_unique<Buffer>());
        (*found)->Reserve(size);
        left_ -= size;
    }
    Loan loan(found->release(), {this});
    free_.erase(found);
    return loan;
}

void HeldMemory::GiveBack::operator()(Buffer* buffer) const {
    const std::lock_guard lock(memory->mutex_);
    memory->free_.emplace_back(buffer);
}

EntryData::EntryData(ByteSource& source, HeldMemory& memory) : source_(source), memory_(memory) {
    held_.Reserve(kSmall);
}

void EntryData::Prefetch(std::uint64_t offset, std::size_t count) {
    window_.Clear();
    window_.Resize(count);
    window_at_ = offset;
    try {
        window_.Resize(source_.ReadAhead(offset, window_.data(), count));
    } catch (const Error& error) {
        window_.Clear();
        if (error.number() != error_number::kDeviceIo) {
            throw;
        }
        // Only the entries that lie there are lost.
    }
}

// These bytes of the archive, in the window or in `space`.
const std::uint8_t* EntryData::View(std::uint64_t offset, std::size_t count, std::uint8_t* space) {
    if (offset >= window_at_ && offset - window_at_ <= window_.size() &&
        window_.size() - (offset - window_at_) >= count) {
        return window_.data() + (offset - window_at_);
    }
    if (source_.ReadAt(offset, space, count) != count) {
        Damaged("the archive ends before its data");
    }
    return space;
}

EntryData::DataLocation EntryData::FindData(const StoredEntry& entry) {
    if (entry.data_at != 0) {
        return {entry.data_at, ""};
    }
    constexpr std::size_t kFixedSize = local_header::kFixedSize;
    const std::string_view fixed(
        reinterpret_cast<const char*>(View(entry.offset, kFixedSize, held_.data())), kFixedSize);
    const auto header = ParseLocalHeader(fixed);
    if (!header) {
        Damaged("its local header is not where the directory says");
    }
    DataLocation data{0, NumbersThatDiffer(*header, entry)};
    const std::uint64_t name_at = entry.offset + kFixedSize;
    const std::string_view name(
        reinterpret_cast<const char*>(View(name_at, header->name_length, held_.data())),
        header->name_length);
    if (name != entry.RawName()) {
        data.disagreement = "name";
    }
    data.offset = entry.offset + header->Length();
    return data;
}

std::string EntryData::Read(const StoredEntry& entry, const Sink& sink) {
    if (const std::string why = UnreadableBecause(entry); !why.empty()) {
        throw Error(error_number::kBadFileName, "", why);
    }
    auto [data_at, disagreement] = FindData(entry);
    if (entry.method == Method::kStored && entry.size != entry.packed_size) {
        Damaged("its two sizes differ although it is stored");
    }
    if (!TryHold(entry, data_at, sink)) {
        Stream(entry, data_at, sink);
    }
    return disagreement;
}

// False when the entry has to stream. One that continues on the next disk does, so that what is on
// this disk is counted before the next one is asked for.
bool EntryData::TryHold(const StoredEntry& entry, std::uint64_t data_at, const Sink& sink) {
    if (passes_damaged_ || source_.Available(data_at) < entry.packed_size ||
        entry.method == Method::kDeflated64 || entry.packed_size >= kMaxHeld ||
        entry.size >= kMaxHeld - entry.packed_size) {
        return false;
    }
    const auto needed = static_cast<std::size_t>(entry.packed_size + entry.size);
    if (needed <= kSmall) {
        ReadUnsplit(entry, data_at, held_.data(), sink);
        return true;
    }
    const HeldMemory::Loan large = memory_.TryBorrow(needed);
    if (large) {
        ReadUnsplit(entry, data_at, large->data(), sink);
    }
    return large != nullptr;
}

// `space` is for the unpacked bytes, and the packed ones that are not in the window behind them.
void EntryData::ReadUnsplit(const StoredEntry& entry, std::uint64_t data_at, std::uint8_t* space,
                            const Sink& sink) {
    const auto size = static_cast<std::size_t>(entry.size);
    const auto packed_size = static_cast<std::size_t>(entry.packed_size);
    const std::size_t unpacked = entry.method == Method::kDeflated ? size : 0;
    const std::uint8_t* data = View(data_at, packed_size, space + unpacked);
    if (entry.method == Method::kDeflated) {
        const auto result = libdeflate_deflate_decompress(decompressor_.get(), data, packed_size,
                                                          space, size, nullptr);
        if (result != LIBDEFLATE_SUCCESS) {
            Damaged(result == LIBDEFLATE_SHORT_OUTPUT         ? "it holds less data than stated"
                    : result == LIBDEFLATE_INSUFFICIENT_SPACE ? "it holds more data than stated"
                                                              : "its data is damaged");
        }
        data = space;
    }
    if (Crc32(data, size) != entry.crc) {
        Damaged("its checksum is wrong");
    }
    if (size > 0) {
        sink(data, size);
    }
}

void EntryData::Stream(const StoredEntry& entry, std::uint64_t data_at, const Sink& sink) {
    CheckedSink checked(entry, sink);
    std::uint64_t taken = 0;
    const auto more = [&]() -> std::string_view {
        const std::size_t wanted =
            source_.OnThisDisk(data_at + taken, static_cast<std::size_t>(std::min<std::uint64_t>(
                                                    kStreamChunk, entry.packed_size - taken)));
        held_.Clear();
        held_.Resize(wanted);
        held_.Resize(wanted == 0 ? 0 : source_.ReadAt(data_at + taken, held_.data(), wanted));
        if (held_.empty() && wanted > 0) {
            Damaged("the archive ends before its data");
        }
        taken += held_.size();
        return held_.View();
    };
    const auto put = [&](const std::uint8_t* data, std::size_t count) { checked.Put(data, count); };
    Unpack(entry.method, more, put, unpacked_);
    checked.Finish();
}

}  // namespace vantrel::zip
