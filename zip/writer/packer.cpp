#include "zip/writer/packer.h"

#include <cstring>
#include <utility>

#include "common/path.h"

namespace vantrel::zip {

namespace {

constexpr const char* kNotCompressed = "A file could not be compressed";
// Capacities of the buffers of a thread, from the start: untouched pages cost nothing, and growing
// leaves gaps between the blocks of the heap.
constexpr std::size_t kInputCapacity = kHistory + kChunkSize + 1;
constexpr std::size_t kOutputCapacity = 2 * kChunkSize + kChunkSize / 4;

}  // namespace

Packer::Packer(SourceFolder& reader, RunContext& channel, std::unique_ptr<Deflater> deflater,
               EarlierArchive& earlier)
    : reader_(reader), channel_(channel), deflater_(std::move(deflater)) {
    // Even when the archive is not used (any more): each chunk of a file in it has to be settled.
    if (deflater_) {
        earlier_ = std::make_unique<EarlierData>(earlier, *deflater_);
    }
}

PackedJob Packer::Pack(Job& job, Buffer recycled) {
    PackedJob packed;
    packed.bytes = std::move(recycled);
    packed.bytes.Clear();
    packed.bytes.Reserve(kOutputCapacity);
    job.data.Reserve(kInputCapacity);
    if (job.chunk) {
        PackChunk(job, packed);
    } else {
        PackBatch(job, packed);
    }
    return packed;
}

Entry Packer::MakeEntry(const SourceItem& item) {
    Entry entry;
    entry.name = StoredName(item);
    entry.attributes = item.attributes;
    entry.times = item.times;
    entry.modified_local = reader_.machine().clock.ToLocal(item.times.modified);
    return entry;
}

void Packer::PackBatch(Job& job, PackedJob& packed) {
    packed.entries.reserve(job.items.size());
    std::swap(input_, job.data);  // one buffer for files and chunks: fresh memory is slow
    for (const SourceItem& item : job.items) {
        channel_.CheckStop();
        packed.entries.push_back(CompressItem(item, packed.bytes));
    }
    std::swap(input_, job.data);
}

PackedEntry Packer::CompressItem(const SourceItem& item, Buffer& bytes) {
    PackedEntry result;
    result.path = path::Join(reader_.folder(), item.name);
    result.listed_size = item.size;
    result.entry = MakeEntry(item);
    if (item.IsFolder()) {
        input_.Clear();
        AppendEntry(result, bytes);
    } else {
        PackFile(item, result, bytes);
    }
    return result;
}

void Packer::PackFile(const SourceItem& item, PackedEntry& result, Buffer& bytes) {
    try {
        if (reader_.Attempt([&] { return ReadFile(result); })) {
            AppendEntry(result, bytes);
        } else {
            result.deferred = item;
        }
    } catch (const Error& error) {
        result.warning = SkippedFileWarning(result.path, error);
    }
}

// Reads the complete file into input_; false when it has grown above kChunkSize. Asks for one byte
// more than was listed: when that byte is missing, the size is confirmed without another call.
bool Packer::ReadFile(PackedEntry& result) {
    const auto file = reader_.machine().files.Open(result.path, platform::OpenMode::kRead);
    const auto listed = static_cast<std::size_t>(result.listed_size);
    result.warning.reset();
    input_.Resize(listed + 1);
    std::size_t count = file->Read(input_.data(), input_.size());
    if (count == listed) {
        input_.Resize(listed);
        return true;
    }
    const std::uint64_t size = file->Size();
    if (size > kChunkSize) {
        return false;
    }
    input_.Resize(count);
    input_.Resize(std::max(static_cast<std::size_t>(size), count));
    count += ReadFully(*file, input_.data() + count, input_.size() - count);
    input_.Resize(count);
    if (count != size || file->Size() != size) {
        result.warning = ChangedFileWarning(result.path);
    }
    return true;
}

// Appends local header and data for the content of input_.
void Packer::AppendEntry(PackedEntry& result, Buffer& bytes) {
    Entry& entry = result.entry;
    entry.crc = Crc32(input_.data(), input_.size());
    entry.size = input_.size();
    entry.location.offset = bytes.size();
    header_.clear();
    AppendLocalHeader(header_, entry);
    result.header_size = header_.size();
    bytes.Append(header_);
    entry.method = AppendData(result, bytes);
    entry.packed_size = bytes.size() - entry.location.offset - header_.size();
    // Again, with method and size; its length is the same.
    header_.clear();
    AppendLocalHeader(header_, entry);
    std::memcpy(bytes.data() + entry.location.offset, header_.data(), header_.size());
    result.stored = true;
}

// Appends the data of input_ as the earlier archive has it, or compressed when that is smaller.
Method Packer::AppendData(PackedEntry& result, Buffer& bytes) {
    const auto equal = earlier_ ? earlier_->FindEqual(input_, result.entry.crc) : std::nullopt;
    result.reused = equal.has_value();
    if (equal) {
        bytes.Append(equal->bytes);
        return equal->method;
    }
    const bool worth_it = deflater_ && !sampler_.LooksIncompressible(input_.data(), input_.size());
    const bool smaller =
        worth_it && RetryOrAsk(channel_, DescribeFailure(kNotCompressed, result.path), [&] {
            return deflater_->Compress(input_.data(), input_.size(), bytes);
        });
    if (!smaller) {
        bytes.Append(input_.View());
    }
    return smaller ? Method::kDeflated : Method::kStored;
}

void Packer::PackChunk(const Job& job, PackedJob& packed) {
    packed.chunk = job.chunk;
    packed.file = job.items.front();
    packed.path = path::Join(reader_.folder(), packed.file.name);
    const Chunk& chunk = *job.chunk;
    if (chunk.first) {
        packed.entry = MakeEntry(packed.file);
        packed.entry.method = chunk.method;
        // A file whose data does not shrink is stored in the end, so the uncompressed size alone
        // decides whether 64-bit fields are needed.
        packed.entry.zip64_sizes = NeedsWideSizes(chunk.file_size, 0);
    }
    packed.raw_size = job.ChunkSize();
    packed.crc = Crc32(job.ChunkData(), job.ChunkSize());
    packed.check = CombineCrc32(Crc32(job.data.data(), job.history), packed.crc, packed.raw_size);
    if (!chunk.unreadable) {
        AppendChunk(job, packed);
    }
}

void Packer::AppendChunk(const Job& job, PackedJob& packed) {
    const Chunk& chunk = *job.chunk;
    const std::uint8_t* const data = job.ChunkData();
    const std::size_t size = job.ChunkSize();
    packed.reused = chunk.earlier && earlier_ &&
                    earlier_->AppendEqualChunk(job, packed.check, channel_.Token(), packed.bytes);
    if (packed.reused) {
        return;
    }
    if (chunk.method == Method::kStored) {
        packed.bytes.Append(data, size);
    } else if (sampler_.LooksIncompressible(data, size)) {
        StoreChunk(data, size, chunk.last, packed.bytes);
    } else {
        RetryOrAsk(channel_, DescribeFailure(kNotCompressed, packed.path), [&] {
            deflater_->CompressChunk(data, size, chunk.last, packed.bytes, job.history);
        });
    }
}

}  // namespace vantrel::zip
